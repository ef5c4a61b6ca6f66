// The order of channels: of WAV, and of film.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "program.h"

namespace channelstrip::test::order_test {
namespace {

struct Layout {
  std::vector<std::size_t> film;  // the channels' positions in WAV order
  std::vector<std::string> wav_labels;
  const char* link;
};

const Layout kLayouts[] = {
    {{0, 2, 1, 4, 5, 3}, {"L", "R", "C", "LFE", "Ls", "Rs"}, "\"5.1\" = \"L R C | LFE | Ls Rs\""},
    {{0, 2, 1, 6, 7, 4, 5, 3},
     {"L", "R", "C", "LFE", "Lb", "Rb", "Ls", "Rs"},
     "\"7.1\" = \"L R | C | LFE | Ls Rs Lb Rb\""}};

template <typename Value>
std::vector<Value> in_film_order(const std::vector<Value>& wav, const Layout& layout) {
  std::vector<Value> film;
  for (std::size_t i = 0; i < wav.size(); i += layout.film.size()) {
    for (const std::size_t place : layout.film) film.push_back(wav[i + place]);
  }
  return film;
}

class Order : public Program {
 protected:
  // Noise with a different level in every channel, so that the groups are reduced differently.
  static TestAudio material(std::size_t channels) {
    TestAudio audio{.channels = static_cast<int>(channels), .floats = noise(channels * 9600, 0.9f)};
    for (std::size_t i = 0; i < audio.floats.size(); ++i) {
      audio.floats[i] /= static_cast<float>(1 + i % channels * i % channels);
    }
    return audio;
  }

  struct Rendered {
    std::vector<float> samples;
    std::vector<std::string> labels;
  };

  Rendered rendered(const TestAudio& audio, const Layout& layout,
                    const std::vector<std::string>& options) {
    const std::string preset = folder.write(
        "p.toml", std::string("[compressor]\nthreshold = -40\nratio = 8\nattack = 1\n[link]\n") +
                      layout.link);
    std::vector<std::string> arguments{
        "render", write_audio(input, audio), output, "-y", "--preset", preset, "--json"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    const ChildResult result = run(arguments);
    EXPECT_EQ(result.exit_status, 0) << result.output;
    Rendered all{read_audio(output).floats, {}};
    const auto summary = nlohmann::json::parse(result.printed);
    for (const auto& channel : summary["files"][0]["channels"]) {
      all.labels.push_back(channel["channel"]);
    }
    return all;
  }
};

TEST_F(Order, OfFilmProcessesEveryChannelAsWhatItIs) {
  for (const Layout& layout : kLayouts) {
    const TestAudio wav = material(layout.film.size());
    TestAudio film = wav;
    film.floats = in_film_order(wav.floats, layout);
    const Rendered expected = rendered(wav, layout, {"--order", "wav"});
    EXPECT_EQ(expected.labels, layout.wav_labels);
    const Rendered actual = rendered(film, layout, {"--order", "film"});
    EXPECT_EQ(actual.labels, in_film_order(layout.wav_labels, layout));
    EXPECT_EQ(actual.samples, in_film_order(expected.samples, layout));
    EXPECT_NE(rendered(film, layout, {}).samples, actual.samples);
  }
}

TEST_F(Order, OfWavIsAssumedWhereNothingIsSaid) {
  for (const Layout& layout : kLayouts) {
    const TestAudio wav = material(layout.film.size());
    EXPECT_EQ(rendered(wav, layout, {}).samples, rendered(wav, layout, {"--order", "wav"}).samples);
  }
}

const std::vector<int> kWavMap{SF_CHANNEL_MAP_LEFT,      SF_CHANNEL_MAP_RIGHT,
                               SF_CHANNEL_MAP_CENTER,    SF_CHANNEL_MAP_LFE,
                               SF_CHANNEL_MAP_REAR_LEFT, SF_CHANNEL_MAP_REAR_RIGHT};

TEST_F(Order, ThatIsStatedWinsOverAChannelMask) {
  const Layout& layout = kLayouts[0];
  TestAudio film = material(6);
  const Rendered expected = rendered(film, layout, {"--order", "film"});
  film.format = SF_FORMAT_WAVEX | SF_FORMAT_FLOAT;
  film.map = kWavMap;
  const Rendered actual = rendered(film, layout, {"--order", "film"});
  EXPECT_EQ(actual.samples, expected.samples);
  EXPECT_EQ(actual.labels, expected.labels);
}

TEST_F(Order, OfTheFileHoldsWhereNoneIsStated) {
  const Layout& layout = kLayouts[0];
  TestAudio audio = material(6);
  const Rendered film = rendered(audio, layout, {"--order", "film"});
  const Rendered wav = rendered(audio, layout, {"--order", "wav"});
  audio.format = SF_FORMAT_CAF | SF_FORMAT_FLOAT;
  audio.map = in_film_order(kWavMap, layout);
  const Rendered as_the_file_says = rendered(audio, layout, {"--output-type", "caf"});
  EXPECT_EQ(as_the_file_says.samples, film.samples);
  EXPECT_EQ(as_the_file_says.labels, film.labels);
  EXPECT_EQ(rendered(audio, layout, {"--output-type", "caf", "--order", "wav"}).samples,
            wav.samples);
}

}  // namespace
}  // namespace channelstrip::test::order_test
