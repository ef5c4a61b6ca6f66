#include <ChannelStrip/frame/entry_points.h>

#include <array>
#include <cmath>
#include <memory>
#include <type_traits>

#include "layouts.h"
#include "objects.h"

namespace channelstrip::host {
namespace {

constexpr EntryPoints kEntryPoints{
    AlgEntry_16_Stem_Mono, AlgEntry_16_Stem_Stereo, AlgEntry_16_Stem_LCR, AlgEntry_16_Stem_Quad,
    AlgEntry_16_Stem_LCRS, AlgEntry_16_Stem_5_0,    AlgEntry_16_Stem_5_1, AlgEntry_16_Stem_6_0,
    AlgEntry_16_Stem_6_1,  AlgEntry_16_Stem_7_0,    AlgEntry_16_Stem_7_1};

constexpr std::size_t kMostEvents = 1024;
using Events = std::array<ControlledStrip::Event, kMostEvents>;

// A strip in the caller's memory ends by being forgotten.
static_assert(std::is_trivially_destructible_v<channelstrip_strip>);

template <class Place>
channelstrip_status make(const channelstrip_strip_options* options, channelstrip_strip** strip,
                         Place place) {
  if (!options || !strip || !is_rate(options->sample_rate)) return CHANNELSTRIP_INVALID;
  return guarded([&]() -> channelstrip_status {
    const ChannelLayout* layout = layout_of(options->format, options->order);
    if (!layout) return CHANNELSTRIP_UNKNOWN;
    const Values values = options->settings ? options->settings->values : Values();
    void* memory = place();
    if (!memory) return CHANNELSTRIP_NO_MEMORY;
    *strip = new (memory)
        channelstrip_strip{ControlledStrip(kEntryPoints, *layout, options->sample_rate, values)};
    return CHANNELSTRIP_OK;
  });
}

bool are_buffers(const channelstrip_block& block, std::size_t channels) {
  if (!block.inputs || !block.outputs) return false;
  for (std::size_t c = 0; c < channels; ++c) {
    if (!block.inputs[c] || !block.outputs[c]) return false;
  }
  return true;
}

bool translate(const channelstrip_block& block, Events& events) {
  if (block.event_count > kMostEvents || (block.event_count > 0 && !block.events)) return false;
  std::uint32_t last = 0;
  for (std::size_t i = 0; i < block.event_count; ++i) {
    const channelstrip_event& event = block.events[i];
    const auto index = index_of(event.id);
    if (!index || !std::isfinite(event.value) || event.frame < last || event.frame > block.frames) {
      return false;
    }
    last = event.frame;
    events[i] = {event.frame, *index, nearest_value(parameters()[*index], event.value)};
  }
  return true;
}

}  // namespace
}  // namespace channelstrip::host

using namespace channelstrip::host;

channelstrip_status channelstrip_strip_new(const channelstrip_strip_options* options,
                                           channelstrip_strip** strip) {
  void* memory = nullptr;
  const channelstrip_status status = make(options, strip, [&memory] {
    memory = ::operator new (sizeof(channelstrip_strip),
                             std::align_val_t{alignof(channelstrip_strip)}, std::nothrow);
    return memory;
  });
  if (status != CHANNELSTRIP_OK) {
    ::operator delete (memory, std::align_val_t{alignof(channelstrip_strip)});
  }
  return status;
}

void channelstrip_strip_free(channelstrip_strip* strip) {
  ::operator delete (strip, std::align_val_t{alignof(channelstrip_strip)});
}

size_t channelstrip_strip_size(void) {
  return sizeof(channelstrip_strip);
}

channelstrip_status channelstrip_strip_init(void* memory, size_t size,
                                            const channelstrip_strip_options* options,
                                            channelstrip_strip** strip) {
  const bool is_aligned =
      reinterpret_cast<std::uintptr_t>(memory) % alignof(channelstrip_strip) == 0;
  if (!memory || !is_aligned) return CHANNELSTRIP_INVALID;
  if (size < sizeof(channelstrip_strip)) return CHANNELSTRIP_TOO_SMALL;
  return make(options, strip, [memory] { return memory; });
}

channelstrip_status channelstrip_strip_process(channelstrip_strip* strip,
                                               const channelstrip_block* block) {
  if (!strip || !block) return CHANNELSTRIP_INVALID;
  if (block->frames > 0 && !are_buffers(*block, strip->strip.channels())) {
    return CHANNELSTRIP_INVALID;
  }
  Events events;  // not initialised: only those that are there are read
  if (!translate(*block, events)) return CHANNELSTRIP_INVALID;
  strip->strip.process({.inputs = block->inputs,
                        .key = block->key,
                        .outputs = block->outputs,
                        .frames = block->frames,
                        .events = std::span(events).first(block->event_count)});
  return CHANNELSTRIP_OK;
}

channelstrip_status channelstrip_strip_process_many(channelstrip_strip* const* strips,
                                                    const channelstrip_block* blocks,
                                                    uint32_t count) {
  if (count > 0 && (!strips || !blocks)) return CHANNELSTRIP_INVALID;
  for (std::size_t i = 0; i < count; ++i) {
    const channelstrip_block& block = blocks[i];
    if (!strips[i] || block.event_count > 0 || block.frames != blocks[0].frames) {
      return CHANNELSTRIP_INVALID;
    }
    if (block.frames > 0 && !are_buffers(block, strips[i]->strip.channels())) {
      return CHANNELSTRIP_INVALID;
    }
  }
  std::array<ControlledStrip*, LiveStrip::kMostAtOnce> some;
  std::array<ControlledStrip::Call, LiveStrip::kMostAtOnce> calls;
  for (std::size_t at = 0; at < count;) {
    // Neighbours of one format.
    AlgEntry_16_Stem* const entry_point = strips[at]->strip.entry_point();
    std::size_t part = 0;
    for (; at < count && part < some.size(); ++at, ++part) {
      const channelstrip_block& block = blocks[at];
      if (strips[at]->strip.entry_point() != entry_point) break;
      some[part] = &strips[at]->strip;
      calls[part] = {block.inputs, block.key, block.outputs, block.frames, {}};
    }
    ControlledStrip::process_many(std::span(some).first(part), std::span(calls).first(part));
  }
  return CHANNELSTRIP_OK;
}

channelstrip_status channelstrip_strip_reset(channelstrip_strip* strip) {
  if (!strip) return CHANNELSTRIP_INVALID;
  strip->strip.reset();
  return CHANNELSTRIP_OK;
}

channelstrip_status channelstrip_strip_set(channelstrip_strip* strip, uint32_t id, double value) {
  if (!strip || !std::isfinite(value)) return CHANNELSTRIP_INVALID;
  const auto index = index_of(id);
  if (!index) return CHANNELSTRIP_UNKNOWN;
  strip->strip.set(*index, nearest_value(parameters()[*index], value));
  return CHANNELSTRIP_OK;
}

channelstrip_status channelstrip_strip_set_settings(channelstrip_strip* strip,
                                                    const channelstrip_settings* settings) {
  if (!strip || !settings) return CHANNELSTRIP_INVALID;
  strip->strip.set(settings->values);
  return CHANNELSTRIP_OK;
}

channelstrip_status channelstrip_strip_get_settings(channelstrip_strip* strip,
                                                    channelstrip_settings* settings) {
  if (!strip || !settings) return CHANNELSTRIP_INVALID;
  settings->values = strip->strip.values();
  return CHANNELSTRIP_OK;
}

channelstrip_status channelstrip_strip_read_meters(channelstrip_strip* strip,
                                                   channelstrip_meters* meters, size_t meters_size,
                                                   uint32_t* has_news) {
  if (!strip || !meters || meters_size == 0) return CHANNELSTRIP_INVALID;
  LiveMeters read;
  const bool is_new = strip->strip.read_meters(read);
  if (has_news) *has_news = is_new ? 1 : 0;
  if (!is_new) return CHANNELSTRIP_OK;
  channelstrip_meters result{};
  const auto copy = [](const auto& from, auto& to) { std::copy(from.begin(), from.end(), to); };
  result.frames = read.samples;
  result.not_finite = read.not_finite;
  copy(read.overs, result.overs);
  copy(read.input_peak, result.input_peak);
  copy(read.output_peak, result.output_peak);
  copy(read.greatest_gain, result.greatest_gain);
  copy(read.least_gain, result.least_gain);
  result.compressor_reduction = read.compressor_reduction;
  result.expander_reduction = read.expander_reduction;
  copy(read.compressor_gain, result.compressor_gain);
  copy(read.expander_gain, result.expander_gain);
  copy(read.detector_level, result.detector_level);
  return hand_out(result, meters, meters_size);
}
