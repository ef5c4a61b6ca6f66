// The eleven entry points, one per stem format. C11 and C++17.
//
// Each processes a range of instances in array order: begin points to the first element of an
// array of context pointers, end one past its last element. An empty range does nothing.
//
// Bounded work, no allocation, no lock, no system call: made for a realtime thread. Calls may run
// at once on several threads as long as no instance is in two of them.

#ifndef CHANNELSTRIP_FRAME_ENTRY_POINTS_H
#define CHANNELSTRIP_FRAME_ENTRY_POINTS_H

#include "context.h"

#ifdef __cplusplus
extern "C" {
#endif

// The type of every entry point, for hosts that resolve them by name.
typedef void AlgEntry_16_Stem(const SChannelStrip_Alg_Context* const* begin, const void* end);

#pragma GCC visibility push(default)

//                                         channels, link groups
AlgEntry_16_Stem AlgEntry_16_Stem_Mono;    // 1, 1
AlgEntry_16_Stem AlgEntry_16_Stem_Stereo;  // 2, 1
AlgEntry_16_Stem AlgEntry_16_Stem_LCR;     // 3, 2
AlgEntry_16_Stem AlgEntry_16_Stem_Quad;    // 4, 2
AlgEntry_16_Stem AlgEntry_16_Stem_LCRS;    // 4, 3
AlgEntry_16_Stem AlgEntry_16_Stem_5_0;     // 5, 3
AlgEntry_16_Stem AlgEntry_16_Stem_5_1;     // 6, 4
AlgEntry_16_Stem AlgEntry_16_Stem_6_0;     // 6, 4, the same processor as 5.1
AlgEntry_16_Stem AlgEntry_16_Stem_6_1;     // 7, 5
AlgEntry_16_Stem AlgEntry_16_Stem_7_0;     // 7, 4
AlgEntry_16_Stem AlgEntry_16_Stem_7_1;     // 8, 5

#pragma GCC visibility pop

#ifdef __cplusplus
}
#endif

#endif
