#include "instance.h"

#include <algorithm>

#include "formats.h"

namespace channelstrip::clap {
namespace {

// A stereo track is what most hosts insert a plugin on; they select another format if it isn't.
std::uint32_t usual_format() {
  std::uint32_t format = 0;
  channelstrip_format_find("Stereo", &format);
  return format;
}

}  // namespace

Instance::Instance(const clap_host_t* host)
    : host_(host),
      format_(usual_format()),
      channels_(channels_of(format_)),
      settings_(plugins::new_settings()),
      tap_(channels_),
      gui_(*this, host) {
  for (std::size_t m = 0; m < kMeterCount; ++m) {
    shown_[m] = static_cast<float>(least_of(static_cast<Meter>(m)));
  }
  is_parameter(0);  // finds the ids, here and not on the audio thread
}

bool Instance::select(std::uint32_t format) {
  if (strip_ || format >= channelstrip_format_count()) return false;
  format_ = format;
  channels_ = channels_of(format);
  tap_.change(channels_);
  return true;
}

bool Instance::activate(double sample_rate) {
  strip_ = place_.start({.format = format_,
                         .order = CHANNELSTRIP_ORDER_WAV,
                         .sample_rate = sample_rate,
                         .settings = settings_.get()});
  sample_rate_ = sample_rate;
  held_ = {channels_, sample_rate};
  is_fresh_ = true;
  return strip_ != nullptr;
}

void Instance::deactivate() {
  update_settings();
  strip_ = nullptr;
}

// What the audio thread's events have set.
void Instance::update_settings() {
  if (strip_) channelstrip_strip_get_settings(strip_, settings_.get());
}

// What a band of a Q of 10 at 20 Hz takes to fall by 120 dB: its poles fall by 1/e in Q / (pi f).
// Sharper ones ring longer; process() asks to go on while it is heard.
std::uint32_t Instance::tail() const {
  return static_cast<std::uint32_t>(2.2 * sample_rate_);
}

std::optional<double> Instance::value(clap_id id) {
  if (const auto meter = meter_of(id)) {
    return static_cast<double>(shown_[*meter].load(std::memory_order_relaxed));
  }
  update_settings();
  double value = 0;
  if (channelstrip_settings_get(settings_.get(), id, &value) != CHANNELSTRIP_OK) {
    return std::nullopt;
  }
  return value;
}

}  // namespace channelstrip::clap
