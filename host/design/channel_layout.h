// Which speaker each channel of a stream feeds, and which channels the dynamics link.

#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "../stem_format.h"

namespace channelstrip::host {

// Labels in channel order: L R C LFE, the surround pair Ls Rs, a second pair behind it Lb Rb, a
// single surround Cs (S in LCRS), or the front centre pair Lc Rc. A single channel is M.
struct ChannelLayout {
  const StemFormat* format = nullptr;
  std::vector<std::string> labels;  // one per channel, all different
};

// The layout that a format has when nothing else is known: the order of WAV's channel mask.
ChannelLayout default_layout(const StemFormat& format);

// Positions that audio files name.
enum class Speaker {
  kFrontLeft,
  kFrontRight,
  kFrontCenter,
  kLfe,
  kBackLeft,
  kBackRight,
  kFrontLeftOfCenter,
  kFrontRightOfCenter,
  kBackCenter,
  kSideLeft,
  kSideRight,
  kOther
};

// The layout of a stream of `channels` channels whose file names `speakers` (empty: none named), in
// the order of the file. Speakers that make no layout the formats can hold count as not named:
// unknown or repeated ones, half a pair, more groups by default than the format has.
//
// Without a `forced` format, count and speakers decide: 4 channels are LCRS when they need more
// than two groups, 6 and 7 are 5.1 and 6.1 when one is the LFE. Where none are named, 4, 6 and 7
// channels are Quad, 5.1 and 6.1. A forced format that the speakers contradict has its default
// layout; 5.1 and 6.0 never contradict each other, they are processed alike.
//
// Throws std::invalid_argument for a count outside 1 .. 8 or a forced format of another count.
ChannelLayout choose_layout(int channels, const std::vector<Speaker>& speakers,
                            const StemFormat* forced = nullptr);

// The group of each channel, 0 .. G-1 in order of first appearance; entries from N on are 0.
using LinkMap = std::array<int, 8>;

// Pairs linked, every other channel alone.
LinkMap default_link_map(const ChannelLayout& layout);

// Parses "L R C | LFE | Ls Rs": blanks separate labels, bars groups. Throws std::invalid_argument
// unless every channel of the layout stands in exactly one group and there are at most G groups.
LinkMap parse_link_map(std::string_view text, const ChannelLayout& layout);

}  // namespace channelstrip::host
