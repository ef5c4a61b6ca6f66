// What surrounds the cards in the middle: the header, and the meters with the gains below them.

#include "tables.h"

#include <algorithm>
#include <cmath>
#include <string_view>

namespace channelstrip::view {
namespace {

void add_stacked(Layout& layout, Rect& rest, std::size_t parameter, const char* name) {
  layout.cells.push_back({.kind = CellKind::kStacked,
                          .section = Section::kStrip,
                          .box = rest.cut_top(std::round(1.9 * layout.pitch)),
                          .parameter = parameter,
                          .name = name,
                          .short_name = name});
}

}  // namespace

void place_meters(Layout& layout, const Setup& setup) {
  const Parameters& p = parameters();
  const double em = layout.em;
  double name_width = 1.1 * em;
  for (std::uint32_t c = 0; c < layout.channels; ++c) {
    const char* role = channelstrip_format_role(setup.format, CHANNELSTRIP_ORDER_WAV, c);
    if (role && std::string_view(role) == "LFE") name_width = 1.7 * em;
  }
  const auto place = [&](const Rect& card, Rect& bars, std::size_t upper, const char* upper_name,
                         std::size_t lower, const char* lower_name) {
    Rect inner = card.inset(std::round(0.6 * em), std::round(0.7 * em));
    Rect values = inner.cut_bottom(2 * std::round(1.9 * layout.pitch));
    add_stacked(layout, values, upper, upper_name);
    add_stacked(layout, values, lower, lower_name);
    inner.cut_top(std::round(3.7 * em));   // title and readout
    inner.cut_left(std::round(1.7 * em));  // scale
    const double width = inner.width / static_cast<double>(layout.channels);
    layout.name_rows = std::clamp(static_cast<int>(std::ceil(name_width / width)), 1, 3);
    inner.cut_bottom(std::round((1.1 + 0.85 * layout.name_rows) * em));
    bars = inner;
  };
  place(layout.input, layout.input_bars, p.gain_in, "Gain", p.meter_gain, "Meter");
  place(layout.output, layout.output_bars, p.mix, "Mix", p.gain_out, "Gain");
}

void place_header(Layout& layout) {
  const Parameters& p = parameters();
  const double em = layout.em;
  Rect rest = layout.header;
  const double height = std::round(1.75 * em);
  const auto cut = [&](double width) {
    const Rect part = rest.cut_right(std::round(width * em));
    rest.cut_right(std::round(1.0 * em));
    return Rect{part.x, part.y + std::round((part.height - height) / 2), part.width, height};
  };
  const auto add_pill = [&](double width, std::size_t parameter, const char* name) {
    layout.cells.push_back({.kind = CellKind::kPill,
                            .section = Section::kStrip,
                            .box = cut(width),
                            .parameter = parameter,
                            .name = name,
                            .short_name = name});
  };
  add_pill(5.4, p.bypass, "BYPASS");
  add_pill(7.2, p.key.listen, "KEY LISTEN");
  const auto add = [&](double width, std::size_t parameter, const char* name) {
    layout.cells.push_back({.kind = CellKind::kInline,
                            .section = Section::kStrip,
                            .box = cut(width),
                            .parameter = parameter,
                            .name = name,
                            .short_name = name});
  };
  add(7.4, p.glide, "Glide");
  add(5.2, p.link, "Link");
  layout.redo = cut(1.75);
  layout.undo = cut(1.75);
}

}  // namespace channelstrip::view
