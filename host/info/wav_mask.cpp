#include "wav_mask.h"

#include <algorithm>
#include <bit>
#include <map>
#include <string_view>

namespace channelstrip::host {
namespace {

// The values of Speaker are in the order of the mask's bits, from the lowest.
std::uint32_t bit(Speaker speaker) {
  return std::uint32_t{1} << static_cast<int>(speaker);
}

using Speakers = std::map<std::string_view, Speaker>;

const Speakers kSidesAndBacks{{"M", Speaker::kFrontCenter},
                              {"L", Speaker::kFrontLeft},
                              {"R", Speaker::kFrontRight},
                              {"C", Speaker::kFrontCenter},
                              {"LFE", Speaker::kLfe},
                              {"Lb", Speaker::kBackLeft},
                              {"Rb", Speaker::kBackRight},
                              {"Lc", Speaker::kFrontLeftOfCenter},
                              {"Rc", Speaker::kFrontRightOfCenter},
                              {"Cs", Speaker::kBackCenter},
                              {"S", Speaker::kBackCenter},
                              {"Ls", Speaker::kSideLeft},
                              {"Rs", Speaker::kSideRight}};

bool contains(const ChannelLayout& layout, std::string_view label) {
  return std::ranges::find(layout.labels, label) != layout.labels.end();
}

// 0 if the channels aren't in the order of the bits.
std::uint32_t mask_of(const ChannelLayout& layout, const Speakers& speakers) {
  std::uint32_t mask = 0;
  for (const std::string& label : layout.labels) {
    const std::uint32_t next = bit(speakers.at(label));
    if (next <= mask) return 0;
    mask |= next;
  }
  return mask;
}

}  // namespace

std::vector<std::uint32_t> wav_masks(const ChannelLayout& layout) {
  std::vector<std::uint32_t> masks;
  if (contains(layout, "Ls") && !contains(layout, "Lb")) {
    Speakers behind = kSidesAndBacks;
    behind["Ls"] = Speaker::kBackLeft;
    behind["Rs"] = Speaker::kBackRight;
    masks.push_back(mask_of(layout, behind));
  }
  masks.push_back(mask_of(layout, kSidesAndBacks));
  std::erase(masks, 0u);
  return masks;
}

std::vector<Speaker> speakers_of_mask(std::uint32_t mask) {
  std::vector<Speaker> speakers;
  for (; mask != 0; mask &= mask - 1) {
    const int index = std::min(std::countr_zero(mask), static_cast<int>(Speaker::kOther));
    speakers.push_back(static_cast<Speaker>(index));
  }
  return speakers;
}

}  // namespace channelstrip::host
