// What denormal numbers cost, with and without flushing them to zero. Eight bands and the dynamics
// at work; audio and filter memory hold either ordinary programme or nothing but denormals. All
// cases take turns in one process; the figures are medians. Processors differ widely in the ratio.
//
//   denormals

#include <control/strip/denormals.h>
#include <fmt/format.h>
#include <tests/support/busy_strip.h>

#include <exception>
#include <optional>
#include <vector>

#include "turns.h"

namespace channelstrip {
namespace {

constexpr int kBlocks = 64;  // per call
constexpr int kTurns = 101;

class Case {
 public:
  Case(std::string_view format, float level, bool flush)
      : strip_(format, kBlocks * 16), flush_(flush) {
    for (auto& channel : strip_.in) {
      for (float& sample : channel) sample *= level;
    }
  }

  void take_turn() {
    std::optional<host::FlushDenormals> flushed;
    if (flush_) flushed.emplace();
    times_.push_back(bench::nanoseconds([this] { strip_.process(); }));
  }

  // Microseconds per block of 16 samples.
  double median() const { return bench::median(times_) / 1000 / kBlocks; }

 private:
  test::BusyStrip strip_;
  bool flush_;
  std::vector<double> times_;
};

void measure(std::string_view format) {
  // Eight bands don't bring noise at 1e-40 anywhere near 1.2e-38, the smallest normal number.
  Case programme(format, 1, false), programme_flushed(format, 1, true);
  Case denormal(format, 1e-40f, false), denormal_flushed(format, 1e-40f, true);
  for (int turn = 0; turn < kTurns; ++turn) {
    for (Case* it : {&programme, &programme_flushed, &denormal, &denormal_flushed}) it->take_turn();
  }
  const double unit = programme.median();
  const auto print = [&](const char* flushing, const Case& usual, const Case& tiny) {
    fmt::print("{:6}  {:10}  {:9.2f}  {:9.2f}  {:7.2f}\n", format, flushing, usual.median(),
               tiny.median(), tiny.median() / unit);
  };
  print("as it is", programme, denormal);
  print("flushed", programme_flushed, denormal_flushed);
}

}  // namespace
}  // namespace channelstrip

int main() try {
  channelstrip::bench::stay_on_this_processor();
  fmt::print("Microseconds per block of 16 samples; ratio to programme as it is\n\n");
  fmt::print("{:6}  {:10}  {:>9}  {:>9}  {:>7}\n", "", "denormals", "programme", "denormal",
             "ratio");
  for (const char* format : {"Mono", "7.1"}) channelstrip::measure(format);
  return 0;
} catch (const std::exception& error) {
  fmt::print(stderr, "denormals: {}\n", error.what());
  return 1;
}
