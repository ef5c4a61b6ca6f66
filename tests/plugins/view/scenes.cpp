#include "scenes.h"

#include <cmath>
#include <numbers>
#include <random>
#include <stdexcept>

#include "plugins/view/layout.h"

namespace channelstrip::view_test {
namespace {

using plugin_test::format_of;
using plugin_test::id_of;
using plugin_test::kRate;

void set(const Settings& settings, const char* symbol, double value) {
  channelstrip_settings_set(settings.get(), id_of(symbol), value);
}

// Two of the eight can't be had: no section is left for the last, and one lies above half the rate.
Settings eight_bands() {
  Settings settings = preset("neutral");
  const struct {
    double type, frequency, gain, q;
  } bands[] = {{4, 45, 0, 0.7071}, {1, 110, 4.5, 0.7071}, {0, 240, -6.2, 2.2},
               {0, 560, 2, 1.1},   {6, 1050, 0, 12},      {0, 30000, 3.5, 1},
               {2, 7200, 5, 0.7},  {3, 17500, 0, 0.7071}};
  for (std::size_t b = 0; b < std::size(bands); ++b) {
    const std::string prefix = "eq" + std::to_string(b + 1) + "_";
    set(settings, (prefix + "on").c_str(), 1);
    set(settings, (prefix + "type").c_str(), bands[b].type);
    set(settings, (prefix + "frequency").c_str(), bands[b].frequency);
    set(settings, (prefix + "gain").c_str(), bands[b].gain);
    set(settings, (prefix + "q").c_str(), bands[b].q);
  }
  set(settings, "eq1_slope", 24);
  set(settings, "eq7_position", 1);
  set(settings, "gain_out", 14);  // beyond full scale
  return settings;
}

}  // namespace

Planar programme(std::size_t channels, double seconds) {
  const auto frames = static_cast<std::size_t>(seconds * kRate);
  Planar sound(channels, std::vector<float>(frames));
  std::minstd_rand random(11);
  for (std::size_t c = 0; c < channels; ++c) {
    double low = 0;
    for (std::size_t i = 0; i < frames; ++i) {
      const double time = static_cast<double>(i) / kRate;
      const double white = static_cast<double>(random()) / 1073741823.5 - 1;
      low += 0.15 * (white - low);
      const double beat = std::fmod(time * 2 + 0.13 * static_cast<double>(c), 1.0);
      const double burst = std::exp(-9 * beat);
      const double tone = std::sin(2 * std::numbers::pi * 220 * time) +
                          0.5 * std::sin(2 * std::numbers::pi * 1760 * time);
      sound[c][i] = static_cast<float>(burst * (0.9 * low + 0.18 * tone) + 0.004 * white);
    }
  }
  return sound;
}

Scene scene(const std::string& name) {
  constexpr double kSeconds = 4;
  const auto play = [&](const Settings& settings, const char* format, std::size_t channels,
                        const std::vector<float>& key = {}) {
    return Scene{
        name, played(settings.get(), format_of(format), kRate, programme(channels, kSeconds), key)};
  };
  if (name == "neutral") return play(preset("neutral"), "Mono", 1);
  if (name == "voice") {
    Scene made = play(preset("voice"), "Stereo", 2);
    made.model.attention.hovered = {view::Part::kHandle, 1};
    made.model.attention.can_undo = true;
    return made;
  }
  if (name == "drum_gate") return play(preset("drum_bus"), "Stereo", 2);
  if (name == "dialogue") return play(preset("dialogue_5.1"), "5.1", 6);
  if (name == "film") {
    Scene made = play(preset("film_7.1"), "7.1", 8);
    const auto layout = view::layout_of(view::kLeastSize, made.model.setup);
    for (std::size_t c = 0; c < layout.cells.size(); ++c) {
      if (layout.cells[c].parameter == view::parameters().compressor.threshold) {
        made.model.attention.focused = {view::Part::kCell, c};
      }
    }
    made.model.attention.is_editing = true;
    made.model.attention.typed = "-21.5";
    return made;
  }
  if (name == "ducking") {
    const Settings settings = preset("vocal_sidechain_duck");
    set(settings, "key_listen", 1);
    return play(settings, "LCR", 3, programme(1, kSeconds)[0]);
  }
  if (name == "eight_bands") return play(eight_bands(), "Stereo", 2);
  if (name == "bypassed") {
    const Settings settings = preset("acoustic_guitar");
    set(settings, "bypass", 1);
    set(settings, "key_enable", 1);
    return play(settings, "Quad", 4);
  }
  throw std::invalid_argument("no scene " + name);
}

}  // namespace channelstrip::view_test
