// Checks type and offset of every field of the records that host and library share, in C11 and in
// C++17: both must see the same layout.

#include <ChannelStrip/dynamics/dyn_records.h>
#include <ChannelStrip/eq/eq_records.h>
#include <ChannelStrip/frame/context.h>
#include <ChannelStrip/frame/entry_points.h>
#include <assert.h>
#include <stddef.h>

#ifdef __cplusplus
#include <type_traits>
#define HAS_TYPE(record, field, type) std::is_same<decltype(record::field), type>::value
#else
#define HAS_TYPE(record, field, type) _Generic(&((record*)0)->field, type * : 1, default : 0)
#endif

#define SIZE(record, bytes) static_assert(sizeof(record) == (bytes), #record)

#define FIELD(record, offset, type, field)                                \
  static_assert(offsetof(record, field) == (offset), #record "." #field); \
  static_assert(HAS_TYPE(record, field, type), #record "." #field)

typedef float Floats5[5];
typedef float Floats8[8];
typedef float Floats40[40];
typedef double Doubles40[40];
typedef int32_t Ints2[2];
typedef int32_t Ints8[8];

// The context: ten pointers without gaps.
#define POINTER(index, type, field) \
  FIELD(SChannelStrip_Alg_Context, (index) * sizeof(void*), type, field)
POINTER(0, const float* const*, inputs);
POINTER(1, float* const*, outputs);
POINTER(2, const int32_t*, keyInputIndex);
POINTER(3, const int32_t*, sampleCount);
POINTER(4, const struct Dyn_SCoefsBlock*, dynCoefs);
POINTER(5, struct Dyn_SState*, dynState);
POINTER(6, const struct EQ_SCoefs*, eqTargetCoefs);
POINTER(7, struct EQ_SDezipCoefs*, eqDezipCoefs);
POINTER(8, struct EQ_SState*, eqState);
POINTER(9, float* const*, meterOutputs);
SIZE(SChannelStrip_Alg_Context, 10 * sizeof(void*));

// The meter array from 2N on.
static_assert(CHANNELSTRIP_METER_LEVEL == 0, "level");
static_assert(CHANNELSTRIP_METER_GAIN == 1, "gain");
static_assert(CHANNELSTRIP_METER_COMP_REDUCTION == 2, "compressor reduction");
static_assert(CHANNELSTRIP_METER_EXP_REDUCTION == 3, "expander reduction");
static_assert(CHANNELSTRIP_METER_CHANNEL_GAIN == 4, "gain per channel");

// The equaliser.
static_assert(CHANNELSTRIP_EQ_BANDS == 8, "bands");
static_assert(CHANNELSTRIP_EQ_COEFS == 40, "coefficients");

FIELD(EQ_SCoefs, 0, Floats40, targetCoefs);
FIELD(EQ_SCoefs, 160, Ints2, firstBand);
FIELD(EQ_SCoefs, 168, Ints2, endBand);
SIZE(EQ_SCoefs, 176);

FIELD(EQ_SDezipCoefs, 0, Floats40, coefs);
FIELD(EQ_SDezipCoefs, 160, Doubles40, smoothedCoefs);
SIZE(EQ_SDezipCoefs, 480);

FIELD(EQ_SState, 0, Floats8, z1);
FIELD(EQ_SState, 32, Floats8, z2);
FIELD(EQ_SState, 64, float, reserved);
SIZE(EQ_SState, 68);

// The dynamics.
FIELD(Dyn_SCoefsBlock, 0, float, compSlope);
FIELD(Dyn_SCoefsBlock, 4, float, compKneeA);
FIELD(Dyn_SCoefsBlock, 8, float, compKneeB);
FIELD(Dyn_SCoefsBlock, 12, float, compKneeC);
FIELD(Dyn_SCoefsBlock, 16, float, compThreshold);
FIELD(Dyn_SCoefsBlock, 20, float, compKneeHigh);
FIELD(Dyn_SCoefsBlock, 24, float, compKneeLow);
FIELD(Dyn_SCoefsBlock, 28, float, compRange);
FIELD(Dyn_SCoefsBlock, 32, float, makeupGain);
FIELD(Dyn_SCoefsBlock, 36, float, compAttack);
FIELD(Dyn_SCoefsBlock, 40, float, compRelease);
FIELD(Dyn_SCoefsBlock, 44, int32_t, reserved12);
FIELD(Dyn_SCoefsBlock, 48, float, expSlope);
FIELD(Dyn_SCoefsBlock, 52, float, expKneeA);
FIELD(Dyn_SCoefsBlock, 56, float, expKneeB);
FIELD(Dyn_SCoefsBlock, 60, float, expKneeC);
FIELD(Dyn_SCoefsBlock, 64, float, expThreshold);
FIELD(Dyn_SCoefsBlock, 68, float, gateOpenThreshold);
FIELD(Dyn_SCoefsBlock, 72, float, gateCloseThreshold);
FIELD(Dyn_SCoefsBlock, 76, float, expKneeHigh);
FIELD(Dyn_SCoefsBlock, 80, float, expKneeLow);
FIELD(Dyn_SCoefsBlock, 84, float, expRange);
FIELD(Dyn_SCoefsBlock, 88, float, expAttack);
FIELD(Dyn_SCoefsBlock, 92, float, expRelease);
FIELD(Dyn_SCoefsBlock, 96, int32_t, expHoldSamples);
FIELD(Dyn_SCoefsBlock, 100, float, peakDecay);
FIELD(Dyn_SCoefsBlock, 104, Floats5, keyFilter);
FIELD(Dyn_SCoefsBlock, 124, Floats5, detectorFilter);
FIELD(Dyn_SCoefsBlock, 144, Ints8, linkGroup);
FIELD(Dyn_SCoefsBlock, 176, int32_t, detectorMode);
FIELD(Dyn_SCoefsBlock, 180, int32_t, keyEnable);
FIELD(Dyn_SCoefsBlock, 184, int32_t, keyListen);
FIELD(Dyn_SCoefsBlock, 188, float, inputMeterGain);
FIELD(Dyn_SCoefsBlock, 192, int32_t, bypass);
SIZE(Dyn_SCoefsBlock, 196);

FIELD(Dyn_SState, 0, float, compGain);
FIELD(Dyn_SState, 4, float, expGain);
FIELD(Dyn_SState, 8, float, keyZ1);
FIELD(Dyn_SState, 12, float, keyZ2);
FIELD(Dyn_SState, 16, float, detZ1);
FIELD(Dyn_SState, 20, float, detZ2);
FIELD(Dyn_SState, 24, float, peakLevel);
FIELD(Dyn_SState, 28, float, smoothLevel);
FIELD(Dyn_SState, 32, float, curMakeupGain);
FIELD(Dyn_SState, 36, float, curCompRange);
FIELD(Dyn_SState, 40, float, curExpRange);
FIELD(Dyn_SState, 44, int32_t, gateOpen);
FIELD(Dyn_SState, 48, int32_t, holdCount);
FIELD(Dyn_SState, 52, int32_t, reserved14);
FIELD(Dyn_SState, 56, float, dezipRate);
SIZE(Dyn_SState, 60);
