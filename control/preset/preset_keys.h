// Every key a preset may set besides its bands', table by table.

#pragma once

#include "../design/settings.h"
#include "band_keys.h"
#include "key.h"

namespace channelstrip::host {

struct Table {
  std::string_view name;  // empty: the top level
  std::string_view meaning;
  std::span<const Key<StripSettings>> keys;
  void (*create)(StripSettings&) = nullptr;  // what its presence alone does
};

inline constexpr std::string_view kDetectorModes[] = {"peak", "smooth", "average"};
inline constexpr std::string_view kLinkStyles[] = {"pairs", "film", "music", "all", "none"};

inline constexpr Key<StripSettings> kTopKeys[] = {
    {.name = "gain_in",
     .number = 1,
     .short_name = "In",
     .meaning = "gain before everything else; meters and detection see what it gives, the key "
                "channel has none",
     .access = kMember<&StripSettings::gain_in>,
     .range = {"dB", -60, 60}},
    {.name = "gain_out",
     .number = 2,
     .short_name = "Out",
     .meaning = "gain after everything else",
     .access = kMember<&StripSettings::gain_out>,
     .range = {"dB", -60, 60}},
    {.name = "mix",
     .number = 3,
     .short_name = "Mix",
     .meaning =
         "share of the processed signal in a linear cross-fade with the input behind gain_in",
     .access = kMember<&StripSettings::mix>,
     .range = {"%", 0, 100}},
    {.name = "bypass",
     .number = 4,
     .short_name = "Bypass",
     .meaning = "the outputs are the inputs, without either gain, while everything runs on",
     .access = kMember<&StripSettings::bypass>},
    {.name = "glide",
     .number = 5,
     .short_name = "Glide",
     .meaning = "time in which a change of a gain, the mix, a band, a makeup or a range is 63.2 % "
                "done",
     .access = kMember<&StripSettings::glide>,
     .range = {"ms", 0, 10000}},
};

inline constexpr auto kCompressor = &StripSettings::compressor;

inline constexpr Key<StripSettings> kCompressorKeys[] = {
    {.name = "on",
     .number = 1,
     .short_name = "On",
     .meaning = "false: as if the table were not there",
     .access = kMember<kCompressor, &CompressorSettings::on>,
     .switches = true},
    {.name = "threshold",
     .number = 2,
     .short_name = "Thr",
     .meaning = "level above which the gain falls",
     .access = kMember<kCompressor, &CompressorSettings::threshold>,
     .range = {"dB", -120, 20}},
    {.name = "ratio",
     .number = 3,
     .short_name = "Ratio",
     .meaning = "dB in per dB out above the threshold; inf limits",
     .access = kMember<kCompressor, &CompressorSettings::ratio>,
     .range = {.unit = "", .minimum = 1, .maximum = kInfinity, .reason = kNeverLouder}},
    {.name = "knee",
     .number = 4,
     .short_name = "Knee",
     .meaning = "width of the bend centred on the threshold; 0 is hard",
     .access = kMember<kCompressor, &CompressorSettings::knee>,
     .range = {"dB", 0.1, 60, true}},
    {.name = "attack",
     .number = 5,
     .short_name = "Att",
     .meaning = "time in which a fall in gain is 63.2 % done",
     .access = kMember<kCompressor, &CompressorSettings::attack>,
     .range = {"ms", 0, 10000}},
    {.name = "release",
     .number = 6,
     .short_name = "Rel",
     .meaning = "time in which a rise in gain is 63.2 % done",
     .access = kMember<kCompressor, &CompressorSettings::release>,
     .range = {"ms", 0, 10000}},
    {.name = "range",
     .number = 7,
     .short_name = "Range",
     .meaning = "deepest reduction",
     .access = kMember<kCompressor, &CompressorSettings::range>,
     .range = {"dB", -120, 0}},
    {.name = "makeup",
     .number = 8,
     .short_name = "Makeup",
     .meaning = "gain after compressor and expander",
     .access = kMember<kCompressor, &CompressorSettings::makeup>,
     .range = {"dB", -40, 40}},
    {.name = "auto_makeup",
     .number = 9,
     .short_name = "Auto",
     .meaning = "adds half of what the curve takes from full scale to the makeup",
     .access = kMember<kCompressor, &CompressorSettings::auto_makeup>},
};

inline constexpr auto kExpander = &StripSettings::expander;

inline constexpr Key<StripSettings> kExpanderKeys[] = {
    {.name = "on",
     .number = 1,
     .short_name = "On",
     .meaning = "false: as if the table were not there",
     .access = kMember<kExpander, &ExpanderSettings::on>,
     .switches = true},
    {.name = "threshold",
     .number = 2,
     .short_name = "Thr",
     .meaning = "level below which the gain falls; a gate opens there",
     .access = kMember<kExpander, &ExpanderSettings::threshold>,
     .range = {"dB", -120, 20}},
    {.name = "ratio",
     .number = 3,
     .short_name = "Ratio",
     .meaning = "dB out per dB in below the threshold",
     .access = kMember<kExpander, &ExpanderSettings::ratio>,
     .range = {"", 1, 100}},
    {.name = "knee",
     .number = 4,
     .short_name = "Knee",
     .meaning = "width of the bend centred on the threshold; 0 is hard",
     .access = kMember<kExpander, &ExpanderSettings::knee>,
     .range = {"dB", 0.1, 60, true}},
    {.name = "attack",
     .number = 5,
     .short_name = "Att",
     .meaning = "time in which a rise in gain is 63.2 % done",
     .access = kMember<kExpander, &ExpanderSettings::attack>,
     .range = {"ms", 0, 10000}},
    {.name = "release",
     .number = 6,
     .short_name = "Rel",
     .meaning = "time in which a fall in gain is 63.2 % done, after the hold",
     .access = kMember<kExpander, &ExpanderSettings::release>,
     .range = {"ms", 0, 10000}},
    {.name = "hold",
     .number = 7,
     .short_name = "Hold",
     .meaning = "time for which the gain stays before it falls",
     .access = kMember<kExpander, &ExpanderSettings::hold>,
     .range = {"ms", 0, 10000}},
    {.name = "range",
     .number = 8,
     .short_name = "Range",
     .meaning = "deepest reduction",
     .access = kMember<kExpander, &ExpanderSettings::range>,
     .range = {"dB", -120, 0}},
    {.name = "gate",
     .number = 9,
     .short_name = "Gate",
     .meaning = "false: no gate, whatever the hysteresis",
     .access = kMember<kExpander, &ExpanderSettings::gate>,
     .switches = true},
    {.name = "hysteresis",
     .number = 10,
     .short_name = "Hyst",
     .meaning = "makes it a gate, which shuts this far below the threshold",
     .access = kMember<kExpander, &ExpanderSettings::hysteresis>,
     .range = {"dB", 0, 60}},
};

inline constexpr Key<StripSettings> kDetectorKeys[] = {
    {.name = "mode",
     .number = 1,
     .short_name = "Mode",
     .meaning = "level that the dynamics follow: peaks, or magnitudes averaged with one pole or, "
                "steadier, with two; a sine averages 3.9 dB below its peak",
     .access = kMember<&StripSettings::detector, &DetectorSettings::mode>,
     .words = kDetectorModes,
     .retired = "rms"},
    {.name = "time",
     .number = 2,
     .short_name = "Time",
     .meaning = "decay of the peak or averaging time, to 63.2 %; 0: the level itself",
     .access = kMember<&StripSettings::detector, &DetectorSettings::time>,
     .range = {"ms", 0, 10000}},
};

inline constexpr Key<StripSettings> kKeyKeys[] = {
    {.name = "enable",
     .number = 1,
     .short_name = "Enable",
     .meaning = "detect from the key channel where there is one",
     .access = kMember<&StripSettings::key_enable>},
    {.name = "listen",
     .number = 2,
     .short_name = "Listen",
     .meaning = "the outputs carry the filtered detection signals, whatever the mix",
     .access = kMember<&StripSettings::key_listen>},
};

inline constexpr Key<StripSettings> kMeterKeys[] = {
    {.name = "input_gain",
     .number = 1,
     .short_name = "In",
     .meaning = "of the input meters alone, never of the audio",
     .access = kMember<&StripSettings::input_meter_gain>,
     .range = {"dB", -40, 40}},
};

inline constexpr Key<StripSettings> kLinkKeys[] = {
    {.name = "style",
     .number = 1,
     .short_name = "Style",
     .meaning = "channels that share one gain, where the format has no map of its own",
     .access = kMember<&StripSettings::link_style>,
     .words = kLinkStyles},
};

inline constexpr Table kTables[] = {
    {"", "the strip as a whole", kTopKeys},
    {"compressor", "soft-knee compressor; off without the table", kCompressorKeys,
     [](StripSettings& s) { s.compressor = s.compressor.value_or(CompressorSettings{}); }},
    {"expander", "soft-knee expander, gate with a hysteresis; off without the table", kExpanderKeys,
     [](StripSettings& s) { s.expander = s.expander.value_or(ExpanderSettings{}); }},
    {"detector", "level detection of compressor and expander", kDetectorKeys},
    {"key", "the side-chain key", kKeyKeys},
    {"meter", "the meters", kMeterKeys},
    {"link", "linked detection", kLinkKeys},
};

}  // namespace channelstrip::host
