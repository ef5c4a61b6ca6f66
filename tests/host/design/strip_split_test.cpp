#include "host/design/strip_split.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "../support/refusal.h"
#include "records.h"

namespace channelstrip::test::strip_split_test {
namespace {

using namespace host;
using Channels = std::vector<std::size_t>;
using Split = std::vector<std::pair<std::string, Channels>>;

Split split(const char* name, std::initializer_list<const char*> texts) {
  const ChannelLayout layout = layout_of(name);
  std::vector<LinkMap> maps;
  for (const char* text : texts) maps.push_back(parse_link_map(text, layout));
  Split result;
  for (const SplitStrip& strip : split_strip(*layout.format, maps)) {
    result.emplace_back(strip.format->name, strip.channels);
  }
  return result;
}

TEST(StripSplit, IsASingleStripWhereItHoldsTheGroups) {
  EXPECT_EQ(split("Stereo", {"L R"}), (Split{{"Stereo", {0, 1}}}));
  EXPECT_EQ(split("5.1", {"L R | C | LFE | Ls Rs"}), (Split{{"5.1", {0, 1, 2, 3, 4, 5}}}));
  EXPECT_EQ(split("5.1", {"L R | C | LFE | Ls Rs", "L Ls | R Rs | C LFE"}),
            (Split{{"5.1", {0, 1, 2, 3, 4, 5}}}));
}

TEST(StripSplit, IsAStripPerGroupWhereOneHoldsTooFew) {
  EXPECT_EQ(split("Stereo", {"L | R"}), (Split{{"Mono", {0}}, {"Mono", {1}}}));
  EXPECT_EQ(split("LCR", {"L | R | C"}), (Split{{"Mono", {0}}, {"Mono", {1}}, {"Mono", {2}}}));
  EXPECT_EQ(
      split("5.1", {"L Ls | R | C | LFE | Rs"}),
      (Split{{"Mono", {1}}, {"Mono", {2}}, {"Mono", {3}}, {"Mono", {5}}, {"Stereo", {0, 4}}}));
}

TEST(StripSplit, KeepsTogetherWhatAnyMapLinks) {
  EXPECT_EQ(split("5.1", {"L R | C | LFE | Ls | Rs", "L R C | LFE | Ls | Rs"}),
            (Split{{"Mono", {3}}, {"Mono", {4}}, {"Mono", {5}}, {"LCR", {0, 1, 2}}}));
  EXPECT_EQ(split("7.1", {"L R | C | LFE | Lb Rb | Ls | Rs", "L R | C | LFE | Lb Ls | Rb Rs"}),
            (Split{{"Mono", {2}}, {"Mono", {3}}, {"Stereo", {0, 1}}, {"LCRS", {4, 5, 6, 7}}}));
}

TEST(StripSplit, RefusesMapsThatDoNotGoTogether) {
  EXPECT_EQ(refusal<std::invalid_argument>([] {
              split("Stereo", {"L R", "L | R"});
            }),
            "the link map changes so that a strip of 2 channels would need 2 groups");
}

// With a group per channel in every format, each channel is in exactly one strip.
TEST(StripSplit, GivesEveryChannelToOneStrip) {
  for (const StemFormat& format : stem_formats()) {
    const LinkMap map = link_map(default_layout(format), LinkStyle::kNone);
    const auto strips = split_strip(format, {&map, 1});
    Channels all;
    for (const SplitStrip& strip : strips) {
      EXPECT_EQ(strip.format->name, "Mono");
      all.insert(all.end(), strip.channels.begin(), strip.channels.end());
    }
    Channels expected(static_cast<std::size_t>(format.channels));
    for (std::size_t c = 0; c < expected.size(); ++c) expected[c] = c;
    EXPECT_EQ(all, expected) << format.name;
  }
}

TEST(StripSplit, LeavesOfTheLinkMapWhatTheStripLinks) {
  StripSettings settings;
  settings.link = {{"7.1", "L R | C | LFE | Lb Ls | Rb | Rs"}};
  settings.compressor = {.threshold = -12};
  const StripCoefficients stream = design_strip(settings, 48000, layout_of("7.1"));
  expect_links(stream.dynamics, {0, 0, 1, 2, 3, 4, 3, 5});
  const SplitStrip surrounds{find_stem_format("LCRS"), {4, 5, 6, 7}};
  const StripCoefficients part = coefficients_of(surrounds, stream);
  expect_links(part.dynamics, {0, 1, 0, 2, 0, 0, 0, 0});
  EXPECT_EQ(part.dynamics.compThreshold, stream.dynamics.compThreshold);
  EXPECT_EQ(part.dezip_rate, stream.dezip_rate);
}

}  // namespace
}  // namespace channelstrip::test::strip_split_test
