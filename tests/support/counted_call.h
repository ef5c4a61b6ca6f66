// A call of the library that script/callgrind.py counts.

#pragma once

#include <ChannelStrip/frame/entry_points.h>

extern "C" {

// What is counted are the instructions from this function's first to its last.
[[gnu::noinline]] inline void counted_call(AlgEntry_16_Stem* entry,
                                           const SChannelStrip_Alg_Context* const* begin,
                                           const void* end) {
  entry(begin, end);
  asm volatile("");  // keeps the call from becoming a tail jump, which would not return here
}

}  // extern "C"
