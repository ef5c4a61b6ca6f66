#include "strip_coefficients.h"

#include <cmath>

#include "dynamics.h"
#include "dynamics_coefficients.h"
#include "eq_coefficients.h"
#include "require.h"
#include "section.h"

namespace channelstrip::host {

// Who listens to the key hears nothing else.
MixCoefficients design_mix(const StripSettings& settings, double sample_rate) {
  require_decibels("gain_in", settings.gain_in);
  require_decibels("gain_out", settings.gain_out);
  require_within(0, 100, "mix", settings.mix, "%");
  return {.gain_in = db_to_linear(settings.gain_in),
          .gain_out = db_to_linear(settings.gain_out),
          .mix = settings.key_listen ? 1 : settings.mix / 100,
          .weight = one_pole_weight(settings.glide, sample_rate),
          .bypass = settings.bypass};
}

StripCoefficients design_strip(const StripSettings& settings, double sample_rate,
                               const ChannelLayout& layout) {
  require(sample_rate > 0 && std::isfinite(sample_rate), "sample rate", sample_rate, "Hz",
          "above 0 and finite");
  require_time("glide", settings.glide);

  StripCoefficients strip{};
  Dyn_SCoefsBlock& dynamics = strip.dynamics;
  strip.eq = eq_record(design_eq(settings, sample_rate));
  naming("compressor.", [&] { design_compressor(settings.compressor, sample_rate, dynamics); });
  naming("expander.", [&] { design_expander(settings.expander, sample_rate, dynamics); });
  naming("detector.", [&] { design_detector(settings.detector, sample_rate, dynamics); });
  store(design_key_filter(settings, sample_rate), dynamics.keyFilter);
  naming("link: ", [&] { design_links(settings, layout, dynamics); });
  design_modes(settings, dynamics);
  design_glide(settings, sample_rate, strip);
  return strip;
}

void design_glide(const StripSettings& settings, double sample_rate, StripCoefficients& out) {
  out.dezip_rate = static_cast<float>(one_pole_weight(settings.glide, sample_rate, 4));
  out.mix = design_mix(settings, sample_rate);
}

}  // namespace channelstrip::host
