// Prints the tables of docs/numerics.md: what single precision leaves of bands.

#include <fmt/format.h>

#include <algorithm>
#include <cstdio>
#include <string>

#include "band_accuracy.h"

namespace channelstrip::host {
namespace {

struct Row {
  const char* name;
  BandSettings band;
};

const Row kRows[] = {
    {"high pass, 12 dB/oct", {.type = BandType::kHighPass}},
    {"high pass, 48 dB/oct", {.type = BandType::kHighPass, .slope = 48}},
    {"high pass, 96 dB/oct", {.type = BandType::kHighPass, .slope = 96}},
    {"low pass, 96 dB/oct", {.type = BandType::kLowPass, .slope = 96}},
    {"low shelf, +12 dB", {.type = BandType::kLowShelf, .gain = 12}},
    {"peak, Q 1, +12 dB", {.type = BandType::kPeak, .q = 1, .gain = 12}},
    {"peak, Q 10, +12 dB", {.type = BandType::kPeak, .q = 10, .gain = 12}},
    {"band pass, Q 10", {.type = BandType::kBandPass, .q = 10}},
    {"notch, Q 1", {.type = BandType::kNotch, .q = 1}},
    {"notch, Q 30", {.type = BandType::kNotch, .q = 30}},
};
constexpr double kRates[] = {48000, 96000, 192000};
constexpr double kFrequencies[] = {20, 50, 100, 200};

// The worst of some frequencies up to 4 % above the band's.
BandAccuracy worst(BandSettings band, double frequency, double sample_rate) {
  BandAccuracy result{.deviation = 0, .frequency = 0, .noise = -400};
  for (int i = 0; i < 12; ++i) {
    band.frequency = frequency * (1 + i / 300.0);
    const BandAccuracy one = band_accuracy(band, sample_rate);
    result.deviation = std::max(result.deviation, one.deviation);
    result.noise = std::max(result.noise, one.noise);
  }
  return result;
}

template <typename Cell>
std::string table(Cell cell) {
  std::string text = "| band |", rule = "|---|";
  for (const double rate : kRates) {
    for (const double frequency : kFrequencies) {
      text +=
          fmt::format(" {} Hz{} |", frequency,
                      frequency == kFrequencies[0] ? fmt::format(" at {} kHz", rate / 1000) : "");
      rule += "---|";
    }
  }
  text += '\n' + rule + '\n';
  for (const auto& [name, band] : kRows) {
    text += fmt::format("| {} |", name);
    for (const double rate : kRates) {
      for (const double frequency : kFrequencies) {
        text += fmt::format(" {} |", cell(worst(band, frequency, rate)));
      }
    }
    text += '\n';
  }
  return text;
}

std::string precision_tables() {
  return "Greatest error of the magnitude, in dB:\n\n" +
         table([](const BandAccuracy& a) { return fmt::format("{:.2f}", a.deviation); }) +
         fmt::format("\nNoise beside white noise at {:.0f} dBFS RMS, in dBFS RMS:\n\n",
                     kNoiseInput) +
         table([](const BandAccuracy& a) { return fmt::format("{:.0f}", a.noise); });
}

}  // namespace
}  // namespace channelstrip::host

int main() {
  std::fputs(channelstrip::host::precision_tables().c_str(), stdout);
}
