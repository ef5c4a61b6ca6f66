#include "imported_preset.h"

#include <ChannelStrip/eq/eq_records.h>
#include <fmt/format.h>
#include <toml++/toml.h>

#include <algorithm>
#include <optional>
#include <sstream>
#include <stdexcept>

#include "control/design/band.h"
#include "control/preset/preset.h"
#include "control/preset/preset_keys.h"

namespace channelstrip::host {
namespace {

std::string band_text(const BandSettings& band) {
  std::string text = fmt::format("[[eq]]\ntype = \"{}\"\nfrequency = {}\n",
                                 kBandTypes[static_cast<std::size_t>(band.type)], band.frequency);
  if (uses_q(band)) text += fmt::format("q = {}\n", band.q);
  if (uses_shelf_slope(band)) text += fmt::format("shelf_slope = {}\n", *band.shelf_slope);
  if (uses_slope(band) && !uses_q(band)) text += fmt::format("slope = {}\n", band.slope);
  return uses_gain(band) ? text + fmt::format("gain = {}\n", band.gain) : text;
}

double total_of(const std::vector<FilterList::Gain>& preamps) {
  double sum = 0;
  for (const auto& preamp : preamps) sum += preamp.decibels;
  return sum;
}

// Ratio 1 leaves the dynamics out: what remains of the compressor is its makeup gain.
std::string makeup_text(double decibels) {
  return fmt::format("[compressor]\nratio = 1\nmakeup = {}\n", decibels);
}

// What the preset parser says against a table, without file, line and table.
std::optional<std::string> refusal(const std::string& table) {
  try {
    parse_preset(table, "");
  } catch (const std::runtime_error& error) {
    std::string_view what = error.what();  // ":4:5: eq.1.q: must be ..."
    what.remove_prefix(what.rfind('.', what.rfind(": ")) + 1);
    return std::string(what);
  }
  return std::nullopt;
}

std::string quoted(std::string_view text) {
  std::ostringstream stream;
  const toml::value<std::string> value{std::string(text)};
  stream << toml::toml_formatter{value, toml::format_flags::allow_unicode_strings};
  return stream.str();
}

std::string comment(const SourceLine& line) {
  return fmt::format("# Line {}: {}\n", line.number, line.text);
}

}  // namespace

void fit_to_preset(FilterList& list) {
  std::vector<FilterList::Band> fitting;
  for (FilterList::Band& band : list.bands) {
    if (const auto what = refusal(band_text(band.settings))) {
      list.left_out.push_back({band.source, *what});
    } else if (fitting.size() == CHANNELSTRIP_EQ_BANDS) {
      list.left_out.push_back(
          {band.source, fmt::format("a strip has {} bands", int{CHANNELSTRIP_EQ_BANDS})});
    } else {
      fitting.push_back(std::move(band));
    }
  }
  list.bands = std::move(fitting);
  if (const auto what = refusal(makeup_text(total_of(list.preamps)))) {
    for (const auto& preamp : list.preamps) list.left_out.push_back({preamp.source, *what});
    list.preamps.clear();
  }
  std::ranges::stable_sort(list.left_out, {}, [](auto& line) { return line.source.number; });
}

std::string preset_text(const FilterList& list, std::string_view name, std::string_view file) {
  std::string text = fmt::format("# From {}, a filter list of {}.\n\nname = {}\n", file,
                                 list.program, quoted(name));
  for (const auto& [source, settings] : list.bands) {
    text += '\n' + comment(source) + band_text(settings);
  }
  if (!list.preamps.empty()) {
    text += '\n';
    for (const auto& preamp : list.preamps) text += comment(preamp.source);
    text +=
        "# A preamp stands before the filters, makeup between pre and post bands. With the ratio "
        "1\n"
        "# nothing depends on level, so the order makes no difference.\n";
    text += makeup_text(total_of(list.preamps));
  }
  if (!list.off.empty()) text += "\n# Switched off:\n";
  for (const SourceLine& line : list.off) text += comment(line);
  if (!list.left_out.empty()) text += "\n# Left out:\n";
  for (const auto& [source, reason] : list.left_out) {
    text += comment(source) + fmt::format("#   {}\n", reason);
  }
  return text;
}

}  // namespace channelstrip::host
