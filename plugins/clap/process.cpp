// What an instance does on the audio thread.

#include <clap/events.h>

#include <algorithm>
#include <cmath>

#include "formats.h"
#include "instance.h"

namespace channelstrip::clap {
namespace {

// A parameter's change, or nothing for an event that is something else, names no parameter or
// isn't a number. Its frame is the call's.
std::optional<channelstrip_event> change_of(const clap_event_header_t* header) {
  if (!header || header->space_id != CLAP_CORE_EVENT_SPACE_ID ||
      header->type != CLAP_EVENT_PARAM_VALUE) {
    return std::nullopt;
  }
  const auto& event = *reinterpret_cast<const clap_event_param_value_t*>(header);
  if (!is_parameter(event.param_id) || !std::isfinite(event.value)) return std::nullopt;
  return channelstrip_event{.frame = header->time, .id = event.param_id, .value = event.value};
}

// The strip looks at the channels' pointers itself.
bool has_channels(const clap_audio_buffer_t& buffer, std::uint32_t channels) {
  return buffer.data32 && buffer.channel_count == channels;
}

}  // namespace

void Instance::reset() {
  channelstrip_strip_reset(strip_);
  is_fresh_ = true;
}

std::optional<Instance::Audio> Instance::audio_of(const clap_process_t& call) const {
  if (call.audio_inputs_count <= kMainPort || call.audio_outputs_count <= kMainPort) {
    return std::nullopt;
  }
  const clap_audio_buffer_t& input = call.audio_inputs[kMainPort];
  const clap_audio_buffer_t& output = call.audio_outputs[kMainPort];
  if (!has_channels(input, channels_) || !has_channels(output, channels_)) return std::nullopt;
  const float* key = nullptr;
  if (call.audio_inputs_count > kKeyPort && has_channels(call.audio_inputs[kKeyPort], 1)) {
    key = call.audio_inputs[kKeyPort].data32[0];
  }
  return Audio{input.data32, key, output.data32};
}

// Processes a part of the call, with the events that wait; false if a channel has no buffer.
bool Instance::run(const Audio& audio, std::uint32_t begin, std::uint32_t end) {
  channelstrip_block block{.inputs = audio.inputs,
                           .key = audio.key,
                           .outputs = audio.outputs,
                           .frames = end - begin,
                           .event_count = event_count_,
                           .events = events_.data()};
  std::array<const float*, CHANNELSTRIP_MOST_CHANNELS> inputs;
  std::array<float*, CHANNELSTRIP_MOST_CHANNELS> outputs;
  if (begin > 0) {
    for (std::uint32_t c = 0; c < channels_; ++c) {
      inputs[c] = audio.inputs[c] + begin;
      outputs[c] = audio.outputs[c] + begin;
    }
    block.inputs = inputs.data();
    block.outputs = outputs.data();
    if (audio.key) block.key = audio.key + begin;
  }
  event_count_ = 0;
  return channelstrip_strip_process(strip_, &block) == CHANNELSTRIP_OK;
}

// Before the first frame events are no changes: the strip starts on them, without a glide.
void Instance::start_on(const clap_input_events_t& events) {
  const std::uint32_t count = events.size(&events);
  for (std::uint32_t i = 0; i < count; ++i) {
    const clap_event_header_t* header = events.get(&events, i);
    if (header && header->time > 0) break;
    if (const auto change = change_of(header)) events_[event_count_++] = *change;
    if (event_count_ == events_.size()) run({}, 0, 0);
  }
  run({}, 0, 0);
  channelstrip_strip_reset(strip_);
}

clap_process_status Instance::process(const clap_process_t& call) {
  const auto audio = audio_of(call);
  if (!strip_ || !audio) return CLAP_PROCESS_ERROR;
  take_edits(call.out_events);
  if (call.in_events && is_fresh_) start_on(*call.in_events);
  tap_.see_key(audio->key != nullptr);
  tap_.see_inputs(audio->inputs, call.frames_count);
  std::uint32_t begin = 0, last = 0;
  const std::uint32_t count = call.in_events ? call.in_events->size(call.in_events) : 0;
  for (std::uint32_t i = 0; i < count; ++i) {
    auto change = change_of(call.in_events->get(call.in_events, i));
    if (!change) continue;
    last = std::clamp(change->frame, last, std::max(last, call.frames_count));
    if (event_count_ == events_.size()) {
      if (!run(*audio, begin, last)) return CLAP_PROCESS_ERROR;
      begin = last;
    }
    change->frame = last - begin;
    events_[event_count_++] = *change;
  }
  if (!run(*audio, begin, call.frames_count)) return CLAP_PROCESS_ERROR;
  tap_.see_outputs(audio->outputs, call.frames_count);
  if (call.frames_count > 0) is_fresh_ = false;
  call.audio_outputs[kMainPort].constant_mask = 0;
  if (held_.advance(strip_, call.frames_count)) {
    tap_.see_meters(held_.read());
    show_meters(call.out_events);
  }
  return CLAP_PROCESS_CONTINUE_IF_NOT_QUIET;
}

void Instance::flush(const clap_input_events_t* events, const clap_output_events_t* out) {
  take_edits(out);
  const std::uint32_t count = events ? events->size(events) : 0;
  for (std::uint32_t i = 0; i < count; ++i) {
    auto change = change_of(events->get(events, i));
    if (!change) continue;
    if (!strip_) {
      channelstrip_settings_set(settings_.get(), change->id, change->value);
      continue;
    }
    change->frame = 0;
    events_[event_count_++] = *change;
    if (event_count_ == events_.size()) run({}, 0, 0);
  }
  if (!strip_) return;
  run({}, 0, 0);
  if (is_fresh_) channelstrip_strip_reset(strip_);
}

namespace {

void push_gesture(const clap_output_events_t& events, const Edit& edit) {
  const clap_event_param_gesture_t event{.header = {.size = sizeof event,
                                                    .time = 0,
                                                    .space_id = CLAP_CORE_EVENT_SPACE_ID,
                                                    .type = edit.type,
                                                    .flags = CLAP_EVENT_IS_LIVE},
                                         .param_id = edit.id};
  events.try_push(&events, &event.header);
}

void push_value(const clap_output_events_t& events, clap_id id, double value, std::uint32_t flags) {
  const clap_event_param_value_t event{.header = {.size = sizeof event,
                                                  .time = 0,
                                                  .space_id = CLAP_CORE_EVENT_SPACE_ID,
                                                  .type = CLAP_EVENT_PARAM_VALUE,
                                                  .flags = flags},
                                       .param_id = id,
                                       .cookie = nullptr,
                                       .note_id = -1,
                                       .port_index = -1,
                                       .channel = -1,
                                       .key = -1,
                                       .value = value};
  events.try_push(&events, &event.header);
}

}  // namespace

// What was changed in the window: to the host, and to the strip before the call's first frame.
void Instance::take_edits(const clap_output_events_t* events) {
  edits_.take(
      [&](const Edit& edit) {
        if (edit.type != CLAP_EVENT_PARAM_VALUE) {
          if (events) push_gesture(*events, edit);
          return;
        }
        if (events) push_value(*events, edit.id, edit.value, CLAP_EVENT_IS_LIVE);
        if (!strip_) {
          channelstrip_settings_set(settings_.get(), edit.id, edit.value);
          return;
        }
        events_[event_count_++] = {.frame = 0, .id = edit.id, .value = edit.value};
        if (event_count_ == events_.size()) run({}, 0, 0);
      },
      [&] {
        if (strip_) run({}, 0, 0);
      });
}

void Instance::show_meters(const clap_output_events_t* events) {
  std::array<float, kMeterCount> levels;
  levels[kInputPeak] = levels[kOutputPeak] = static_cast<float>(plugins::kLeastPeak);
  for (std::uint32_t c = 0; c < channels_; ++c) {
    levels[kInputPeak] = std::max(levels[kInputPeak], held_.input_peak(c));
    levels[kOutputPeak] = std::max(levels[kOutputPeak], held_.output_peak(c));
  }
  levels[kCompressorReduction] = held_.compressor_reduction();
  levels[kExpanderReduction] = held_.expander_reduction();
  for (std::size_t m = 0; m < kMeterCount; ++m) {
    const float shown = std::round(10 * levels[m]) / 10;
    if (shown_[m].load(std::memory_order_relaxed) == shown) continue;
    shown_[m].store(shown, std::memory_order_relaxed);
    if (!events) continue;
    push_value(*events, id_of(static_cast<Meter>(m)), static_cast<double>(shown),
               CLAP_EVENT_DONT_RECORD);
  }
}

}  // namespace channelstrip::clap
