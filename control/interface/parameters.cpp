#include "../parameters/parameters.h"

#include <array>
#include <cmath>
#include <vector>

#include "../parameters/value_text.h"
#include "objects.h"

namespace channelstrip::host {
namespace {

constexpr std::size_t kMostWords = 9;

// The words of every choice, which are literals and thus end in zeros.
using Words = std::array<std::array<const char*, kMostWords>, kParameterCount>;

Words all_words() {
  Words words{};
  for (std::size_t i = 0; i < kParameterCount; ++i) {
    const auto& of = parameters()[i].words;
    std::transform(of.begin(), of.end(), words[i].begin(), [](auto word) { return word.data(); });
  }
  return words;
}

std::uint32_t kind_of(const Parameter& p) {
  switch (p.kind) {
    case Kind::kNumber:
      return CHANNELSTRIP_NUMBER;
    case Kind::kWord:
      return CHANNELSTRIP_CHOICE;
    case Kind::kSwitch:
      return CHANNELSTRIP_SWITCH;
  }
  return CHANNELSTRIP_NUMBER;
}

// Calls `call` with the parameter of that id.
template <class Call>
channelstrip_status with_parameter(std::uint32_t id, Call call) {
  const auto index = index_of(id);
  if (!index) return CHANNELSTRIP_UNKNOWN;
  return guarded([&] { return call(parameters()[*index]); });
}

}  // namespace
}  // namespace channelstrip::host

using namespace channelstrip::host;

uint32_t channelstrip_parameter_count(void) {
  return static_cast<uint32_t>(kParameterCount);
}

channelstrip_status channelstrip_parameter_info(uint32_t index, channelstrip_parameter* info,
                                                size_t info_size) {
  static const Words words = all_words();
  if (index >= kParameterCount) return CHANNELSTRIP_UNKNOWN;
  const Parameter& p = parameters()[index];
  const bool is_logarithmic = p.scale == SliderScale::kLogarithmic;
  const channelstrip_parameter result{
      .id = p.id,
      .kind = kind_of(p),
      .scale = is_logarithmic ? uint32_t{CHANNELSTRIP_LOGARITHMIC} : uint32_t{CHANNELSTRIP_LINEAR},
      .in_automation = p.lasting ? 0u : 1u,
      .minimum = p.minimum,
      .maximum = p.maximum,
      .initial = p.initial,
      .step = p.step,
      .symbol = p.symbol,
      .name = p.name,
      .short_name = p.short_name,
      .group = kGroups[p.group].title.data(),
      .unit = p.unit.empty() ? "" : p.unit.data(),
      .meaning = p.meaning.data(),
      .word_count = static_cast<uint32_t>(p.words.size()),
      .words = words[index].data()};
  return hand_out(result, info, info_size);
}

channelstrip_status channelstrip_parameter_find(const char* symbol, uint32_t* id) {
  if (!symbol || !id) return CHANNELSTRIP_INVALID;
  const auto index = index_of(std::string_view(symbol));
  if (!index) return CHANNELSTRIP_UNKNOWN;
  *id = parameters()[*index].id;
  return CHANNELSTRIP_OK;
}

channelstrip_status channelstrip_value_to_text(uint32_t id, double value, char* text, size_t size,
                                               size_t* length) {
  if (!std::isfinite(value)) return CHANNELSTRIP_INVALID;
  return with_parameter(
      id, [&](const Parameter& p) { return hand_out(value_text(p, value), text, size, length); });
}

channelstrip_status channelstrip_text_to_value(uint32_t id, const char* text, double* value) {
  if (!text || !value) return CHANNELSTRIP_INVALID;
  return with_parameter(id, [&](const Parameter& p) -> channelstrip_status {
    const auto found = value_from(p, text);
    if (!found) return CHANNELSTRIP_UNKNOWN;
    *value = *found;
    return CHANNELSTRIP_OK;
  });
}

channelstrip_status channelstrip_value_to_position(uint32_t id, double value, double* position) {
  if (!std::isfinite(value) || !position) return CHANNELSTRIP_INVALID;
  return with_parameter(id, [&](const Parameter& p) {
    *position = position_of(p, value);
    return CHANNELSTRIP_OK;
  });
}

channelstrip_status channelstrip_position_to_value(uint32_t id, double position, double* value) {
  if (!std::isfinite(position) || !value) return CHANNELSTRIP_INVALID;
  return with_parameter(id, [&](const Parameter& p) {
    *value = value_at(p, position);
    return CHANNELSTRIP_OK;
  });
}
