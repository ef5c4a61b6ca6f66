// Strips with something going on in them, for pictures: the same in every run.

#pragma once

#include <string>
#include <vector>

#include "played.h"

namespace channelstrip::view_test {

struct Scene {
  std::string name;  // of its files
  view::Model model;
};

inline constexpr const char* kScenes[] = {"neutral", "voice",   "drum_gate",   "dialogue",
                                          "film",    "ducking", "eight_bands", "bypassed"};

Scene scene(const std::string& name);

// Bursts of coloured noise over tones, peaking at about -3 dBFS.
Planar programme(std::size_t channels, double seconds);

}  // namespace channelstrip::view_test
