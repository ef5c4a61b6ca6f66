#include "layout.h"

#include <algorithm>
#include <cmath>

#include "tables.h"

namespace channelstrip::view {
namespace {

std::size_t channels_of(std::uint32_t format) {
  channelstrip_format info{};
  channelstrip_format_info(format, &info, sizeof info);
  return info.channels;
}

// The least of some usual ranges that holds the curve's highest point and every gain.
double gain_range(const Setup& setup) {
  double greatest = 0;
  for (const double gain : setup.sum) greatest = std::max(greatest, gain);
  for (const BandParameters& band : parameters().bands) {
    if (setup.is_on(band.on) && use_of(band, setup.values).gain) {
      greatest = std::max(greatest, std::abs(setup.values[band.gain]));
    }
  }
  for (const double range : {12.0, 18.0, 24.0, 36.0}) {
    if (greatest <= 0.9 * range && range >= setup.least_range) return range;
  }
  return 48;
}

// In steps of 12 dB down to what lies below every threshold that is in use.
double lowest_level(const Setup& setup) {
  const Parameters& p = parameters();
  double low = -60;
  if (setup.is_on(p.compressor.on)) low = std::min(low, setup.values[p.compressor.threshold]);
  if (setup.is_on(p.expander.on)) {
    const double hysteresis = setup.is_gate() ? setup.values[p.expander.hysteresis] : 0;
    low = std::min(low, setup.values[p.expander.threshold] - hysteresis);
  }
  return std::max(-144.0, 12 * std::floor((low - 6) / 12));
}

void place_handles(Layout& layout, const Setup& setup) {
  const double r = layout.handle_radius;
  const Rect& area = layout.eq.area;
  double waiting = 0;
  for (std::size_t b = 0; b < kBands; ++b) {
    const BandParameters& band = parameters().bands[b];
    Point& handle = layout.handles[b];
    if (!setup.is_on(band.on)) {
      // Those that are off wait side by side in the plot's corner.
      handle = {area.x + (1.6 + 2.4 * waiting++) * r, area.bottom() - 1.6 * r};
      continue;
    }
    const double share = handle_share(static_cast<BandType>(setup.values[band.type]));
    const double y = layout.eq.y(share * setup.values[band.gain]);
    handle = {std::clamp(layout.eq.x(setup.values[band.frequency]), area.x + r, area.right() - r),
              std::clamp(y, area.y + r, area.bottom() - r)};
  }
}

}  // namespace

double handle_share(BandType type) {
  switch (type) {
    case BandType::kPeak:
      return 1;
    case BandType::kLowShelf:
    case BandType::kHighShelf:
    case BandType::kTilt:
      return 0.5;
    default:
      return 0;
  }
}

Rect Layout::bar(const Rect& bars, std::size_t channel) const {
  const double gap = channels > 4 ? em * 0.18 : em * 0.3;
  const double width =
      (bars.width - gap * static_cast<double>(channels - 1)) / static_cast<double>(channels);
  return {bars.x + static_cast<double>(channel) * (width + gap), bars.y, width, bars.height};
}

Layout layout_of(Size size, const Setup& setup) {
  Layout layout{};
  layout.size = size;
  layout.channels = channels_of(setup.format);
  const double em = layout.em = std::clamp(std::min(size.width / 100, size.height / 58), 9.0, 15.0);
  layout.pitch = std::round(std::clamp(size.height * 0.0312, 13.0, 2 * em));
  layout.is_small = size.width < 76 * em + 240;
  layout.handle_radius = std::round(0.82 * em);

  const double margin = std::round(0.9 * em), gap = std::round(0.7 * em);
  Rect rest = Rect{0, 0, size.width, size.height}.inset(margin, 0);
  layout.header = rest.cut_top(std::round(2.9 * em));
  rest.cut_bottom(margin);

  const double count = static_cast<double>(layout.channels);
  const double strip =
      std::round(em * (3.2 + std::max(2.5, (layout.is_small ? 0.56 : 0.72) * count)));
  layout.input = rest.cut_left(strip);
  rest.cut_left(gap);
  layout.output = rest.cut_right(strip);
  rest.cut_right(gap);
  layout.dynamics =
      rest.cut_right(std::round((rest.width - gap) * (layout.is_small ? 0.455 : 0.46)));
  rest.cut_right(gap);
  layout.equaliser = rest;

  place_header(layout);
  place_meters(layout, setup);
  place_equaliser(layout, setup);
  place_dynamics(layout, setup);
  layout.eq.range = gain_range(setup);
  layout.levels.low = lowest_level(setup);
  place_handles(layout, setup);
  return layout;
}

}  // namespace channelstrip::view
