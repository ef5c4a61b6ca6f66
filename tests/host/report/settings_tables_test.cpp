#include "host/report/settings_tables.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <stdexcept>
#include <string>
#include <vector>

namespace channelstrip::test::settings_tables_test {
namespace {

using namespace host;

HtmlTable table(const StripSettings& settings, const std::string& name) {
  for (const HtmlTable& each : settings_tables(settings)) {
    if (each.caption == name) return each;
  }
  throw std::runtime_error("no table " + name);
}

bool has(const StripSettings& settings, const std::string& name) {
  return std::ranges::count(settings_tables(settings), name, &HtmlTable::caption) > 0;
}

// The value of a key in the table of that name.
std::string value(const StripSettings& settings, const std::string& name, const std::string& key) {
  for (const auto& row : table(settings, name).rows) {
    if (row[0] == key) return row[1];
  }
  throw std::runtime_error("no key " + key);
}

std::string band_value(const StripSettings& settings, std::size_t band, const std::string& key) {
  const HtmlTable eq = table(settings, "eq");
  const auto column = std::ranges::find(eq.columns, key) - eq.columns.begin();
  return eq.rows.at(band).at(static_cast<std::size_t>(column));
}

TEST(SettingsTables, ValuesHaveTheirUnits) {
  StripSettings settings;
  settings.compressor = {.threshold = -18.5, .ratio = 4, .attack = 0.1};
  EXPECT_EQ(value(settings, "compressor", "threshold"), "-18.5 dB");
  EXPECT_EQ(value(settings, "compressor", "ratio"), "4");
  EXPECT_EQ(value(settings, "compressor", "attack"), "0.1 ms");
  settings.compressor->ratio = std::numeric_limits<double>::infinity();
  EXPECT_EQ(value(settings, "compressor", "ratio"), "inf");
}

TEST(SettingsTables, ChoicesAreThePresetsWords) {
  StripSettings settings;
  settings.detector.mode = DetectorMode::kAverage;
  settings.bypass = true;
  EXPECT_EQ(value(settings, "detector", "mode"), "average");
  EXPECT_EQ(value(settings, "strip", "bypass"), "true");
}

TEST(SettingsTables, WhatIsOffHasNoTable) {
  EXPECT_FALSE(has({}, "compressor"));
  EXPECT_FALSE(has({}, "expander"));
  EXPECT_FALSE(has({}, "eq"));
  EXPECT_FALSE(has({}, "key_filter"));
  StripSettings settings;
  settings.expander.emplace();
  settings.key_filter.emplace();
  EXPECT_TRUE(has(settings, "expander"));
  EXPECT_TRUE(has(settings, "key_filter"));
  EXPECT_EQ(value(settings, "expander", "hysteresis"), "–");
}

TEST(SettingsTables, BandsStandInTheirOrder) {
  StripSettings settings;
  settings.pre = {{.type = BandType::kHighPass, .frequency = 80, .slope = 24}};
  settings.post = {{.type = BandType::kHighShelf, .frequency = 12345.5, .gain = -2.5}};
  EXPECT_EQ(band_value(settings, 0, "type"), "high_pass");
  EXPECT_EQ(band_value(settings, 0, "frequency"), "80 Hz");
  EXPECT_EQ(band_value(settings, 0, "gain"), "–");
  EXPECT_EQ(band_value(settings, 0, "slope"), "24 dB/oct");
  EXPECT_EQ(band_value(settings, 1, "frequency"), "12345.5 Hz");
  EXPECT_EQ(band_value(settings, 1, "gain"), "-2.5 dB");
  EXPECT_EQ(band_value(settings, 1, "position"), "post");
}

TEST(SettingsTables, LinkMapsStandBesideTheStyle) {
  StripSettings settings;
  settings.link["5.1"] = "L R C | LFE | Ls Rs";
  EXPECT_EQ(value(settings, "link", "style"), "pairs");
  EXPECT_EQ(value(settings, "link", "5.1"), "L R C | LFE | Ls Rs");
}

TEST(Html, TextIsEscapedAndTheFirstColumnNamesRows) {
  EXPECT_EQ(html({.caption = "a<b", .columns = {"", "x"}, .rows = {{"r&d", "\"1\""}}}),
            "<div class=\"wide\" tabindex=\"0\">\n<table class=\"numbers\">\n"
            "<caption>a&lt;b</caption>\n"
            "<thead><tr><th scope=\"col\"></th><th scope=\"col\">x</th></tr></thead>\n<tbody>\n"
            "<tr><th scope=\"row\">r&amp;d</th><td>&quot;1&quot;</td></tr>\n"
            "</tbody>\n</table>\n</div>\n");
}

}  // namespace
}  // namespace channelstrip::test::settings_tables_test
