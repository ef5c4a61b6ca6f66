// How many times faster the library is than the strip as plain loops. All process the same strips
// in the same memory, in turns; the memory's layout changes seven times over the turns. Before that
// the library's results are compared with the model's, bit for bit.
//
//   strip_speed LIBRARY [--filter WORD]... [--turns N] [--json FILE]

#include <control/library/library.h>
#include <control/strip/denormals.h>
#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <exception>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "console.h"
#include "json_file.h"
#include "plain_strip.h"
#include "report.h"
#include "turns.h"

namespace channelstrip::bench {
namespace {

constexpr int kLayouts = 8;

struct Contest {
  Row row;
  AlgEntry_16_Stem* library;
  PlainStrip plain;
  std::vector<double> times = {}, to_model = {}, to_memory = {};

  void compare() const {
    Console ours(row.workload, 0), theirs(row.workload, 0);
    for (int call = 0; call < ours.calls(); ++call) {
      ours.call(library, call);
      theirs.call(plain.model, call);
      if (!ours.equals(theirs)) {
        throw std::runtime_error(
            fmt::format("{}: the library's results are not those of the model, call {}",
                        row.workload.name(), call));
      }
    }
  }

  // All take turns in going first, as the others find in the caches what the first has left there.
  void take_turns(unsigned layout, int turns) {
    Console console(row.workload, layout);
    const bool in_place = row.workload.variant == Variant::kInPlace;
    const double unit = console.frames() * row.workload.strips;
    const auto time = [&](AlgEntry_16_Stem* entry) {
      if (in_place) console.rewind();
      return nanoseconds([&] { console.play(entry); }) / unit;
    };
    AlgEntry_16_Stem* const all[] = {library, plain.model, plain.in_memory};
    for (AlgEntry_16_Stem* entry : all) time(entry);
    for (int turn = 0; turn < turns; ++turn) {
      double taken[3];
      for (int i = 0; i < 3; ++i) taken[(turn + i) % 3] = time(all[(turn + i) % 3]);
      times.push_back(taken[0]);
      to_model.push_back(taken[1] / taken[0]);
      to_memory.push_back(taken[2] / taken[0]);
    }
  }

  Row result() const {
    Row measured = row;
    measured.nanoseconds = median(times);
    measured.ratio = median(to_model);
    measured.ratio_to_memory = median(to_memory);
    return measured;
  }
};

std::vector<Contest> contests(const host::Library& library,
                              const std::vector<std::string>& filters) {
  std::vector<Contest> selected;
  for (const Workload& workload : kWorkloads) {
    const std::string name = workload.name();
    if (!std::ranges::all_of(filters, [&](const std::string& word) {
          return name.find(word) != std::string::npos;
        })) {
      continue;
    }
    const host::StemFormat& format = *host::find_stem_format(workload.format);
    selected.push_back({.row = {.workload = workload},
                        .library = library.entry_point(format),
                        .plain = plain_strip(format.channels, format.groups)});
  }
  if (selected.empty()) throw std::runtime_error("no row has all words of the filter");
  return selected;
}

std::vector<Row> measure(std::vector<Contest> all, int turns) {
  const host::FlushDenormals flushed;
  stay_on_this_processor();
  const bool terminal = isatty(STDERR_FILENO) != 0;
  for (const Contest& contest : all) contest.compare();
  for (int layout = 0; layout < kLayouts; ++layout) {
    if (terminal) fmt::print(stderr, "\rlayout {} of {}", layout + 1, kLayouts);
    for (Contest& contest : all) {
      contest.take_turns(static_cast<unsigned>(layout), (turns + kLayouts - 1) / kLayouts);
    }
  }
  if (terminal) fmt::print(stderr, "\r{:20}\r", "");

  std::vector<Row> rows(all.size());
  std::ranges::transform(all, rows.begin(), &Contest::result);
  return rows;
}

int run(int argc, char** argv) {
  CLI::App program("Times the library against plain loops", "strip_speed");
  std::string path;
  std::optional<std::string> json;
  std::vector<std::string> filters;
  int turns = 200;
  program.add_option("LIBRARY", path, "path of libChannelStrip.so")->required();
  program.add_option("--filter", filters, "only rows that have this word; may be repeated")
      ->allow_extra_args(false);
  program.add_option("--turns", turns, "turns per row")->check(CLI::Range(1, 1000000));
  program.add_option("--json", json, "also write the figures to this file");
  try {
    program.parse(argc, argv);
  } catch (const CLI::Success& help) {
    return program.exit(help);
  }

  const host::Library library(path);
  JsonFile file(json);
  const Report report{
      .library = path, .turns = turns, .rows = measure(contests(library, filters), turns)};
  fmt::print("{}", as_table(report));
  file.write(as_json(report));
  return 0;
}

}  // namespace
}  // namespace channelstrip::bench

int main(int argc, char** argv) try {
  return channelstrip::bench::run(argc, argv);
} catch (const std::exception& error) {
  fmt::print(stderr, "strip_speed: {}\n", error.what());
  return 1;
}
