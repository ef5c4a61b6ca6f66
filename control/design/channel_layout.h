// Which speaker each channel of a stream feeds.

#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "../library/stem_format.h"

namespace channelstrip::host {

// Labels in channel order: L R C LFE, the surround pair Ls Rs, a second pair behind it Lb Rb, a
// single surround Cs (S in LCRS), or the front centre pair Lc Rc. A single channel is M.
struct ChannelLayout {
  const StemFormat* format = nullptr;
  std::vector<std::string> labels;  // one per channel, all different
};

// The other half of a label's pair; empty when it has none.
std::string_view partner(std::string_view label);

// In which order the channels of a stream stand, given its speakers.
enum class ChannelOrder {
  kWav,  // WAV's channel mask
  kFilm  // as speakers stand: the screen and then the surrounds from left to right, the LFE last
};
inline constexpr std::string_view kChannelOrders[] = {"wav", "film"};  // as users write them

// The layout that a format has when nothing else is known:
//
//             wav                          film
//   Mono      M                            M
//   Stereo    L R                          L R
//   LCR       L R C                        L C R
//   Quad      L R Ls Rs                    L R Ls Rs
//   LCRS      L R C S                      L C R S
//   5.0       L R C Ls Rs                  L C R Ls Rs
//   5.1       L R C LFE Ls Rs              L C R Ls Rs LFE
//   6.0       L R C Cs Ls Rs               L C R Ls Cs Rs
//   6.1       L R C LFE Cs Ls Rs           L C R Ls Cs Rs LFE
//   7.0       L R C Lb Rb Ls Rs            L C R Ls Rs Lb Rb
//   7.1       L R C LFE Lb Rb Ls Rs        L C R Ls Rs Lb Rb LFE
ChannelLayout default_layout(const StemFormat& format, ChannelOrder order = ChannelOrder::kWav);

// Positions that audio files name, in the order of WAV's channel mask.
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
// the order of the file. The speakers are ignored if no format has such a layout: if one is unknown
// or repeated, if half a pair is missing, or if the default link map has more groups than the
// format.
//
// Without a `forced` format, count and speakers decide: 4 channels are LCRS when they need more
// than two groups, 6 and 7 are 5.1 and 6.1 when one is the LFE. Where none are named, 4, 6 and 7
// channels are Quad, 5.1 and 6.1. A forced format that the speakers contradict has its default
// layout; 5.1 and 6.0 never contradict each other, because they are processed alike.
//
// An `order` overrides the file's: the speakers then only tell which ones there are. Without it the
// order is the file's, or WAV's if the file names no speakers.
//
// Throws std::invalid_argument for a count outside 1 .. 8 or a forced format of another count.
ChannelLayout choose_layout(int channels, const std::vector<Speaker>& speakers,
                            const StemFormat* forced = nullptr,
                            std::optional<ChannelOrder> order = std::nullopt);

}  // namespace channelstrip::host
