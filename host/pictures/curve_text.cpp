// What curves draws, as tables for a terminal.

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

#include "control/design/dynamics.h"
#include "control/design/dynamics_coefficients.h"
#include "control/design/link_map.h"
#include "strip_curves.h"

namespace channelstrip::host {
namespace {

// Nominal midband frequencies of third octaves, IEC 61260-1; the exact ones are 1000 * 10^(n/10).
constexpr std::array kThirdOctaves{20.,   25.,   31.5,  40.,   50.,    63.,   80.,   100.,
                                   125.,  160.,  200.,  250.,  315.,   400.,  500.,  630.,
                                   800.,  1000., 1250., 1600., 2000.,  2500., 3150., 4000.,
                                   5000., 6300., 8000., 10e3,  12500., 16e3,  20e3};

constexpr double kBarStep = 2, kBarLow = -24, kBarHigh = 12;  // dB

std::string decibels(double value) {
  return fmt::format("{:.1f}", std::abs(value) < 0.05 ? 0 : value);
}

// "     ###|      " for a cut, "        |###   " for a boost.
std::string bar(double gain) {
  const auto cells = [](double decibels) {
    return static_cast<std::size_t>(std::lround(decibels / kBarStep));
  };
  const std::size_t cut = cells(std::clamp(-gain, 0.0, -kBarLow));
  const std::size_t boost = cells(std::clamp(gain, 0.0, kBarHigh));
  return std::string(cells(-kBarLow) - cut, ' ') + std::string(cut, '#') + '|' +
         std::string(boost, '#');
}

std::string band_row(std::size_t number, std::string_view position, const BandFilter& band) {
  const BandSettings& settings = band.settings;
  const auto shown = [](bool used, const std::string& text) { return used ? text : "-"; };
  std::string quality = shown(uses_q(settings), fmt::format("{:.4g}", settings.q));
  if (uses_shelf_slope(settings)) quality = fmt::format("S {:.4g}", *settings.shelf_slope);
  return fmt::format("{:>4}  {:<4}  {:<10}{:>11.1f}{:>8}{:>9}{:>8}{:>10}{:>13.6f}\n",
                     number == 0 ? "key" : fmt::to_string(number), position,
                     type_name(settings.type), settings.frequency,
                     shown(uses_gain(settings), decibels(settings.gain)), quality,
                     shown(uses_slope(settings), fmt::to_string(settings.slope)),
                     band.sections.size(), pole_radius(band));
}

std::string band_table(const StripCurves& curves) {
  if (curves.pre.empty() && curves.post.empty() && !curves.key_filter) return "No bands\n";
  std::string text =
      fmt::format("{:>4}  {:<4}  {:<10}{:>11}{:>8}{:>9}{:>8}{:>10}{:>13}\n", "band", "", "type",
                  "frequency", "gain", "Q", "slope", "sections", "pole radius");
  text += fmt::format("{:>31}{:>8}{:>9}{:>8}\n", "Hz", "dB", "", "dB/oct");
  std::size_t number = 0;
  for (const BandFilter& band : curves.pre) text += band_row(++number, "pre", band);
  for (const BandFilter& band : curves.post) text += band_row(++number, "post", band);
  if (curves.key_filter) text += band_row(0, "", *curves.key_filter);
  return text;
}

// Third octaves, and the bands' own frequencies: a notch may lie between two third octaves.
std::vector<double> told_frequencies(const StripCurves& curves) {
  std::vector<double> frequencies(kThirdOctaves.begin(), kThirdOctaves.end());
  for (const auto* bands : {&curves.pre, &curves.post}) {
    for (const BandFilter& band : *bands) frequencies.push_back(band.settings.frequency);
  }
  if (curves.key_filter) frequencies.push_back(curves.key_filter->settings.frequency);
  std::erase_if(frequencies, [&](double frequency) { return frequency >= curves.sample_rate / 2; });
  std::ranges::sort(frequencies);
  frequencies.erase(std::unique(frequencies.begin(), frequencies.end()), frequencies.end());
  return frequencies;
}

std::string response_table(const StripCurves& curves) {
  const std::vector<double> frequencies = told_frequencies(curves);
  const auto column = [&](std::span<const BandFilter> bands) {
    return magnitude_db(bands, frequencies, curves.sample_rate);
  };
  const std::vector<double> pre = column(curves.pre), post = column(curves.post);
  const std::vector<double> key =
      curves.key_filter ? column(std::span(&*curves.key_filter, 1)) : std::vector<double>{};
  std::string text =
      fmt::format("{:>9}{:>9}{:>9}{:>9}{}   {:<12}0{:>6}\n", "frequency", "pre", "post", "both",
                  key.empty() ? "" : "      key", kBarLow, fmt::format("{:+}", kBarHigh));
  text += fmt::format("{:>9}{:>9}{:>9}{:>9}{}\n", "Hz", "dB", "dB", "dB",
                      key.empty() ? "" : "       dB");
  for (std::size_t i = 0; i < frequencies.size(); ++i) {
    text += fmt::format("{:>9.6g}{:>9}{:>9}{:>9}", frequencies[i], decibels(pre[i]),
                        decibels(post[i]), decibels(pre[i] + post[i]));
    if (!key.empty()) text += fmt::format("{:>9}", decibels(key[i]));
    text += "   " + bar(pre[i] + post[i]) + '\n';
  }
  return text;
}

std::string level_table(const StripCurves& curves) {
  const bool gate = curves.has_gate();
  std::string text = fmt::format("{:>11}{:>12}{:>10}{:>10}{:>10}{}\n", "input level", "compressor",
                                 "expander", "makeup", "output", gate ? "   gate shut" : "");
  text += fmt::format("{:>11}{:>12}{:>10}{:>10}{:>10}{}\n", "dBFS", "dB", "dB", "dB", "dBFS",
                      gate ? "        dBFS" : "");
  for (int input = -60; input <= 0; input += 5) {
    const double level = input;
    const StaticGain gain = static_gain(curves.settings, level, true);
    const StaticGain shut = static_gain(curves.settings, level, false);
    const double makeup = curves.makeup();
    const bool opens = level >= static_cast<double>(curves.dynamics.gateOpenThreshold);
    const bool shuts = level < static_cast<double>(curves.dynamics.gateCloseThreshold);
    text += fmt::format("{:>11}{:>12}{:>10}{:>10}{:>10}", level, decibels(gain.compressor),
                        decibels(gain.expander), decibels(makeup),
                        shuts ? "-" : decibels(level + gain.compressor + gain.expander + makeup));
    if (gate)
      text += fmt::format("{:>12}",
                          opens ? "-" : decibels(level + shut.compressor + shut.expander + makeup));
    text += '\n';
  }
  return text;
}

// Milliseconds until a gain has covered 63.2 % (1 - 1/e) of its way; "-" if it doesn't move.
std::string measured(const std::vector<double>& gain, double sample_rate) {
  const double way = gain.back() - gain.front();
  if (std::abs(way) < 0.01) return "-";
  const auto there = std::ranges::find_if(
      gain, [&](double value) { return (value - gain.front()) / way >= 1 - std::exp(-1); });
  return fmt::format("{:.1f}", 1000 * static_cast<double>(there - gain.begin()) / sample_rate);
}

std::string time_table(const StripCurves& curves) {
  const Burst& burst = *curves.burst;
  std::string text = fmt::format("{:<11}{:>9}{:>9}{:>9}{:>14}{:>14}\n", "times", "attack", "hold",
                                 "release", "level rises", "level falls");
  text += fmt::format("{:<11}{:>9}{:>9}{:>9}{:>14}{:>14}\n", "", "ms", "ms", "ms", "63.2 % in ms",
                      "63.2 % in ms");
  const auto row = [&](std::string_view name, double attack, const std::string& hold,
                       double release, const std::vector<double>& rise,
                       const std::vector<double>& fall) {
    text += fmt::format("{:<11}{:>9}{:>9}{:>9}{:>14}{:>14}\n", name, attack, hold, release,
                        measured(rise, curves.sample_rate), measured(fall, curves.sample_rate));
  };
  if (const auto& set = curves.settings.compressor) {
    row("compressor", set->attack, "-", set->release, burst.rise.compressor, burst.fall.compressor);
  }
  if (const auto& set = curves.settings.expander) {
    row("expander", set->attack, fmt::to_string(set->hold), set->release, burst.rise.expander,
        burst.fall.expander);
  }
  constexpr std::string_view kModes[] = {"peak, decay", "smooth", "average"};
  const DetectorSettings& detector = curves.settings.detector;
  text += fmt::format("detector: {} {} ms\n", kModes[static_cast<std::size_t>(detector.mode)],
                      detector.time);
  text += fmt::format("measured from {:.1f} to {:.1f} dBFS for {:.0f} ms and back\n", burst.quiet,
                      burst.loud,
                      1000 * static_cast<double>(burst.rise.total.size()) / curves.sample_rate);
  return text;
}

std::string link_line(const StripCurves& curves) {
  return fmt::format("linked in {}: {}\n", curves.layout->format->name,
                     text_of(links_of(curves.dynamics), *curves.layout));
}

}  // namespace

std::string curve_text(const StripCurves& curves) {
  std::string text = heading_of(curves) + '\n';
  if (!curves.changes.empty()) text += note_of(curves) + '\n';
  text += '\n' + band_table(curves) + '\n' + response_table(curves);
  if (curves.burst) text += '\n' + level_table(curves) + '\n' + time_table(curves);
  if (curves.layout) text += '\n' + link_line(curves);
  return text;
}

}  // namespace channelstrip::host
