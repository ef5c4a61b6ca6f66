// The instance context and the layout of the meter array. C11 and C++17.
//
// A host describes one channel strip instance by one context record. Every record and buffer
// behind it is the host's: the library allocates nothing and keeps no pointer between calls.

#ifndef CHANNELSTRIP_FRAME_CONTEXT_H
#define CHANNELSTRIP_FRAME_CONTEXT_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

struct Dyn_SCoefsBlock;
struct Dyn_SState;
struct EQ_SCoefs;
struct EQ_SDezipCoefs;
struct EQ_SState;

// N is the channel count of the stem format whose entry point the host calls. The host fills
// every field; the library writes none of them, only what some of them point to. Audio is 32-bit
// float, one buffer per channel, full scale 1.0; a buffer needs no more than a float's alignment
// and must hold the sample count rounded up to a multiple of 16.
typedef struct SChannelStrip_Alg_Context {
  // N or more input buffers, channel 0 first; read only. Entries from N on are there for
  // keyInputIndex to select. Written by the host before each call.
  const float* const* inputs;

  // N output buffers; out[c] may be the same buffer as in[c]. The buffers are written by the
  // library, the pointers by the host before each call.
  float* const* outputs;

  // Index into inputs of the key (side-chain) channel; 0: no key channel. Written by the host.
  const int32_t* keyInputIndex;

  // Samples per channel in this call; below 1 the instance is skipped untouched. Whole blocks of
  // 16 are processed: a count of 20 processes, meters and writes 32. Written by the host.
  const int32_t* sampleCount;

  // Dynamics coefficients, metering gain and bypass; read only. Written by the host between calls.
  const struct Dyn_SCoefsBlock* dynCoefs;

  // First of N dynamics state records, channel 0 first. Initialised by the host, then written by
  // the library (but for dezipRate, which stays the host's).
  struct Dyn_SState* dynState;

  // Target EQ coefficients and band ranges; read only. Written by the host between calls.
  const struct EQ_SCoefs* eqTargetCoefs;

  // EQ coefficients in use. Initialised by the host, then written by the library.
  struct EQ_SDezipCoefs* eqDezipCoefs;

  // First of N channel records of EQ filter memory. Initialised by the host, then written by the
  // library.
  struct EQ_SState* eqState;

  // Where the host keeps its pointer to the meter array; followed once per call. The array is
  // updated by the library and reset by the host.
  float* const* meterOutputs;
} SChannelStrip_Alg_Context;

// The meter array: 3N + 4 floats per instance, running maxima and the level that goes with one of
// them. The library never resets them; the host writes 0 (or any floor) to begin a new measurement.
//
//   0 .. N-1         input peak per channel, linear, scaled by inputMeterGain
//   N .. 2N-1        output peak per channel, linear
//   2N .. 2N+3       dynamics readouts, the four slots below
//   2N+4 .. 3N+3     per channel: greatest gain of its link group, linear, without makeup
enum {
  // Linear detector level of the sample that last set the gain readout.
  CHANNELSTRIP_METER_LEVEL = 0,
  // Greatest compressor factor x expander factor, linear, without makeup.
  CHANNELSTRIP_METER_GAIN = 1,
  // Greatest compressor reduction, as 1 - compressor factor.
  CHANNELSTRIP_METER_COMP_REDUCTION = 2,
  // Greatest expander or gate reduction, as 1 - expander factor.
  CHANNELSTRIP_METER_EXP_REDUCTION = 3,
  // First of the N per-channel gain readouts.
  CHANNELSTRIP_METER_CHANNEL_GAIN = 4
};

#ifdef __cplusplus
}
#endif

#endif
