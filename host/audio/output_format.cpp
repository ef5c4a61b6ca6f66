#include "output_format.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <iterator>
#include <stdexcept>
#include <utility>

#include "containers.h"

namespace channelstrip::host {
namespace {

constexpr std::pair<std::string_view, int> kBits[] = {{"16", SF_FORMAT_PCM_16},
                                                      {"24", SF_FORMAT_PCM_24},
                                                      {"32", SF_FORMAT_PCM_32},
                                                      {"32f", SF_FORMAT_FLOAT},
                                                      {"64f", SF_FORMAT_DOUBLE}};

bool can_be_written(const AudioFormat& format) {
  SF_INFO info = {};
  info.samplerate = format.sample_rate;
  info.channels = format.channels;
  info.format = format.container | format.sample_type;
  return sf_format_check(&info) == SF_TRUE;
}

// The PCM type that holds the samples of an ALAC type. ALAC is lossless, so nothing is lost, and
// libsndfile 1.2 spoils stereo ALAC of more than 16 bits.
int without_alac(int sample_type) {
  switch (sample_type) {
    case SF_FORMAT_ALAC_16:
      return SF_FORMAT_PCM_16;
    case SF_FORMAT_ALAC_20:
    case SF_FORMAT_ALAC_24:
      return SF_FORMAT_PCM_24;
    case SF_FORMAT_ALAC_32:
      return SF_FORMAT_PCM_32;
    default:
      return sample_type;
  }
}

bool is_lossy(int sample_type) {
  constexpr int kLossy[] = {SF_FORMAT_VORBIS, SF_FORMAT_OPUS, SF_FORMAT_MPEG_LAYER_I,
                            SF_FORMAT_MPEG_LAYER_II, SF_FORMAT_MPEG_LAYER_III};
  return std::ranges::find(kLossy, sample_type) != std::end(kLossy);
}

// The type of samples of `sample_type` in a container `named` with or without a coding. Ogg holds
// several codings, but a name that says Opus means it.
int coded(int sample_type, int named, bool same_container) {
  const int coding = named & SF_FORMAT_SUBMASK;
  if (same_container && coding != SF_FORMAT_OPUS) return sample_type;
  if (coding != 0) return coding;
  return is_lossy(sample_type) ? SF_FORMAT_PCM_24 : sample_type;
}

int container_named_by(const std::string& path, const AudioFormat& input) {
  const int named = container_of(path).value_or(input.container);
  return named == SF_FORMAT_WAV && input.container == SF_FORMAT_RF64 ? SF_FORMAT_RF64 : named;
}

}  // namespace

int sample_type_from_bits(std::string_view bits) {
  for (const auto& [name, sample_type] : kBits) {
    if (name == bits) return sample_type;
  }
  throw std::runtime_error(
      fmt::format("\"{}\" is none of {}", bits, fmt::join(bits_names(), ", ")));
}

std::vector<std::string> bits_names() {
  std::vector<std::string> names;
  for (const auto& [name, sample_type] : kBits) names.emplace_back(name);
  return names;
}

AudioFormat output_format(const AudioFormat& input, const std::string& path,
                          const OutputChoice& choice) {
  AudioFormat output = input;
  output.sample_type = choice.sample_type.value_or(without_alac(input.sample_type));
  const int named = choice.container.value_or(container_named_by(path, input));
  output.container = named & SF_FORMAT_TYPEMASK;
  if (!choice.sample_type) {
    output.sample_type = coded(output.sample_type, named, output.container == input.container);
  }
  // Of the two plain WAV headers only the extensible one has a channel mask.
  if (output.container == SF_FORMAT_WAV || output.container == SF_FORMAT_WAVEX) {
    output.container = output.channel_map.empty() ? SF_FORMAT_WAV : SF_FORMAT_WAVEX;
  }
  // Some containers hold 8-bit samples signed, others unsigned; the values are the same.
  if (integer_bits(output) == 8 && !can_be_written(output)) {
    output.sample_type =
        input.sample_type == SF_FORMAT_PCM_S8 ? SF_FORMAT_PCM_U8 : SF_FORMAT_PCM_S8;
  }
  if (!can_be_written(output)) {
    throw std::runtime_error(fmt::format("{}: {} can't hold {} channel{} of {} samples at {} Hz",
                                         path, libsndfile_name(output.container), input.channels,
                                         input.channels == 1 ? "" : "s", sample_type_name(output),
                                         input.sample_rate));
  }
  return output;
}

}  // namespace channelstrip::host
