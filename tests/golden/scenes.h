// What the golden programme consists of: eleven formats, and scenes that each runs.

#pragma once

namespace channelstrip::golden {

struct Format {
  const char* name;
  int channels, groups;
};

// In the order of the entry points in frame/entry_points.h.
constexpr Format kFormats[] = {{"Mono", 1, 1}, {"Stereo", 2, 1}, {"LCR", 3, 2}, {"Quad", 4, 2},
                               {"LCRS", 4, 3}, {"5.0", 5, 3},    {"5.1", 6, 4}, {"6.0", 6, 4},
                               {"6.1", 7, 5},  {"7.0", 7, 4},    {"7.1", 8, 5}};
constexpr int kFormatCount = sizeof kFormats / sizeof *kFormats;

enum class Wiring {
  kApart,    // outputs are buffers of their own
  kInPlace,  // every output is its own channel's input
  kCrossed,  // every output is the next channel's input
};

enum class Audio { kOrdinary, kNan, kInfinite, kDenormal };

struct Scene {
  const char* name;
  Wiring wiring = Wiring::kApart;
  Audio audio = Audio::kOrdinary;
  bool glides = false;    // new targets before every call
  bool smoothed = false;  // detection by the smoothing filter instead of the peak
  bool keyed = false;     // detection from a key channel, one of the inputs or beside them
  bool listens = false;   // the outputs carry the detection signals
  bool links = false;     // link groups of any shape
  bool bypassed = false;  // some instances are
  bool shares = false;    // bands run in both passes
  bool one_pass = false;  // no band before or none after the dynamics
  bool uneven = false;    // neighbours have other counts and bands, some no sample
};

constexpr Scene kScenes[] = {
    {.name = "plain"},
    {.name = "in_place", .wiring = Wiring::kInPlace},
    {.name = "crossed", .wiring = Wiring::kCrossed},
    {.name = "gliding", .glides = true},
    {.name = "smoothed", .smoothed = true, .links = true},
    {.name = "linked", .links = true},
    {.name = "keyed", .keyed = true},
    {.name = "listening", .keyed = true, .listens = true, .links = true},
    {.name = "bypassed", .wiring = Wiring::kInPlace, .bypassed = true},
    {.name = "bands_in_both_passes", .glides = true, .shares = true},
    {.name = "one_pass", .one_pass = true},
    {.name = "uneven", .glides = true, .keyed = true, .links = true, .uneven = true},
    {.name = "nan", .audio = Audio::kNan, .links = true},
    {.name = "nan_smoothed", .audio = Audio::kNan, .smoothed = true, .keyed = true},
    {.name = "infinite", .audio = Audio::kInfinite, .links = true},
    {.name = "infinite_smoothed", .audio = Audio::kInfinite, .glides = true, .smoothed = true},
    {.name = "denormal", .audio = Audio::kDenormal, .glides = true},
    {.name = "denormal_smoothed", .audio = Audio::kDenormal, .smoothed = true, .links = true},
};
constexpr int kSceneCount = sizeof kScenes / sizeof *kScenes;

}  // namespace channelstrip::golden
