#include "strip_design.h"

#include <algorithm>
#include <bit>

#include "../design/band.h"
#include "../design/dynamics.h"
#include "../design/dynamics_coefficients.h"
#include "../design/eq_coefficients.h"
#include "../design/link_map.h"

namespace channelstrip::host {
namespace {

bool have_same_sections(std::span<const BandSettings> a, std::span<const BandSettings> b) {
  return std::ranges::equal(a, b, [](const BandSettings& x, const BandSettings& y) {
    return x.type == y.type && section_count(x) == section_count(y);
  });
}

bool is_same_band(const StripSettings::Bands& a, const StripSettings::Bands& b, std::size_t i) {
  return i < a.size() && i < b.size() && a[i] == b[i];
}

}  // namespace

StripDesign::StripDesign(const StripSettings& settings, double sample_rate,
                         const ChannelLayout& layout)
    : settings_(settings),
      coefficients_(design_strip(settings, sample_rate, layout)),
      sample_rate_(sample_rate),
      layout_(&layout) {}

bool StripDesign::is_near(const StripSettings& wanted) const {
  const StripSettings& from = settings_;
  const bool has_same_links = (from.link == wanted.link && from.link_style == wanted.link_style) ||
                              read_links(wanted, *layout_).map == links_of(coefficients_.dynamics);
  return has_same_links && have_same_sections(from.pre, wanted.pre) &&
         have_same_sections(from.post, wanted.post) &&
         from.compressor.has_value() == wanted.compressor.has_value() &&
         from.expander.has_value() == wanted.expander.has_value() &&
         from.key_listen == wanted.key_listen;
}

const BandSettings& StripDesign::band(std::size_t number) const {
  if (number == kKeyFilter) return *settings_.key_filter;
  const std::size_t pre = settings_.pre.size();
  return number < pre ? settings_.pre[number] : settings_.post[number - pre];
}

// Of the band's first section.
float* StripDesign::section_coefficients(std::size_t number) {
  if (number == kKeyFilter) return coefficients_.dynamics.keyFilter;
  float* place = coefficients_.eq.targetCoefs;
  for (std::size_t k = 0; k < number; ++k) place += 5 * section_count(band(k));
  return place;
}

void StripDesign::store_sections(std::size_t number, const Sections& sections) {
  float* place = section_coefficients(number);
  for (const Section& section : sections) {
    store(is_stable(section) ? section : Section{}, place);
    place += 5;
  }
}

void StripDesign::design(std::size_t number) {
  const PrecisionSearch search(design_band(band(number), sample_rate_));
  store_sections(number, search.sections());
  const std::uint32_t bit = std::uint32_t{1} << number;
  waiting_ = search.is_done() ? waiting_ & ~bit : waiting_ | bit;
  if (searched_ == number) search_ = {};
}

bool StripDesign::step() {
  if (search_.is_done()) {
    if (waiting_ == 0) return false;
    searched_ = static_cast<std::size_t>(std::countr_zero(waiting_));
    waiting_ &= waiting_ - 1;
    search_ = PrecisionSearch(design_band(band(searched_), sample_rate_));
    return false;
  }
  search_.step();
  if (!search_.is_done()) return false;
  store_sections(searched_, search_.sections());
  return true;
}

void StripDesign::change(const StripSettings& wanted) {
  const StripSettings from = settings_;
  settings_ = wanted;
  change_bands(from);
  change_dynamics(from);
  design_modes(settings_, coefficients_.dynamics);
  design_glide(settings_, sample_rate_, coefficients_);
}

void StripDesign::change_bands(const StripSettings& from) {
  const bool moved = !have_same_sections(from.pre, settings_.pre) ||
                     !have_same_sections(from.post, settings_.post);
  const std::size_t pre = settings_.pre.size(), count = pre + settings_.post.size();
  if (moved) {
    coefficients_.eq = eq_record({});
    waiting_ &= std::uint32_t{1} << kKeyFilter;
    if (searched_ != kKeyFilter) search_ = {};
    int sections = 0;
    for (std::size_t k = 0; k < count; ++k) {
      if (k == pre) coefficients_.eq.endBand[0] = sections;
      sections += section_count(band(k));
    }
    if (count == pre) coefficients_.eq.endBand[0] = sections;
    coefficients_.eq.firstBand[1] = coefficients_.eq.endBand[0];
    coefficients_.eq.endBand[1] = sections;
  }
  for (std::size_t k = 0; k < count; ++k) {
    const bool is_same = k < pre ? is_same_band(from.pre, settings_.pre, k)
                                 : is_same_band(from.post, settings_.post, k - pre);
    if (moved || !is_same) design(k);
  }
  if (from.key_filter == settings_.key_filter) return;
  if (settings_.key_filter) {
    design(kKeyFilter);
  } else {
    waiting_ &= ~(std::uint32_t{1} << kKeyFilter);
    if (searched_ == kKeyFilter) search_ = {};
    store({}, coefficients_.dynamics.keyFilter);
  }
}

void StripDesign::change_dynamics(const StripSettings& from) {
  Dyn_SCoefsBlock& dynamics = coefficients_.dynamics;
  if (settings_.compressor != from.compressor) {
    design_compressor(settings_.compressor, sample_rate_, dynamics);
  }
  if (settings_.expander != from.expander) {
    design_expander(settings_.expander, sample_rate_, dynamics);
  }
  if (settings_.detector != from.detector) {
    design_detector(settings_.detector, sample_rate_, dynamics);
  }
  if (settings_.link != from.link || settings_.link_style != from.link_style) {
    design_links(settings_, *layout_, dynamics);
  }
}

}  // namespace channelstrip::host
