// What this processor and its operating system tell of themselves. C11 and C++17, for x86-64 alone.
//
// Runs while the dynamic linker resolves symbols: calls nothing and reads no memory but its stack.

#ifndef CHANNELSTRIP_FRAME_PROCESSOR_H
#define CHANNELSTRIP_FRAME_PROCESSOR_H

#include <cpuid.h>

#include "processor_level.h"

static inline struct channelstrip_processor channelstrip_this_processor(void) {
  struct channelstrip_processor is;
  uint32_t last_leaf, eax, ebx, ecx, edx;
  __cpuid(0, last_leaf, ebx, is.leaf_0_ecx, edx);
  __cpuid(1, eax, ebx, is.leaf_1_ecx, edx);
  __cpuid(0x80000001, eax, ebx, is.leaf_80000001_ecx, edx);  // every x86-64 processor has it
  is.leaf_7_ebx = is.xcr0 = 0;
  if (last_leaf >= 7) __cpuid_count(7, 0, eax, is.leaf_7_ebx, ecx, edx);
  // OSXSAVE. Without it xgetbv isn't an instruction.
  if (channelstrip_has(is.leaf_1_ecx, channelstrip_bit(27))) {
    __asm__ volatile("xgetbv" : "=a"(is.xcr0), "=d"(edx) : "c"(0));
  }
  return is;
}

#endif
