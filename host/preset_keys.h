// Every number and choice a preset may set, table by table.

#pragma once

#include <limits>
#include <span>
#include <string_view>
#include <type_traits>

#include "design/settings.h"

namespace channelstrip::host {

struct Range {
  std::string_view unit;
  double minimum, maximum;  // the maximum may be infinity
  bool or_zero = false;     // 0 is allowed besides
};

template <class Settings>
struct Key {
  std::string_view name;
  std::string_view meaning;
  void (*set)(Settings&, double value);  // of a choice: the index of its word
  Range range = {};
  std::span<const std::string_view> words = {};  // of a choice, in the order of its enumeration
};

// What Key::set does for a member of any of the types.
template <auto kMember>
inline constexpr auto kSet = [](auto& settings, double value) {
  using Value = std::remove_reference_t<decltype(settings.*kMember)>;
  settings.*kMember = static_cast<Value>(value);
};

inline constexpr double kInfinity = std::numeric_limits<double>::infinity();

enum class Position { kPre, kPost };

// An [[eq]] table.
struct EqBand : BandSettings {
  Position position = Position::kPre;
};

inline constexpr std::string_view kBandTypes[] = {"peak", "low_shelf", "high_shelf", "low_pass",
                                                  "high_pass"};
inline constexpr std::string_view kPositions[] = {"pre", "post"};
inline constexpr std::string_view kDetectorModes[] = {"peak", "smooth"};

inline constexpr Key<StripSettings> kStripKeys[] = {
    {"glide",
     "time in which a change of settings is 63.2 % done",
     kSet<&StripSettings::glide>,
     {"ms", 0, 10000}},
};

inline constexpr Key<EqBand> kEqKeys[] = {
    {"type", "shape of the band", kSet<&EqBand::type>, {}, kBandTypes},
    {"frequency",
     "centre of a peak, midpoint of a shelf, corner of a pass",
     kSet<&EqBand::frequency>,
     {"Hz", 1, 192000}},
    {"q", "quality; 0.7071 is the flattest pass", kSet<&EqBand::q>, {"", 0.05, 100}},
    {"gain", "of peaks and shelves", kSet<&EqBand::gain>, {"dB", -40, 40}},
    {"position", "before or after the dynamics", kSet<&EqBand::position>, {}, kPositions},
};

// All but the position, which comes last.
inline constexpr std::span kKeyFilterKeys = std::span(kEqKeys).first<4>();

inline constexpr Key<CompressorSettings> kCompressorKeys[] = {
    {"threshold",
     "level above which the gain falls",
     kSet<&CompressorSettings::threshold>,
     {"dB", -120, 20}},
    {"ratio",
     "dB in per dB out above the threshold; inf limits",
     kSet<&CompressorSettings::ratio>,
     {"", 1, kInfinity}},
    {"knee",
     "width of the bend centred on the threshold; 0 is hard",
     kSet<&CompressorSettings::knee>,
     {"dB", 0.1, 60, true}},
    {"attack",
     "time in which a fall in gain is 63.2 % done",
     kSet<&CompressorSettings::attack>,
     {"ms", 0, 10000}},
    {"release",
     "time in which a rise in gain is 63.2 % done",
     kSet<&CompressorSettings::release>,
     {"ms", 0, 10000}},
    {"range", "deepest reduction", kSet<&CompressorSettings::range>, {"dB", -120, 0}},
    {"makeup",
     "gain after compressor and expander",
     kSet<&CompressorSettings::makeup>,
     {"dB", -40, 40}},
};

inline constexpr Key<ExpanderSettings> kExpanderKeys[] = {
    {"threshold",
     "level below which the gain falls; a gate opens there",
     kSet<&ExpanderSettings::threshold>,
     {"dB", -120, 20}},
    {"ratio", "dB out per dB in below the threshold", kSet<&ExpanderSettings::ratio>, {"", 1, 100}},
    {"knee",
     "width of the bend centred on the threshold; 0 is hard",
     kSet<&ExpanderSettings::knee>,
     {"dB", 0.1, 60, true}},
    {"attack",
     "time in which a rise in gain is 63.2 % done",
     kSet<&ExpanderSettings::attack>,
     {"ms", 0, 10000}},
    {"release",
     "time in which a fall in gain is 63.2 % done, after the hold",
     kSet<&ExpanderSettings::release>,
     {"ms", 0, 10000}},
    {"hold",
     "time for which the gain stays before it falls",
     kSet<&ExpanderSettings::hold>,
     {"ms", 0, 10000}},
    {"range", "deepest reduction", kSet<&ExpanderSettings::range>, {"dB", -120, 0}},
    {"hysteresis",
     "makes it a gate, which shuts this far below the threshold",
     kSet<&ExpanderSettings::hysteresis>,
     {"dB", 0, 60}},
};

inline constexpr Key<DetectorSettings> kDetectorKeys[] = {
    {"mode", "level that the dynamics follow", kSet<&DetectorSettings::mode>, {}, kDetectorModes},
    {"time",
     "decay of the peak or averaging time, to 63.2 %",
     kSet<&DetectorSettings::time>,
     {"ms", 0, 10000}},
};

}  // namespace channelstrip::host
