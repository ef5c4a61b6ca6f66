#include "strip_curves.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <stdexcept>

#include "../text/wording.h"
#include "control/design/refusal_words.h"
#include "control/design/strip_coefficients.h"
#include "control/preset/precision.h"

namespace channelstrip::host {
namespace {

std::vector<BandFilter> design_filters(std::span<const BandSettings> bands, double sample_rate) {
  std::vector<BandFilter> filters;
  filters.reserve(bands.size());
  for (const BandSettings& band : bands) filters.push_back(design_filter(band, sample_rate));
  return filters;
}

std::string title_of(const Preset& preset) {
  if (!preset.name.empty()) return preset.name;
  return preset.file.empty() ? "Neutral strip" : preset.file;
}

std::vector<double> change_times(const Preset& preset) {
  std::vector<double> times;
  std::ranges::transform(preset.changes, std::back_inserter(times), &Preset::Change::time);
  return times;
}

}  // namespace

StripCurves strip_curves(const StripOptions& options, double sample_rate, double time) {
  Preset preset = load_preset(options.preset, options.assignments);
  const StemFormat* format = find_stem_format(options.format.value_or("Mono"));
  if (!format) throw std::runtime_error(fmt::format("--format: unknown: {}", *options.format));
  const ChannelLayout layout = default_layout(*format);
  const std::vector<double> changes = change_times(preset);
  const auto changed =
      static_cast<std::size_t>(std::ranges::upper_bound(changes, time) - changes.begin());
  const StripSettings& settings =
      changed == 0 ? preset.settings : preset.changes[changed - 1].settings;
  check_fits(preset, sample_rate, layout);
  remark_on_precision(preset, sample_rate);
  try {
    require_possible(settings, sample_rate, layout);
    StripCurves curves{.title = title_of(preset),
                       .sample_rate = sample_rate,
                       .settings = settings,
                       .pre = design_filters(settings.pre, sample_rate),
                       .post = design_filters(settings.post, sample_rate),
                       .key_filter = {},
                       .dynamics = design_strip(settings, sample_rate, layout).dynamics,
                       .burst = {},
                       .layout = {},
                       .changes = changes,
                       .changed = changed,
                       .remarks = preset.remarks};
    if (settings.key_filter) curves.key_filter = design_filter(*settings.key_filter, sample_rate);
    if (settings.compressor || settings.expander) {
      curves.burst = measure_burst(settings, sample_rate, Library(options.library));
    }
    if (options.format) curves.layout = layout;
    return curves;
  } catch (const std::invalid_argument& error) {
    throw std::runtime_error(fmt::format("{}: {}", options.preset.value_or("--set"), error.what()));
  }
}

std::string heading_of(const StripCurves& curves) {
  std::string heading = fmt::format("{} at {} Hz", one_line(curves.title), curves.sample_rate);
  if (curves.changes.empty()) return heading;
  const std::size_t done = curves.changed;
  heading += ", from " + duration(done == 0 ? 0 : curves.changes[done - 1]);
  return heading +
         (done == curves.changes.size() ? " on" : " to " + duration(curves.changes[done]));
}

std::string note_of(const StripCurves& curves) {
  std::string times;
  for (const double time : curves.changes) times += (times.empty() ? "" : ", ") + duration(time);
  return times.empty() ? "" : "Settings change at " + times;
}

std::vector<Chart> charts_of(const StripCurves& curves) {
  std::vector<Chart> charts = filter_charts(curves);
  if (!curves.burst) return charts;
  charts.push_back(level_chart(curves));
  std::ranges::move(burst_charts(curves), std::back_inserter(charts));
  return charts;
}

}  // namespace channelstrip::host
