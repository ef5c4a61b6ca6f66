#include "formats.h"

#include <channelstrip/channelstrip.h>
#include <clap/ext/audio-ports.h>

#include <algorithm>
#include <map>
#include <string_view>

namespace channelstrip::clap {
namespace {

std::uint64_t bit(std::uint8_t speaker) {
  return std::uint64_t{1} << speaker;
}

}  // namespace

std::uint32_t channels_of(std::uint32_t format) {
  channelstrip_format info{};
  channelstrip_format_info(format, &info, sizeof info);
  return info.channels;
}

const char* port_type_of(std::uint32_t channels) {
  if (channels == 1) return CLAP_PORT_MONO;
  return channels == 2 ? CLAP_PORT_STEREO : kSurroundPort;
}

std::vector<std::uint8_t> speakers_of(std::uint32_t format) {
  static const std::map<std::string_view, std::uint8_t> speakers{
      {"M", kFrontCenter}, {"L", kFrontLeft},      {"R", kFrontRight}, {"C", kFrontCenter},
      {"S", kBackCenter},  {"LFE", kLowFrequency}, {"Lb", kBackLeft},  {"Rb", kBackRight},
      {"Cs", kBackCenter}, {"Ls", kBackLeft},      {"Rs", kBackRight}};
  std::vector<std::uint8_t> found;
  bool has_back = false;
  for (std::uint32_t c = 0; c < channels_of(format); ++c) {
    const std::string_view role = channelstrip_format_role(format, CHANNELSTRIP_ORDER_WAV, c);
    has_back = has_back || role == "Lb" || role == "Cs";
    found.push_back(speakers.at(role));
  }
  // Where others are in the back, the surrounds are at the sides.
  for (std::uint32_t c = 0; has_back && c < found.size(); ++c) {
    const std::string_view role = channelstrip_format_role(format, CHANNELSTRIP_ORDER_WAV, c);
    if (role == "Ls") found[c] = kSideLeft;
    if (role == "Rs") found[c] = kSideRight;
  }
  return found;
}

bool is_a_format(std::uint64_t speakers) {
  const std::uint64_t back = bit(kBackLeft) | bit(kBackRight);
  const std::uint64_t sides = bit(kSideLeft) | bit(kSideRight);
  for (std::uint32_t format = 0; format < channelstrip_format_count(); ++format) {
    std::uint64_t mask = 0;
    for (const std::uint8_t speaker : speakers_of(format)) mask |= bit(speaker);
    if (mask == speakers) return true;
    const bool has_one_pair = ((mask & back) != 0) != ((mask & sides) != 0);
    if (has_one_pair && (mask ^ back ^ sides) == speakers) return true;
  }
  return false;
}

}  // namespace channelstrip::clap
