// How many times faster the library is than the strip as plain loops, or than another library. All
// process the same strips in the same memory, in turns; the memory's layout changes seven times
// over the turns. Before that the results are compared, bit for bit.
//
//   strip_speed LIBRARY [--against OTHER] [--filter WORD]... [--turns N] [--json FILE]

#include <control/library/library.h>
#include <control/strip/denormals.h>
#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstddef>
#include <exception>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "contest.h"
#include "json_file.h"
#include "plain_strip.h"
#include "report.h"
#include "turns.h"

namespace channelstrip::bench {
namespace {

constexpr int kLayouts = 8;

// A library that stays loaded as long as the rival lives.
Rival library_at(std::string name, const std::string& path) {
  const auto library = std::make_shared<host::Library>(path);
  return {std::move(name),
          [=](const host::StemFormat& format) { return library->entry_point(format); }};
}

std::vector<Rival> plain_strips() {
  const auto plain = [](AlgEntry_16_Stem* PlainStrip::*entry) {
    return [=](const host::StemFormat& format) {
      return plain_strip(format.channels, format.groups).*entry;
    };
  };
  return {{"plain loops", plain(&PlainStrip::loops)},
          {"memory", plain(&PlainStrip::in_memory)},
          {"model", plain(&PlainStrip::model)}};
}

std::vector<std::string> names_of(const std::vector<Rival>& rivals) {
  std::vector<std::string> names(rivals.size());
  std::ranges::transform(rivals, names.begin(), &Rival::name);
  return names;
}

std::vector<Contest> contests(const Rival& library, const std::vector<Rival>& rivals,
                              const std::vector<std::string>& filters) {
  std::vector<Contest> selected;
  for (const Workload& workload : kWorkloads) {
    const std::string name = workload.name();
    if (std::ranges::all_of(filters, [&](const std::string& word) {
          return name.find(word) != std::string::npos;
        })) {
      selected.emplace_back(workload, library, rivals);
    }
  }
  if (selected.empty()) throw std::runtime_error("no row has all words of the filter");
  return selected;
}

void demand_same_bits(const Row& row, const std::vector<Rival>& rivals) {
  for (std::size_t i = 0; i < rivals.size(); ++i) {
    if (!row.rivals[i].same_bits) {
      throw std::runtime_error(fmt::format("{}: the library's results are not those of \"{}\"",
                                           row.workload.name(), rivals[i].name));
    }
  }
}

std::vector<Row> measure(std::vector<Contest> all, int turns) {
  stay_on_this_processor();
  const bool terminal = isatty(STDERR_FILENO) != 0;
  for (int layout = 0; layout < kLayouts; ++layout) {
    if (terminal) fmt::print(stderr, "\rlayout {} of {}", layout + 1, kLayouts);
    for (Contest& contest : all) {
      contest.take_turns(static_cast<unsigned>(layout), (turns + kLayouts - 1) / kLayouts);
    }
  }
  if (terminal) fmt::print(stderr, "\r{:20}\r", "");

  std::vector<Row> rows(all.size());
  std::ranges::transform(all, rows.begin(), &Contest::row);
  return rows;
}

int run(int argc, char** argv) {
  CLI::App program("Times the library against plain loops or another library", "strip_speed");
  std::string path, other;
  std::optional<std::string> json;
  std::vector<std::string> filters;
  int turns = 200;
  program.add_option("LIBRARY", path, "path of libChannelStrip.so")->required();
  program.add_option("--against", other, "path of another library, to compare with instead");
  program.add_option("--filter", filters, "only rows that have this word; may be repeated")
      ->allow_extra_args(false);
  program.add_option("--turns", turns, "turns per row")->check(CLI::Range(1, 1000000));
  program.add_option("--json", json, "also write the figures to this file");
  try {
    program.parse(argc, argv);
  } catch (const CLI::Success& help) {
    return program.exit(help);
  }

  const bool plain = other.empty();
  const Rival library = library_at("library", path);
  const std::vector<Rival> rivals =
      plain ? plain_strips() : std::vector{library_at("other", other)};
  JsonFile file(json);
  const host::FlushDenormals flushed;
  std::vector<Contest> all = contests(library, rivals, filters);
  for (Contest& contest : all) {
    contest.compare();
    if (plain) demand_same_bits(contest.row(), rivals);
  }
  const Report report{.library = path,
                      .against = plain ? "plain loops, the way through memory and the model take"
                                       : other + " takes",
                      .rivals = names_of(rivals),
                      .rows = measure(std::move(all), turns)};
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
