// The fused multiply-add, for C11 and C++17.

#ifndef CHANNELSTRIP_LANES_FUSED_H
#define CHANNELSTRIP_LANES_FUSED_H

#include <stdint.h>

// What a fused step is made of on this target: its own instruction, or doubles. A program that
// defines CHANNELSTRIP_UNFUSED, as the build option CHANNELSTRIP_EXACT_FUSED=OFF does for the
// library, has steps rounded twice on targets without the instruction: quicker, other last bits.
#if defined(__FMA__) || defined(__ARM_FEATURE_FMA) || defined(__FP_FAST_FMAF)
#define CHANNELSTRIP_FUSED_BY_INSTRUCTION
#elif !defined(CHANNELSTRIP_UNFUSED)
#define CHANNELSTRIP_FUSED_BY_DOUBLES
#endif

// a b + c in single precision, rounded once. A call to the C library's fmaf would be an import.
//
// In doubles the product is exact. The sum is rounded to odd: what isn't exact goes to whichever of
// its two neighbours has an odd last bit. No such double lies half way between floats, denormal
// ones included, so that rounding it to single gives what rounding the exact sum would have given.
static inline float channelstrip_fused(float a, float b, float c) {
#if defined(CHANNELSTRIP_FUSED_BY_INSTRUCTION)
  return __builtin_fmaf(a, b, c);
#elif defined(CHANNELSTRIP_FUSED_BY_DOUBLES)
  const double product = (double)a * (double)b, addend = (double)c;
  double sum = product + addend;
  // What the sum lacks, exactly: products and floats are multiples of 2^-298, far above the least
  // double. Times the sum it is positive where the sum was rounded towards zero, negative where it
  // was rounded away from it. It is a NaN where the sum isn't finite, which both comparisons deny.
  const double added = sum - product;
  const double short_of = ((product - (sum - added)) + (addend - added)) * sum;
  uint64_t bits;
  __builtin_memcpy(&bits, &sum, sizeof bits);
  bits = (bits - (short_of < 0.0)) | (uint64_t)((short_of < 0.0) | (short_of > 0.0));
  __builtin_memcpy(&sum, &bits, sizeof sum);
  return (float)sum;
#else
  return a * b + c;
#endif
}

#endif
