// One instance of the plugin: a strip whose parameters change by events.

#pragma once

#include <channelstrip/channelstrip.h>
#include <clap/plugin.h>
#include <clap/stream.h>

#include <array>
#include <atomic>
#include <cstdint>
#include <optional>

#include "../held_meters.h"
#include "../owned.h"
#include "../tap.h"
#include "edits.h"
#include "gui.h"
#include "parameters.h"

namespace channelstrip::clap {

// Each function says who calls it: [main], the host's main thread; [audio], its audio thread, which
// may run beside the main thread while the plugin is active. Those of the audio thread neither
// allocate, lock, throw nor call the system.
class Instance {
 public:
  // Throws std::bad_alloc.
  explicit Instance(const clap_host_t* host);

  // [main, inactive]
  bool select(std::uint32_t format);
  bool activate(double sample_rate);  // false for a sample rate that no strip can have
  // [main, active]
  void deactivate();
  // [main, or audio while inactive or within activate() and deactivate()]
  std::uint32_t format() const { return format_; }
  std::uint32_t tail() const;

  // [audio, active]
  void reset();
  clap_process_status process(const clap_process_t& call);
  // [audio while active, else main]
  void flush(const clap_input_events_t* in, const clap_output_events_t* out);

  // [main]
  std::optional<double> value(clap_id id);
  bool save(const clap_ostream_t& stream);
  bool load(const clap_istream_t& stream);
  const channelstrip_settings* settings() {
    update_settings();
    return settings_.get();
  }
  double sample_rate() const { return sample_rate_ > 0 ? sample_rate_ : 48000; }
  plugins::Tap& tap() { return tap_; }
  Edits& edits() { return edits_; }
  Gui& gui() { return gui_; }

 private:
  // Of one call: the host's buffers, one per channel.
  struct Audio {
    const float* const* inputs;
    const float* key;
    float* const* outputs;
  };

  void update_settings();
  std::optional<Audio> audio_of(const clap_process_t& call) const;
  bool run(const Audio& audio, std::uint32_t begin, std::uint32_t end);
  void start_on(const clap_input_events_t& events);
  void take_edits(const clap_output_events_t* events);
  void show_meters(const clap_output_events_t* events);

  const clap_host_t* host_;
  std::uint32_t format_, channels_;
  double sample_rate_ = 0;
  plugins::Settings settings_;  // the main thread's
  plugins::StripPlace place_;
  channelstrip_strip* strip_ = nullptr;  // there; null while inactive

  // The audio thread's.
  std::array<channelstrip_event, 1024> events_;
  std::uint32_t event_count_ = 0;
  bool is_fresh_ = true;  // no frame has been processed since the activation or a reset
  plugins::HeldMeters held_;
  std::array<std::atomic<float>, kMeterCount> shown_;  // dB, to a tenth

  // Between the audio thread and the window.
  plugins::Tap tap_;
  Edits edits_;
  Gui gui_;
};

inline Instance& instance_of(const clap_plugin_t* plugin) {
  return *static_cast<Instance*>(plugin->plugin_data);
}

}  // namespace channelstrip::clap
