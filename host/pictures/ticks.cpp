#include "ticks.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <span>

namespace channelstrip::host {
namespace {

constexpr std::array kDecibelSteps{1.0, 2.0, 3.0, 6.0, 12.0, 24.0, 60.0};
constexpr std::array kDegreeSteps{15.0, 45.0, 90.0, 180.0, 360.0};
constexpr std::array kTimeSteps{1.0,  2.0,   5.0,   10.0,  15.0,   30.0,  60.0,
                                120., 300.0, 600.0, 900.0, 1800.0, 3600.0};

// The smallest number that is 1, 2 or 5 times a power of ten and not below `least`.
double round_step(double least) {
  const double decade = std::pow(10, std::floor(std::log10(least)));
  for (const double step : {1.0, 2.0, 5.0}) {
    if (step * decade >= least) return step * decade;
  }
  return 10 * decade;
}

double first_not_below(std::span<const double> steps, double least) {
  const auto step =
      std::ranges::find_if(steps, [&](double candidate) { return candidate >= least; });
  return step == steps.end() ? round_step(least) : *step;
}

double step_of(Scale scale, double least) {
  switch (scale) {
    case Scale::kDecibels:
      return least < 1 ? round_step(least) : first_not_below(kDecibelSteps, least);
    case Scale::kDegrees:
      return first_not_below(kDegreeSteps, least);
    case Scale::kTime:
      return least < 1 ? round_step(least) : first_not_below(kTimeSteps, least);
    default:
      return round_step(least);
  }
}

std::string clock(double seconds) {
  const auto whole = static_cast<long>(seconds);
  if (whole < 3600) return fmt::format("{}:{:02}", whole / 60, whole % 60);
  return fmt::format("{}:{:02}:{:02}", whole / 3600, whole / 60 % 60, whole % 60);
}

std::vector<Tick> linear_ticks(const Axis& axis, int most) {
  const double step = step_of(axis.scale, (axis.high - axis.low) / most);
  const bool clocked = axis.scale == Scale::kTime && axis.high >= 60 && step >= 1;
  // Keeps a tick at the very end of the axis when the division rounds the wrong way.
  const double slack = 1e-9;
  std::vector<Tick> result;
  const auto first = std::lround(std::ceil(axis.low / step - slack));
  const auto last = std::lround(std::floor(axis.high / step + slack));
  for (long n = first; n <= last; ++n) {
    const double value = static_cast<double>(n) * step;
    result.push_back({value, clocked ? clock(value) : engineers_number(value)});
  }
  return result;
}

std::vector<Tick> logarithmic_ticks(const Axis& axis, int most) {
  const auto first = static_cast<int>(std::floor(std::log10(axis.low)));
  const auto last = static_cast<int>(std::ceil(std::log10(axis.high)));
  const bool crowded = 3 * std::log10(axis.high / axis.low) > most;
  const int stride = crowded ? (last - first + most - 1) / most : 1;
  std::vector<Tick> result;
  for (int decade = first; decade <= last; decade += stride) {
    for (const double step : {1.0, 2.0, 5.0}) {
      const double value = step * std::pow(10, decade);
      if (axis.low <= value && value <= axis.high) {
        result.push_back({value, engineers_number(value)});
      }
      if (crowded) break;
    }
  }
  return result;
}

}  // namespace

std::vector<Tick> ticks(const Axis& axis, int most) {
  return axis.scale == Scale::kLogarithmic ? logarithmic_ticks(axis, most)
                                           : linear_ticks(axis, most);
}

std::string engineers_number(double value) {
  const bool thousands = std::abs(value) >= 1000;
  std::string digits = fmt::format("{:.3f}", std::abs(thousands ? value / 1000 : value));
  digits.erase(digits.find_last_not_of('0') + 1);
  if (digits.back() == '.') digits.pop_back();
  const bool negative = value < 0 && digits != "0";
  return (negative ? "\u2212" : "") + digits + (thousands ? "k" : "");
}

}  // namespace channelstrip::host
