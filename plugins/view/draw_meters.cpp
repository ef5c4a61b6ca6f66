// Each channel's level in and out, with peak hold.

#include <algorithm>
#include <cmath>

#include "parts.h"
#include "style.h"

namespace channelstrip::view {
namespace {

constexpr Colour kMeterLow = rgb(0x4a5c6e), kMeterHigh = rgb(0x7c93a9), kMeterNear = kWarning;
constexpr double kNear = -6;  // dB: near full scale

double y_of(const Rect& bar, double level) {
  return bar.bottom() - bar.height * meter_position(level);
}

void draw_scale(Canvas& canvas, const Layout& layout, const Rect& card, const Rect& bars,
                const char* name) {
  const double em = layout.em;
  Type title = title_type(layout, kText);
  title.align = Align::kCentre;
  const Rect line{card.x, layout.title.y, card.width, layout.title.height};
  canvas.text({card.centre().x, baseline_of(line, title.size)}, name, title);
  const Type axis = axis_type(layout, Align::kRight);
  for (const double level : {0.0, -6.0, -12.0, -20.0, -30.0, -40.0, -60.0}) {
    const double y = y_of(bars, level);
    canvas.text({bars.x - 0.35 * em, y + axis.size * kCapHeight / 2},
                level == 0 ? "0" : fmt::format("\u2212{:g}", -level), axis);
  }
}

void draw_names(Canvas& canvas, const Layout& layout, const Setup& setup, const Rect& bars) {
  Type type = axis_type(layout, Align::kCentre);
  type.colour = kLabel;
  for (std::size_t c = 0; c < layout.channels; ++c) {
    const Rect bar = layout.bar(bars, c);
    canvas.fill(bar, kPlot);
    const int row = static_cast<int>(c) % layout.name_rows;
    const char* role = channelstrip_format_role(setup.format, CHANNELSTRIP_ORDER_WAV,
                                                static_cast<std::uint32_t>(c));
    canvas.text({bar.centre().x, bar.bottom() + type.size * (1.25 + 1.05 * row)}, role ? role : "",
                type);
  }
}

void draw_channel(Canvas& canvas, const Rect& bar, const ChannelMeter& meter) {
  const double level = static_cast<double>(meter.level), hold = static_cast<double>(meter.hold);
  const auto zone = [&](double from, double to, Colour colour) {
    if (level <= from) return;
    const double top = y_of(bar, std::min(level, to));
    canvas.fill({bar.x, top, bar.width, y_of(bar, from) - top}, colour);
  };
  zone(-200, -20, kMeterLow);
  zone(-20, kNear, kMeterHigh);
  zone(kNear, 24, kMeterNear);
  if (meter_position(hold) > 0) {
    const double y = std::max(y_of(bar, hold), bar.y + 1);
    canvas.fill({bar.x, y - 1, bar.width, 2}, hold >= 0      ? kOver
                                              : hold > kNear ? kMeterNear
                                                             : kText);
  }
  if (meter.overs > 0) canvas.fill({bar.x, bar.y - 5, bar.width, 3}, kOver);
}

void draw_side(Canvas& canvas, const Layout& layout, const Rect& card, const Rect& bars,
               const std::array<ChannelMeter, CHANNELSTRIP_MOST_CHANNELS>& meters) {
  double greatest = static_cast<double>(kSilence);
  for (std::size_t c = 0; c < layout.channels; ++c) {
    draw_channel(canvas, layout.bar(bars, c), meters[c]);
    greatest = std::max(greatest, static_cast<double>(meters[c].hold));
  }
  const bool is_silent = greatest <= -120;
  const Type type{.size = 1.15 * layout.em,
                  .weight = Weight::kSemiBold,
                  .colour = is_silent      ? kFaint
                            : greatest > 0 ? kOver
                                           : kText,
                  .align = Align::kCentre};
  const double y = layout.title.bottom() + 0.95 * layout.em;
  canvas.text({card.centre().x, y}, is_silent ? "\u2212\u221e" : decibels_text(greatest, true),
              type);
}

}  // namespace

void draw_meter_scales(Canvas& canvas, const Layout& layout, const Setup& setup) {
  draw_scale(canvas, layout, layout.input, layout.input_bars, "IN");
  draw_scale(canvas, layout, layout.output, layout.output_bars, "OUT");
  draw_names(canvas, layout, setup, layout.input_bars);
  draw_names(canvas, layout, setup, layout.output_bars);
}

void draw_meters(Canvas& canvas, const Layout& layout, const Model& model) {
  draw_side(canvas, layout, layout.input, layout.input_bars, model.live.inputs);
  draw_side(canvas, layout, layout.output, layout.output_bars, model.live.outputs);
}

}  // namespace channelstrip::view
