#include "plugins/view/layout.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

#include "played.h"
#include "plugins/view/style.h"

namespace channelstrip::view_layout_test {
namespace {

using view::Cell;
using view::CellKind;
using view::Layout;
using view::Rect;

const view::Size kSizes[] = {{700, 420},  {860, 600},  {1200, 420},
                             {1200, 700}, {700, 1000}, {1600, 1000}};
const char* const kFormats[] = {"Mono", "Stereo", "5.1", "7.1"};

view::Setup setup_of(const char* preset, const char* format) {
  return view::setup_of(view_test::preset(preset).get(), plugin_test::format_of(format),
                        plugin_test::kRate);
}

template <class Check>
void for_every_layout(Check check) {
  for (const char* format : kFormats) {
    const view::Setup setup = setup_of("drum_bus", format);
    for (const view::Size size : kSizes) {
      SCOPED_TRACE(testing::Message() << format << " " << size.width << "x" << size.height);
      check(view::layout_of(size, setup), setup);
    }
  }
}

bool overlap(const Rect& a, const Rect& b) {
  constexpr double kTouch = 1e-6;
  return a.x + kTouch < b.right() && b.x + kTouch < a.right() && a.y + kTouch < b.bottom() &&
         b.y + kTouch < a.bottom();
}

TEST(Layout, KeepsEverythingWithinTheWindowAndApart) {
  for_every_layout([](const Layout& layout, const view::Setup&) {
    std::vector<Rect> all{layout.eq.area,    layout.levels.area, layout.history.area,
                          layout.input_bars, layout.output_bars, layout.undo,
                          layout.redo,       layout.footer};
    for (const Cell& cell : layout.cells) all.push_back(cell.box);
    for (std::size_t a = 0; a < all.size(); ++a) {
      EXPECT_GE(all[a].x, 0);
      EXPECT_GE(all[a].y, 0);
      EXPECT_LE(all[a].right(), layout.size.width);
      EXPECT_LE(all[a].bottom(), layout.size.height);
      EXPECT_GT(all[a].width, 0);
      EXPECT_GT(all[a].height, 0);
      for (std::size_t b = 0; b < a; ++b) EXPECT_FALSE(overlap(all[a], all[b])) << a << " " << b;
    }
  });
}

TEST(Layout, LeavesRoomForPlots) {
  for_every_layout([](const Layout& layout, const view::Setup&) {
    EXPECT_GE(layout.eq.area.width, 200);
    EXPECT_GE(layout.eq.area.height, 120);
    EXPECT_GE(layout.levels.area.height, 70);
    EXPECT_GE(layout.history.area.height, 40);
    EXPECT_GE(layout.bar(layout.input_bars, 0).width, 3);
  });
}

// A shelf and a pass between them show every value that a band has.
TEST(Layout, HasAPlaceForEveryParameter) {
  const plugin_test::Settings settings = view_test::preset("drum_bus");
  std::set<std::size_t> shown;
  for (const double type : {1.0, 3.0}) {
    for (const char* band :
         {"eq1", "eq2", "eq3", "eq4", "eq5", "eq6", "eq7", "eq8", "key_filter"}) {
      channelstrip_settings_set(settings.get(), plugin_test::id_of(std::string(band) + "_type"),
                                type);
    }
    const auto setup =
        view::setup_of(settings.get(), plugin_test::format_of("Stereo"), plugin_test::kRate);
    for (const Cell& cell : view::layout_of(view::kUsualSize, setup).cells) {
      if (cell.is_used) shown.insert(cell.parameter);
    }
  }
  for (std::size_t p = 0; p < view::parameters().all.size(); ++p) {
    const std::string symbol = view::parameters().all[p].symbol;
    EXPECT_TRUE(shown.contains(p)) << symbol;
  }
}

// The longest texts that each kind of value has, in the least window with the most channels.
TEST(Layout, FitsNamesAndValues) {
  const view::Fonts fonts;
  cairo_surface_t* const surface = cairo_image_surface_create(CAIRO_FORMAT_RGB24, 1, 1);
  cairo_t* const context = cairo_create(surface);
  {
    view::Canvas canvas(context, fonts, 1);
    for_every_layout([&](const Layout& layout, const view::Setup& setup) {
      const auto value_width = [&](const Cell& cell, double value, bool has_unit) {
        const view::ValueText text = view::value_text(cell.parameter, value);
        double width = canvas.width_of(text.number, view::value_type(layout));
        if (has_unit && !text.unit.empty()) {
          width += 0.28 * layout.em + canvas.width_of(text.unit, view::label_type(layout));
        }
        return width;
      };
      for (const Cell& cell : layout.cells) {
        const channelstrip_parameter& p = view::parameters().all[cell.parameter];
        if (p.kind != CHANNELSTRIP_NUMBER) continue;
        const std::string symbol = p.symbol;
        const bool is_frequency = symbol.ends_with("frequency");
        const bool is_time = std::string_view(p.unit) == "ms";
        const double value = is_frequency                       ? 12340
                             : is_time                          ? 123.4
                             : symbol.ends_with("ratio")        ? 12.5
                             : std::string_view(p.unit) == "dB" ? -23.5
                                                                : setup.values[cell.parameter];
        if (cell.kind == CellKind::kRow || cell.kind == CellKind::kInline) {
          const double name =
              canvas.width_of(view::row_name(canvas, layout, cell), view::label_type(layout));
          const double gap = cell.kind == CellKind::kRow ? 2 : 0.6 * layout.em;
          EXPECT_LE(name + gap + value_width(cell, value, true), cell.box.width + 0.5) << symbol;
        } else if (cell.kind == CellKind::kColumn) {
          const bool has_unit = !layout.is_small || !symbol.ends_with("slope");
          EXPECT_LE(value_width(cell, value, has_unit), cell.box.width) << symbol;
        } else if (cell.kind == CellKind::kStacked) {
          EXPECT_LE(value_width(cell, value, true), cell.box.width) << symbol;
        }
      }
    });
  }
  cairo_destroy(context);
  cairo_surface_destroy(surface);
}

TEST(Layout, FindsWhatIsUnderThePointer) {
  for_every_layout([](const Layout& layout, const view::Setup& setup) {
    for (std::size_t c = 0; c < layout.cells.size(); ++c) {
      const Cell& cell = layout.cells[c];
      const view::Target found = target_at(layout, setup, cell.box.centre());
      if (cell.is_used) {
        EXPECT_EQ(found, (view::Target{view::Part::kCell, c}));
      }
    }
    for (std::size_t b = 0; b < view::kBands; ++b) {
      const view::Target found = target_at(layout, setup, layout.handles[b]);
      EXPECT_EQ(found, (view::Target{view::Part::kHandle, b}));
    }
    EXPECT_EQ(target_at(layout, setup, layout.undo.centre()).part, view::Part::kUndo);
    EXPECT_EQ(target_at(layout, setup, layout.redo.centre()).part, view::Part::kRedo);
    EXPECT_EQ(target_at(layout, setup, layout.input_bars.centre()).part, view::Part::kMeters);
    EXPECT_EQ(target_at(layout, setup, {0, 0}), view::Target{});
    const view::Point threshold{
        layout.levels.x(setup.values[view::parameters().expander.threshold]),
        layout.levels.area.centre().y};
    EXPECT_EQ(target_at(layout, setup, threshold), (view::Target{view::Part::kThreshold, 1}));
  });
}

TEST(Layout, PlotsReadBackWhatTheyPlace) {
  const Layout layout = view::layout_of(view::kUsualSize, setup_of("voice", "Stereo"));
  for (const double frequency : {20.0, 440.0, 15000.0}) {
    EXPECT_NEAR(layout.eq.frequency(layout.eq.x(frequency)), frequency, 1e-9 * frequency);
  }
  EXPECT_NEAR(layout.eq.gain(layout.eq.y(-4.5)), -4.5, 1e-9);
  EXPECT_NEAR(layout.levels.level(layout.levels.x(-31)), -31, 1e-9);
}

TEST(Meter, HasTheStandardsScale) {
  const std::pair<double, double> places[] = {{-80, 0},  {-70, 0},  {-60, 2.5}, {-50, 7.5},
                                              {-40, 15}, {-30, 30}, {-20, 50},  {-10, 75},
                                              {0, 100},  {6, 100}};
  for (const auto& [level, percent] : places) {
    EXPECT_NEAR(100 * view::meter_position(level), percent, 1e-9) << level;
  }
}

}  // namespace
}  // namespace channelstrip::view_layout_test
