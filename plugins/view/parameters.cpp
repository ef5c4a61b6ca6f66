#include "parameters.h"

#include <cmath>

namespace channelstrip::view {
namespace {

BandParameters band_parameters(const Parameters& p, const std::string& prefix) {
  const auto at = [&](const char* name) { return p.index_of(prefix + name); };
  return {at("on"),          at("type"),  at("frequency"), at("gain"),    at("q"),
          at("shelf_slope"), at("slope"), at("design"),    at("position")};
}

Parameters read_parameters() {
  Parameters p{};
  p.all.resize(channelstrip_parameter_count());
  for (std::size_t i = 0; i < p.all.size(); ++i) {
    channelstrip_parameter_info(static_cast<std::uint32_t>(i), &p.all[i], sizeof p.all[i]);
  }
  const auto at = [&](const char* symbol) { return p.index_of(symbol); };
  for (std::size_t b = 0; b < kBands; ++b) {
    p.bands[b] = band_parameters(p, "eq" + std::to_string(b + 1) + "_");
  }
  p.key_filter = band_parameters(p, "key_filter_");
  p.compressor = {at("compressor_on"),    at("compressor_threshold"), at("compressor_ratio"),
                  at("compressor_knee"),  at("compressor_attack"),    at("compressor_release"),
                  at("compressor_range"), at("compressor_makeup"),    at("compressor_auto_makeup")};
  p.expander = {at("expander_on"),        at("expander_threshold"), at("expander_ratio"),
                at("expander_knee"),      at("expander_attack"),    at("expander_release"),
                at("expander_hold"),      at("expander_range"),     at("expander_gate"),
                at("expander_hysteresis")};
  p.key = {at("key_enable"), at("key_listen")};
  p.detector = {at("detector_mode"), at("detector_time")};
  p.gain_in = at("gain_in");
  p.gain_out = at("gain_out");
  p.mix = at("mix");
  p.bypass = at("bypass");
  p.glide = at("glide");
  p.meter_gain = at("meter_input_gain");
  p.link = at("link_style");
  return p;
}

void replace_all(std::string& text, std::string_view from, std::string_view to) {
  for (std::size_t at = text.find(from); at != std::string::npos;
       at = text.find(from, at + to.size())) {
    text.replace(at, from.size(), to);
  }
}

}  // namespace

std::size_t Parameters::index_of(std::string_view symbol) const {
  for (std::size_t i = 0; i < all.size(); ++i) {
    if (symbol == all[i].symbol) return i;
  }
  return kNoParameter;
}

const Parameters& parameters() {
  static const Parameters read = read_parameters();
  return read;
}

ValueText value_text(std::size_t parameter, double value) {
  const channelstrip_parameter& p = parameters().all[parameter];
  char text[64] = "";
  channelstrip_value_to_text(p.id, value, text, sizeof text, nullptr);
  ValueText shown{text, ""};
  if (p.kind == CHANNELSTRIP_NUMBER) {
    if (const std::size_t space = shown.number.find(' '); space != std::string::npos) {
      shown.unit = shown.number.substr(space + 1);
      shown.number.resize(space);
    }
    replace_all(shown.number, "-", "\u2212");
    replace_all(shown.number, "inf", "\u221e");
  } else {
    replace_all(shown.number, "_", " ");
  }
  return shown;
}

BandUse use_of(const BandParameters& band, const std::vector<double>& values) {
  const auto type = static_cast<BandType>(values[band.type]);
  const bool is_shelf = type == BandType::kLowShelf || type == BandType::kHighShelf;
  const bool is_pass = type == BandType::kLowPass || type == BandType::kHighPass;
  const bool is_sloped = is_shelf && values[band.shelf_slope] > 0;
  const bool is_butterworth = is_pass && values[band.slope] != 12;
  return {.gain = is_shelf || type == BandType::kPeak || type == BandType::kTilt,
          .q = type != BandType::kTilt && !is_sloped && !is_butterworth,
          .shelf_slope = is_shelf,
          .slope = is_pass};
}

}  // namespace channelstrip::view
