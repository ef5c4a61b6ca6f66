#include "meter_interval.h"

#include <algorithm>
#include <span>

namespace channelstrip::host {
namespace {

void hold_maximum(std::vector<float>& held, std::span<const float> values) {
  std::ranges::transform(held, values, held.begin(),
                         [](float a, float b) { return a > b ? a : b; });
}

void hold_minimum(std::vector<float>& held, std::span<const float> values) {
  std::ranges::transform(held, values, held.begin(),
                         [](float a, float b) { return a < b ? a : b; });
}

}  // namespace

void IntervalMeter::add(const MeterReading& period) {
  MeterInterval& all = interval_;
  if (periods_++ == 0) {
    all = {.input_peak = {period.input_peak.begin(), period.input_peak.end()},
           .output_peak = {period.output_peak.begin(), period.output_peak.end()},
           .level = period.level,
           .gain = period.gain,
           .compressor_reduction = period.compressor_reduction,
           .expander_reduction = period.expander_reduction,
           .channel_gain = {period.channel_gain.begin(), period.channel_gain.end()}};
    return;
  }
  hold_maximum(all.input_peak, period.input_peak);
  hold_maximum(all.output_peak, period.output_peak);
  hold_minimum(all.channel_gain, period.channel_gain);
  all.compressor_reduction = std::max(all.compressor_reduction, period.compressor_reduction);
  all.expander_reduction = std::max(all.expander_reduction, period.expander_reduction);
  if (period.gain < all.gain || (period.gain == all.gain && period.level > all.level)) {
    all.gain = period.gain;
    all.level = period.level;
  }
}

}  // namespace channelstrip::host
