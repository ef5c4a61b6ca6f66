// The keys of a band: all of them in an [[eq]] table, all but the position in [key_filter].

#pragma once

#include "../design/settings.h"
#include "key.h"

namespace channelstrip::host {

enum class Position { kPre, kPost };

// An [[eq]] table.
struct EqBand : BandSettings {
  Position position = Position::kPre;
  bool on = true;
};

inline constexpr std::string_view kBandTypes[] = {"peak",     "low_shelf", "high_shelf",
                                                  "low_pass", "high_pass", "band_pass",
                                                  "notch",    "all_pass",  "tilt"};
inline constexpr std::string_view kBandDesigns[] = {"cookbook", "matched"};
inline constexpr std::string_view kPositions[] = {"pre", "post"};

// Objections, see Key.
std::string to_gain(const EqBand& band);
std::string to_q(const EqBand& band);
std::string to_shelf_slope(const EqBand& band);
std::string to_slope(const EqBand& band);

inline constexpr Key<EqBand> kBandKeys[] = {
    {.name = "on",
     .number = 1,
     .short_name = "On",
     .meaning = "false: as if the band were not there, but for its number",
     .access = kMember<&EqBand::on>,
     .switches = true},
    {.name = "type",
     .number = 2,
     .short_name = "Type",
     .meaning = "shape of the band",
     .access = kMember<&EqBand::type>,
     .words = kBandTypes,
     .lasting = true},
    {.name = "frequency",
     .number = 3,
     .short_name = "Freq",
     .meaning = "centre of a peak, band_pass, notch or all_pass, midpoint of a shelf, pivot of a "
                "tilt, corner of a pass; below half the sample rate",
     .access = kMember<&EqBand::frequency>,
     .range = {"Hz", 1, 192000}},
    {.name = "gain",
     .number = 4,
     .short_name = "Gain",
     .meaning = "at the centre of a peak, at the far end of a shelf, of a tilt from end to end",
     .access = kMember<&EqBand::gain>,
     .range = {"dB", -40, 40},
     .objection = to_gain},
    {.name = "q",
     .number = 5,
     .short_name = "Q",
     .meaning = "quality, the greater the narrower; 0.7071 is the flattest pass and the steepest "
                "shelf without overshoot",
     .access = kMember<&EqBand::q>,
     .range = {"", 0.05, 100},
     .objection = to_q},
    {.name = "shelf_slope",
     .number = 6,
     .short_name = "S",
     .meaning = "steepness of a shelf in place of q; 1 is the steepest without overshoot",
     .access = kMember<&EqBand::shelf_slope>,
     .range = {"", 0.05, 1},
     .objection = to_shelf_slope},
    {.name = "slope",
     .number = 7,
     .short_name = "Slope",
     .meaning = "steepness of a pass; every slope but 12 is a Butterworth filter, which has no q, "
                "and takes one of the strip's eight sections for every 12 dB/oct begun",
     .access = kMember<&EqBand::slope>,
     .range = {"dB/oct", 6, 96, false, 6},
     .objection = to_slope,
     .lasting = true},
    {.name = "design",
     .number = 8,
     .short_name = "Design",
     .meaning = "how the analog shape becomes digital: cookbook is cramped near half the sample "
                "rate, matched keeps the analog curve up there",
     .access = kMember<&EqBand::design>,
     .words = kBandDesigns},
    {.name = "position",
     .number = 9,
     .short_name = "Pos",
     .meaning = "before or after the dynamics",
     .access = kMember<&EqBand::position>,
     .words = kPositions,
     .lasting = true},
};

// A table of a band with values that its type has no use for, kept for when it has.
inline constexpr std::string_view kIdle = "idle";

// All but the position, which comes last.
inline constexpr std::span kKeyFilterKeys = std::span(kBandKeys).first<std::size(kBandKeys) - 1>();

}  // namespace channelstrip::host
