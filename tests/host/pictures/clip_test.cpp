#include "host/pictures/clip.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace channelstrip::test::clip_test {
namespace {

using namespace host;

constexpr Rectangle kUnit{0, 0, 1, 1};

bool inside(const Point& point) {
  constexpr double kSlack = 1e-9;
  return point.x >= -kSlack && point.x <= 1 + kSlack && point.y >= -kSlack && point.y <= 1 + kSlack;
}

TEST(Clip, KeepsALineThatLiesInside) {
  const std::vector<Point> points{{0, 0}, {0.5, 1}, {1, 0.25}};
  const auto parts = clip(points, kUnit);
  ASSERT_EQ(parts.size(), 1u);
  ASSERT_EQ(parts[0].size(), 3u);
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(parts[0][i].x, points[i].x);
    EXPECT_EQ(parts[0][i].y, points[i].y);
  }
}

TEST(Clip, CutsADiagonalAtBothEdges) {
  const std::vector<Point> points{{-1, 2}, {2, -1}};
  const auto parts = clip(points, kUnit);
  ASSERT_EQ(parts.size(), 1u);
  EXPECT_DOUBLE_EQ(parts[0].front().y, 1);
  EXPECT_DOUBLE_EQ(parts[0].back().x, 1);
}

TEST(Clip, DropsLinesThatPassByACorner) {
  EXPECT_TRUE(clip(std::vector<Point>{{-1, 0.5}, {0.5, 2.5}}, kUnit).empty());
  EXPECT_TRUE(clip(std::vector<Point>{{2, 0}, {2, 1}}, kUnit).empty());
  EXPECT_TRUE(clip(std::vector<Point>{{0.5, 0.5}}, kUnit).empty());
}

TEST(Clip, StaysInsideAndKeepsEveryPointThatIsInside) {
  std::mt19937 random(1);
  for (int line = 0; line < 1000; ++line) {
    std::vector<Point> points(2 + random() % 8);
    std::size_t in_line = 0, kept = 0;
    for (auto& [x, y] : points) {
      x = static_cast<double>(random() % 51) / 10 - 2;
      y = static_cast<double>(random() % 51) / 10 - 2;
      in_line += inside({x, y}) ? 1 : 0;
    }
    for (const auto& part : clip(points, kUnit)) {
      ASSERT_GE(part.size(), 2u);
      for (const Point& point : part) ASSERT_TRUE(inside(point)) << point.x << " " << point.y;
      kept += part.size();
    }
    ASSERT_GE(kept, in_line);
  }
}

}  // namespace
}  // namespace channelstrip::test::clip_test
