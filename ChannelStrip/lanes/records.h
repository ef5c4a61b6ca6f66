// The dynamics records in lanes: four neighbouring words of every lane's record.

#pragma once

#include "../dynamics/dyn_records.h"
#include "../frame/context.h"
#include "transpose.h"

namespace channelstrip {

// The place of a field among the words of its record.
#define CHANNELSTRIP_WORD_OF(Record, field) static_cast<int>(__builtin_offsetof(Record, field) / 4)

// Integers are moved as if they were floats, bit by bit.
template <typename Record>
CHANNELSTRIP_INLINE const float* word_at(const Record& record, int word) {
  return reinterpret_cast<const float*>(&record) + word;
}
template <typename Record>
CHANNELSTRIP_INLINE float* word_at(Record& record, int word) {
  return reinterpret_cast<float*>(&record) + word;
}

// Four words, from `word` on, of the coefficients of strip_of(lane).
template <typename Layout, typename V, typename StripOf>
CHANNELSTRIP_INLINE void load_coefs(V (&four)[4], const SChannelStrip_Alg_Context* const* strips,
                                    StripOf strip_of, int word) {
  if constexpr (Layout::kStrips == 1) {
    load_shared_columns(four, word_at(*strips[0]->dynCoefs, word));
  } else {
    load_columns(four, [&](int lane) { return word_at(*strips[strip_of(lane)]->dynCoefs, word); });
  }
}

// The last four: keyEnable, keyListen, inputMeterGain, bypass.
template <typename Layout, typename V>
CHANNELSTRIP_INLINE void load_switches(V (&four)[4],
                                       const SChannelStrip_Alg_Context* const* strips) {
  load_coefs<Layout>(
      four, strips, [](int lane) { return Layout::strip_of_channel_lane(lane); },
      CHANNELSTRIP_WORD_OF(Dyn_SCoefsBlock, keyEnable));
}

}  // namespace channelstrip
