// Whatever the values: a strip can have the settings that are made of them.

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "control/design/channel_layout.h"
#include "control/design/possible.h"
#include "control/design/refusal_words.h"
#include "control/design/section.h"
#include "control/design/strip_coefficients.h"
#include "control/library/stem_format.h"
#include "control/parameters/values.h"
#include "control/strip/strip_design.h"

namespace channelstrip::test::extremes_test {
namespace {

using namespace host;

constexpr std::array kRates{1000.0, 8000.0, 44100.0, 192000.0, 1000000.0};

std::size_t index(std::size_t group, std::string_view key) {
  return index_of(group, key).value();
}

// As the library gets them.
Section section_at(const float* coefficients) {
  const auto at = [=](int i) { return static_cast<double>(coefficients[i]); };
  return {at(0), at(1), at(2), at(3), at(4)};
}

// What is wrong with the sections; "" if nothing is.
std::string fault(const StripCoefficients& strip) {
  for (std::size_t k = 0; k < 9; ++k) {
    const Section section =
        section_at(k < 8 ? strip.eq.targetCoefs + 5 * k : strip.dynamics.keyFilter);
    for (const double x : {section.b0, section.b1, section.b2}) {
      if (!std::isfinite(x)) return "not finite";
    }
    if (!is_stable(section)) return "not stable";
  }
  return "";
}

bool is_same(const StripCoefficients& a, const StripCoefficients& b) {
  return std::ranges::equal(a.eq.targetCoefs, b.eq.targetCoefs) &&
         std::ranges::equal(a.dynamics.keyFilter, b.dynamics.keyFilter);
}

class Extremes : public testing::TestWithParam<double> {
 protected:
  // Designed at once, and arrived at by a change while audio runs.
  void expect_design(const Values& values, const std::string& what) {
    const double rate = GetParam();
    const StripSettings settings = settings_of(values, rate);
    const auto refusal = refusal_of(settings, rate, layout_);
    ASSERT_FALSE(refusal) << what << ": " << words_of(*refusal);
    const StripCoefficients strip = design_strip(settings, rate, layout_);
    ASSERT_EQ(fault(strip), "") << what;
    live_.change(settings);
    ASSERT_EQ(fault(live_.coefficients()), "") << what << ", before the search";
    live_.finish_searches();
    ASSERT_TRUE(is_same(live_.coefficients(), strip)) << what;
    ++designs_;
  }

  ChannelLayout layout_ = default_layout(*find_stem_format("7.1"));
  StripDesign live_{StripSettings(), GetParam(), layout_};
  int designs_ = 0;
};
INSTANTIATE_TEST_SUITE_P(Rates, Extremes, testing::ValuesIn(kRates), [](const auto& rate) {
  return std::to_string(static_cast<int>(rate.param));
});

// Those around the least and the greatest that a band is designed for, and some between.
std::vector<double> frequencies(double rate) {
  std::vector<double> all{1, 3e-5 * rate, 9.5e-5 * rate};
  for (double f = 3.3e-5 * rate; f < rate / 2; f *= 10) all.push_back(f);
  for (const double share : {0.45, 0.499, 0.49979, 0.4999, 0.5}) all.push_back(share * rate);
  all.push_back(std::nextafter(rate / 2, 0));
  all.push_back(std::nextafter(0.4998 * rate, 0));
  all.push_back(192000);
  return all;
}

TEST_P(Extremes, OfABandAreDesigned) {
  constexpr std::size_t kGroup = kFirstBandGroup;
  const double qs[] = {0.05, 0.7071, 100}, gains[] = {-40, 0, 40}, shelf_slopes[] = {0, 0.05, 1};
  Values values;
  const auto set = [&values](std::string_view key, double value) {
    const std::size_t i = index(kGroup, key);
    values.of[i] = nearest_value(parameters()[i], value);
  };
  set("on", 1);
  for (int type = 0; type < 9; ++type) {
    set("type", type);
    const bool has_gain = type < 3 || type == 8, is_shelf = type == 1 || type == 2;
    const bool is_pass = type == 3 || type == 4;
    for (const int design : {0, 1}) {
      set("design", design);
      for (const double frequency : frequencies(GetParam())) {
        set("frequency", frequency);
        for (const double q : qs) {
          set("q", q);
          for (const double gain : gains) {
            set("gain", gain);
            for (const double shelf_slope : shelf_slopes) {
              set("shelf_slope", shelf_slope);
              for (int slope = 6; slope <= 96; slope += is_pass ? 6 : 100) {
                set("slope", slope);
                expect_design(values,
                              fmt::format("type {} design {} at {} Hz, q {}, {} dB, S {}, slope {}",
                                          type, design, frequency, q, gain, shelf_slope, slope));
                if (HasFatalFailure()) return;
              }
              if (!is_shelf) break;
            }
            if (!has_gain) break;
          }
        }
      }
    }
  }
  EXPECT_GT(designs_, 2000);
}

// All parameters at one end or the other, in many combinations.
TEST_P(Extremes, OfEverythingTogetherAreDesigned) {
  std::minstd_rand random(1);
  for (int round = 0; round < 300; ++round) {
    Values values;
    for (std::size_t i = 0; i < kParameterCount; ++i) {
      const Parameter& p = parameters()[i];
      const double ends[] = {p.minimum, p.maximum, p.initial,
                             value_at(p, 0.001 * static_cast<double>(random() % 1001))};
      values.of[i] = ends[random() % std::size(ends)];
      if (p.key == "on" && random() % 4 != 0) values.of[i] = 1;
    }
    expect_design(values, fmt::format("round {}", round));
    if (HasFatalFailure()) return;
  }
}

}  // namespace
}  // namespace channelstrip::test::extremes_test
