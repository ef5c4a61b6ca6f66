// The CLAP plugin's window on a display without a screen.

#include <clap/ext/gui.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <filesystem>
#include <map>
#include <thread>

#include "../clap_host.h"
#include "display.h"
#include "plugins/view/layout.h"

namespace channelstrip::plugin_test::clap_window_test {
namespace {

using view_test::display;

const ClapBinary& binary() {
  static const ClapBinary loaded(CHANNELSTRIP_CLAP);
  return loaded;
}

class ClapWindow : public testing::Test {
 protected:
  ClapWindow() {
    display();
    plugin.shown.reserve(4096);
    plugin.select(format_of("Stereo"));
    plugin.activate();
    open();
    settle();
  }
  ~ClapWindow() override {
    close();
    EXPECT_FALSE(plugin.has_timer());
  }

  const clap_plugin_gui_t& gui() { return plugin.extension<clap_plugin_gui_t>(CLAP_EXT_GUI); }
  void open() {
    parent = display().make_window(1200, 700);
    ASSERT_TRUE(gui().is_api_supported(plugin.plugin(), CLAP_WINDOW_API_X11, false));
    ASSERT_TRUE(gui().create(plugin.plugin(), CLAP_WINDOW_API_X11, false));
    ASSERT_TRUE(gui().set_scale(plugin.plugin(), 1));
    const clap_window_t window{.api = CLAP_WINDOW_API_X11, .x11 = parent};
    ASSERT_TRUE(gui().set_parent(plugin.plugin(), &window));
    ASSERT_TRUE(gui().show(plugin.plugin()));
    child = display().child_of(parent);
    ASSERT_NE(child, 0U);
  }
  void close() {
    if (parent == 0) return;
    gui().destroy(plugin.plugin());
    display().destroy_window(parent);
    parent = 0;
  }
  // The window has seen what was sent and the host has done what it was asked for.
  void settle() {
    for (int i = 0; i < 3; ++i) {
      plugin.tick();
      run();
    }
    plugin.tick();
  }
  void run(std::uint32_t frames = 512) {
    plugin.process({audio.data(), audio.data() + 1024}, nullptr, {out.data(), out.data() + 1024},
                   frames);
    for (const auto& event : plugin.shown) told[event.param_id] = event.value;
  }
  view::Layout layout() {
    const Settings settings(channelstrip_settings_new());
    for (const channelstrip_parameter& p : view::parameters().all) {
      channelstrip_settings_set(settings.get(), p.id, plugin.value(p.symbol));
    }
    return view::layout_of(view::kUsualSize,
                           view::setup_of(settings.get(), format_of("Stereo"), kRate));
  }
  view::Point centre(const char* symbol) {
    const view::Layout all = layout();
    for (const view::Cell& cell : all.cells) {
      if (view::parameters().index_of(symbol) == cell.parameter) return cell.box.centre();
    }
    return {};
  }
  void click(view::Point p) {
    display().press(child, p.x, p.y);
    display().release(child, p.x, p.y);
    settle();
  }

  ClapInstance plugin{binary()};
  std::vector<float> audio = std::vector<float>(2048, 0.25f), out = audio;
  std::map<clap_id, double> told;
  std::uint64_t parent = 0, child = 0;
};

TEST_F(ClapWindow, TellsTheHostAndTheStripOfADraggedHandle) {
  const view::Layout before = layout();
  const view::Point from = before.handles[2], to{before.eq.x(2000), before.eq.y(6)};
  display().press(child, from.x, from.y);
  for (int i = 1; i <= 5; ++i) {
    display().move(child, from.x + (to.x - from.x) * i / 5, from.y + (to.y - from.y) * i / 5);
    settle();
  }
  display().release(child, to.x, to.y);
  settle();
  EXPECT_NEAR(told[id_of("eq3_frequency")], 2000, 20);
  EXPECT_NEAR(told[id_of("eq3_gain")], 6, 0.2);
  EXPECT_EQ(plugin.value("eq3_on"), 1);
  EXPECT_EQ(plugin.value("eq3_gain"), told[id_of("eq3_gain")]);
  std::map<clap_id, int> held;
  for (const auto& gesture : plugin.gestures) {
    held[gesture.param_id] += gesture.header.type == CLAP_EVENT_PARAM_GESTURE_BEGIN ? 1 : -1;
    EXPECT_LE(held[gesture.param_id], 1);
    EXPECT_GE(held[gesture.param_id], 0);
  }
  EXPECT_EQ(held.size(), 3U);
  for (const auto& [id, count] : held) EXPECT_EQ(count, 0) << id;
  EXPECT_GT(plugin.flushes_asked, 0);

  constexpr unsigned int kControl = 4;
  display().key(child, "z", kControl);
  settle();
  EXPECT_EQ(plugin.value("eq3_on"), 0);
  EXPECT_EQ(plugin.value("eq3_gain"), 0);
}

// All of it comes between two pictures.
TEST_F(ClapWindow, LeavesAHandleWhereItWasLetGo) {
  const view::Layout before = layout();
  const view::Point from = before.handles[2], to{before.eq.x(2000), before.eq.y(6)};
  display().press(child, from.x, from.y);
  display().move(child, to.x, from.y);
  display().move(child, to.x, to.y);
  display().release(child, to.x, to.y);
  display().move(child, before.eq.x(200), before.eq.y(-9));
  settle();
  EXPECT_NEAR(plugin.value("eq3_frequency"), 2000, 20);
  EXPECT_NEAR(plugin.value("eq3_gain"), 6, 0.2);
}

TEST_F(ClapWindow, TakesTypedValuesWheelAndSwitches) {
  click(centre("compressor_on"));
  EXPECT_EQ(plugin.value("compressor_on"), 1);
  click(centre("compressor_threshold"));
  for (const char* key : {"minus", "3", "1", "period", "5", "Return"}) display().key(child, key);
  settle();
  EXPECT_EQ(plugin.value("compressor_threshold"), -31.5);
  const view::Point mix = centre("mix");
  display().press(child, mix.x, mix.y, 5);
  settle();
  EXPECT_EQ(plugin.value("mix"), 99);
}

TEST_F(ClapWindow, EditsAnInactivePlugin) {
  plugin.deactivate();
  click(centre("expander_on"));
  EXPECT_EQ(plugin.value("expander_on"), 0);
  plugin.flush();
  EXPECT_EQ(plugin.value("expander_on"), 1);
  plugin.activate();
  settle();
  EXPECT_EQ(plugin.value("expander_on"), 1);
}

TEST_F(ClapWindow, OpensWithWhatIsStillOnItsWayToTheStrip) {
  const view::Point mix = centre("mix");
  for (int i = 0; i < 2; ++i) {
    display().press(child, mix.x, mix.y, 5);
    plugin.tick();
    close();
    open();
  }
  EXPECT_EQ(plugin.value("mix"), 100) << "no call has taken it";
  settle();
  EXPECT_EQ(plugin.value("mix"), 98);
  EXPECT_EQ(told[id_of("mix")], 98);
}

// The accent at the end of a toggle that is on, the card's colour where it is off.
TEST_F(ClapWindow, ShowsWhatTheHostChanges) {
  const view::Layout all = layout();
  const auto cell =
      std::ranges::find(all.cells, view::parameters().compressor.on, &view::Cell::parameter);
  const int x = static_cast<int>(cell->box.x) + 5, y = static_cast<int>(cell->box.centre().y) - 4;
  const auto colour = [&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(35));
    settle();
    return display().pixel(child, x, y);
  };
  const unsigned long off = colour();
  plugin.set("compressor_on", 1);
  EXPECT_NE(colour(), off);
  plugin.set("compressor_on", 0);
  EXPECT_EQ(colour(), off);
  ASSERT_TRUE(plugin.load("# channelstrip settings\n[compressor]\n"));
  EXPECT_NE(colour(), off);
}

TEST_F(ClapWindow, LivesThroughOtherFormatsRatesAndSizes) {
  for (const std::uint32_t format : {0U, 10U, 1U}) {
    for (const double rate : {8000.0, 192000.0, 48000.0}) {
      plugin.deactivate();
      ASSERT_TRUE(plugin.select(format));
      ASSERT_TRUE(plugin.activate(rate));
      const std::uint32_t channels = channels_of(format);
      std::vector<float> silence(channels * 4096);
      std::vector<const float*> in;
      std::vector<float*> to;
      for (std::uint32_t c = 0; c < channels; ++c) {
        in.push_back(silence.data() + c * 4096);
        to.push_back(silence.data() + c * 4096);
      }
      for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(plugin.process(in, nullptr, to, 4096), CLAP_PROCESS_CONTINUE_IF_NOT_QUIET);
        plugin.tick();
      }
    }
  }
  for (const auto& [width, height] : {std::pair{1U, 1U}, {1600U, 1000U}, {3000U, 421U}}) {
    std::uint32_t w = width, h = height;
    ASSERT_TRUE(gui().adjust_size(plugin.plugin(), &w, &h));
    EXPECT_GE(w, 700U);
    EXPECT_GE(h, 420U);
    ASSERT_TRUE(gui().set_size(plugin.plugin(), w, h));
    settle();
    std::uint32_t is_width = 0, is_height = 0;
    ASSERT_TRUE(gui().get_size(plugin.plugin(), &is_width, &is_height));
    EXPECT_EQ(is_width, w);
    EXPECT_EQ(is_height, h);
  }
  ASSERT_TRUE(gui().set_scale(plugin.plugin(), 2));
  settle();
  std::uint32_t width = 0, height = 0;
  gui().get_size(plugin.plugin(), &width, &height);
  EXPECT_EQ(width, 2400U);
}

TEST_F(ClapWindow, SurvivesTheEndOfItsParent) {
  display().destroy_window(parent);
  settle();
  settle();
  gui().destroy(plugin.plugin());
  parent = 0;
  open();
  settle();
}

TEST_F(ClapWindow, LeavesNothingBehind) {
  const auto open_files = [] {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
  };
  close();
  const auto before = open_files();
  for (int i = 0; i < 20; ++i) {
    open();
    settle();
    close();
  }
  EXPECT_EQ(open_files(), before);
}

// For ThreadSanitizer above all.
TEST_F(ClapWindow, OpensDrawsAndEditsWhileAnotherThreadPlays) {
  const view::Point mix = centre("mix");
  std::atomic<bool> is_over{false};
  std::thread player([&] {
    while (!is_over) run(64);
  });
  for (int i = 0; i < 4; ++i) {
    for (int turn = 0; turn < 5; ++turn) {
      display().press(child, mix.x, mix.y, 5);
      plugin.tick();
    }
    close();
    open();
  }
  is_over = true;
  player.join();
  settle();
  EXPECT_EQ(plugin.value("mix"), 80);
  EXPECT_EQ(told[id_of("mix")], 80);
}

TEST(ClapWindows, OfTwoInstancesAreApart) {
  display();
  ClapInstance a(binary()), b(binary());
  for (const ClapInstance* each : {&a, &b}) {
    const auto& gui = each->extension<clap_plugin_gui_t>(CLAP_EXT_GUI);
    EXPECT_FALSE(gui.is_api_supported(each->plugin(), "win32", false));
    EXPECT_FALSE(gui.is_api_supported(each->plugin(), CLAP_WINDOW_API_X11, true));
    ASSERT_TRUE(gui.create(each->plugin(), CLAP_WINDOW_API_X11, false));
    EXPECT_FALSE(gui.create(each->plugin(), CLAP_WINDOW_API_X11, false)) << "a second one";
  }
  a.extension<clap_plugin_gui_t>(CLAP_EXT_GUI).destroy(a.plugin());
  b.tick();
  EXPECT_TRUE(b.has_timer());
}

}  // namespace
}  // namespace channelstrip::plugin_test::clap_window_test
