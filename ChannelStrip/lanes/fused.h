// The fused multiply-add, for C11 and C++17.

#ifndef CHANNELSTRIP_LANES_FUSED_H
#define CHANNELSTRIP_LANES_FUSED_H

// a b + c in single precision, rounded once. On a target without the instruction the product is
// rounded too: a call to the C library's fmaf would be an import.
static inline float channelstrip_fused(float a, float b, float c) {
#if defined(__FMA__) || defined(__ARM_FEATURE_FMA) || defined(__FP_FAST_FMAF)
  return __builtin_fmaf(a, b, c);
#else
  return a * b + c;
#endif
}

#endif
