#include "audio_format.h"

#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace channelstrip::host {
namespace {

constexpr std::pair<std::string_view, int> kExtensions[] = {
    {".wav", SF_FORMAT_WAV},   {".wave", SF_FORMAT_WAV},  {".aif", SF_FORMAT_AIFF},
    {".aiff", SF_FORMAT_AIFF}, {".aifc", SF_FORMAT_AIFF}, {".caf", SF_FORMAT_CAF},
    {".flac", SF_FORMAT_FLAC}, {".w64", SF_FORMAT_W64},   {".rf64", SF_FORMAT_RF64},
    {".au", SF_FORMAT_AU},     {".snd", SF_FORMAT_AU},    {".ogg", SF_FORMAT_OGG},
    {".oga", SF_FORMAT_OGG},   {".opus", SF_FORMAT_OGG},  {".mp3", SF_FORMAT_MPEG}};

std::optional<int> container_of(const std::string& path) {
  std::string extension = std::filesystem::path(path).extension().string();
  std::ranges::transform(extension, extension.begin(),
                         [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  for (const auto& [name, container] : kExtensions) {
    if (extension == name) return container;
  }
  return std::nullopt;
}

bool can_be_written(const AudioFormat& format) {
  SF_INFO info = {};
  info.samplerate = format.sample_rate;
  info.channels = format.channels;
  info.format = format.container | format.sample_type;
  return sf_format_check(&info) == SF_TRUE;
}

std::string libsndfile_name(int container_or_sample_type) {
  SF_FORMAT_INFO info = {};
  info.format = container_or_sample_type;
  sf_command(nullptr, SFC_GET_FORMAT_INFO, &info, sizeof info);
  return info.name ? info.name : "unknown";
}

Speaker speaker(int position) {
  switch (position) {
    case SF_CHANNEL_MAP_LEFT:
    case SF_CHANNEL_MAP_FRONT_LEFT:
      return Speaker::kFrontLeft;
    case SF_CHANNEL_MAP_RIGHT:
    case SF_CHANNEL_MAP_FRONT_RIGHT:
      return Speaker::kFrontRight;
    case SF_CHANNEL_MAP_MONO:
    case SF_CHANNEL_MAP_CENTER:
    case SF_CHANNEL_MAP_FRONT_CENTER:
      return Speaker::kFrontCenter;
    case SF_CHANNEL_MAP_LFE:
      return Speaker::kLfe;
    case SF_CHANNEL_MAP_REAR_LEFT:
      return Speaker::kBackLeft;
    case SF_CHANNEL_MAP_REAR_RIGHT:
      return Speaker::kBackRight;
    case SF_CHANNEL_MAP_FRONT_LEFT_OF_CENTER:
      return Speaker::kFrontLeftOfCenter;
    case SF_CHANNEL_MAP_FRONT_RIGHT_OF_CENTER:
      return Speaker::kFrontRightOfCenter;
    case SF_CHANNEL_MAP_REAR_CENTER:
      return Speaker::kBackCenter;
    case SF_CHANNEL_MAP_SIDE_LEFT:
      return Speaker::kSideLeft;
    case SF_CHANNEL_MAP_SIDE_RIGHT:
      return Speaker::kSideRight;
    default:
      return Speaker::kOther;
  }
}

// ALAC is lossless: its samples are as well written plainly. libsndfile 1.2 spoils the stereo ones
// of more than 16 bits.
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

}  // namespace

int integer_bits(const AudioFormat& format) {
  switch (format.sample_type) {
    case SF_FORMAT_PCM_S8:
    case SF_FORMAT_PCM_U8:
      return 8;
    case SF_FORMAT_PCM_16:
    case SF_FORMAT_ALAC_16:
      return 16;
    case SF_FORMAT_ALAC_20:
      return 20;
    case SF_FORMAT_PCM_24:
    case SF_FORMAT_ALAC_24:
      return 24;
    case SF_FORMAT_PCM_32:
    case SF_FORMAT_ALAC_32:
      return 32;
    default:
      return 0;
  }
}

std::string sample_type_name(const AudioFormat& format) {
  if (const int bits = integer_bits(format)) return fmt::format("{}-bit", bits);
  if (format.sample_type == SF_FORMAT_FLOAT) return "32-bit float";
  if (format.sample_type == SF_FORMAT_DOUBLE) return "64-bit float";
  return libsndfile_name(format.sample_type);
}

std::vector<Speaker> speakers(const AudioFormat& format) {
  std::vector<Speaker> named;
  std::ranges::transform(format.channel_map, std::back_inserter(named), speaker);
  return named;
}

AudioFormat output_format(const AudioFormat& input, const std::string& path) {
  AudioFormat output = input;
  output.sample_type = without_alac(input.sample_type);
  output.container = container_of(path).value_or(input.container);
  // Of the two plain WAV headers only the extensible one has a channel mask.
  if (output.container == SF_FORMAT_WAV || output.container == SF_FORMAT_WAVEX) {
    output.container = output.channel_map.empty() ? SF_FORMAT_WAV : SF_FORMAT_WAVEX;
  }
  // An RF64 file always has a mask; libsndfile's for 8 channels has a front centre pair, the layout
  // of 7.1 two pairs of surrounds.
  if (output.container == SF_FORMAT_RF64 && output.channel_map.empty() && output.channels == 8) {
    output.channel_map = {SF_CHANNEL_MAP_LEFT,      SF_CHANNEL_MAP_RIGHT,
                          SF_CHANNEL_MAP_CENTER,    SF_CHANNEL_MAP_LFE,
                          SF_CHANNEL_MAP_REAR_LEFT, SF_CHANNEL_MAP_REAR_RIGHT,
                          SF_CHANNEL_MAP_SIDE_LEFT, SF_CHANNEL_MAP_SIDE_RIGHT};
  }
  // Containers disagree on the sign of 8-bit samples, but not on their values.
  if (integer_bits(input) == 8 && !can_be_written(output)) {
    output.sample_type =
        input.sample_type == SF_FORMAT_PCM_S8 ? SF_FORMAT_PCM_U8 : SF_FORMAT_PCM_S8;
  }
  if (!can_be_written(output)) {
    throw std::runtime_error(fmt::format("{}: {} can't hold {} channel{} of {} samples at {} Hz",
                                         path, libsndfile_name(output.container), input.channels,
                                         input.channels == 1 ? "" : "s", sample_type_name(input),
                                         input.sample_rate));
  }
  return output;
}

}  // namespace channelstrip::host
