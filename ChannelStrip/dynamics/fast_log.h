// Fast logarithm and power, and their decibel forms. C11 and C++17, single precision throughout.
//
// Pure functions over three constant tables: a few bit operations, two table reads and one fused
// multiply-add each. Bit for bit what the library computes with, provided the caller compiles with
// -ffp-contract=off.

#ifndef CHANNELSTRIP_DYNAMICS_FAST_LOG_H
#define CHANNELSTRIP_DYNAMICS_FAST_LOG_H

#include <stdint.h>

#include "../lanes/fused.h"
#include "fast_log_tables.h"

#ifdef __cplusplus
extern "C" {
#endif

static inline uint32_t channelstrip_bits_of(float x) {
  uint32_t bits;
  __builtin_memcpy(&bits, &x, sizeof bits);
  return bits;
}

static inline float channelstrip_float_of(uint32_t bits) {
  float x;
  __builtin_memcpy(&x, &bits, sizeof x);
  return x;
}

// log2 x of a normal x > 0, within 3e-6 from 2^-32 to 2^32 and 8.5e-6 anywhere: the table at the
// top nine mantissa bits, interpolated by the fourteen below. The sign is ignored. A denormal is
// read as 1.m x 2^-127 and gives -127 to -126; infinity gives 128.
static inline float FastLog2(float x) {
  const uint32_t bits = channelstrip_bits_of(x);
  const uint32_t i = (bits >> 14) & 511;
  const float fraction = (float)(bits & 0x3FFF) * 0x1p-14f;
  const float exponent = (float)((int32_t)((bits >> 23) & 255) - 127);
  return channelstrip_fused(gmLog2LUT[i + 1] - gmLog2LUT[i], fraction, gmLog2LUT[i] + exponent);
}

// Decibels of a linear level: -140 for 0, negative levels and NaN, at the same cost as any other
// level.
static inline float LevelToDb(float level) {
  // One unit in the last place above the single nearest to 20 log10 2, on purpose.
  const float dbPerOctave = 0x1.815184p+2f;
  const float db = FastLog2(level) * dbPerOctave;
  return level > 0.0f ? db : -140.0f;
}

// To an integer towards zero, saturating at both ends; NaN counts as above the range.
static inline int32_t channelstrip_saturate(float x) {
  if (!(x < 0x1p31f)) return INT32_MAX;
  return x < -0x1p31f ? INT32_MIN : (int32_t)x;
}

// 2^y where `scaled` is 2^23 (y + 127). As an integer that is nearly the result's bit pattern: its
// sign and exponent are kept, its top eighteen fraction bits look the mantissa up as a product of
// two table entries, the rest is ignored. Nothing is clamped: the result is a normal positive
// number only for `scaled` from 2^23 to below 255 2^23.
static inline float channelstrip_pow2_of_scaled(float scaled) {
  const uint32_t n = (uint32_t)channelstrip_saturate(scaled);
  const float mantissa = gmPowTableH[(n >> 14) & 511] * gmPowTableL[(n >> 5) & 511];
  return channelstrip_float_of((n & 0xFF800000u) | (channelstrip_bits_of(mantissa) & 0x007FFFFFu));
}

// 2^y, normal for y from -126 to 127.9999.
static inline float FastPow2(float y) {
  return channelstrip_pow2_of_scaled(channelstrip_fused(y, 0x1p23f, 0x1.fcp+29f));
}

// The linear factor of a gain in decibels, within 7e-6 relative from -140 to +40 dB; a positive
// normal number between -758.5956 and 770.6368 dB. A staircase that never steps back; 0 dB gives
// 1.0000013, half a step above 1.
static inline float DbToGain(float db) {
  const float scalePerDb = 0x1.542a5ap+20f;  // 2^23 / 6.0206
  return channelstrip_pow2_of_scaled(channelstrip_fused(db, scalePerDb, 0x1.fcp+29f));
}

#ifdef __cplusplus
}
#endif

#endif
