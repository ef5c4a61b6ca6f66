#include <algorithm>
#include <exception>

#include "table.h"
#include "window.h"

namespace channelstrip::window {
namespace {

Window& window_of(void* window) {
  return *static_cast<Window*>(window);
}

}  // namespace

const WindowTable& window_table() {
  static constexpr WindowTable kTable{
      .version = kWindowVersion,
      .tap_size = sizeof(plugins::Tap),
      .open = [](const WindowOptions* options) -> void* {
        try {
          return new Window(*options);
        } catch (const std::exception&) {
          return nullptr;
        }
      },
      .close = [](void* window) { delete &window_of(window); },
      .idle =
          [](void* window) {
            try {
              return window_of(window).idle();
            } catch (const std::exception&) {
              return true;  // without memory: perhaps there is some the next time
            }
          },
      .id = [](void* window) { return window_of(window).id(); },
      .set_parent = [](void* window,
                       std::uint64_t parent) { window_of(window).set_parent(parent); },
      .show = [](void* window, bool is_shown) { window_of(window).show(is_shown); },
      .size =
          [](void* window, std::uint32_t* width, std::uint32_t* height) {
            *width = static_cast<std::uint32_t>(window_of(window).width());
            *height = static_cast<std::uint32_t>(window_of(window).height());
          },
      .least_size =
          [](void* window, std::uint32_t* width, std::uint32_t* height) {
            *width = static_cast<std::uint32_t>(window_of(window).least_width());
            *height = static_cast<std::uint32_t>(window_of(window).least_height());
          },
      .resize =
          [](void* window, std::uint32_t width, std::uint32_t height) {
            constexpr std::uint32_t kMost = 16384;
            window_of(window).resize(static_cast<int>(std::min(width, kMost)),
                                     static_cast<int>(std::min(height, kMost)));
          },
      .set_scale = [](void* window, double scale) { window_of(window).set_scale(scale); },
      .set_value = [](void* window, std::uint32_t parameter,
                      double value) { window_of(window).set_value(parameter, value); },
      .set_stream =
          [](void* window, std::uint32_t format, double rate) {
            try {
              window_of(window).set_stream(format, rate);
            } catch (const std::exception&) {
              // It goes on showing the earlier one.
            }
          },
      .set_meters =
          [](void* window, const channelstrip_meters* meters) {
            window_of(window).set_meters(*meters);
          }};
  return kTable;
}

}  // namespace channelstrip::window
