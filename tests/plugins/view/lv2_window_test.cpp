// The LV2 plugin's window, with and without access to the instance.

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <lv2/instance-access/instance-access.h>
#include <lv2/options/options.h>
#include <lv2/ui/ui.h>

#include <atomic>
#include <cmath>
#include <filesystem>
#include <map>
#include <string>
#include <thread>
#include <vector>

#include "../lv2_host.h"
#include "display.h"
#include "plugins/view/layout.h"

namespace channelstrip::plugin_test::lv2_window_test {
namespace {

using view_test::display;

const Lv2Binary& binary() {
  static const Lv2Binary loaded(CHANNELSTRIP_LV2);
  return loaded;
}

const LV2UI_Descriptor* ui() {
  static void* const loaded =
      dlopen((binary().folder() + "channelstrip-view.so").c_str(), RTLD_NOW | RTLD_LOCAL);
  if (!loaded) return nullptr;
  const auto find = reinterpret_cast<LV2UI_DescriptorFunction>(dlsym(loaded, "lv2ui_descriptor"));
  return find ? find(0) : nullptr;
}

// A window in a parent, as a host opens it.
class Window {
 public:
  Window(Lv2Instance* plugin, bool has_access, float scale = 1) {
    parent = display().make_window(1200, 700);
    LV2_URID_Map map{nullptr,
                     [](LV2_URID_Map_Handle, const char* uri) { return Lv2Instance::urid(uri); }};
    const LV2_Options_Option options[] = {
        {LV2_OPTIONS_INSTANCE, 0, Lv2Instance::urid(LV2_UI__scaleFactor), sizeof(float),
         Lv2Instance::urid("http://lv2plug.in/ns/ext/atom#Float"), &scale},
        {LV2_OPTIONS_INSTANCE, 0, 0, 0, 0, nullptr}};
    LV2UI_Resize resize{this, [](LV2UI_Feature_Handle self, int width, int height) {
                          auto& to = *static_cast<Window*>(self);
                          to.asked_width = width;
                          to.asked_height = height;
                          return 0;
                        }};
    // The window calls it as long as it is open; the others only now.
    touch_ = {this, [](LV2UI_Feature_Handle self, std::uint32_t port, bool is_held) {
                static_cast<Window*>(self)->held[port] += is_held ? 1 : -1;
              }};
    const LV2_Feature parent_feature{LV2_UI__parent, reinterpret_cast<void*>(parent)},
        map_feature{LV2_URID__map, &map},
        options_feature{LV2_OPTIONS__options, const_cast<LV2_Options_Option*>(options)},
        resize_feature{LV2_UI__resize, &resize}, touch_feature{LV2_UI__touch, &touch_},
        access{LV2_INSTANCE_ACCESS_URI, plugin ? plugin->handle() : nullptr};
    const LV2_Feature* const features[] = {&parent_feature,  &map_feature,
                                           &options_feature, &resize_feature,
                                           &touch_feature,   has_access ? &access : nullptr,
                                           nullptr};
    LV2UI_Widget widget = nullptr;
    handle = ui()->instantiate(
        ui(), "urn:channelstrip:lv2:stereo", "",
        [](LV2UI_Controller self, std::uint32_t port, std::uint32_t size, std::uint32_t protocol,
           const void* value) {
          EXPECT_EQ(size, sizeof(float));
          EXPECT_EQ(protocol, 0U);
          static_cast<Window*>(self)->written[port] = *static_cast<const float*>(value);
        },
        this, &widget, features);
    child = display().child_of(parent);
    EXPECT_EQ(reinterpret_cast<std::uint64_t>(widget), child);
    settle();
  }
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;
  ~Window() {
    if (handle) ui()->cleanup(handle);
    display().destroy_window(parent);
  }

  void settle() {
    for (int i = 0; i < 3; ++i) EXPECT_EQ(idle(), 0);
  }
  int idle() {
    return static_cast<const LV2UI_Idle_Interface*>(ui()->extension_data(LV2_UI__idleInterface))
        ->idle(handle);
  }
  void notify(std::uint32_t port, float value) {
    ui()->port_event(handle, port, sizeof value, 0, &value);
  }
  void click(view::Point p) {
    display().press(child, p.x, p.y);
    display().release(child, p.x, p.y);
    settle();
  }

  LV2UI_Handle handle = nullptr;
  std::uint64_t parent = 0, child = 0;
  std::map<std::uint32_t, float> written;
  std::map<std::uint32_t, int> held;
  int asked_width = 0, asked_height = 0;

 private:
  LV2UI_Touch touch_{};
};

std::uint32_t port_of(const std::string& symbol) {
  const lv2::Ports ports(2);
  for (std::uint32_t i = 0; i < lv2::kPortParameterCount; ++i) {
    if (symbol == lv2::port_parameters()[i].symbol) return ports.first_parameter() + i;
  }
  return ports.enabled();
}

view::Point centre(const char* symbol) {
  const Settings settings(channelstrip_settings_new());
  const auto layout =
      view::layout_of(view::kUsualSize, view::setup_of(settings.get(), format_of("Stereo"), kRate));
  for (const view::Cell& cell : layout.cells) {
    if (view::parameters().index_of(symbol) == cell.parameter) return cell.box.centre();
  }
  return {};
}

class Lv2Window : public testing::TestWithParam<bool> {
 protected:
  Lv2Window() { plugin.activate(); }

  Lv2Instance plugin{binary(), format_of("Stereo"), kRate, Offers::kMapAndDisplay};
};

TEST_P(Lv2Window, WritesWhatIsChangedToPorts) {
  Window window(&plugin, GetParam());
  ASSERT_TRUE(window.handle);
  EXPECT_EQ(window.asked_width, 1200);
  EXPECT_EQ(window.asked_height, 700);
  window.click(centre("compressor_on"));
  EXPECT_EQ(window.written[port_of("compressor_on")], 1);
  window.click(centre("bypass"));
  EXPECT_EQ(window.written[port_of("bypass")], 0) << "enabled";
  window.click(centre("gain_out"));
  for (const char* key : {"minus", "7", "Return"}) display().key(window.child, key);
  window.settle();
  EXPECT_EQ(window.written[port_of("gain_out")], -7);
  EXPECT_FALSE(window.held.empty());
  for (const auto& [port, count] : window.held) EXPECT_EQ(count, 0) << port;
}

TEST_P(Lv2Window, TakesWhatTheHostNotifies) {
  Window window(&plugin, GetParam());
  ASSERT_TRUE(window.handle);
  window.notify(port_of("gain_out"), 12);
  const view::Point mix = centre("gain_out");
  display().press(window.child, mix.x, mix.y, 4);
  window.settle();
  EXPECT_NEAR(window.written[port_of("gain_out")], 13.2, 0.01) << "a hundredth of 120 dB more";
  for (std::uint32_t port = 0; port < 200; ++port) {
    window.notify(port, -6);
    window.notify(port, std::nanf(""));
  }
  window.settle();
}

// Hosts that embed by suil let their window be no smaller than this, or than it is at first.
TEST_P(Lv2Window, TellsHowSmallItMayBe) {
  for (const float scale : {1.0f, 1.5f}) {
    const Window window(&plugin, GetParam(), scale);
    ASSERT_TRUE(window.handle);
    const view_test::Extent least = display().least_size(window.child);
    EXPECT_EQ(least.width, std::lround(scale * 700));
    EXPECT_EQ(least.height, std::lround(scale * 420));
  }
}

// A click brings the host's window to the front, and the host takes the focus in answer to that.
TEST_P(Lv2Window, HasTheFocusAfterAClickThoughItsHostTakesIt) {
  Window window(&plugin, GetParam());
  ASSERT_TRUE(window.handle);
  const view::Point value = centre("gain_out");
  display().press(window.child, value.x, value.y);
  window.settle();
  EXPECT_EQ(display().focused(), window.child);
  display().focus(window.parent);
  window.settle();
  EXPECT_EQ(display().focused(), window.child);
  for (int i = 0; i < 10; ++i) window.idle();
  display().focus(window.parent);
  window.settle();
  EXPECT_EQ(display().focused(), window.parent) << "that is what the user wants";
}

TEST_P(Lv2Window, LeavesTheFocusToOtherWindows) {
  Window window(&plugin, GetParam());
  ASSERT_TRUE(window.handle);
  const std::uint64_t other = display().make_window(10, 10);
  const view::Point value = centre("gain_out");
  display().press(window.child, value.x, value.y);
  display().focus(other);
  window.settle();
  EXPECT_EQ(display().focused(), other);
  display().destroy_window(other);
}

TEST_P(Lv2Window, StandsBesideARunningPlugin) {
  Window window(&plugin, GetParam());
  ASSERT_TRUE(window.handle);
  std::vector<float> audio(4096, 0.3f);
  for (int i = 0; i < 30; ++i) {
    plugin.run({audio.data(), audio.data() + 2048}, nullptr, {audio.data(), audio.data() + 2048},
               2048);
    EXPECT_EQ(window.idle(), 0);
  }
}

TEST_P(Lv2Window, EndsWithItsParent) {
  Window window(&plugin, GetParam());
  ASSERT_TRUE(window.handle);
  display().destroy_window(window.parent);
  window.idle();
  EXPECT_NE(window.idle(), 0);
  ui()->cleanup(window.handle);
  window.handle = nullptr;
  window.parent = display().make_window(10, 10);
}

TEST_P(Lv2Window, LeavesNothingBehind) {
  const auto open_files = [] {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
  };
  { const Window first(&plugin, GetParam()); }
  const auto before = open_files();
  for (int i = 0; i < 10; ++i) const Window window(&plugin, GetParam());
  EXPECT_EQ(open_files(), before);
}

// For ThreadSanitizer above all: the host draws the small picture beside the window.
TEST_P(Lv2Window, OpensAndDrawsWhileAnotherThreadPlays) {
  std::vector<float> audio(128, 0.3f);
  std::atomic<bool> is_over{false};
  std::atomic<int> calls{0};
  std::thread player([&] {
    for (; !is_over; ++calls) {
      plugin.run({audio.data(), audio.data() + 64}, nullptr, {audio.data(), audio.data() + 64}, 64);
    }
  });
  for (int i = 0; i < 4; ++i) {
    Window window(&plugin, GetParam());
    window.click(centre("compressor_on"));
    EXPECT_EQ(window.written[port_of("compressor_on")], 1);
    EXPECT_TRUE(plugin.render(200, 100));
  }
  is_over = true;
  player.join();
  EXPECT_GT(calls, 4);
}

INSTANTIATE_TEST_SUITE_P(Access, Lv2Window, testing::Bool(), [](const auto& how) {
  return how.param ? "WithTheInstance" : "WithPortsAlone";
});

TEST(Lv2Windows, AreRefusedForAnotherPlugin) {
  LV2UI_Widget widget = nullptr;
  const LV2_Feature* const none[] = {nullptr};
  EXPECT_EQ(ui()->instantiate(ui(), "urn:other", "", nullptr, nullptr, &widget, none), nullptr);
}

}  // namespace
}  // namespace channelstrip::plugin_test::lv2_window_test
