// The window as a table of functions in C: a plugin's binary opens it from the view's, so that it
// needs neither X11 nor cairo itself.

#pragma once

#include <channelstrip/channelstrip.h>

#include <cstdint>

#include "../tap.h"

namespace channelstrip::window {

// What the window tells its plugin. Parameters are indices of channelstrip_parameter_info(). A
// gesture begins, sets values and ends.
struct WindowHost {
  void* self;
  void (*begin)(void* self, std::uint32_t parameter);
  void (*set)(void* self, std::uint32_t parameter, double value);
  void (*end)(void* self, std::uint32_t parameter);
};

struct WindowOptions {
  std::uint64_t parent;  // X11's window that it becomes a part of; 0: none yet
  double scale;          // device pixels for each logical one; 0: as the desktop says
  std::uint32_t format;
  double sample_rate;
  plugins::Tap* tap;  // null: there are no samples, and meters only by set_meters()
  WindowHost host;
};

// All functions are the main thread's. Sizes are in device pixels.
struct WindowTable {
  std::uint32_t version;   // kWindowVersion
  std::uint32_t tap_size;  // sizeof of a plugins::Tap: plugin and view must be of one build

  void* (*open)(const WindowOptions* options);  // null if there is no display, or memory
  void (*close)(void* window);
  // Events, meters and drawing, to be called some 30 times a second. False once the window is gone.
  bool (*idle)(void* window);
  std::uint64_t (*id)(void* window);
  void (*set_parent)(void* window, std::uint64_t parent);
  void (*show)(void* window, bool is_shown);
  void (*size)(void* window, std::uint32_t* width, std::uint32_t* height);
  void (*least_size)(void* window, std::uint32_t* width, std::uint32_t* height);
  void (*resize)(void* window, std::uint32_t width, std::uint32_t height);
  void (*set_scale)(void* window, double scale);
  void (*set_value)(void* window, std::uint32_t parameter, double value);
  // Another format or sample rate; the tap's, too.
  void (*set_stream)(void* window, std::uint32_t format, double sample_rate);
  void (*set_meters)(void* window, const channelstrip_meters* meters);
};
inline constexpr std::uint32_t kWindowVersion = 1;

inline constexpr char kViewFile[] = "channelstrip-view.so";
inline constexpr char kWindowSymbol[] = "channelstrip_window";
using FindWindow = const WindowTable*();

// The binary's own. [any thread]
const WindowTable& window_table();

}  // namespace channelstrip::window
