#include "preset.h"

#include <ChannelStrip/eq/eq_records.h>
#include <fmt/format.h>
#include <fmt/ranges.h>
#include <toml++/toml.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <span>
#include <stdexcept>
#include <type_traits>
#include <utility>

#include "design/section.h"
#include "preset_keys.h"

namespace channelstrip::host {
namespace {

[[noreturn]] void fail(const std::string& file, int line, std::string_view key,
                       std::string_view what) {
  throw std::runtime_error(fmt::format("{}:{}: {}: {}", file, line, key, what));
}

template <class Element>
int line_of(const Element& key_or_node) {
  return static_cast<int>(key_or_node.source().begin.line);
}

// Any of the key tables; never deduced from, so that arrays are taken too.
template <class Settings>
using Keys = std::type_identity_t<std::span<const Key<Settings>>>;

std::string text_of(const Range& range) {
  const auto& [unit, minimum, maximum, or_zero] = range;
  return fmt::format("{}{}{}{}{}", or_zero ? "0 or " : "", minimum,
                     maximum == kInfinity ? " or more" : fmt::format(" to {}", maximum),
                     unit.empty() ? "" : " ", unit);
}

// Walks one document into a preset; an error anywhere ends the walk.
class Reader {
 public:
  explicit Reader(const std::string& file) { preset_.file = file; }

  Preset read(const toml::table& root) {
    for (const auto& [key, node] : root) {
      const std::string_view name = key.str();
      StripSettings& settings = preset_.settings;
      if (name == "name") {
        preset_.name = text(node, "name");
      } else if (name == "eq") {
        read_eq(node);
      } else if (name == "compressor") {
        read_table(table(node, name), name, kCompressorKeys, settings.compressor.emplace());
      } else if (name == "expander") {
        read_table(table(node, name), name, kExpanderKeys, settings.expander.emplace());
      } else if (name == "detector") {
        read_table(table(node, name), name, kDetectorKeys, settings.detector);
      } else if (name == "key_filter") {
        EqBand band;
        read_band(table(node, name), name, kKeyFilterKeys, band);
        settings.key_filter = band;
      } else if (name == "link") {
        read_link(table(node, name));
      } else {
        read_key(key, node, "", kStripKeys, settings);
      }
    }
    return std::move(preset_);
  }

 private:
  template <class Element>
  [[noreturn]] void fail_at(const Element& place, std::string_view key,
                            std::string_view what) const {
    fail(preset_.file, line_of(place), key, what);
  }

  const toml::table& table(const toml::node& node, std::string_view key) const {
    if (!node.is_table()) fail_at(node, key, fmt::format("must be a table, [{}]", key));
    return *node.as_table();
  }

  const std::string& text(const toml::node& node, std::string_view key) const {
    if (!node.is_string()) fail_at(node, key, "must be text in quotes");
    return node.as_string()->get();
  }

  void read_eq(const toml::node& node) {
    constexpr std::string_view kWhat = "must be an array of tables, [[eq]]";
    if (!node.is_array()) fail_at(node, "eq", kWhat);
    StripSettings& settings = preset_.settings;
    for (const toml::node& element : *node.as_array()) {
      if (!element.is_table()) fail_at(element, "eq", kWhat);
      if (settings.pre.size() + settings.post.size() == CHANNELSTRIP_EQ_BANDS) {
        fail_at(element, "eq", fmt::format("more than {} bands", int{CHANNELSTRIP_EQ_BANDS}));
      }
      EqBand band;
      read_band(*element.as_table(), "eq", kEqKeys, band);
      (band.position == Position::kPre ? settings.pre : settings.post).push_back(band);
    }
  }

  void read_band(const toml::table& table, std::string_view prefix, Keys<EqBand> keys,
                 EqBand& band) {
    read_table(table, prefix, keys, band);
    const bool pass = band.type == BandType::kLowPass || band.type == BandType::kHighPass;
    if (const toml::node* gain = table.get("gain"); gain && pass) {
      fail_at(*gain, fmt::format("{}.gain", prefix), "a low_pass or high_pass has no gain");
    }
    const toml::node* frequency = table.get("frequency");
    preset_.bands.push_back(
        {std::string(prefix), band, frequency ? line_of(*frequency) : line_of(table)});
  }

  void read_link(const toml::table& table) {
    for (const auto& [key, node] : table) {
      const std::string path = fmt::format("link.{}", key.str());
      const StemFormat* format = find_stem_format(key.str());
      if (!format) fail_at(key, path, "unknown format");
      const std::string& map = text(node, path);
      try {
        parse_link_map(map, default_layout(*format));
      } catch (const std::invalid_argument& error) {
        fail_at(node, path, error.what());
      }
      const std::string name(format->name);
      if (!preset_.settings.link.emplace(name, map).second) {
        fail_at(key, path, "this format has a link map already");
      }
      preset_.link_lines[name] = line_of(node);
    }
  }

  template <class Settings>
  void read_table(const toml::table& table, std::string_view prefix, Keys<Settings> keys,
                  Settings& settings) const {
    for (const auto& [key, node] : table) read_key(key, node, prefix, keys, settings);
  }

  template <class Settings>
  void read_key(const toml::key& name, const toml::node& node, std::string_view prefix,
                Keys<Settings> keys, Settings& settings) const {
    const std::string path =
        prefix.empty() ? std::string(name.str()) : fmt::format("{}.{}", prefix, name.str());
    const auto key = std::ranges::find(keys, name.str(), &Key<Settings>::name);
    if (key == keys.end()) fail_at(name, path, "unknown key");
    key->set(settings,
             key->words.empty() ? number(node, path, key->range) : word(node, path, key->words));
  }

  double number(const toml::node& node, std::string_view path, const Range& range) const {
    if (!node.is_number()) fail_at(node, path, "must be a number");
    const double value = node.is_integer() ? static_cast<double>(node.as_integer()->get())
                                           : node.as_floating_point()->get();
    const bool inside = range.minimum <= value && value <= range.maximum;
    if (!inside && !(range.or_zero && value == 0)) {
      fail_at(node, path, fmt::format("must be {}", text_of(range)));
    }
    return value;
  }

  double word(const toml::node& node, std::string_view path,
              std::span<const std::string_view> words) const {
    const auto found = std::ranges::find(words, node.value_or(std::string_view()));
    if (found == words.end()) {
      fail_at(node, path, fmt::format("must be \"{}\"", fmt::join(words, "\" or \"")));
    }
    return static_cast<double>(found - words.begin());
  }

  Preset preset_;
};

}  // namespace

Preset read_preset(const std::string& path) {
  std::ifstream stream(path, std::ios::binary);
  if (!stream) throw std::runtime_error(fmt::format("{}: {}", path, std::strerror(errno)));
  if (std::filesystem::is_directory(path)) {
    throw std::runtime_error(fmt::format("{}: {}", path, std::strerror(EISDIR)));
  }
  const std::string text{std::istreambuf_iterator<char>(stream), {}};
  return parse_preset(text, path);
}

Preset parse_preset(std::string_view text, const std::string& file) {
  try {
    return Reader(file).read(toml::parse(text, file));
  } catch (const toml::parse_error& error) {
    fail(file, line_of(error), "syntax error", error.description());
  }
}

void check_fits(const Preset& preset, double sample_rate, const ChannelLayout& layout) {
  for (const auto& [key, settings, line] : preset.bands) {
    try {
      design_stored_band(settings, sample_rate);
    } catch (const std::invalid_argument& error) {
      fail(preset.file, line, key, error.what());
    }
  }
  const std::string format(layout.format->name);
  const auto link = preset.settings.link.find(format);
  if (link == preset.settings.link.end()) return;
  try {
    parse_link_map(link->second, layout);
  } catch (const std::invalid_argument& error) {
    fail(preset.file, preset.link_lines.at(format), fmt::format("link.{}", format), error.what());
  }
}

}  // namespace channelstrip::host
