#include "instance.h"

#include <lv2/atom/atom.h>

#include <bit>
#include <cmath>
#include <limits>
#include <stdexcept>

#include "control_value.h"

namespace channelstrip::lv2 {
namespace {

constexpr std::size_t kEnabled = kPortParameterCount;  // its place among the controls

std::uint32_t channels_of(std::uint32_t format) {
  channelstrip_format info;
  if (channelstrip_format_info(format, &info, sizeof info) != CHANNELSTRIP_OK) {
    throw std::invalid_argument("no such format");
  }
  return info.channels;
}

}  // namespace

Instance::Instance(std::uint32_t format, double sample_rate, const LV2_URID_Map* map,
                   const InlineDisplay* display, const char* bundle)
    : format_(format),
      sample_rate_(sample_rate),
      ports_(channels_of(format)),
      settings_(plugins::new_settings()),
      held_(ports_.channels(), sample_rate),
      tap_(ports_.channels()),
      small_(format, sample_rate, glance_, bundle),
      display_(display) {
  for (std::size_t i = 0; i < kPortParameterCount; ++i) {
    ids_[i] = port_parameters()[i].id;
    glance_.set(i, static_cast<float>(port_parameters()[i].initial));
  }
  glance_.set(kEnabled, 1);
  channelstrip_parameter_find("bypass", &ids_[kEnabled]);
  seen_.fill(std::numeric_limits<float>::quiet_NaN());
  start();
  if (!strip_) throw std::invalid_argument("no strip has this sample rate");
  if (map) {
    links_ = map->map(map->handle, kLinksUri);
    string_ = map->map(map->handle, LV2_ATOM__String);
  }
}

void Instance::connect(std::uint32_t port, void* data) {
  const std::uint32_t channels = ports_.channels();
  if (port < channels) {
    inputs_[port] = static_cast<const float*>(data);
  } else if (port < ports_.key()) {
    outputs_[port - channels] = static_cast<float*>(data);
  } else if (port == ports_.key()) {
    key_ = static_cast<const float*>(data);
  } else if (port == ports_.enabled()) {
    controls_[kEnabled] = static_cast<const float*>(data);
  } else if (port == ports_.latency()) {
    latency_ = static_cast<float*>(data);
    are_meters_written_ = false;
  } else if (port < ports_.first_parameter()) {
    meters_[port - ports_.first_meter()] = static_cast<float*>(data);
    are_meters_written_ = false;
  } else if (port - ports_.first_parameter() < kPortParameterCount) {
    controls_[port - ports_.first_parameter()] = static_cast<const float*>(data);
    is_row_known_ = false;
  }
}

// Whether all are what was seen. Many hosts keep a plugin's values side by side: then one
// comparison tells, where looking at one after the other takes a tenth of a short call of a mono
// strip.
bool Instance::are_controls_known() {
  if (!is_row_known_) {
    are_in_a_row_ = controls_[0] != nullptr;
    for (std::size_t i = 0; i < kPortParameterCount; ++i) {
      are_in_a_row_ = are_in_a_row_ && controls_[i] == controls_[0] + i;
    }
    is_row_known_ = true;
  }
  if (!are_in_a_row_ || !controls_[kEnabled] || *controls_[kEnabled] != seen_[kEnabled]) {
    return false;
  }
  std::uint32_t difference = 0;
  for (std::size_t i = 0; i < kPortParameterCount; ++i) {
    difference |=
        std::bit_cast<std::uint32_t>(controls_[0][i]) ^ std::bit_cast<std::uint32_t>(seen_[i]);
  }
  return difference == 0;
}

// In the same memory, so that nothing is allocated.
void Instance::start() {
  strip_ = place_.start({.format = format_,
                         .order = CHANNELSTRIP_ORDER_WAV,
                         .sample_rate = sample_rate_,
                         .settings = settings_.get()});
}

// Looks at the control ports; what has changed goes into the settings and the events, of which it
// returns the number. A value that isn't finite changes nothing.
std::uint32_t Instance::take_changes() {
  if (are_controls_known()) return 0;
  std::uint32_t count = 0;
  for (std::size_t i = 0; i < kControlCount; ++i) {
    if (!controls_[i]) continue;
    const float value = *controls_[i];
    if (value == seen_[i] || !std::isfinite(value)) continue;
    seen_[i] = value;
    const double bypass = value > 0 ? 0 : 1;
    const double meant = i == kEnabled ? bypass : decimal_of(value);
    channelstrip_settings_set(settings_.get(), ids_[i], meant);
    glance_.set(i, value);
    events_[count++] = {.frame = 0, .id = ids_[i], .value = meant};
  }
  return count;
}

void Instance::activate() {
  take_changes();
  start();
  is_fresh_ = true;
  has_new_links_ = false;
}

// Hosts call it without frames to learn the latency.
void Instance::run(std::uint32_t frames) {
  if (frames > 0) process(frames);
  const bool are_new = held_.advance(strip_, frames);
  if (are_new || !are_meters_written_) write_meters();
  if (!are_new) return;
  tap_.see_meters(held_.read());
  glance_.set_reductions(held_.compressor_reduction(), held_.expander_reduction());
  if (display_ && glance_.has_news()) display_->queue_draw(display_->handle);
}

void Instance::process(std::uint32_t frames) {
  std::uint32_t changes = take_changes();
  if (is_fresh_) {
    // A host may connect its controls after the activation; they are no changes yet.
    if (changes > 0 || has_new_links_) start();
    changes = 0;
  } else if (has_new_links_) {
    channelstrip_strip_set_settings(strip_, settings_.get());
    changes = 0;
  }
  is_fresh_ = has_new_links_ = false;
  const channelstrip_block block{.inputs = inputs_,
                                 .key = key_,
                                 .outputs = outputs_,
                                 .frames = frames,
                                 .event_count = changes,
                                 .events = events_.data()};
  tap_.see_key(key_ != nullptr);
  tap_.see_inputs(inputs_, frames);
  channelstrip_strip_process(strip_, &block);
  tap_.see_outputs(outputs_, frames);
}

void Instance::write_meters() {
  are_meters_written_ = true;
  if (latency_) *latency_ = 0;
  const auto show = [&](std::uint32_t meter, float level) {
    if (meters_[meter]) *meters_[meter] = level;
  };
  for (std::uint32_t c = 0; c < ports_.channels(); ++c) {
    show(ports_.input_peak(c), held_.input_peak(c));
    show(ports_.output_peak(c), held_.output_peak(c));
  }
  show(ports_.compressor_reduction(), held_.compressor_reduction());
  show(ports_.expander_reduction(), held_.expander_reduction());
}

}  // namespace channelstrip::lv2
