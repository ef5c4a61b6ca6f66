// How the cost of a strip grows: nanoseconds per frame and strip of the library and of plain
// loops, in turns, as lines "panel<TAB>x<TAB>library<TAB>loops"; panels are two blank lines
// apart.
//
//   growth LIBRARY

#include <control/library/library.h>
#include <control/strip/denormals.h>
#include <fmt/format.h>

#include <exception>
#include <string_view>
#include <vector>

#include "console.h"
#include "plain_strip.h"
#include "turns.h"

namespace channelstrip::bench {
namespace {

constexpr int kLayouts = 8, kTurns = 12;

struct Point {
  int x;
  Workload workload;
};
struct Panel {
  std::string_view name;
  std::vector<Point> points;
};

constexpr Workload one_strip(std::string_view format, int samples = 512) {
  return {format, 1, samples};
}

std::vector<Panel> panels() {
  Panel channels{"channels", {}}, groups{"link groups of 7.1", {}}, bands{"bands, mono", {}};
  Panel wide_bands{"bands, 7.1", {}}, instances{"mono strips in a call", {}};
  Panel samples{"samples in a call, mono", {}};
  int channel = 0;
  for (const char* format : {"Mono", "Stereo", "LCR", "Quad", "5.0", "5.1", "6.1", "7.1"}) {
    channels.points.push_back({++channel, one_strip(format)});
  }
  for (int count = 1; count <= 5; ++count) {
    groups.points.push_back({count, one_strip("7.1")});
    groups.points.back().workload.link_groups = count;
  }
  for (int count = 0; count <= 8; ++count) {
    bands.points.push_back({count, one_strip("Mono")});
    bands.points.back().workload.bands = count;
    wide_bands.points.push_back({count, one_strip("7.1")});
    wide_bands.points.back().workload.bands = count;
  }
  for (const int count : {1, 2, 4, 7, 8, 12, 15, 16, 32, 64}) {
    instances.points.push_back({count, {"Mono", count, 128}});
  }
  for (const int count : {16, 32, 64, 128, 256, 512, 1024}) {
    samples.points.push_back({count, one_strip("Mono", count)});
  }
  return {channels, groups, bands, wide_bands, instances, samples};
}

struct Times {
  std::vector<double> library, loops;
};

// Both take turns in going first.
void take_turns(const host::Library& library, const Workload& workload, unsigned layout,
                Times& times) {
  const host::StemFormat& format = *host::find_stem_format(workload.format);
  AlgEntry_16_Stem* const ours = library.entry_point(format);
  AlgEntry_16_Stem* const plain = plain_strip(format.channels, format.groups).loops;
  Console console(workload, layout);
  const double unit = console.frames() * workload.strips;
  const auto time = [&](AlgEntry_16_Stem* entry) {
    return nanoseconds([&] { console.play(entry); }) / unit;
  };
  time(ours);
  time(plain);
  for (int turn = 0; turn < kTurns; ++turn) {
    if (turn % 2 == 0) times.library.push_back(time(ours));
    times.loops.push_back(time(plain));
    if (turn % 2 == 1) times.library.push_back(time(ours));
  }
}

void measure(const host::Library& library) {
  const host::FlushDenormals flushed;
  stay_on_this_processor();
  for (const Panel& panel : panels()) {
    for (const Point& point : panel.points) {
      Times times;
      for (unsigned layout = 0; layout < kLayouts; ++layout) {
        take_turns(library, point.workload, layout, times);
      }
      fmt::print("{}\t{}\t{:.2f}\t{:.2f}\n", panel.name, point.x, median(times.library),
                 median(times.loops));
    }
    fmt::print("\n\n");
  }
}

}  // namespace
}  // namespace channelstrip::bench

int main(int argc, char** argv) try {
  if (argc != 2) {
    fmt::print(stderr, "usage: growth LIBRARY\n");
    return 2;
  }
  channelstrip::bench::measure(channelstrip::host::Library(argv[1]));
  return 0;
} catch (const std::exception& error) {
  fmt::print(stderr, "growth: {}\n", error.what());
  return 1;
}
