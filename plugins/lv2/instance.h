// One instance of a plugin: a strip whose parameters are ports.

#pragma once

#include <channelstrip/channelstrip.h>
#include <lv2/state/state.h>
#include <lv2/urid/urid.h>

#include <array>
#include <cstdint>

#include "../held_meters.h"
#include "../owned.h"
#include "../tap.h"
#include "glance.h"
#include "inline_display.h"
#include "ports.h"

namespace channelstrip::lv2 {

using plugins::Settings;

// The host's rules say which calls may run beside which: run() and connect() on the audio thread,
// all others while neither runs.
class Instance {
 public:
  // Throws std::bad_alloc without memory, and std::invalid_argument for a sample rate that no strip
  // can have. `map` may be null; there is no state then.
  // `display`, which may be null, is told when a small picture would be another one.
  Instance(std::uint32_t format, double sample_rate, const LV2_URID_Map* map,
           const InlineDisplay* display, const char* bundle);

  void connect(std::uint32_t port, void* data);
  // A strip without a past, on what the ports say.
  void activate();
  // Neither allocates, locks, throws nor calls the system.
  void run(std::uint32_t frames);

  LV2_State_Status save(LV2_State_Store_Function store, LV2_State_Handle state) const;
  LV2_State_Status restore(LV2_State_Retrieve_Function retrieve, LV2_State_Handle state);

  // For those who look, on their own thread, at any time.
  std::uint32_t format() const { return format_; }
  double sample_rate() const { return sample_rate_; }
  plugins::Tap& tap() { return tap_; }
  SmallPicture& small_picture() { return small_; }

 private:
  // The parameters and, in the last place, `enabled`.
  static constexpr std::size_t kControlCount = kPortParameterCount + 1;

  void start();
  bool are_controls_known();
  std::uint32_t take_changes();
  void process(std::uint32_t frames);
  void write_meters();

  std::uint32_t format_;
  double sample_rate_;
  Ports ports_;
  std::array<std::uint32_t, kControlCount> ids_;

  const float *inputs_[CHANNELSTRIP_MOST_CHANNELS] = {}, *key_ = nullptr;
  float *outputs_[CHANNELSTRIP_MOST_CHANNELS] = {}, *latency_ = nullptr;
  std::array<const float*, kControlCount> controls_ = {};
  std::array<float*, kMostMeters> meters_ = {};

  bool is_row_known_ = false, are_in_a_row_ = false;  // controls_, in the host's memory
  std::array<float, kControlCount> seen_;  // what the controls were; NaN before the first look
  std::array<channelstrip_event, kControlCount> events_;
  Settings settings_;  // what the controls say, and the link maps
  plugins::StripPlace place_;
  channelstrip_strip* strip_ = nullptr;  // there
  bool is_fresh_ = true;                 // nothing has run since the activation
  bool has_new_links_ = false;

  plugins::HeldMeters held_;
  bool are_meters_written_ = false;  // as they are, to the ports as they are

  plugins::Tap tap_;
  Glance glance_;
  SmallPicture small_;
  const InlineDisplay* display_;

  // Of the host; 0 without a map.
  LV2_URID links_ = 0, string_ = 0;
};

}  // namespace channelstrip::lv2
