// The dynamics records: coefficients and state. C11 and C++17.
//
// Levels and gain terms are decibels of amplitude (20 log10). A weight is the fraction of the
// distance to its target that a value covers in one step, 0 (frozen) to 1 (jumps at once). Filters
// are five floats b0, b1, b2, a1, a2 in the form that eq_records.h gives.

#ifndef CHANNELSTRIP_DYNAMICS_DYN_RECORDS_H
#define CHANNELSTRIP_DYNAMICS_DYN_RECORDS_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

// One per instance. Every field is written by the host between calls and read only for the
// library. makeupGain, compRange and expRange may jump, the library glides towards them; all other
// fields take effect at the next quad as they stand.
typedef struct Dyn_SCoefsBlock {
  // Compressor: the gain term (dB) over the level L (dB) is
  //   L > compKneeHigh:   (L - compThreshold) compSlope
  //   L > compKneeLow:    compKneeA L^2 + compKneeB L + compKneeC
  //   otherwise:          0
  float compSlope;      // dB per dB; 1/ratio - 1, so -1 (limiter) to 0 for reduction
  float compKneeA;      // 1/dB
  float compKneeB;      // dB per dB
  float compKneeC;      // dB
  float compThreshold;  // dB; where the line above the knee gives 0 dB
  float compKneeHigh;   // dB; compKneeHigh >= compKneeLow, equal for a hard knee
  float compKneeLow;    // dB
  float compRange;      // dB, above -600, at most 0; the smoothed term never goes below it
  float makeupGain;     // linear, 0 or more; multiplies every gain
  float compAttack;     // weight per sample while the term falls or rests
  float compRelease;    // weight per sample while the term rises
  int32_t reserved12;   // never read

  // Expander and gate: the gain term over the level L is, while the gate is open,
  //   L < expKneeLow:     (L - expThreshold) expSlope
  //   L <= expKneeHigh:   expKneeA L^2 + expKneeB L + expKneeC
  //   otherwise:          0
  // but not below expRange; while it is closed, expRange.
  float expSlope;            // dB per dB; ratio - 1, so 0 or more for downward expansion
  float expKneeA;            // 1/dB
  float expKneeB;            // dB per dB
  float expKneeC;            // dB
  float expThreshold;        // dB; where the line below the knee gives 0 dB
  float gateOpenThreshold;   // dB; a closed gate opens at this level or above
  float gateCloseThreshold;  // dB, at most gateOpenThreshold; an open gate stays open from here up
  float expKneeHigh;         // dB; expKneeHigh >= expKneeLow, equal for a hard knee
  float expKneeLow;          // dB
  float expRange;            // dB, above -150 and at most 0; the floor of the target
  float expAttack;           // weight per sample while the term rises
  float expRelease;          // weight per sample while it falls, after the hold
  int32_t expHoldSamples;    // samples, 0 or more; hold after the last rising sample (rounded to a
                             // float: counts above 2^24 lose their lowest bits)

  // Detector.
  float peakDecay;          // factor per sample, 0 to 1; release of the peak detector
  float keyFilter[5];       // runs on each channel's detection signal before rectification
  float detectorFilter[5];  // smooths the rectified, linked level when detectorMode > 0
  int32_t linkGroup[8];     // group of channel 0 .. 7, each in 0 .. G-1; only the first N are read

  // Modes.
  int32_t detectorMode;  // above 0: the smoothed level; otherwise the peak level
  int32_t keyEnable;     // exactly 1: detect from the key channel, if there is one
  int32_t keyListen;     // not 0: the outputs carry the filtered detection signals

  // Metering.
  float inputMeterGain;  // linear; scales the input peak meter, never the audio
  int32_t bypass;        // above 0: inputs are copied to the outputs, all state runs on
} Dyn_SCoefsBlock;

// An instance has N of these, one per channel, channel 0 first. The host initialises them; from
// then on the library writes them, but for dezipRate. keyZ1 and keyZ2 are used in every record,
// dezipRate in record 0 alone, everything else in the record of the lowest channel of each link
// group. To start without a jump, set the gain terms, delay elements and peakLevel to 0 and the cur
// fields to their targets.
typedef struct Dyn_SState {
  float compGain;       // dB; smoothed compressor term, not below curCompRange
  float expGain;        // dB; smoothed expander term
  float keyZ1;          // first delay element of this channel's keyFilter
  float keyZ2;          // second delay element
  float detZ1;          // first delay element of the group's detectorFilter
  float detZ2;          // second delay element
  float peakLevel;      // linear; peak detector after the last sample
  float smoothLevel;    // linear; detectorFilter's output for the last sample; not read back
  float curMakeupGain;  // linear; makeupGain as it glides
  float curCompRange;   // dB; compRange as it glides
  float curExpRange;    // dB; expRange as it glides
  int32_t gateOpen;     // 1 open, 0 closed, after the last sample; read as open above 0
  int32_t holdCount;    // samples of hold that remain, an unsigned count
  int32_t reserved14;   // the host's: never read or written by the library
  float dezipRate;      // weight per quad of the three glides and of the EQ coefficients; written
                        // by the host, read from record 0 once per call
} Dyn_SState;

#ifdef __cplusplus
}
#endif

#endif
