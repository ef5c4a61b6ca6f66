#include <fmt/format.h>

#include <algorithm>

#include "../text/wording.h"
#include "control/design/dynamics.h"
#include "html.h"
#include "page.h"

namespace channelstrip::host {
namespace {

double highest(const std::vector<double>& linear) {
  return linear_to_db(*std::ranges::max_element(linear));
}

long long at_full_scale(const SignalAnalysis& signal) {
  long long samples = 0;
  for (const auto& channel : signal.channels()) samples += channel.at_full_scale;
  return samples;
}

std::string glance(std::string_view name, const std::string& value, std::string_view unit) {
  return fmt::format("<div><dt>{}</dt><dd>{} <small>{}</small></dd></div>\n", name, value, unit);
}

template <typename Value>
std::string from_to(const Value& before, const Value& after) {
  return fmt::format("{} → {}", before, after);
}

std::string loudness(const Loudness& before, const Loudness& after) {
  HtmlTable table{.caption = "Loudness", .columns = {"", "Before", "After", "Change"}};
  const auto row = [&](std::string name, std::optional<double> Loudness::*measure) {
    table.rows.push_back({std::move(name), number(before.*measure), number(after.*measure),
                          change(before.*measure, after.*measure)});
  };
  row("Integrated, LUFS", &Loudness::integrated);
  row("Short-term maximum, LUFS", &Loudness::short_term);
  row("Momentary maximum, LUFS", &Loudness::momentary);
  row("Range, LU", &Loudness::range);
  return html(table);
}

std::string peaks(const RenderAnalysis& analysis, const Loudness& before, const Loudness& after) {
  HtmlTable table{
      .caption = "Peaks",
      .columns = {"Channel", "Sample peak, dBFS", "True peak, dBTP", "Samples at full scale"}};
  for (std::size_t c = 0; c < analysis.layout.labels.size(); ++c) {
    const auto& in = analysis.before.signal.channels()[c];
    const auto& out = analysis.after.signal.channels()[c];
    table.rows.push_back({analysis.layout.labels[c],
                          from_to(number(linear_to_db(static_cast<double>(in.peak))),
                                  number(linear_to_db(static_cast<double>(out.peak)))),
                          from_to(number(linear_to_db(before.true_peak[c])),
                                  number(linear_to_db(after.true_peak[c]))),
                          from_to(in.at_full_scale, out.at_full_scale)});
  }
  return html(table);
}

}  // namespace

std::string at_a_glance(const RenderAnalysis& analysis, const Loudness& before,
                        const Loudness& after) {
  double deepest = 0;
  for (const auto& group : analysis.groups) {
    deepest = std::max(deepest, group.reduction.deepest());
  }
  return "<dl class=\"glance\">\n" +
         glance("Integrated loudness", from_to(number(before.integrated), number(after.integrated)),
                "LUFS") +
         glance("True peak",
                from_to(number(highest(before.true_peak)), number(highest(after.true_peak))),
                "dBTP") +
         glance("Deepest gain reduction", number(deepest), "dB") +
         glance(
             "Samples at full scale",
             from_to(at_full_scale(analysis.before.signal), at_full_scale(analysis.after.signal)),
             "") +
         "</dl>\n";
}

std::string level_section(const RenderAnalysis& analysis, const Loudness& before,
                          const Loudness& after) {
  return section("Loudness and peaks", "<div class=\"charts\">\n" + loudness(before, after) +
                                           peaks(analysis, before, after) + "</div>\n");
}

}  // namespace channelstrip::host
