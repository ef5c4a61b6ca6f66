#include "meter_ballistics.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "dynamics.h"
#include "refuse.h"

namespace channelstrip::host {
namespace {

constexpr double kSilence = -std::numeric_limits<double>::infinity();

// dB, the level of the greatest float. Higher ones are clamped: infinity would never fall.
constexpr double kHighest = 770.7;

// The least factor that a readout, 1 - factor as a float, tells from 0.
constexpr double kLeastFactor = 0x1p-24;

}  // namespace

PeakMeter::PeakMeter(const Ballistics& ballistics) : ballistics_(ballistics), falling_(kSilence) {
  const auto& [hold, decay, floor] = ballistics;
  if (!(hold >= 0 && std::isfinite(hold))) refuse("hold {} ms is not 0 or more and finite", hold);
  if (!(decay > 0 && std::isfinite(decay)))
    refuse("decay {} dB/s is not above 0 and finite", decay);
  if (!std::isfinite(floor)) refuse("floor {} dB is not finite", floor);
}

// A peak that is no longer held has been falling since its hold ended, which may be within this
// period. All fall alike, so the highest stays the highest.
void PeakMeter::read(double decibels, double milliseconds) {
  const double per_millisecond = ballistics_.decay / 1000;
  time_ += milliseconds;
  falling_ -= per_millisecond * milliseconds;
  while (!held_.empty() && time_ - held_.front().time > ballistics_.hold) {
    const double fallen_for = time_ - held_.front().time - ballistics_.hold;
    falling_ = std::max(falling_, held_.front().level - per_millisecond * fallen_for);
    held_.pop_front();
  }
  if (!(decibels > kSilence)) return;
  const double level = std::min(decibels, kHighest);
  while (!held_.empty() && held_.back().level <= level) held_.pop_back();
  held_.push_back({level, time_});
}

double PeakMeter::level() const {
  const double fallen = std::max(ballistics_.floor, falling_);
  return held_.empty() ? fallen : std::max(fallen, held_.front().level);
}

double reduction_of_gain(double gain) {
  return gain > 0 && gain < 1 ? -linear_to_db(gain) : 0;
}

double reduction_of_readout(double readout) {
  return reduction_of_gain(std::max(1 - readout, kLeastFactor));
}

void OverCounter::read(double peak) {
  const bool over = peak >= 1;
  periods_ += over ? 1 : 0;
  runs_ += over && !over_ ? 1 : 0;
  over_ = over;
}

}  // namespace channelstrip::host
