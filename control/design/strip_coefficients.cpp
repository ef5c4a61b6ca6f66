#include "strip_coefficients.h"

#include "dynamics.h"
#include "dynamics_coefficients.h"
#include "eq_coefficients.h"
#include "section.h"

namespace channelstrip::host {

// Who listens to the key hears nothing else.
MixCoefficients design_mix(const StripSettings& settings, double sample_rate) {
  return {.gain_in = db_to_linear(settings.gain_in),
          .gain_out = db_to_linear(settings.gain_out),
          .mix = settings.key_listen ? 1 : settings.mix / 100,
          .weight = one_pole_weight(settings.glide, sample_rate),
          .bypass = settings.bypass};
}

StripCoefficients design_strip(const StripSettings& settings, double sample_rate,
                               const ChannelLayout& layout) {
  StripCoefficients strip{};
  Dyn_SCoefsBlock& dynamics = strip.dynamics;
  strip.eq = eq_record(design_eq(settings, sample_rate));
  design_compressor(settings.compressor, sample_rate, dynamics);
  design_expander(settings.expander, sample_rate, dynamics);
  design_detector(settings.detector, sample_rate, dynamics);
  store(design_key_filter(settings, sample_rate), dynamics.keyFilter);
  design_links(settings, layout, dynamics);
  design_modes(settings, dynamics);
  design_glide(settings, sample_rate, strip);
  return strip;
}

void design_glide(const StripSettings& settings, double sample_rate, StripCoefficients& out) {
  out.dezip_rate = static_cast<float>(one_pole_weight(settings.glide, sample_rate, 4));
  out.mix = design_mix(settings, sample_rate);
}

}  // namespace channelstrip::host
