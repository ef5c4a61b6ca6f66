// What stands behind the interface's types, and how its functions fail.

#pragma once

#include <channelstrip/channelstrip.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <exception>
#include <new>
#include <string_view>

#include "../live/controlled_strip.h"
#include "../parameters/values.h"

struct channelstrip_settings {
  channelstrip::host::Values values;
};

struct alignas(64) channelstrip_strip {
  channelstrip::host::ControlledStrip strip;
};

namespace channelstrip::host {

inline bool is_rate(double sample_rate) {
  return sample_rate >= 1000 && sample_rate <= 1000000;  // also false for NaN
}

// No exception leaves the library.
template <class Call>
channelstrip_status guarded(Call call) noexcept {
  try {
    return call();
  } catch (const std::bad_alloc&) {
    return CHANNELSTRIP_NO_MEMORY;
  } catch (const std::exception&) {
    return CHANNELSTRIP_INVALID;
  }
}

// Text for the caller, as the header says.
inline channelstrip_status hand_out(std::string_view from, char* text, std::size_t size,
                                    std::size_t* length) {
  if (!text && size > 0) return CHANNELSTRIP_INVALID;
  if (length) *length = from.size();
  if (size <= from.size()) return CHANNELSTRIP_TOO_SMALL;
  from.copy(text, from.size());
  text[from.size()] = '\0';
  return CHANNELSTRIP_OK;
}

// As much of a structure as the caller knows; what he knows beyond it becomes 0.
template <class Structure>
channelstrip_status hand_out(const Structure& from, Structure* to, std::size_t size) {
  if (!to || size == 0) return CHANNELSTRIP_INVALID;
  std::memcpy(to, &from, std::min(size, sizeof from));
  if (size > sizeof from)
    std::memset(reinterpret_cast<char*>(to) + sizeof from, 0, size - sizeof from);
  return CHANNELSTRIP_OK;
}

}  // namespace channelstrip::host
