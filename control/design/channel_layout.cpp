#include "channel_layout.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <map>
#include <utility>

#include "refuse.h"

namespace channelstrip::host {
namespace {

using Labels = std::vector<std::string>;

constexpr std::array<std::pair<std::string_view, std::string_view>, 4> kPairs{
    {{"L", "R"}, {"Ls", "Rs"}, {"Lb", "Rb"}, {"Lc", "Rc"}}};

bool contains(const Labels& labels, std::string_view label) {
  return std::ranges::find(labels, label) != labels.end();
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

void sort_for_film(Labels& labels) {
  static constexpr std::string_view kFilm[] = {"M",  "L", "Lc", "C",  "Rc", "R",  "Ls",
                                               "Cs", "S", "Rs", "Lb", "Rb", "LFE"};
  std::ranges::sort(labels, {}, [](const std::string& label) {
    return std::ranges::find(kFilm, label) - std::begin(kFilm);
  });
}

// Pairs linked, every other channel alone.
int groups_by_default(const Labels& labels) {
  const auto halves = std::ranges::count_if(
      labels, [](const std::string& label) { return !partner(label).empty(); });
  return static_cast<int>(labels.size()) - static_cast<int>(halves / 2);
}

// The format to assume, the first of this count in the table of formats; null if there is none.
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

std::optional<ChannelLayout> named_layout(std::vector<Speaker> speakers,
                                          std::optional<ChannelOrder> order) {
  if (order == ChannelOrder::kWav) std::ranges::sort(speakers);
  ChannelLayout layout{nullptr, labels_of(speakers)};
  if (layout.labels.empty()) return std::nullopt;
  const int groups = groups_by_default(layout.labels);
  layout.format = implied_format(layout.labels, groups);
  if (groups > layout.format->groups) return std::nullopt;
  if (layout.format->name == "LCRS") std::ranges::replace(layout.labels, "Cs", "S");
  if (order == ChannelOrder::kFilm) sort_for_film(layout.labels);
  return layout;
}

}  // namespace

std::string_view partner(std::string_view label) {
  for (const auto& [left, right] : kPairs) {
    if (label == left) return right;
    if (label == right) return left;
  }
  return {};
}

ChannelLayout default_layout(const StemFormat& format, ChannelOrder order) {
  static const std::map<std::string_view, Labels> wav{
      {"Mono", {"M"}},
      {"Stereo", {"L", "R"}},
      {"LCR", {"L", "R", "C"}},
      {"Quad", {"L", "R", "Ls", "Rs"}},
      {"LCRS", {"L", "R", "C", "S"}},
      {"5.0", {"L", "R", "C", "Ls", "Rs"}},
      {"5.1", {"L", "R", "C", "LFE", "Ls", "Rs"}},
      {"6.0", {"L", "R", "C", "Cs", "Ls", "Rs"}},
      {"6.1", {"L", "R", "C", "LFE", "Cs", "Ls", "Rs"}},
      {"7.0", {"L", "R", "C", "Lb", "Rb", "Ls", "Rs"}},
      {"7.1", {"L", "R", "C", "LFE", "Lb", "Rb", "Ls", "Rs"}},
  };
  ChannelLayout layout{&format, wav.at(format.name)};
  if (order == ChannelOrder::kFilm) sort_for_film(layout.labels);
  return layout;
}

ChannelLayout choose_layout(int channels, const std::vector<Speaker>& speakers,
                            const StemFormat* forced, std::optional<ChannelOrder> order) {
  const StemFormat* usual = usual_format(channels);
  if (!usual) refuse("no format has {} channels", channels);
  if (forced && forced->channels != channels) {
    refuse("format {} has {} channels, the stream has {}", forced->name, forced->channels,
           channels);
  }
  if (channels > 1 && speakers.size() == static_cast<std::size_t>(channels)) {
    const auto named = named_layout(speakers, order);
    // Formats of as many channels and groups are processed alike: the labels of one serve the
    // other.
    if (named) {
      if (!forced) return *named;
      if (forced->groups == named->format->groups) return {forced, named->labels};
    }
  }
  return default_layout(forced ? *forced : *usual, order.value_or(ChannelOrder::kWav));
}

}  // namespace channelstrip::host
