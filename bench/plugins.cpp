// What a plugin costs over the library's own calls, which process the same samples with the same
// settings in turns; and what silence costs it.
//
//   plugins LIBRARY CLAP LV2

#include <control/library/library.h>
#include <control/parameters/values.h>
#include <control/strip/denormals.h>
#include <control/strip/instance.h>
#include <fmt/format.h>
#include <tests/plugins/clap_host.h>
#include <tests/plugins/lv2_host.h>

#include <algorithm>
#include <exception>
#include <string_view>
#include <vector>

#include "busy_values.h"
#include "turns.h"

namespace channelstrip::bench {
namespace {

using namespace host;
using plugin_test::Planar;

// Frames of a turn: long enough for each binary's copy of the library to find its code in the
// caches.
constexpr std::size_t kProgramme = 65536;
constexpr int kTurns = 101;

// The same buffers in every call, as a host's are.
struct Buffers {
  Buffers(Planar from, std::size_t channels) : in(std::move(from)), out(in) {
    for (std::size_t c = 0; c < channels; ++c) {
      inputs.push_back(in[c].data());
      outputs.push_back(out[c].data());
    }
  }
  Planar in, out;
  std::vector<const float*> inputs;
  std::vector<float*> outputs;
};

template <class Call>
double time_of(std::size_t frames, Call call) {
  return nanoseconds([&] {
    for (std::size_t at = 0; at + frames <= kProgramme; at += frames) call();
  });
}

// Both plugins over the library.
void compare(const Library& library, const plugin_test::ClapBinary& clap_binary,
             const plugin_test::Lv2Binary& lv2_binary, const char* format, std::size_t frames) {
  const ChannelLayout layout = default_layout(*find_stem_format(format));
  const std::size_t channels = layout.labels.size();
  Buffers buffers(plugin_test::noise(channels, frames), channels);
  Instance instance(*layout.format, design_strip(settings_of(busy_values(), plugin_test::kRate),
                                                 plugin_test::kRate, layout));
  AlgEntry_16_Stem* const entry = library.entry_point(*layout.format);
  plugin_test::ClapInstance clap(clap_binary);
  plugin_test::Lv2Instance lv2(lv2_binary, plugin_test::format_of(format), plugin_test::kRate);
  clap.select(plugin_test::format_of(format));
  for (std::size_t i = 0; i < kParameterCount; ++i) {
    const std::string symbol = parameters()[i].symbol;
    clap.set(symbol, busy_values().of[i]);
    if (symbol != "bypass") lv2.control(symbol) = static_cast<float>(busy_values().of[i]);
  }
  clap.activate();
  lv2.activate();
  const auto count = static_cast<std::uint32_t>(frames);
  const plugin_test::ClapEvents none;
  const plugin_test::ClapCall call(buffers.inputs, nullptr, buffers.outputs, count, none.list(),
                                   nullptr);
  lv2.run(buffers.inputs, nullptr, buffers.outputs, count);
  std::vector<double> clap_ratios, lv2_ratios;
  for (int turn = 0; turn < kTurns; ++turn) {
    const double bare = time_of(frames, [&] {
      const SChannelStrip_Alg_Context* const context =
          instance.prepare(buffers.inputs.data(), buffers.outputs.data(), static_cast<int>(frames));
      entry(&context, &context + 1);
    });
    clap_ratios.push_back(time_of(frames, [&] { clap.process(call); }) / bare);
    lv2_ratios.push_back(time_of(frames, [&] { lv2.run_again(count); }) / bare);
  }
  fmt::print("{:8} {:5} frames a call  CLAP {:6.3f}  LV2 {:6.3f}\n", format, frames,
             median(clap_ratios), median(lv2_ratios));
}

void compare_silence(const plugin_test::ClapBinary& binary, const char* format) {
  plugin_test::ClapInstance sounding(binary), silent(binary);
  const std::size_t channels = plugin_test::channels_of(plugin_test::format_of(format));
  Buffers noise(plugin_test::noise(channels, 64), channels);
  Buffers silence(Planar(channels, std::vector<float>(64)), channels);
  for (plugin_test::ClapInstance* instance : {&sounding, &silent}) {
    instance->select(plugin_test::format_of(format));
    for (std::size_t i = 0; i < kParameterCount; ++i) {
      instance->set(std::string(parameters()[i].symbol), busy_values().of[i]);
    }
    instance->activate();
  }
  std::vector<double> ratios;
  for (int turn = 0; turn < kTurns; ++turn) {
    const double loud =
        time_of(64, [&] { sounding.process(noise.inputs, nullptr, noise.outputs, 64); });
    ratios.push_back(
        time_of(64, [&] { silent.process(silence.inputs, nullptr, silence.outputs, 64); }) / loud);
  }
  fmt::print("{:8} silence over noise {:6.3f}\n", format, median(ratios));
}

void run(const char* library_path, const char* clap_path, const char* lv2_path) {
  stay_on_this_processor();
  const FlushDenormals flush;
  const Library library(library_path);
  const plugin_test::ClapBinary clap(clap_path);
  const plugin_test::Lv2Binary lv2(lv2_path);
  fmt::print("A plugin's time over the library's own, {} turns:\n", kTurns);
  for (const std::size_t frames : {64u, 128u, 512u}) {
    for (const char* format : {"Mono", "Stereo", "5.1", "7.1"}) {
      compare(library, clap, lv2, format, frames);
    }
  }
  for (const char* format : {"Mono", "7.1"}) compare_silence(clap, format);
}

}  // namespace
}  // namespace channelstrip::bench

int main(int argc, char** argv) try {
  if (argc != 4) {
    fmt::print(stderr, "usage: plugins LIBRARY CLAP LV2\n");
    return 2;
  }
  channelstrip::bench::run(argv[1], argv[2], argv[3]);
} catch (const std::exception& error) {
  fmt::print(stderr, "plugins: {}\n", error.what());
  return 1;
}
