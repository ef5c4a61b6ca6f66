// Prints docs/presets.md up to its measurements, from the tables of keys and the first comments of
// presets:
//
//   preset_reference FOLDER_OF_PRESETS         prints it
//   preset_reference FOLDER_OF_PRESETS PAGE    writes it in its place in PAGE, whose measurements
//   stay

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>

#include "../design/channel_layout.h"
#include "../text/text_file.h"
#include "nearest.h"
#include "preset_keys.h"
#include "reference_text.h"

namespace channelstrip::host {
namespace {

template <class Settings>
std::string default_of(const Key<Settings>& key) {
  const Value value = key.access.get(Settings{});
  if (!value) return "none";
  switch (key.access.kind) {
    case Kind::kSwitch:
      return *value != 0 ? "true" : "false";
    case Kind::kWord:
      return fmt::format("\"{}\"", key.words[static_cast<std::size_t>(*value)]);
    case Kind::kNumber:
      break;
  }
  return fmt::format("{}", *value);
}

template <class Settings>
std::string values_of(const Key<Settings>& key) {
  switch (key.access.kind) {
    case Kind::kSwitch:
      return "true, false";
    case Kind::kWord:
      return alternatives({key.words.begin(), key.words.end()}, "\"");
    case Kind::kNumber:
      break;
  }
  return limits(key.range);
}

// The band types that use a key, in parentheses; empty if all do.
std::string bands_of(const Key<EqBand>& key) {
  std::vector<std::string_view> types;
  for (std::size_t type = 0; type < std::size(kBandTypes); ++type) {
    EqBand band;
    band.type = static_cast<BandType>(type);
    if (!key.objection || key.objection(band).empty()) types.push_back(kBandTypes[type]);
  }
  const bool all = types.size() == std::size(kBandTypes);
  return all ? "" : fmt::format(" ({})", fmt::join(types, ", "));
}

std::string bands_of(const Key<StripSettings>&) {
  return "";
}

template <class Settings>
std::string table_of(std::span<const Key<Settings>> keys) {
  std::string text = "\n| key | meaning | unit | values | default |\n|---|---|---|---|---|\n";
  for (const Key<Settings>& key : keys) {
    text += fmt::format("| `{}` | {}{} | {} | {} | {} |\n", key.name, key.meaning, bands_of(key),
                        key.range.unit, values_of(key), default_of(key));
  }
  return text;
}

std::string bands() {
  return fmt::format(
      "\n## `[[eq]]`: equaliser\n{}{}\n## `[key_filter]`: filter on the detection signal\n{}",
      kAboutBands, table_of<EqBand>(kBandKeys).substr(1), kAboutKeyFilter);
}

std::string formats() {
  std::string text;
  for (const StemFormat& format : stem_formats()) {
    text += fmt::format("| {} | {} | {} |\n", format.name,
                        fmt::join(default_layout(format).labels, " "), format.groups);
  }
  return text;
}

std::string lasting_keys() {
  std::vector<std::string_view> names;
  for (const Key<EqBand>& key : kBandKeys) {
    if (key.lasting) names.push_back(key.name);
  }
  return fmt::format("{}.\n", alternatives(names, "`"));
}

// A preset's first comment, in one line.
std::string purpose(const std::filesystem::path& preset) {
  std::ifstream stream(preset);
  std::string text;
  for (std::string line; std::getline(stream, line) && line.starts_with("# ");) {
    text += fmt::format("{}{}", text.empty() ? "" : " ", line.substr(2));
  }
  return text;
}

std::string presets(const std::string& folder) {
  std::vector<std::string> rows;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    rows.push_back(
        fmt::format("| `{}` | {} |\n", entry.path().stem().string(), purpose(entry.path())));
  }
  std::ranges::sort(rows);
  return fmt::format("{}", fmt::join(rows, ""));
}

std::string preset_reference(const std::string& folder) {
  std::string text(kIntroduction);
  for (const Table& table : kTables) {
    const std::string title =
        table.name.empty() ? "Top of the file" : fmt::format("`[{}]`", table.name);
    text += fmt::format("{}## {}: {}\n{}", table.name.empty() ? "" : "\n", title, table.meaning,
                        table_of(table.keys));
    if (table.name.empty()) text += bands();
  }
  return fmt::format("{}{}{}{}{}{}{}", text, kAboutLinks, formats(), kAboutChanges, lasting_keys(),
                     kAboutAssignments, presets(folder));
}

// From the heading under which script/preset-table writes to the end of the page.
std::string measurements(const std::string& page) {
  const std::string text = read_text_file(page);
  const auto begin = text.find("\n## Measured\n");
  if (begin == std::string::npos) throw std::runtime_error(page + ": no heading \"Measured\"");
  return text.substr(begin);
}

}  // namespace
}  // namespace channelstrip::host

int main(int argc, char** argv) try {
  using namespace channelstrip::host;
  if (argc != 2 && argc != 3) {
    std::fputs("usage: preset_reference FOLDER_OF_PRESETS [PAGE]\n", stderr);
    return 1;
  }
  const std::string reference = preset_reference(argv[1]);
  if (argc == 2) {
    std::fputs(reference.c_str(), stdout);
    return 0;
  }
  const std::string page = reference + measurements(argv[2]);
  std::ofstream(argv[2]) << page;
  return 0;
} catch (const std::exception& fault) {
  std::fprintf(stderr, "preset_reference: %s\n", fault.what());
  return 1;
}
