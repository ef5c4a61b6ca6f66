// What a user sets on a strip: frequencies, decibels and milliseconds, no coefficient.
//
// Decibel values lie within -200 to 200 (silence counts as -140) and times within 0 to 10000 ms
// unless a comment says otherwise; all but a compressor's ratio are finite.

#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace channelstrip::host {

enum class BandType { kPeak, kLowShelf, kHighShelf, kLowPass, kHighPass };

struct BandSettings {
  BandType type = BandType::kPeak;
  double frequency = 1000;  // Hz, above 0, below half the sample rate
  double q = 0.7071;        // above 0
  double gain = 0;          // dB; peak and shelves only
};

struct CompressorSettings {
  double threshold = -20;  // dB
  double ratio = 2;        // 1 or more, infinity limits
  double knee = 6;         // dB, width centred on the threshold; 0 (hard) or at least 0.1
  double attack = 10;      // ms to cover 63.2 % of a fall in gain
  double release = 100;    // ms to cover 63.2 % of a rise
  double range = -60;      // dB, above -600, at most 0: never reduces by more
  double makeup = 0;       // dB
};

// A downward expander; with a hysteresis also a gate, which shuts the signal to `range` once its
// level has fallen that far below the threshold and opens again at the threshold. A ratio of 1
// with a hysteresis is a plain gate.
struct ExpanderSettings {
  double threshold = -50;                           // dB
  double ratio = 2;                                 // 1 to 100
  double knee = 6;                                  // dB, as the compressor's
  double attack = 1;                                // ms, gain rising
  double release = 150;                             // ms, gain falling, after the hold
  double hold = 20;                                 // ms
  double range = -40;                               // dB, above -150, at most 0: the floor
  std::optional<double> hysteresis = std::nullopt;  // dB, 0 or more; none: no gate
};

enum class DetectorMode { kPeak, kSmooth };

struct DetectorSettings {
  DetectorMode mode = DetectorMode::kPeak;
  double time = 20;  // ms; decay of the peak, or averaging time of the smoothed level, to 63.2 %
};

struct StripSettings {
  std::vector<BandSettings> pre;   // bands before the dynamics, in order
  std::vector<BandSettings> post;  // and after; at most eight bands together
  std::optional<CompressorSettings> compressor;
  std::optional<ExpanderSettings> expander;
  DetectorSettings detector;
  std::optional<BandSettings> key_filter;   // on the detection signal
  std::map<std::string, std::string> link;  // format name to link map, "L R C | LFE | Ls Rs"
  double glide = 20;                        // ms for coefficients to cover 63.2 % of a change
};

}  // namespace channelstrip::host
