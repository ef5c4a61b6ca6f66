// What a user sets on a strip: frequencies, decibels and milliseconds, no coefficients.
//
// Decibel values lie within -200 to 200 (silence counts as -140) and times within 0 to 10000 ms
// unless a comment says otherwise; all but a compressor's ratio are finite.

#pragma once

#include <optional>
#include <string_view>
#include <type_traits>

#include "fixed_vector.h"
#include "link_texts.h"

namespace channelstrip::host {

enum class BandType {
  kPeak,       // `gain` at the frequency, half of it at two points frequency / q apart
  kLowShelf,   // `gain` below the frequency, half of it there
  kHighShelf,  // `gain` above
  kLowPass,
  kHighPass,
  kBandPass,  // 0 dB at the frequency, -3 dB at two points frequency / q apart
  kNotch,     // silence at the frequency, -3 dB at two points frequency / q apart
  kAllPass,   // 0 dB everywhere, -180 degrees at the frequency
  kTilt       // first order: -gain / 2 far below the frequency, gain / 2 far above
};

// How an analog prototype becomes a digital section.
enum class BandDesign {
  kCookbook,  // the bilinear transform: exact at 0 Hz and at the band's frequency, cramped near
              // half the sample rate
  kMatched    // keeps the analog magnitude to a few decibels up to 0.9 of half the sample rate
};

// Settings that a type doesn't use are ignored.
struct BandSettings {
  BandType type = BandType::kPeak;
  double frequency = 1000;  // Hz, above 0, below half the sample rate
  double q = 0.7071;        // above 0; not used by tilts, nor by passes of another slope than 12
  double gain = 0;          // dB; peak, shelves and tilt only
  BandDesign design = BandDesign::kCookbook;
  std::optional<double> shelf_slope = std::nullopt;  // S of a shelf, takes q's place: above 0, and
                                                     // below a limit above 1 that falls with |gain|
  int slope = 12;  // of passes, dB per octave: 6, 12 ... 96; all but 12 are Butterworth's. A band
                   // takes one of a strip's eight sections for each 12 dB, or part of them

  bool operator==(const BandSettings&) const = default;
};

// Why a ratio must be 1 or above, as every refusal words it.
inline constexpr std::string_view kNeverLouder =
    "a compressor never makes louder what is above its threshold";

struct CompressorSettings {
  double threshold = -20;    // dB
  double ratio = 2;          // dB in per dB out above the threshold, 1 or more; infinity: a limiter
  double knee = 6;           // dB, width centred on the threshold; 0 (hard) or at least 0.1
  double attack = 10;        // ms to cover 63.2 % of a fall in gain
  double release = 100;      // ms to cover 63.2 % of a rise
  double range = -60;        // dB, above -600, at most 0: never reduces by more
  double makeup = 0;         // dB
  bool auto_makeup = false;  // adds half of what the curve takes from full scale
  bool on = true;            // false only while settings are written: settings that are whole have
                             // no compressor then

  bool operator==(const CompressorSettings&) const = default;
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
  bool gate = true;  // both false only while settings are written, as the compressor's: without a
  bool on = true;    // gate settings that are whole have no hysteresis

  bool operator==(const ExpanderSettings&) const = default;
};

// How the level that the dynamics follow is found, from the greatest magnitude among the channels
// of a link group.
enum class DetectorMode {
  kPeak,    // rises at once, decays
  kSmooth,  // an average with one pole
  kAverage  // an average with two poles, of magnitudes: steadier, and slower to begin
};

// Which channels the dynamics link where a format has no map of its own.
enum class LinkStyle {
  kPairs,  // left and right of each pair; every other channel alone
  kFilm,   // three groups: the front, the LFE, the surrounds
  kMusic,  // everything but the LFE, which is alone
  kAll,    // everything
  kNone    // nothing: every channel for itself
};

struct DetectorSettings {
  DetectorMode mode = DetectorMode::kPeak;
  // ms in which a peak loses, or an average covers, 63.2 % of a step. With a time of 0 each is the
  // level itself.
  double time = 20;

  bool operator==(const DetectorSettings&) const = default;
};

// One plain object: copying it copies everything, and nothing in it is allocated.
struct StripSettings {
  double gain_in = 0;   // dB, of the audio before everything else; the key channel has none
  double gain_out = 0;  // dB, after everything else
  double mix = 100;     // %, 0 to 100: what is processed, the rest being the audio behind gain_in
  using Bands = FixedVector<BandSettings, 8>;
  Bands pre;   // bands before the dynamics, in order
  Bands post;  // and after; at most eight sections together
  std::optional<CompressorSettings> compressor;
  std::optional<ExpanderSettings> expander;
  DetectorSettings detector;
  std::optional<BandSettings> key_filter;  // on the detection signal
  LinkTexts link;                          // the link maps of formats, "L R C | LFE | Ls Rs"
  LinkStyle link_style = LinkStyle::kPairs;
  bool key_enable = false;  // detect from the key channel where there is one
  bool key_listen = false;  // hear the filtered detection signals in place of the audio, unmixed
  double input_meter_gain = 0;  // dB, of the input meters only
  bool bypass = false;          // the outputs are the inputs, even without the gains; the
                                // processing runs on unheard
  double glide = 20;            // ms for coefficients to cover 63.2 % of a change

  bool operator==(const StripSettings&) const = default;
};
static_assert(std::is_trivially_copyable_v<StripSettings>);

}  // namespace channelstrip::host
