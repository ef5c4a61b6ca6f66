// What a host shows of a strip's meter array: needles that rise at once, hold and fall, reductions
// in decibels, a count of overs.
//
// The library only ever increases the values in the array. If it is read and set to 0 between
// calls, each reading is the extreme of its period, to the sample; the ballistics here don't depend
// on the length of the periods. A call may load the array when it starts and store it when it is
// done. A meter thread that reads and clears the array at any time may therefore lose the extreme
// of a call that ends between its reading and its clearing, and a 0 written during a call is
// overwritten, so that the old extreme shows once more. No reading is ever greater than a value
// that occurred.

#pragma once

#include <cstdint>
#include <deque>

namespace channelstrip::host {

struct Ballistics {
  double hold = 0;          // ms, 0 or more, for which a peak stands before it falls
  double decay = 20 / 1.7;  // dB/s, above 0, of the fall
  double floor = -90;       // dB, what silence shows
};

// The fall of a digital peak meter after IEC 60268-18, 20 dB in 1.7 s, which is also that of a type
// I programme meter after IEC 60268-10.
inline constexpr Ballistics kDigitalPeak{};

// The fall of a type II programme meter after IEC 60268-10, 24 dB in 2.8 s.
inline constexpr Ballistics kProgramme{.hold = 0, .decay = 24 / 2.8, .floor = -90};

// One needle. Every peak is held and then falls, and the needle shows the highest of them: a lower
// peak that came later takes over when the earlier one has fallen below it. Levels in dBFS, or with
// a floor of 0 reductions in dB.
//
// A reading counts from the end of its period. So the needle is never lower than with periods of a
// sample each, and higher by at most the decay in the longest period.
class PeakMeter {
 public:
  // Throws std::invalid_argument for ballistics out of range.
  explicit PeakMeter(const Ballistics& ballistics = kDigitalPeak);

  // The greatest level of the `milliseconds` since the last reading, which have now passed. Silence
  // is -infinity; NaN counts as silence.
  void read(double decibels, double milliseconds);

  // dB, the floor or more.
  double level() const;

 private:
  struct Peak {
    double level;  // dB
    double time;   // ms, when it was read
  };

  Ballistics ballistics_;
  double time_ = 0;        // ms
  std::deque<Peak> held_;  // each lower than the one before it
  double falling_;         // dB, the highest of those no longer held
};

// Reductions in dB, 0 or more, from linear readings: of a gain, and of a reduction readout, which
// is 1 - the least factor. A gain of 0 means that nothing was written to the array: no reduction.
// As a float the readout can't show more than 144.5 dB, and it is exact to 2^-25 of full scale,
// which is 0.03 dB at 100 dB.
double reduction_of_gain(double gain);
double reduction_of_readout(double readout);

// Counts readings at full scale or above: how many periods have any, and in how many runs. Overs
// less than a period apart are one run.
class OverCounter {
 public:
  void read(double peak);  // linear

  std::int64_t periods() const { return periods_; }
  std::int64_t runs() const { return runs_; }

 private:
  std::int64_t periods_ = 0, runs_ = 0;
  bool over_ = false;  // in the latest period
};

}  // namespace channelstrip::host
