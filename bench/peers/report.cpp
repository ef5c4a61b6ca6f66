#include "report.h"

#include <fmt/format.h>

#include <nlohmann/json.hpp>

#include "measure.h"
#include "programme.h"

namespace channelstrip::bench {
namespace {

// How many times faster ChannelStrip is in a case.
std::optional<double> ratio(const Subject& subject, const Subject& strip, std::size_t i) {
  if (!subject.nanoseconds[i]) return std::nullopt;
  return *subject.nanoseconds[i] / *strip.nanoseconds[i];
}

std::string row(const Subject& subject, const Subject& strip) {
  std::string line = fmt::format("{:14}{:5}", subject.name, subject.bands);
  for (std::size_t i = 0; i < kCases.size(); ++i) {
    const auto faster = ratio(subject, strip, i);
    line += faster ? fmt::format("{:12.1f}{:6.2f}", *subject.nanoseconds[i], *faster)
                   : fmt::format("{:>12}{:>6}", "-", "-");
  }
  return line + '\n';
}

std::string details(const Subject& subject) {
  std::string text = subject.name;
  if (!subject.package.empty()) text += fmt::format(" (package {})", subject.package);
  text += '\n';
  const auto add = [&](std::string_view what, const std::string& said) {
    text += fmt::format("  {:8}{}\n", what, said);
  };
  for (const int channels : {1, 2}) {
    const auto plugins = subject.plugins.find(channels);
    const auto reason = subject.unmeasured.find(channels);
    if (plugins != subject.plugins.end()) add(format_name(channels), plugins->second);
    if (reason != subject.unmeasured.end()) {
      add(format_name(channels), "not measured: " + reason->second);
    }
  }
  if (!subject.notes.empty()) add("", subject.notes);
  if (subject.latency > 0) add("", fmt::format("latency: {:.0f} samples", subject.latency));
  if (subject.threads > 0) add("", fmt::format("threads it starts: {}", subject.threads));
  return text;
}

}  // namespace

std::string_view format_name(int channels) {
  return channels == 1 ? "Mono" : "Stereo";
}

std::string as_table(const std::vector<Subject>& subjects) {
  std::string text = fmt::format(
      "Equaliser, gate and compressor at {:.0f} Hz: nanoseconds per frame, by samples per call, "
      "and\n"
      "how many times faster ChannelStrip's full strip is; medians of {} turns\n\n",
      kSampleRate, kTurns);
  text += fmt::format("{:14}{:>5}", "", "bands");
  for (const auto& [channels, samples] : kCases) {
    text += fmt::format("{:>18}", fmt::format("{} {}", format_name(channels), samples));
  }
  text += '\n';
  for (const Subject& subject : subjects) text += row(subject, subjects.front());
  text += '\n';
  for (const Subject& subject : subjects) text += details(subject);
  return text;
}

std::string as_json(const std::vector<Subject>& subjects) {
  using Json = nlohmann::ordered_json;
  Json list = Json::array();
  for (const Subject& subject : subjects) {
    Json entry{{"name", subject.name},
               {"package", subject.package},
               {"bands", subject.bands},
               {"notes", subject.notes},
               {"latency_samples", subject.latency},
               {"threads", subject.threads}};
    const auto add = [&](const char* key, const std::map<int, std::string>& texts) {
      Json& object = entry[key] = Json::object();
      for (const auto& [channels, text] : texts) object[std::string(format_name(channels))] = text;
    };
    add("plugins", subject.plugins);
    add("not_measured", subject.unmeasured);
    Json& figures = entry["figures"] = Json::array();
    for (std::size_t i = 0; i < kCases.size(); ++i) {
      const auto faster = ratio(subject, subjects.front(), i);
      if (!faster) continue;
      figures.push_back({{"format", format_name(kCases[i].channels)},
                         {"samples_per_call", kCases[i].samples_per_call},
                         {"ns_per_frame", *subject.nanoseconds[i]},
                         {"channelstrip_times_faster", *faster}});
    }
    list.push_back(std::move(entry));
  }
  const Json document{{"sample_rate", kSampleRate}, {"turns", kTurns}, {"subjects", list}};
  return document.dump(2) + '\n';
}

}  // namespace channelstrip::bench
