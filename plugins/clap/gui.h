// The plugin's window, which lives in the binary of the view beside the plugin's own: a host that
// shows no window, or has no X11, needs nothing of it. All functions are the main thread's.

#pragma once

#include <clap/ext/gui.h>
#include <clap/ext/timer-support.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "../window/table.h"

namespace channelstrip::clap {

class Instance;

// Where the plugin's binary is, told when it is loaded.
void set_binary_path(const char* path);

class Gui {
 public:
  Gui(Instance& instance, const clap_host_t* host)
      : instance_(instance), host_(host), values_(channelstrip_parameter_count()) {}
  Gui(const Gui&) = delete;
  Gui& operator=(const Gui&) = delete;
  ~Gui() { destroy(); }

  static bool is_there();  // the view's binary, and what it needs
  bool create();
  void destroy();
  bool set_scale(double scale);
  bool size(std::uint32_t& width, std::uint32_t& height) const;
  bool adjust(std::uint32_t& width, std::uint32_t& height) const;
  bool resize(std::uint32_t width, std::uint32_t height);
  bool set_parent(std::uint64_t parent);
  bool show(bool is_shown);
  void tick();

 private:
  struct Close {
    const window::WindowTable* table;
    void operator()(void* window) const { table->close(window); }
  };
  void put(std::uint16_t type, std::uint32_t parameter, double value);
  void show_values();

  Instance& instance_;
  const clap_host_t* host_;
  std::unique_ptr<void, Close> window_{nullptr, Close{nullptr}};
  const clap_host_timer_support_t* timers_ = nullptr;
  clap_id timer_ = CLAP_INVALID_ID;
  // By parameter: the strip's, or what was put and is on its way there. Outlives the window, which
  // may close and open again meanwhile.
  std::vector<double> values_;
};

extern const clap_plugin_gui_t kGui;
extern const clap_plugin_timer_support_t kTimer;

}  // namespace channelstrip::clap
