#include "plugins/window/editor.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "played.h"

namespace channelstrip::view_editor_test {
namespace {

using view::Part;
using window::Editor;
using window::Key;
using window::Modifiers;

constexpr Modifiers kShift{.shift = true}, kControl{.control = true};

// A host that notes gestures.
struct Host final : window::Sink {
  std::map<std::size_t, double> values;
  std::map<std::size_t, int> held;
  int begun = 0;

  void begin(std::size_t parameter) override {
    EXPECT_EQ(held[parameter]++, 0);
    ++begun;
  }
  void set(std::size_t parameter, double value) override {
    EXPECT_EQ(held[parameter], 1) << "outside of a gesture";
    values[parameter] = value;
  }
  void end(std::size_t parameter) override { EXPECT_EQ(held[parameter]--, 1); }

  bool is_idle() const {
    return std::ranges::all_of(held, [](const auto& each) { return each.second == 0; });
  }
};

class EditorOfAStrip : public testing::Test {
 protected:
  static std::size_t parameter(const std::string& symbol) {
    return view::parameters().index_of(symbol);
  }
  double told(const std::string& symbol) { return host.values.at(parameter(symbol)); }
  view::Point centre(const std::string& symbol) {
    for (const view::Cell& cell : editor.layout().cells) {
      if (cell.parameter == parameter(symbol)) return cell.box.centre();
    }
    ADD_FAILURE() << symbol;
    return {};
  }
  void click(view::Point point, Modifiers modifiers = {}) {
    editor.press(point, 1, modifiers);
    editor.release(point, modifiers);
  }
  void drag(view::Point from, view::Point to, Modifiers modifiers = {}) {
    editor.move(from, {});
    editor.press(from, 1, modifiers);
    for (int i = 1; i <= 10; ++i) {
      editor.move({from.x + (to.x - from.x) * i / 10, from.y + (to.y - from.y) * i / 10},
                  modifiers);
    }
    editor.release(to, modifiers);
  }
  void type(const std::string& text) {
    for (const char c : text) {
      if (c == ' ') {
        editor.press(Key::kSpace, {}, 0);
      } else {
        EXPECT_TRUE(editor.type({&c, 1}, {}));
      }
    }
  }
  void turn_on(std::size_t band) { editor.set_value(view::parameters().bands[band].on, 1); }

  Host host;
  Editor editor{host, plugin_test::format_of("Stereo"), plugin_test::kRate};
};

TEST_F(EditorOfAStrip, SetsFrequencyAndGainByAHandle) {
  turn_on(2);
  const view::EqPlot plot = editor.layout().eq;
  drag(editor.layout().handles[2], {plot.x(3000), plot.y(-4.5)});
  EXPECT_NEAR(told("eq3_frequency"), 3000, 15);
  EXPECT_NEAR(told("eq3_gain"), -4.5, 0.06);
  EXPECT_TRUE(host.is_idle());
  const view::Point handle = editor.layout().handles[2];
  EXPECT_NEAR(handle.x, plot.x(3000), 2);
  EXPECT_NEAR(handle.y, plot.y(-4.5), 2);
}

TEST_F(EditorOfAStrip, TurnsABandOnThatIsDraggedFromTheCorner) {
  const view::EqPlot plot = editor.layout().eq;
  drag(editor.layout().handles[5], {plot.x(500), plot.y(6)});
  EXPECT_EQ(told("eq6_on"), 1);
  EXPECT_NEAR(told("eq6_frequency"), 500, 5);
  EXPECT_NEAR(told("eq6_gain"), 6, 0.1);
}

// Half a shelf's gain is at its frequency, where its handle is.
TEST_F(EditorOfAStrip, KeepsAShelfsHandleUnderThePointer) {
  turn_on(0);
  editor.set_value(parameter("eq1_type"), 1);
  const view::EqPlot plot = editor.layout().eq;
  drag(editor.layout().handles[0], {plot.x(200), plot.y(3)});
  EXPECT_NEAR(told("eq1_gain"), 6, 0.1);
  EXPECT_NEAR(editor.layout().handles[0].y, editor.layout().eq.y(3), 1);
}

TEST_F(EditorOfAStrip, KeepsTheScaleWhileAHandleIsHeld) {
  turn_on(0);
  const view::EqPlot plot = editor.layout().eq;
  const view::Point from = editor.layout().handles[0];
  editor.press(from, 1, {});
  editor.move({from.x, plot.y(11.5)}, {});
  EXPECT_GE(editor.layout().eq.range, 12);
  const double held = editor.layout().eq.range;
  editor.move({from.x, plot.y(0)}, {});
  EXPECT_GE(editor.layout().eq.range, 12);
  EXPECT_LE(editor.layout().eq.range, held);
  editor.release({from.x, plot.y(0)}, {});
  EXPECT_EQ(editor.layout().eq.range, 12);
}

TEST_F(EditorOfAStrip, MovesATenthWithShift) {
  turn_on(2);
  const view::EqPlot plot = editor.layout().eq;
  const view::Point from = editor.layout().handles[2];
  drag(from, {from.x, plot.y(8)}, kShift);
  EXPECT_NEAR(told("eq3_gain"), 0.8, 0.03);
}

TEST_F(EditorOfAStrip, ChangesQByTheWheel) {
  turn_on(2);
  const view::Point handle = editor.layout().handles[2];
  editor.turn(handle, 1, {}, 0);
  EXPECT_GT(told("eq3_q"), 0.7071);
  EXPECT_LT(told("eq3_q"), 0.8);
  editor.turn(handle, -1, {}, 0.1);
  EXPECT_NEAR(told("eq3_q"), 0.7071, 0.001);
  editor.turn(centre("mix"), -1, {}, 5);
  EXPECT_EQ(told("mix"), 99);
  EXPECT_TRUE(host.is_idle());
}

TEST_F(EditorOfAStrip, ResetsByDoubleClick) {
  turn_on(2);
  editor.set_value(parameter("eq3_gain"), 7);
  editor.set_value(parameter("eq3_q"), 4);
  editor.set_value(parameter("compressor_threshold"), -33);
  const view::Point handle = editor.layout().handles[2];
  click(handle);
  editor.press(handle, 2, {});
  EXPECT_EQ(told("eq3_gain"), 0);
  EXPECT_EQ(told("eq3_q"), 0.7071);
  click(centre("compressor_threshold"));
  editor.press(centre("compressor_threshold"), 2, {});
  EXPECT_EQ(told("compressor_threshold"), -20);
  EXPECT_FALSE(editor.attention().is_editing);
}

TEST_F(EditorOfAStrip, AddsABandByDoubleClickInThePlot) {
  turn_on(0);
  const view::EqPlot plot = editor.layout().eq;
  editor.press({plot.x(4000), plot.y(5)}, 2, {});
  EXPECT_EQ(told("eq2_on"), 1);
  EXPECT_NEAR(told("eq2_frequency"), 4000, 20);
}

TEST_F(EditorOfAStrip, TakesAValueAsText) {
  click(centre("compressor_threshold"));
  EXPECT_TRUE(editor.attention().is_editing);
  EXPECT_EQ(editor.attention().typed, "-20 dB");
  type("-31.5");
  EXPECT_EQ(editor.attention().typed, "-31.5");
  editor.press(Key::kEnter, {}, 0);
  EXPECT_EQ(told("compressor_threshold"), -31.5);
  click(centre("eq1_frequency"));
  type("2.5 kHz");
  editor.press(Key::kTab, {}, 0);
  EXPECT_EQ(told("eq1_frequency"), 2500);
  EXPECT_TRUE(host.is_idle());
}

TEST_F(EditorOfAStrip, LeavesAValueThatMeansNothing) {
  click(centre("compressor_ratio"));
  type("x");
  editor.press(Key::kEnter, {}, 0);
  EXPECT_TRUE(host.values.empty());
  click(centre("compressor_ratio"));
  type("7");
  editor.press(Key::kEscape, {}, 0);
  EXPECT_FALSE(editor.attention().is_editing);
  EXPECT_TRUE(host.values.empty());
  click(centre("compressor_ratio"));
  type("70");
  editor.press(Key::kBackspace, {}, 0);
  click(centre("expander_ratio"));  // a click elsewhere takes it
  EXPECT_EQ(told("compressor_ratio"), 7);
}

TEST_F(EditorOfAStrip, KeepsTypedTextShort) {
  editor.set_value(parameter("mix"), 10);
  click(centre("mix"));
  type(std::string(1000, '9'));
  EXPECT_LE(editor.attention().typed.size(), 24U);
  editor.press(Key::kEnter, {}, 0);
  EXPECT_EQ(told("mix"), 100);
}

TEST_F(EditorOfAStrip, SwitchesAndChooses) {
  click(centre("compressor_on"));
  EXPECT_EQ(told("compressor_on"), 1);
  click(centre("compressor_on"));
  EXPECT_EQ(told("compressor_on"), 0);
  click(centre("eq1_type"));
  EXPECT_EQ(told("eq1_type"), 1);
  click(centre("eq1_type"), kShift);
  click(centre("eq1_type"), kShift);
  EXPECT_EQ(told("eq1_type"), 8);
  click(centre("bypass"));
  EXPECT_EQ(told("bypass"), 1);
}

TEST_F(EditorOfAStrip, DragsNumbersUpAndDown) {
  const view::Point from = centre("gain_out");
  drag(from, {from.x, from.y - 25});
  EXPECT_NEAR(told("gain_out"), 12, 0.6);
  EXPECT_FALSE(editor.attention().is_editing);
}

TEST_F(EditorOfAStrip, DragsThresholdsInTheCurve) {
  editor.set_value(parameter("compressor_on"), 1);
  const view::LevelPlot plot = editor.layout().levels;
  const double y = plot.area.centre().y;
  drag({plot.x(-20), y}, {plot.x(-35), y});
  EXPECT_NEAR(told("compressor_threshold"), -35, 0.2);
}

TEST_F(EditorOfAStrip, IsUsableByKeysAlone) {
  editor.press(Key::kTab, {}, 0);
  ASSERT_EQ(editor.attention().focused.part, Part::kCell);
  const auto first = editor.attention().focused;
  editor.press(Key::kTab, {}, 0);
  EXPECT_NE(editor.attention().focused, first);
  editor.press(Key::kTab, kShift, 0);
  EXPECT_EQ(editor.attention().focused, first);
  // Every value that is in use has its turn.
  std::set<std::size_t> seen;
  for (std::size_t i = 0; i < editor.layout().cells.size(); ++i) {
    seen.insert(editor.attention().focused.index);
    EXPECT_TRUE(editor.layout().cells[editor.attention().focused.index].is_used);
    editor.press(Key::kRight, {}, 0);
  }
  const auto used = std::ranges::count_if(editor.layout().cells, &view::Cell::is_used);
  EXPECT_EQ(static_cast<std::ptrdiff_t>(seen.size()), used);

  while (editor.layout().cells[editor.attention().focused.index].parameter != parameter("mix")) {
    editor.press(Key::kTab, {}, 0);
  }
  editor.press(Key::kDown, {}, 1);
  EXPECT_EQ(told("mix"), 99);
  editor.press(Key::kUp, kShift, 2);
  EXPECT_NEAR(told("mix"), 99.1, 1e-9);
  type("40");
  editor.press(Key::kEnter, {}, 3);
  EXPECT_EQ(told("mix"), 40);
  editor.press(Key::kDelete, {}, 4);
  EXPECT_EQ(told("mix"), 100);
  editor.press(Key::kEscape, {}, 5);
  EXPECT_EQ(editor.attention().focused, view::Target{});
  EXPECT_FALSE(editor.press(Key::kUp, {}, 6));
}

TEST_F(EditorOfAStrip, UndoesAndRedoesWholeGestures) {
  turn_on(2);
  const view::EqPlot plot = editor.layout().eq;
  drag(editor.layout().handles[2], {plot.x(3000), plot.y(-4.5)});
  EXPECT_TRUE(editor.attention().can_undo);
  EXPECT_TRUE(editor.type("z", kControl));
  EXPECT_EQ(told("eq3_frequency"), 1000);
  EXPECT_EQ(told("eq3_gain"), 0);
  EXPECT_FALSE(editor.attention().can_undo);
  EXPECT_TRUE(editor.attention().can_redo);
  click(editor.layout().redo.centre());
  EXPECT_NEAR(told("eq3_gain"), -4.5, 0.06);
  click(editor.layout().undo.centre());
  EXPECT_EQ(told("eq3_gain"), 0);
  click(centre("compressor_on"));
  EXPECT_FALSE(editor.attention().can_redo);
  editor.type("z", kControl);
  editor.type("z", kControl);
  editor.type("z", kControl);
  EXPECT_EQ(told("compressor_on"), 0);
}

TEST_F(EditorOfAStrip, UndoesQuickTurnsOfTheWheelAtOnce) {
  for (int i = 0; i < 5; ++i) editor.turn(centre("mix"), -1, {}, 10 + 0.1 * i);
  editor.turn(centre("mix"), -1, {}, 20);
  EXPECT_EQ(told("mix"), 94);
  editor.type("z", kControl);
  EXPECT_EQ(told("mix"), 95);
  editor.type("z", kControl);
  EXPECT_EQ(told("mix"), 100);
}

TEST_F(EditorOfAStrip, HearsTheHostButForWhatItHolds) {
  editor.set_value(parameter("mix"), 50);
  editor.set_value(parameter("mix"), std::nan(""));
  editor.set_value(9999, 1);
  EXPECT_EQ(editor.setup().values[parameter("mix")], 50);
  EXPECT_TRUE(host.values.empty());
  const view::Point from = centre("gain_out");
  editor.press(from, 1, {});
  editor.move({from.x, from.y - 25}, {});
  const double held = told("gain_out");
  editor.set_value(parameter("gain_out"), -7);
  EXPECT_EQ(editor.setup().values[parameter("gain_out")], held);
  editor.release(from, {});
  editor.set_value(parameter("gain_out"), -7);
  EXPECT_EQ(editor.setup().values[parameter("gain_out")], -7);
}

TEST_F(EditorOfAStrip, GoesOnWithAnotherFormatRateAndSize) {
  drag(editor.layout().handles[0], editor.layout().eq.area.centre());
  for (const char* format : {"Mono", "7.1"}) {
    for (const double rate : {8000.0, 192000.0}) {
      editor.set_stream(plugin_test::format_of(format), rate);
      editor.resize({10, 10});
      EXPECT_EQ(editor.setup().sample_rate, rate);
      EXPECT_EQ(editor.layout().size, view::kLeastSize);
      drag(editor.layout().handles[0], {editor.layout().eq.area.right() - 1, 100});
      EXPECT_LT(told("eq1_frequency"), rate / 2);
    }
  }
}

}  // namespace
}  // namespace channelstrip::view_editor_test
