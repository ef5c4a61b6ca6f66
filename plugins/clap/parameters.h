// What a host sees as parameters: those of the control side under their own ids, and meters, which
// it only reads.

#pragma once

#include <channelstrip/channelstrip.h>
#include <clap/ext/params.h>

#include <array>
#include <cstdint>
#include <optional>
#include <string>

namespace channelstrip::clap {

// In dB, the greatest of all channels or link groups.
enum Meter { kInputPeak, kOutputPeak, kCompressorReduction, kExpanderReduction, kMeterCount };
inline constexpr std::array<const char*, kMeterCount> kMeterNames{
    "Input peak", "Output peak", "Compressor reduction", "Expander reduction"};

inline constexpr clap_id kFirstMeterId = 1000000;  // far above those of parameters
clap_id id_of(Meter meter);
std::optional<Meter> meter_of(clap_id id);
double least_of(Meter meter);

// [any thread]; doesn't allocate once it was called.
bool is_parameter(clap_id id);

std::uint32_t parameter_count();  // meters come last
bool describe_parameter(std::uint32_t index, clap_param_info_t& info);
// Empty for an id that there isn't.
std::string text_of(clap_id id, double value);
std::optional<double> value_of(clap_id id, const char* text);

}  // namespace channelstrip::clap
