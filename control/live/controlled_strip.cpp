#include "controlled_strip.h"

#include <algorithm>

namespace channelstrip::host {

void ControlledStrip::Changes::apply_to(Values& target) const {
  for (std::size_t i = 0; i < kParameterCount; ++i) {
    if (which[i]) target.of[i] = values.of[i];
  }
  if (links) target.links = values.links;
}

void ControlledStrip::Changes::append(Changes& older, const Changes& later) {
  later.apply_to(older.values);
  older.which |= later.which;
  older.links |= later.links;
  older.number = later.number;
}

ControlledStrip::ControlledStrip(const EntryPoints& entry_points, const ChannelLayout& layout,
                                 double sample_rate, const Values& values)
    : channels_(layout.labels.size()),
      sample_rate_(sample_rate),
      controlled_(values),
      values_(values),
      strip_(entry_points, layout, sample_rate, {}) {
  strip_.set(settings_of(values_, sample_rate_));
  strip_.reset();
  strip_.finish_searches();
}

void ControlledStrip::take_changes() {
  const Changes* changes = wanted_.read();
  if (!changes) return;
  changes->apply_to(values_);
  is_changed_ = true;
  // The control thread hears its own changes again, in their order among the events.
  Changes::append(heard_, *changes);
}

void ControlledStrip::take(const Event& event) {
  values_.of[event.parameter] = event.value;
  is_changed_ = true;
  heard_.values.of[event.parameter] = event.value;
  heard_.which.set(event.parameter);
}

void ControlledStrip::hand_over() {
  if (!is_changed_) return;
  strip_.set(settings_of(values_, sample_rate_));
  is_changed_ = false;
}

void ControlledStrip::report() {
  if (heard_.which.any()) {
    changed_.write(heard_, Changes::append);
    heard_.which.reset();
  }
  // What nobody reads yet is added to a window at a time.
  if (strip_.has_news() || !meters_.is_unread()) hand_over_meters();
}

void ControlledStrip::hand_over_meters() {
  const LiveMeters& meters = strip_.meters();
  if (meters.samples == 0) return;  // not a whole block
  meters_.write(meters, [](LiveMeters& older, const LiveMeters& later) { older.append(later); });
  strip_.clear_meters();
}

void ControlledStrip::process(const Call& call) {
  take_changes();
  if (call.events.empty()) {
    hand_over();
    strip_.process({call.inputs, call.key, call.outputs}, call.frames);
    return report();
  }
  // Where in the call a block begins that an event at `frame` takes effect in.
  const std::size_t first_block = (kBlock - strip_.phase()) % kBlock;
  const auto block_of = [first_block](std::size_t frame) {
    if (frame <= first_block) return first_block;
    return first_block + (frame - first_block + kBlock - 1) / kBlock * kBlock;
  };
  auto event = call.events.begin();
  std::array<const float*, kMostChannels> inputs{};
  std::array<float*, kMostChannels> outputs{};
  for (std::size_t at = 0; at < call.frames;) {
    while (event != call.events.end() && block_of(event->frame) <= at) take(*event++);
    std::size_t end = call.frames;
    if (event != call.events.end()) end = std::min(end, block_of(event->frame));
    hand_over();
    for (std::size_t c = 0; c < channels_; ++c) {
      inputs[c] = call.inputs[c] + at;
      outputs[c] = call.outputs[c] + at;
    }
    strip_.process(inputs.data(), call.key ? call.key + at : nullptr, outputs.data(), end - at);
    at = end;
  }
  while (event != call.events.end()) take(*event++);
  hand_over();
  report();
}

void ControlledStrip::process_many(std::span<ControlledStrip* const> strips,
                                   std::span<const Call> calls) {
  std::array<LiveStrip*, LiveStrip::kMostAtOnce> live;
  std::array<LiveStrip::Buffers, LiveStrip::kMostAtOnce> buffers;
  for (std::size_t first = 0; first < strips.size(); first += live.size()) {
    const std::size_t count = std::min(live.size(), strips.size() - first);
    for (std::size_t i = 0; i < count; ++i) {
      ControlledStrip& strip = *strips[first + i];
      const Call& call = calls[first + i];
      strip.take_changes();
      strip.hand_over();
      live[i] = &strip.strip_;
      buffers[i] = {call.inputs, call.key, call.outputs};
    }
    LiveStrip::process_many(std::span(live).first(count), std::span(buffers).first(count),
                            calls[first].frames);
    for (std::size_t i = 0; i < count; ++i) strips[first + i]->report();
  }
}

void ControlledStrip::reset() {
  take_changes();
  hand_over();
  hand_over_meters();
  strip_.reset();
}

void ControlledStrip::send(Changes& change) {
  change.number = ++number_;
  change.apply_to(controlled_);
  for (std::size_t i = 0; i < kParameterCount; ++i) {
    if (change.which[i]) sent_[i] = number_;
  }
  wanted_.write(change, Changes::append);
}

void ControlledStrip::set(std::size_t parameter, double value) {
  Changes change;
  change.which.set(parameter);
  change.values.of[parameter] = value;
  send(change);
}

void ControlledStrip::set(const Values& values) {
  Changes change;
  change.which.set();
  change.links = true;
  change.values = values;
  send(change);
}

const Values& ControlledStrip::values() {
  const Changes* changes = changed_.read();
  if (!changes) return controlled_;
  for (std::size_t i = 0; i < kParameterCount; ++i) {
    // What the audio thread hasn't taken yet holds over what it has heard. Only this thread sets
    // links.
    if (changes->which[i] && sent_[i] <= changes->number) {
      controlled_.of[i] = changes->values.of[i];
    }
  }
  return controlled_;
}

bool ControlledStrip::read_meters(LiveMeters& meters) {
  const LiveMeters* read = meters_.read();
  if (read) meters = *read;
  return read != nullptr;
}

}  // namespace channelstrip::host
