// The ports of an LV2 plugin. Indices and symbols never change: hosts store them.

#pragma once

#include <channelstrip/channelstrip.h>

#include <cstdint>
#include <span>
#include <string>

namespace channelstrip::lv2 {

// Audio in and out, one port per channel in WAV's order, then the key; then what the host switches
// and reads; at last the parameters, so that new ones come behind them.
class Ports {
 public:
  explicit constexpr Ports(std::uint32_t channels) : channels_(channels) {}

  constexpr std::uint32_t channels() const { return channels_; }
  constexpr std::uint32_t input(std::uint32_t channel) const { return channel; }
  constexpr std::uint32_t output(std::uint32_t channel) const { return channels_ + channel; }
  constexpr std::uint32_t key() const { return 2 * channels_; }
  constexpr std::uint32_t enabled() const { return 2 * channels_ + 1; }
  constexpr std::uint32_t latency() const { return 2 * channels_ + 2; }
  constexpr std::uint32_t first_meter() const { return 2 * channels_ + 3; }

  // Meters in dB, counted from first_meter(): a peak in and one out for each channel, then what the
  // compressor and the expander take away.
  constexpr std::uint32_t input_peak(std::uint32_t channel) const { return channel; }
  constexpr std::uint32_t output_peak(std::uint32_t channel) const { return channels_ + channel; }
  constexpr std::uint32_t compressor_reduction() const { return 2 * channels_; }
  constexpr std::uint32_t expander_reduction() const { return 2 * channels_ + 1; }
  constexpr std::uint32_t meter_count() const { return 2 * channels_ + 2; }

  constexpr std::uint32_t first_parameter() const { return first_meter() + meter_count(); }

 private:
  std::uint32_t channels_;
};

inline constexpr std::uint32_t kMostMeters = 2 * CHANNELSTRIP_MOST_CHANNELS + 2;

// The parameters that are ports, in their order: all but bypass, which `enabled` stands for.
std::span<const channelstrip_parameter> port_parameters();
inline constexpr std::uint32_t kPortParameterCount = 109;

// "urn:channelstrip:lv2:5.1" of the format 5.1. Empty if there is no such format.
std::string uri_of(std::uint32_t format);

// The window, of all formats.
inline constexpr char kUiUri[] = "urn:channelstrip:lv2:ui";

// The state that isn't in control ports: the link maps, as the TOML of settings.
inline constexpr char kLinksUri[] = "urn:channelstrip:lv2:links";

}  // namespace channelstrip::lv2
