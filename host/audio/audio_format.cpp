#include "audio_format.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>

#include "containers.h"

namespace channelstrip::host {
namespace {

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

}  // namespace channelstrip::host
