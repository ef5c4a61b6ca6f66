#include "page.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <filesystem>

#include "../pictures/xml.h"
#include "../text/wording.h"
#include "control/design/dynamics.h"
#include "html.h"
#include "page_style.h"
#include "report_charts.h"

namespace channelstrip::host {
namespace {

constexpr Size kChartSize{480, 300};

std::string file_name(const std::string& path) {
  return std::filesystem::path(path).filename().string();
}

double seconds(const RenderAnalysis& analysis) {
  return static_cast<double>(analysis.frames) / analysis.before.format.sample_rate;
}

std::string figure(const Chart& chart) {
  return fmt::format("<figure>\n{}</figure>\n", svg(chart, kChartSize));
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
    return number(std::max(0.0, -linear_to_db(1 - static_cast<double>(reduction))));
  };
  const std::string notes = element(
      "p", "soft",
      fmt::format("Compressor alone: {} dB at most. Expander and gate alone: {} dB at most.",
                  deepest(analysis.compressor_reduction), deepest(analysis.expander_reduction)));
  return section("Dynamics", "<div class=\"charts\">\n" + figure(reduction_chart(analysis)) +
                                 "<div>\n" + html(table) + notes + "</div>\n</div>\n");
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
channels beside the listener (60 to 120 degrees) weigh 1.5 dB more, those behind don't, and a mono
file is one loudspeaker: the same signal in stereo reads 3 LU more. An en dash stands where a file is too short or too quiet for a measure.</p>
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
         pictures(analysis) + dynamics(analysis) + level_section(analysis, before, after) +
         settings_section(analysis.preset) + files(analysis) +
         section("How this was measured", kHowMeasured) +
         "</main>\n<footer>channelstrip " CHANNELSTRIP_VERSION "</footer>\n</body>\n</html>\n";
}

}  // namespace channelstrip::host
