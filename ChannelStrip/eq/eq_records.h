// The equaliser's records: targets, coefficients in use, filter memory. C11 and C++17.
//
// A band is one second-order section in transposed direct form II, five floats b0, b1, b2, a1, a2,
// normalised (a0 = 1), a1 and a2 stored with the sign with which they are added:
//
//   y = b0 x + z1;   z1 := b1 x + a1 y + z2;   z2 := b2 x + a2 y
//
// Bands stand back to back: band k is values 5k to 5k + 4.

#ifndef CHANNELSTRIP_EQ_EQ_RECORDS_H
#define CHANNELSTRIP_EQ_EQ_RECORDS_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

enum {
  CHANNELSTRIP_EQ_BANDS = 8,
  CHANNELSTRIP_EQ_COEFS = 40  // eight bands of five
};

// What the host wants. Written by the host between calls, read only for the library.
typedef struct EQ_SCoefs {
  // The wanted coefficients of bands 0 to 7, finite.
  float targetCoefs[CHANNELSTRIP_EQ_COEFS];

  // First band of the pass before the dynamics (element 0) and after it (element 1).
  // 0 <= firstBand <= endBand <= 8.
  int32_t firstBand[2];

  // One past the last band of each pass. A pass with firstBand >= endBand is a plain copy.
  int32_t endBand[2];
} EQ_SCoefs;

// What the filters use, gliding towards the targets by one step before every four samples. The
// host initialises both arrays to the targets to start without a glide; from then on the library
// writes them. Writing coefs alone is undone by the next step.
typedef struct EQ_SDezipCoefs {
  // smoothedCoefs rounded to single precision; what the filters multiply by.
  float coefs[CHANNELSTRIP_EQ_COEFS];

  // The running values.
  double smoothedCoefs[CHANNELSTRIP_EQ_COEFS];
} EQ_SDezipCoefs;

// Filter memory of one channel; an instance has N of them, channel 0 first. The host sets all to
// zero to reset the filters; from then on the library writes it. A band that no pass runs keeps
// its memory.
typedef struct EQ_SState {
  float z1[CHANNELSTRIP_EQ_BANDS];  // first delay element of each band
  float z2[CHANNELSTRIP_EQ_BANDS];  // second delay element of each band
  float reserved;                   // the host's: never read or written by the library
} EQ_SState;

#ifdef __cplusplus
}
#endif

#endif
