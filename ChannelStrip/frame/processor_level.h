// Levels of x86-64 processors, as the System V ABI numbers them. C11 and C++17.
//
// The entry points of a library that holds several levels are those of channelstrip_level_of.

#ifndef CHANNELSTRIP_FRAME_PROCESSOR_LEVEL_H
#define CHANNELSTRIP_FRAME_PROCESSOR_LEVEL_H

#include <stdint.h>

// What cpuid and xgetbv tell. A leaf that the processor doesn't have is 0, and so is xcr0 where the
// operating system doesn't let programs read it.
struct channelstrip_processor {
  uint32_t leaf_1_ecx, leaf_7_ebx, leaf_80000001_ecx;
  uint32_t xcr0;        // the registers that the operating system saves
  uint32_t leaf_0_ecx;  // the last four letters of the maker's name
};

enum channelstrip_level {
  CHANNELSTRIP_X86_64 = 1,
  CHANNELSTRIP_X86_64_V3 = 3,
  CHANNELSTRIP_X86_64_V4 = 4
};

static inline uint32_t channelstrip_bit(int n) {
  return (uint32_t)1 << n;
}

static inline int channelstrip_has(uint32_t value, uint32_t bits) {
  return (value & bits) == bits;
}

// x86-64-v3 includes x86-64-v2. The registers are XMM and YMM.
static inline int channelstrip_is_v3(struct channelstrip_processor is) {
  const uint32_t leaf_1 = channelstrip_bit(0) |         // SSE3
                          channelstrip_bit(9) |         // SSSE3
                          channelstrip_bit(12) |        // FMA
                          channelstrip_bit(13) |        // CMPXCHG16B
                          channelstrip_bit(19) |        // SSE4.1
                          channelstrip_bit(20) |        // SSE4.2
                          channelstrip_bit(22) |        // MOVBE
                          channelstrip_bit(23) |        // POPCNT
                          channelstrip_bit(27) |        // OSXSAVE
                          channelstrip_bit(28) |        // AVX
                          channelstrip_bit(29);         // F16C
  const uint32_t leaf_7 = channelstrip_bit(3) |         // BMI1
                          channelstrip_bit(5) |         // AVX2
                          channelstrip_bit(8);          // BMI2
  const uint32_t leaf_80000001 = channelstrip_bit(0) |  // LAHF, SAHF
                                 channelstrip_bit(5);   // LZCNT
  const uint32_t registers = channelstrip_bit(1) | channelstrip_bit(2);
  return channelstrip_has(is.leaf_1_ecx, leaf_1) && channelstrip_has(is.leaf_7_ebx, leaf_7) &&
         channelstrip_has(is.leaf_80000001_ecx, leaf_80000001) &&
         channelstrip_has(is.xcr0, registers);
}

// What x86-64-v4 adds. The registers are the masks, the upper halves of ZMM0 to 15, and ZMM16
// to 31.
static inline int channelstrip_has_avx512(struct channelstrip_processor is) {
  const uint32_t leaf_7 = channelstrip_bit(16) |  // AVX512F
                          channelstrip_bit(17) |  // AVX512DQ
                          channelstrip_bit(28) |  // AVX512CD
                          channelstrip_bit(30) |  // AVX512BW
                          channelstrip_bit(31);   // AVX512VL
  const uint32_t registers = channelstrip_bit(5) | channelstrip_bit(6) | channelstrip_bit(7);
  return channelstrip_has(is.leaf_7_ebx, leaf_7) && channelstrip_has(is.xcr0, registers);
}

// Whether a single strip is quicker with the instructions of x86-64-v3, though many side by side
// are quicker with those of x86-64-v4. Intel's processors join two of their three vector ports for
// as long as an instruction of 512 bits is around, so that a few of them slow down all others.
static inline int channelstrip_joins_ports(struct channelstrip_processor is) {
  return is.leaf_0_ecx == 0x6c65746e;  // "ntel"
}

static inline enum channelstrip_level channelstrip_level_of(struct channelstrip_processor is) {
  if (!channelstrip_is_v3(is)) return CHANNELSTRIP_X86_64;
  return channelstrip_has_avx512(is) ? CHANNELSTRIP_X86_64_V4 : CHANNELSTRIP_X86_64_V3;
}

#endif
