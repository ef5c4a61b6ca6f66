// ChannelStrip's full strip beside chains of LV2 plugins that do the same work, all stages active.
// Everyone processes the same programme in turns, on one processor, with denormals flushed.
//
//   peers LIBRARY [--json FILE]

#include <bench/json_file.h>
#include <bench/turns.h>
#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <exception>
#include <optional>
#include <string>

#include "comparison.h"
#include "report.h"

namespace channelstrip::bench {
namespace {

int run(int argc, char** argv) {
  CLI::App program("Times ChannelStrip's full strip against chains of LV2 plugins", "peers");
  std::string library;
  std::optional<std::string> json;
  program.add_option("LIBRARY", library, "path of libChannelStrip.so")->required();
  program.add_option("--json", json, "also write the figures to this file");
  try {
    program.parse(argc, argv);
  } catch (const CLI::Success& help) {
    return program.exit(help);
  }
  JsonFile file(json);

  stay_on_this_processor();
  const std::vector<Subject> subjects = Comparison(library).run();
  fmt::print("{}", as_table(subjects));
  file.write(as_json(subjects));
  return 0;
}

}  // namespace
}  // namespace channelstrip::bench

int main(int argc, char** argv) try {
  return channelstrip::bench::run(argc, argv);
} catch (const std::exception& error) {
  fmt::print(stderr, "peers: {}\n", error.what());
  return 1;
}
