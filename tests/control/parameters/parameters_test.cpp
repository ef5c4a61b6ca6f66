// The table of parameters.

#include "control/parameters/parameters.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <set>
#include <string>

namespace channelstrip::test::parameters_test {
namespace {

using namespace host;

TEST(Parameters, HaveIdsAndSymbolsOfTheirOwn) {
  std::set<std::uint32_t> ids;
  std::set<std::string> symbols, names;
  for (const Parameter& p : parameters()) {
    EXPECT_TRUE(ids.insert(p.id).second) << p.symbol;
    EXPECT_TRUE(symbols.insert(p.symbol).second) << p.symbol;
    EXPECT_TRUE(names.insert(p.name).second) << p.name;
    EXPECT_EQ(index_of(p.id), index_of(std::string_view(p.symbol)));
    EXPECT_EQ(&parameters()[*index_of(p.id)], &p);
  }
  EXPECT_EQ(index_of(99999u), std::nullopt);
  EXPECT_EQ(index_of(std::string_view("eq9_gain")), std::nullopt);
}

TEST(Parameters, HaveTextsThatEndWithinTheirRoom) {
  for (const Parameter& p : parameters()) {
    EXPECT_LT(std::strlen(p.symbol), sizeof p.symbol) << p.symbol;
    EXPECT_LT(std::strlen(p.name), sizeof p.name) << p.symbol;
    EXPECT_LT(std::strlen(p.short_name), sizeof p.short_name) << p.symbol;
    EXPECT_FALSE(p.meaning.empty()) << p.symbol;
  }
}

TEST(Parameters, AreFiniteAndBeginWithinTheirLimits) {
  for (const Parameter& p : parameters()) {
    EXPECT_TRUE(std::isfinite(p.minimum) && std::isfinite(p.maximum)) << p.symbol;
    EXPECT_LT(p.minimum, p.maximum) << p.symbol;
    EXPECT_EQ(nearest_value(p, p.initial), p.initial) << p.symbol;
    EXPECT_EQ(nearest_value(p, p.minimum), p.minimum) << p.symbol;
    EXPECT_EQ(nearest_value(p, p.maximum), p.maximum) << p.symbol;
  }
}

TEST(Parameters, TakeTheNearestLegalValue) {
  const auto nearest = [](std::string_view symbol, double value) {
    return nearest_value(parameters()[*index_of(symbol)], value);
  };
  EXPECT_EQ(nearest("eq1_gain", 100), 40);
  EXPECT_EQ(nearest("eq1_gain", -1e308), -40);
  EXPECT_EQ(nearest("eq1_slope", 20), 18);
  EXPECT_EQ(nearest("eq1_slope", 21), 24);
  EXPECT_EQ(nearest("eq1_type", 2.6), 3);
  EXPECT_EQ(nearest("eq1_on", 0.5), 1);
  EXPECT_EQ(nearest("compressor_knee", 0.09), 0);
  EXPECT_EQ(nearest("compressor_knee", 0.1), 0.1);
  EXPECT_EQ(nearest("compressor_threshold", -30), -30);
  EXPECT_EQ(nearest("eq1_shelf_slope", 0.04), 0);
  for (const char* symbol : {"eq1_gain", "compressor_knee", "eq1_on"}) {
    EXPECT_FALSE(std::signbit(nearest(symbol, -0.0))) << symbol;  // TOML would lose it
  }
}

TEST(Parameters, KeepTheirValueOverTheSlidersPosition) {
  for (const Parameter& p : parameters()) {
    for (int i = 0; i <= 20; ++i) {
      const double value = value_at(p, i / 20.0);
      EXPECT_EQ(nearest_value(p, value), value) << p.symbol;
      const double again = value_at(p, position_of(p, value));
      EXPECT_NEAR(again, value, 1e-9 * (1 + std::abs(value))) << p.symbol;
    }
    EXPECT_EQ(position_of(p, p.minimum), 0) << p.symbol;
    EXPECT_EQ(position_of(p, p.maximum), 1) << p.symbol;
  }
}

TEST(Parameters, HaveTheSameStepsPerOctaveOnALogarithmicScale) {
  const Parameter& q = parameters()[*index_of(std::string_view("eq1_q"))];
  const double step = position_of(q, 2) - position_of(q, 1);
  EXPECT_NEAR(position_of(q, 64) - position_of(q, 32), step, 1e-12);
}

}  // namespace
}  // namespace channelstrip::test::parameters_test
