#include <algorithm>
#include <cmath>
#include <cstring>
#include <iterator>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "caller.h"

namespace channelstrip::test {

std::string text_of(channelstrip_strip* strip) {
  if (!strip) return "";
  const Settings settings(channelstrip_settings_new());
  demand(channelstrip_strip_get_settings(strip, settings.get()) == CHANNELSTRIP_OK,
         "a strip has no settings");
  return text_of(settings.get());
}

void Caller::make_strip(Bytes& bytes) {
  Slot& slot = slots_[bytes.byte() % kSlots];
  constexpr double kRates[] = {1000, 8000, 44100, 48000, 96000, 192000, 1000000};
  const std::uint8_t how = bytes.byte();
  const channelstrip_strip_options options{
      .format = any_format(bytes),
      .order = how % 32 == 0 ? static_cast<channelstrip_order>(bytes.word()) : how % 2,
      .sample_rate = how % 16 == 1 ? any_number(bytes) : kRates[how / 2 % std::size(kRates)],
      .settings = some_settings(bytes)};
  const auto* const given = how == 255 ? nullptr : &options;
  channelstrip_strip* made = nullptr;
  if (how % 4 != 3) {
    const bool ok = channelstrip_strip_new(given, &made) == CHANNELSTRIP_OK;
    demand(ok == (made != nullptr), "strip_new failed and made a strip");
    if (!ok) return;
    slot.owned.reset(made);
  } else {
    // Aligned to 64 or not, with a guard behind.
    const std::size_t needed = channelstrip_strip_size(), words = needed / 8;
    std::vector<std::uint64_t> memory(words + 16, 0x5a5a5a5a5a5a5a5a);
    void* place = memory.data();
    std::size_t room = memory.size() * 8;
    std::align(64, needed, place, room);
    const std::size_t size = needed - (how % 64 == 3 ? 1 : 0);
    const std::uint64_t* const end = static_cast<std::uint64_t*>(place) + words;
    const std::size_t behind = static_cast<std::size_t>(memory.data() + memory.size() - end);
    const bool ok = channelstrip_strip_init(place, size, given, &made) == CHANNELSTRIP_OK;
    demand(ok == (made != nullptr), "strip_init failed and made a strip");
    demand(std::count(end, end + behind, 0x5a5a5a5a5a5a5a5a) == static_cast<std::ptrdiff_t>(behind),
           "strip_init wrote behind its memory");
    if (!ok) return;
    slot.owned.reset();
    slot.memory = std::move(memory);
  }
  slot.strip = made;
  channelstrip_format info{};
  channelstrip_format_info(options.format, &info, sizeof info);
  slot.channels = info.channels;
}

// Fills the inputs. Outputs are apart, the inputs, others' inputs, or over the key.
channelstrip_block Caller::prepare(Bytes& bytes, Slot& slot, std::uint32_t frames) {
  StripBuffers& buffers = slot.buffers;
  for (std::size_t i = 0; i <= StripBuffers::kKey; ++i) fill(bytes, buffers.all(i));
  const std::uint8_t how = bytes.byte();
  for (std::size_t c = 0; c < StripBuffers::kChannels; ++c) {
    slot.in[c] = buffers.at(c);
    slot.out[c] = buffers.at(StripBuffers::kFirstOutput + c);
    if (how % 4 == 1) slot.out[c] = buffers.at(c);
    if (how % 4 == 2 && c < slot.channels) slot.out[c] = buffers.at(slot.channels - 1 - c);
  }
  if (how % 16 == 3) slot.out[0] = buffers.at(StripBuffers::kKey);
  if (how >= 250) slot.out[how % slot.channels] = nullptr;
  buffers.remember();
  return {.inputs = how == 249 ? nullptr : slot.in.data(),
          .key = how / 16 % 2 ? buffers.at(StripBuffers::kKey) : nullptr,
          .outputs = slot.out.data(),
          .frames = frames,
          .event_count = 0,
          .events = nullptr};
}

void Caller::check(Slot& slot, const channelstrip_block& block, channelstrip_status status) {
  demand(status == CHANNELSTRIP_OK || status == CHANNELSTRIP_INVALID, "a strange status");
  if (status != CHANNELSTRIP_OK || block.frames == 0) {
    demand(slot.buffers.differ_only_in({}, 0), "a call without frames wrote something");
    return;
  }
  const auto written = std::span(slot.out).first(slot.channels);
  demand(slot.buffers.differ_only_in(written, block.frames), "a call wrote where it must not");
  for (const float* output : written) {
    demand(are_finite(output, block.frames), "an output isn't finite");
  }
}

void Caller::process(Bytes& bytes) {
  Slot& slot = some_slot(bytes);
  if (!slot.strip) return;
  channelstrip_block block = prepare(bytes, slot, bytes.half() % (StripBuffers::kMostFrames + 1));
  const std::uint8_t how = bytes.byte();
  events_.clear();
  std::uint32_t frame = 0;
  for (int i = how % 8; i > 0; --i) {
    const AnyValue any = any_value(bytes);
    frame += bytes.byte() % (1 + block.frames / 4);
    events_.push_back(
        {how >= 250 ? bytes.half() : std::min(frame, block.frames), any.id, any.value});
  }
  block.events = how == 249 ? nullptr : events_.data();
  block.event_count = static_cast<std::uint32_t>(events_.size());
  const std::string before = text_of(slot.strip);
  const channelstrip_status status = channelstrip_strip_process(slot.strip, &block);
  check(slot, block, status);
  if (status != CHANNELSTRIP_OK) {
    demand(text_of(slot.strip) == before, "process failed and changed settings");
  }
}

void Caller::process_many(Bytes& bytes) {
  const std::uint32_t frames = bytes.half() % (StripBuffers::kMostFrames + 1);
  const std::uint8_t how = bytes.byte();
  const std::uint32_t whole = how % 2 ? frames / 16 * 16 : frames;
  std::vector<channelstrip_strip*> strips;
  std::vector<channelstrip_block> blocks;
  std::vector<Slot*> used;
  for (Slot& slot : slots_) {
    if (!slot.strip) continue;
    strips.push_back(slot.strip);
    blocks.push_back(prepare(bytes, slot, whole));
    used.push_back(&slot);
  }
  if (how >= 250 && !blocks.empty()) blocks.back().event_count = 1;
  const channelstrip_status status = channelstrip_strip_process_many(
      strips.data(), blocks.data(), static_cast<std::uint32_t>(strips.size()));
  for (std::size_t i = 0; i < used.size(); ++i) check(*used[i], blocks[i], status);
}

void Caller::set_strip(Bytes& bytes) {
  Slot& slot = some_slot(bytes);
  if (!slot.strip) return;
  const std::uint8_t how = bytes.byte();
  if (how % 3 == 0) {
    const channelstrip_settings* const settings = some_settings(bytes);
    const std::string before = text_of(slot.strip);
    const bool ok = channelstrip_strip_set_settings(slot.strip, settings) == CHANNELSTRIP_OK;
    demand(text_of(slot.strip) == (ok ? text_of(settings) : before), "a strip's settings differ");
  } else if (how % 3 == 1) {
    Settings& settings = settings_[bytes.byte() % kSlots];
    if (!settings) return;
    demand(channelstrip_strip_get_settings(slot.strip, settings.get()) == CHANNELSTRIP_OK,
           "a strip has no settings");
  } else {
    const AnyValue any = any_value(bytes);
    const std::string before = text_of(slot.strip);
    if (channelstrip_strip_set(slot.strip, any.id, any.value) != CHANNELSTRIP_OK) {
      demand(text_of(slot.strip) == before, "strip_set failed and changed something");
    }
  }
}

void Caller::reset_strip(Bytes& bytes) {
  Slot& slot = some_slot(bytes);
  const std::string before = text_of(slot.strip);
  demand((channelstrip_strip_reset(slot.strip) == CHANNELSTRIP_OK) == (slot.strip != nullptr),
         "a strip isn't reset");
  demand(text_of(slot.strip) == before, "a reset changes settings");
}

void Caller::read_meters(Bytes& bytes) {
  Slot& slot = some_slot(bytes);
  channelstrip_meters meters;
  std::memset(&meters, 0x11, sizeof meters);
  const channelstrip_meters before = meters;
  std::uint32_t has_news = 2;
  const std::size_t size = bytes.byte() % 8 == 0 ? bytes.byte() : sizeof meters;
  const auto status = channelstrip_strip_read_meters(slot.strip, &meters, size, &has_news);
  if (status != CHANNELSTRIP_OK || has_news != 1) {
    demand(std::memcmp(&meters, &before, sizeof meters) == 0, "meters without news change");
    return;
  }
  if (size < sizeof meters) return;
  demand(meters.frames > 0 && meters.frames % 16 == 0, "meters count parts of blocks");
  for (std::uint32_t c = 0; c < slot.channels; ++c) {
    for (const float x : {meters.input_peak[c], meters.output_peak[c], meters.greatest_gain[c],
                          meters.least_gain[c]}) {
      demand(x >= 0, "a meter isn't a magnitude");
    }
    demand(std::isfinite(meters.output_peak[c]), "an output peak isn't finite");
    demand(meters.compressor_gain[c] <= 0 && meters.expander_gain[c] <= 0, "a gain is above 0 dB");
  }
}

}  // namespace channelstrip::test
