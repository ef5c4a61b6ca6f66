// Charts drawn as SVG.

#include "host/pictures/chart.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <string_view>

#include "../support/refusal.h"
#include "golden.h"

namespace channelstrip::test::chart_test {
namespace {

using namespace host;

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

// At this size the plot reaches from x = 52 to 152 and from y = 38 to 138.
constexpr Size kSmall{.width = 170, .height = 166};

Chart small() {
  return {.title = "Small", .description = "A test", .x = {"", 0, 10}, .y = {"", 0, 10}};
}

// The drawing commands of the only path of a class; empty if there is none.
std::string drawn(const std::string& picture, const std::string& css_class) {
  const std::string begin = "<path class=\"" + css_class + "\" d=\"";
  const std::size_t found = picture.find(begin);
  if (found == std::string::npos) return "";
  const std::size_t from = found + begin.size();
  return picture.substr(from, picture.find('"', from) - from);
}

std::string line(std::vector<Point> points) {
  Chart chart = small();
  chart.series = {{.label = "", .points = std::move(points)}};
  return drawn(svg(chart, kSmall), "line s1");
}

std::string area(std::vector<Point> points, std::vector<double> lower) {
  Chart chart = small();
  chart.series = {{.label = "", .points = std::move(points), .lower = std::move(lower)}};
  return drawn(svg(chart, kSmall), "area s1");
}

// Everything a chart can hold.
Chart complete() {
  return {.title = "Level & gain",
          .description = "What a chart can hold",
          .x = {"frequency, Hz", 20, 20000, Scale::kLogarithmic},
          .y = {"gain, dB", -24, 12, Scale::kDecibels},
          .series = {{.label = "range",
                      .style = "s3",
                      .points = {{20, 3}, {1000, 6}, {20000, 3}},
                      .lower = {-3, -6, -3}},
                     {.label = "band 1", .points = {{20, 0}, {200, 0}, {2000, -30}, {20000, -60}}},
                     {.label = "sum", .style = "main", .points = {{20, -12}, {20000, 12}}}},
          .marks = {{.at = 100, .label = "corner"},
                    {.at = 110, .label = "its neighbour"},
                    {.axis = Mark::Axis::kY, .at = -18, .label = "threshold"},
                    {.at = 10, .label = "out of sight"}}};
}

TEST(Chart, LooksAsItDid) {
  const Chart charts[] = {complete(), small()};
  expect_golden("charts.svg", svg_file("Two charts", charts, {400, 300}));
}

TEST(Chart, IsTheSameBytesEveryTime) {
  EXPECT_EQ(svg(complete()), svg(complete()));
}

TEST(Chart, ScalesWithItsContainer) {
  const std::string picture = svg(small(), kSmall);
  EXPECT_TRUE(
      picture.starts_with("<svg xmlns=\"http://www.w3.org/2000/svg\" class=\"chart\" "
                          "role=\"img\" viewBox=\"0 0 170 166\">\n"
                          "<title>Small</title>\n<desc>A test</desc>\n"));
}

TEST(Chart, EscapesWhateverItSays) {
  const std::string odd = "<a & \"b\">", escaped = "&lt;a &amp; &quot;b&quot;&gt;";
  Chart chart = complete();
  chart.title = chart.description = chart.x.label = chart.y.label = odd;
  for (Series& series : chart.series) series.label = series.style = odd;
  for (Mark& mark : chart.marks) mark.label = odd;
  const std::string picture = svg_file(odd, std::span(&chart, 1));
  EXPECT_EQ(picture.find(odd), std::string::npos);
  EXPECT_NE(picture.find("<desc>" + escaped + "</desc>"), std::string::npos);
  EXPECT_NE(picture.find("<path class=\"line " + escaped + "\""), std::string::npos);
  EXPECT_NE(picture.find(">" + escaped + "</text>"), std::string::npos);
}

TEST(Line, GoesThroughItsPoints) {
  EXPECT_EQ(line({{0, 0}, {5, 10}, {10, 2.5}}), "M52 138L102 38L152 113");
}

TEST(Line, IsCutWhereItLeavesThePlot) {
  EXPECT_EQ(line({{0, 5}, {5, 15}, {10, 5}}), "M52 88L77 38M127 38L152 88");
  EXPECT_EQ(line({{-5, -5}, {15, 15}}), "M52 138L152 38");
  EXPECT_EQ(line({{0, 11}, {10, 11}}), "");
}

TEST(Line, BreaksAtAPointThatIsNotFinite) {
  for (const double gap : {kNan, kInfinity, -kInfinity}) {
    EXPECT_EQ(line({{0, 0}, {2, 2}, {5, gap}, {8, 2}, {10, 0}}), "M52 138L72 118M132 118L152 138");
  }
}

TEST(Line, HasCoordinatesOfTwoDigits) {
  EXPECT_EQ(line({{0, 0}, {10.0 / 3, 10.0 / 3}}), "M52 138L85.33 104.67");
}

TEST(Area, LiesBetweenItsLines) {
  EXPECT_EQ(area({{0, 10}, {10, 8}}, {0, 2}), "M52 38L152 58L152 118L52 138Z");
}

TEST(Area, EndsAtTheEdgesOfThePlotAndBreaksAtGaps) {
  EXPECT_EQ(area({{0, 20}, {5, 20}, {6, kNan}, {8, 5}, {10, 5}}, {-20, -20, 0, 0, 0}),
            "M52 38L102 38L102 138L52 138ZM132 88L152 88L152 138L132 138Z");
}

TEST(Chart, LegendNamesEverySeriesThatHasALabel) {
  const std::string picture = svg(complete());
  for (const char* label : {"range", "band 1", "sum"}) {
    EXPECT_NE(picture.find(std::string(">") + label + "</text>"), std::string::npos) << label;
  }
}

TEST(Chart, MarksWithinThePlotAreNamed) {
  const std::string picture = svg(complete());
  EXPECT_NE(picture.find(">corner</text>"), std::string::npos);
  EXPECT_NE(picture.find(">threshold</text>"), std::string::npos);
  EXPECT_EQ(picture.find("out of sight"), std::string::npos);
}

TEST(Chart, NamesOfMarksDoNotCoverEachOther) {
  Chart chart = small();
  chart.marks = {{.at = 5, .label = "on the left"},
                 {.at = 5.5, .label = "on the right"},
                 {.at = 6, .label = "without room"},
                 {.at = 8, .label = "on its right"}};
  const std::string picture = svg(chart, kSmall);
  const std::string line = "<path class=\"mark\" d=\"M";
  for (const char* at : {"102 ", "107 ", "112 ", "132 "}) {
    EXPECT_NE(picture.find(line + at), std::string::npos) << at;
  }
  EXPECT_NE(picture.find("translate(97 44) rotate(-90)\">on the left<"), std::string::npos);
  EXPECT_NE(picture.find("translate(122 44) rotate(-90)\">on the right<"), std::string::npos);
  EXPECT_EQ(picture.find("without room"), std::string::npos);
  EXPECT_NE(picture.find("translate(147 44) rotate(-90)\">on its right<"), std::string::npos);
}

TEST(ChartStyle, HasColoursForDarkScreens) {
  EXPECT_NE(chart_css().find("@media (prefers-color-scheme:dark)"), std::string_view::npos);
}

TEST(Chart, RefusesAnAxisWithoutExtent) {
  Chart chart = small();
  chart.y = {"gain", 3, 3};
  EXPECT_EQ(refusal<std::invalid_argument>([&] { svg(chart); }),
            "axis \"gain\" can't reach from 3 to 3");
  chart.y = {"gain", 0, kInfinity};
  EXPECT_EQ(refusal<std::invalid_argument>([&] { svg(chart); }),
            "axis \"gain\" can't reach from 0 to inf");
  chart.y = {"gain", 0, 1, Scale::kLogarithmic};
  EXPECT_EQ(refusal<std::invalid_argument>([&] { svg(chart); }),
            "axis \"gain\" can't reach from 0 to 1");
}

TEST(Chart, RefusesAnAreaWithALineOfAnotherLength) {
  Chart chart = small();
  chart.series = {{.label = "wave", .points = {{0, 0}, {1, 1}}, .lower = {0}}};
  EXPECT_EQ(refusal<std::invalid_argument>([&] { svg(chart); }),
            "series \"wave\" has 2 points and 1 lower values");
}

}  // namespace
}  // namespace channelstrip::test::chart_test
