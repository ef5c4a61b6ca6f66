#include "host/audio/output_format.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "../support/refusal.h"
#include "host/audio/containers.h"

namespace channelstrip::test::output_format_test {
namespace {

using host::AudioFormat;
using host::container_from_name;
using host::output_format;
using host::sample_type_from_bits;

const AudioFormat kInput{.sample_rate = 48000,
                         .channels = 2,
                         .container = SF_FORMAT_WAV,
                         .sample_type = SF_FORMAT_FLOAT,
                         .channel_map = {}};

TEST(OutputFormat, HasTheBitsThatAreAskedFor) {
  struct Case {
    const char* bits;
    int sample_type;
  };
  for (const Case c : {Case{"16", SF_FORMAT_PCM_16},
                       {"24", SF_FORMAT_PCM_24},
                       {"32", SF_FORMAT_PCM_32},
                       {"32f", SF_FORMAT_FLOAT},
                       {"64f", SF_FORMAT_DOUBLE}}) {
    const AudioFormat output =
        output_format(kInput, "out.wav", {.sample_type = sample_type_from_bits(c.bits)});
    EXPECT_EQ(output.sample_type, c.sample_type) << c.bits;
    EXPECT_EQ(output.container, SF_FORMAT_WAV);
    EXPECT_EQ(output.sample_rate, 48000);
  }
}

TEST(OutputFormat, IsOfTheContainerThatIsAskedFor) {
  const int sample_type = SF_FORMAT_PCM_24;
  EXPECT_EQ(output_format(kInput, "-", {.sample_type = sample_type}).container, SF_FORMAT_WAV);
  for (const char* path : {"-", "out.wav"}) {
    EXPECT_EQ(output_format(kInput, path,
                            {.container = container_from_name("flac"), .sample_type = sample_type})
                  .container,
              SF_FORMAT_FLAC);
  }
}

TEST(OutputFormat, IsCodedAsALossyContainersNameSays) {
  for (const auto& [name, sample_type] : {std::pair("out.ogg", SF_FORMAT_VORBIS),
                                          {"out.oga", SF_FORMAT_VORBIS},
                                          {"out.opus", SF_FORMAT_OPUS},
                                          {"out.mp3", SF_FORMAT_MPEG_LAYER_III}}) {
    const AudioFormat coded = output_format(kInput, name);
    EXPECT_EQ(coded.sample_type, sample_type) << name;
    // From one lossy container to another, too; what stays in its container keeps its coding.
    AudioFormat opus = kInput;
    opus.container = SF_FORMAT_OGG;
    opus.sample_type = SF_FORMAT_OPUS;
    EXPECT_EQ(output_format(opus, "out.ogg").sample_type, SF_FORMAT_OPUS);
    EXPECT_EQ(output_format(opus, "out.wav").sample_type, SF_FORMAT_PCM_24);
    EXPECT_EQ(output_format(coded, "out.mp3").sample_type, SF_FORMAT_MPEG_LAYER_III);
    EXPECT_EQ(output_format(coded, "out.wav").sample_type, SF_FORMAT_PCM_24);
  }
  EXPECT_EQ(output_format(kInput, "-", {.container = container_from_name("opus")}).sample_type,
            SF_FORMAT_OPUS);
}

TEST(OutputFormat, StaysRf64UnderTheNameOfWav) {
  AudioFormat input = kInput;
  input.container = SF_FORMAT_RF64;
  EXPECT_EQ(output_format(input, "out.wav").container, SF_FORMAT_RF64);
  EXPECT_EQ(output_format(input, "out.wav", {.container = container_from_name("wav")}).container,
            SF_FORMAT_WAV);
}

TEST(OutputFormat, IsRefusedWhenTheContainerCannotHoldTheBits) {
  for (const auto& [bits, name] : {std::pair("32", "32-bit"), {"32f", "32-bit float"}}) {
    const int sample_type = sample_type_from_bits(bits);
    EXPECT_EQ(refusal([&] { output_format(kInput, "o.flac", {.sample_type = sample_type}); }),
              std::string("o.flac: FLAC (Free Lossless Audio Codec) can't hold 2 channels of ") +
                  name + " samples at 48000 Hz");
  }
}

TEST(OutputFormat, RefusesBitsAndContainersItDoesNotKnow) {
  EXPECT_EQ(refusal([] { sample_type_from_bits("20"); }), "\"20\" is none of 16, 24, 32, 32f, 64f");
  EXPECT_EQ(refusal([] { container_from_name("doc"); }),
            "\"doc\" is none of wav, wave, rf64, w64, flac, aif, aiff, aifc, caf, au, snd, ogg, "
            "oga, opus, mp3");
}

}  // namespace
}  // namespace channelstrip::test::output_format_test
