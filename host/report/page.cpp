#include "page.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cmath>
#include <filesystem>

#include "../design/dynamics.h"
#include "../pictures/xml.h"
#include "html.h"
#include "page_style.h"
#include "report_charts.h"
#include "settings_tables.h"
#include "words.h"

namespace channelstrip::host {
namespace {

constexpr Size kChartSize{480, 300};

std::string file_name(const std::string& path) {
  return std::filesystem::path(path).filename().string();
}

double decibels(double linear) {
  return linear_to_db(linear);
}

double seconds(const RenderAnalysis& analysis) {
  return static_cast<double>(analysis.frames) / analysis.before.format.sample_rate;
}

std::string figure(const Chart& chart) {
  return fmt::format("<figure>\n{}</figure>\n", svg(chart, kChartSize));
}

struct Judgement {
  const char* css_class;
  std::string summary, detail;
};

Judgement judgement(const RenderAnalysis& analysis) {
  const Comparison& comparison = analysis.comparison;
  const std::string type = sample_type_name(analysis.after.format);
  const std::string greatest = fmt::format("The greatest difference of a sample is {} dBFS.",
                                           number(decibels(comparison.greatest())));
  const char* const kSame = "This file is what these settings give";
  switch (comparison.verdict()) {
    case Verdict::kIdentical:
      return {"good", kSame, "Rendered again, every sample is the same."};
    case Verdict::kRounded:
      return {
          "good", kSame,
          fmt::format("{} No sample is off by more than rounding to {} makes it.", greatest, type)};
    case Verdict::kDithered:
      return {"good", kSame,
              fmt::format("{} No sample is off by more than dither and rounding to {} make it.",
                          greatest, type)};
    case Verdict::kCoded:
      return {"", "This file can't be checked sample by sample",
              fmt::format("{} is lossy. {}", type, greatest)};
    case Verdict::kDifferent:
      break;
  }
  return {"bad", "This file isn't what these settings give",
          greatest + " The settings, the input or the file are others than those of the render."};
}

std::string verdict(const RenderAnalysis& analysis) {
  const auto [css_class, summary, detail] = judgement(analysis);
  return fmt::format("<p class=\"verdict {}\"><b>{}.</b> {}</p>\n", css_class, escape_xml(summary),
                     escape_xml(detail));
}

double highest(const std::vector<double>& linear) {
  return decibels(*std::ranges::max_element(linear));
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

std::string files(const RenderAnalysis& analysis) {
  HtmlTable table{.columns = {"", "File", "Samples", "Rate", "Length", "Channels"},
                  .numbers = false};
  for (const auto& [name, file] :
       {std::pair("Before", &analysis.before), std::pair("After", &analysis.after)}) {
    table.rows.push_back({name, file->path, sample_type_name(file->format),
                          fmt::format("{} Hz", file->format.sample_rate),
                          duration(seconds(analysis)),
                          fmt::format("{}: {}", analysis.layout.format->name,
                                      fmt::join(analysis.layout.labels, " "))});
  }
  return section("Files", html(table));
}

std::string pictures(const RenderAnalysis& analysis) {
  std::string charts;
  for (std::size_t part = 0; part < analysis.parts.size(); ++part) {
    charts += figure(waveform_chart(analysis, part)) + figure(spectrum_chart(analysis, part));
  }
  return section("Waveform and spectrum", "<div class=\"charts\">\n" + charts + "</div>\n");
}

std::string dynamics(const RenderAnalysis& analysis) {
  HtmlTable table{.caption = "Gain reduction by link group",
                  .columns = {"Group", "Deepest, dB", "Average, dB"}};
  for (const auto& [part, reduction] : analysis.groups) {
    table.rows.push_back({part.name, number(reduction.deepest()), number(reduction.average())});
  }
  const auto deepest = [](float reduction) {
    return number(std::max(0.0, -decibels(1 - static_cast<double>(reduction))));
  };
  const std::string notes = element(
      "p", "soft",
      fmt::format("Compressor alone: {} dB at most. Expander and gate alone: {} dB at most.",
                  deepest(analysis.compressor_reduction), deepest(analysis.expander_reduction)));
  return section("Dynamics", "<div class=\"charts\">\n" + figure(reduction_chart(analysis)) +
                                 "<div>\n" + html(table) + notes + "</div>\n</div>\n");
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
    table.rows.push_back(
        {analysis.layout.labels[c],
         from_to(number(decibels(static_cast<double>(in.peak))),
                 number(decibels(static_cast<double>(out.peak)))),
         from_to(number(decibels(before.true_peak[c])), number(decibels(after.true_peak[c]))),
         from_to(in.at_full_scale, out.at_full_scale)});
  }
  return html(table);
}

std::string measures(const RenderAnalysis& analysis, const Loudness& before,
                     const Loudness& after) {
  return section("Loudness and peaks", "<div class=\"charts\">\n" + loudness(before, after) +
                                           peaks(analysis, before, after) + "</div>\n");
}

// The rows of `after` that `before` doesn't have.
std::vector<HtmlTable> changed(const StripSettings& before, const StripSettings& after) {
  const std::vector<HtmlTable> old = settings_tables(before);
  std::vector<HtmlTable> tables = settings_tables(after);
  for (HtmlTable& table : tables) {
    const auto same = std::ranges::find(old, table.caption, &HtmlTable::caption);
    if (same == old.end()) continue;
    std::erase_if(table.rows, [&](const auto& row) {
      return std::ranges::find(same->rows, row) != same->rows.end();
    });
  }
  std::erase_if(tables, [](const HtmlTable& table) { return table.rows.empty(); });
  return tables;
}

// Tables of bands over the whole width, below them the others side by side.
std::string settings_markup(const std::vector<HtmlTable>& tables) {
  std::string bands, others;
  for (const HtmlTable& table : tables) (table.columns.size() > 3 ? bands : others) += html(table);
  return bands + "<div class=\"charts\">\n" + others + "</div>\n";
}

std::string settings(const Preset& preset) {
  std::string markup;
  if (!preset.file.empty()) markup += element("p", "soft", preset.file);
  markup += settings_markup(settings_tables(preset.settings));
  const StripSettings* before = &preset.settings;
  for (const auto& [time, after] : preset.changes) {
    markup += element("h3", "", fmt::format("From {} on", duration(time)));
    markup += settings_markup(changed(*before, after));
    before = &after;
  }
  return section("Settings", markup);
}

constexpr const char* kHowMeasured = R"(<p>Waveforms show the highest and the lowest sample of every
column; no peak is lost. Where several channels share a picture, it holds the extremes of all.</p>
<p>Spectra are averages over the whole file (Welch's method, Hann window, half overlap), read in
bands of a sixth of an octave and, where several channels share a picture, as the mean of their
power. A sine at full scale reads 0 dBFS; pink noise is a level line. Below about 40 Hz bands are
4.5 Hz wide.</p>
<p>Gain reduction is what compressor and expander take together, makeup left out: the deepest that
lasted for 64 frames. The average is over all such periods, in decibels.</p>
<p>Loudness and true peak follow ITU-R BS.1770 and EBU R 128. The LFE doesn't count, surround
channels weigh 1.5 dB more, and a mono file is one loudspeaker: the same signal in stereo reads 3 LU
more. An en dash stands where a file is too short or too quiet for a measure.</p>
<p>Samples at full scale are those on the highest or lowest value that their type can hold, or
beyond: where there are many, the file was clipped.</p>
)";

}  // namespace

std::string report_page(const RenderAnalysis& analysis) {
  const Loudness before = analysis.before.signal.loudness();
  const Loudness after = analysis.after.signal.loudness();
  const std::string title = file_name(analysis.after.path);
  const std::string origin =
      fmt::format("Rendered from {}{}{}, {}", file_name(analysis.before.path),
                  analysis.preset.name.empty() ? "" : " with the preset ", analysis.preset.name,
                  duration(seconds(analysis)));
  return fmt::format(
             "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
             "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
             "<title>{}</title>\n<style>{}{}</style>\n</head>\n<body>\n",
             escape_xml(title), chart_css(), kPageStyle) +
         "<header>\n" + element("h1", "", title) + element("p", "soft", origin) +
         verdict(analysis) + at_a_glance(analysis, before, after) + "</header>\n<main>\n" +
         pictures(analysis) + dynamics(analysis) + measures(analysis, before, after) +
         settings(analysis.preset) + files(analysis) +
         section("How this was measured", kHowMeasured) +
         "</main>\n<footer>channelstrip " CHANNELSTRIP_VERSION "</footer>\n</body>\n</html>\n";
}

}  // namespace channelstrip::host
