#include "channel_layout.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <iterator>
#include <map>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <utility>

namespace channelstrip::host {
namespace {

using Labels = std::vector<std::string>;

constexpr std::array<std::pair<std::string_view, std::string_view>, 4> kPairs{
    {{"L", "R"}, {"Ls", "Rs"}, {"Lb", "Rb"}, {"Lc", "Rc"}}};

// The other half of a label's pair; empty when it has none.
std::string_view partner(std::string_view label) {
  for (const auto& [left, right] : kPairs) {
    if (label == left) return right;
    if (label == right) return left;
  }
  return {};
}

bool contains(const Labels& labels, std::string_view label) {
  return std::ranges::find(labels, label) != labels.end();
}

Labels words(std::string_view text) {
  std::istringstream stream{std::string(text)};
  return {std::istream_iterator<std::string>(stream), {}};
}

std::vector<std::string_view> split(std::string_view text, char separator) {
  std::vector<std::string_view> parts;
  for (auto end = text.find(separator); end != text.npos; end = text.find(separator)) {
    parts.push_back(text.substr(0, end));
    text.remove_prefix(end + 1);
  }
  parts.push_back(text);
  return parts;
}

// In the order of Speaker.
constexpr std::array<std::string_view, 12> kSpeakerLabels{"L",  "R",  "C",  "LFE", "Lb", "Rb",
                                                          "Lc", "Rc", "Cs", "Ls",  "Rs", ""};
static_assert(kSpeakerLabels.size() == static_cast<std::size_t>(Speaker::kOther) + 1);

// Empty when a speaker is unknown, named twice or half a pair.
Labels labels_of(const std::vector<Speaker>& speakers) {
  Labels labels;
  for (const Speaker speaker : speakers) {
    const std::string_view label = kSpeakerLabels[static_cast<std::size_t>(speaker)];
    if (label.empty() || contains(labels, label)) return {};
    labels.emplace_back(label);
  }
  if (!contains(labels, "Ls") && !contains(labels, "Rs")) {
    std::ranges::replace(labels, "Lb", "Ls");
    std::ranges::replace(labels, "Rb", "Rs");
  }
  const bool pairs_are_whole = std::ranges::all_of(labels, [&](const std::string& label) {
    return partner(label).empty() || contains(labels, partner(label));
  });
  return pairs_are_whole ? labels : Labels{};
}

// The one to assume, which the table of formats has first; null when none has that count.
const StemFormat* usual_format(int channels) {
  const auto found = std::ranges::find(stem_formats(), channels, &StemFormat::channels);
  return found == stem_formats().end() ? nullptr : &*found;
}

const StemFormat* implied_format(const Labels& labels, int groups) {
  const bool has_lfe = contains(labels, "LFE");
  switch (labels.size()) {
    case 4:
      return find_stem_format(groups > 2 ? "LCRS" : "Quad");
    case 6:
      return find_stem_format(has_lfe ? "5.1" : "6.0");
    case 7:
      return find_stem_format(has_lfe ? "6.1" : "7.0");
    default:
      return usual_format(static_cast<int>(labels.size()));
  }
}

std::optional<ChannelLayout> named_layout(const std::vector<Speaker>& speakers) {
  ChannelLayout layout{nullptr, labels_of(speakers)};
  if (layout.labels.empty()) return std::nullopt;
  const int groups = 1 + std::ranges::max(default_link_map(layout));
  layout.format = implied_format(layout.labels, groups);
  if (groups > layout.format->groups) return std::nullopt;
  if (layout.format->name == "LCRS") std::ranges::replace(layout.labels, "Cs", "S");
  return layout;
}

// Groups of any numbers, one per channel, renumbered from 0 in order of first appearance.
LinkMap renumbered(const std::vector<std::size_t>& groups) {
  LinkMap map{};
  std::vector<std::size_t> seen;
  for (std::size_t c = 0; c < groups.size(); ++c) {
    const auto found = std::ranges::find(seen, groups[c]);
    map[c] = static_cast<int>(found - seen.begin());
    if (found == seen.end()) seen.push_back(groups[c]);
  }
  return map;
}

template <typename... Arguments>
[[noreturn]] void refuse(fmt::format_string<Arguments...> format, Arguments&&... arguments) {
  throw std::invalid_argument(fmt::format(format, std::forward<Arguments>(arguments)...));
}

}  // namespace

ChannelLayout default_layout(const StemFormat& format) {
  static const std::map<std::string_view, std::string_view> labels{
      {"Mono", "M"},
      {"Stereo", "L R"},
      {"LCR", "L R C"},
      {"Quad", "L R Ls Rs"},
      {"LCRS", "L R C S"},
      {"5.0", "L R C Ls Rs"},
      {"5.1", "L R C LFE Ls Rs"},
      {"6.0", "L R C Cs Ls Rs"},
      {"6.1", "L R C LFE Cs Ls Rs"},
      {"7.0", "L R C Lb Rb Ls Rs"},
      {"7.1", "L R C LFE Lb Rb Ls Rs"},
  };
  return {&format, words(labels.at(format.name))};
}

ChannelLayout choose_layout(int channels, const std::vector<Speaker>& speakers,
                            const StemFormat* forced) {
  const StemFormat* usual = usual_format(channels);
  if (!usual) refuse("no format has {} channels", channels);
  if (forced && forced->channels != channels) {
    refuse("format {} has {} channels, the stream has {}", forced->name, forced->channels,
           channels);
  }
  if (channels > 1 && speakers.size() == static_cast<std::size_t>(channels)) {
    const auto named = named_layout(speakers);
    // Formats of equal N and G are one processor: the labels of either serve the other.
    if (named && !forced) return *named;
    if (named && forced->groups == named->format->groups) return {forced, named->labels};
  }
  return default_layout(forced ? *forced : *usual);
}

LinkMap default_link_map(const ChannelLayout& layout) {
  std::vector<std::size_t> groups;
  for (const std::string& label : layout.labels) {
    const auto first = std::ranges::find_if(layout.labels, [&](const std::string& other) {
      return other == label || other == partner(label);
    });
    groups.push_back(static_cast<std::size_t>(first - layout.labels.begin()));
  }
  return renumbered(groups);
}

LinkMap parse_link_map(std::string_view text, const ChannelLayout& layout) {
  const auto parts = split(text, '|');
  if (parts.size() > static_cast<std::size_t>(layout.format->groups)) {
    refuse("{} holds at most {} group{}, the map has {}", layout.format->name,
           layout.format->groups, layout.format->groups == 1 ? "" : "s", parts.size());
  }
  std::vector<std::size_t> groups(layout.labels.size(), parts.size());  // not in any part
  for (std::size_t part = 0; part < parts.size(); ++part) {
    const Labels members = words(parts[part]);
    if (members.empty()) refuse("the map \"{}\" has an empty group", text);
    for (const std::string& label : members) {
      const auto channel = std::ranges::find(layout.labels, label);
      if (channel == layout.labels.end()) {
        refuse("the map names {}, the channels are {}", label, fmt::join(layout.labels, " "));
      }
      std::size_t& group = groups[static_cast<std::size_t>(channel - layout.labels.begin())];
      if (group < parts.size()) refuse("the map names {} twice", label);
      group = part;
    }
  }
  for (std::size_t c = 0; c < groups.size(); ++c) {
    if (groups[c] == parts.size()) refuse("the map lacks {}", layout.labels[c]);
  }
  return renumbered(groups);
}

}  // namespace channelstrip::host
