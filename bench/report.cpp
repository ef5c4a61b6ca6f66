#include "report.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <nlohmann/json.hpp>
#include <optional>

namespace channelstrip::bench {
namespace {

constexpr const char* variant_name(Variant variant) {
  switch (variant) {
    case Variant::kUsual:
      return "";
    case Variant::kGliding:
      return "gliding";
    case Variant::kAllBefore:
      return "8 bands before";
    case Variant::kInPlace:
      return "in place";
  }
  return "";
}

std::string processor() {
  std::ifstream info("/proc/cpuinfo");
  for (std::string line; std::getline(info, line);) {
    if (line.starts_with("model name")) return line.substr(line.find(": ") + 2);
  }
  return "unknown";
}

struct Sum {
  double mean, least;  // geometric mean and least ratio of the rows that have a target
};

std::optional<Sum> sum(const std::vector<Row>& rows) {
  double logarithms = 0, count = 0, least = HUGE_VAL;
  for (const Row& row : rows) {
    if (row.workload.target == 0) continue;
    logarithms += std::log(row.ratio);
    least = std::min(least, row.ratio);
    ++count;
  }
  if (count == 0) return std::nullopt;
  return Sum{std::exp(logarithms / count), least};
}

}  // namespace

std::string Workload::name() const {
  std::string text(format);
  if (strips > 1) text += fmt::format(" x{}", strips);
  text += fmt::format(" {}", samples);
  if (variant != Variant::kUsual) text += fmt::format(" {}", variant_name(variant));
  return text;
}

std::string as_table(const Report& report) {
  std::string text = fmt::format(
      "Processor  {}\nCompiler   {}\nFlags      {}\nLibrary    {}\n\n"
      "Nanoseconds per frame and strip, and how many times faster the library is than the\n"
      "strip as plain loops (which beat those of the tests' model), compiled with the same flags;\n"
      "medians of {} turns\n\n",
      processor(), CHANNELSTRIP_COMPILER, CHANNELSTRIP_FLAGS, report.library, report.turns);
  text += fmt::format("{:28}{:>10}{:>10}{:>9}{:>9}\n", "strips, samples per call", "library",
                      "plain", "faster", "target");
  const auto target = [](double value) { return value > 0 ? fmt::format("{:.1f}", value) : ""; };
  for (const Row& row : report.rows) {
    text += fmt::format("{:28}{:10.2f}{:10.2f}{:9.2f}{:>9}\n", row.workload.name(), row.library_ns,
                        row.plain_ns, row.ratio, target(row.workload.target));
  }
  if (const auto total = sum(report.rows)) {
    constexpr const char* kLine = "{:48}{:9.2f}{:>9}\n";
    text += '\n' + fmt::format(kLine, "geometric mean of the rows with a target", total->mean,
                               target(kMeanTarget));
    text += fmt::format(kLine, "least of them", total->least, target(kLeastTarget));
  }
  return text;
}

std::string as_json(const Report& report) {
  nlohmann::ordered_json json = {{"processor", processor()},
                                 {"compiler", CHANNELSTRIP_COMPILER},
                                 {"flags", CHANNELSTRIP_FLAGS},
                                 {"library", report.library},
                                 {"turns", report.turns}};
  const auto target = [](double value) {
    return value > 0 ? nlohmann::ordered_json(value) : nlohmann::ordered_json();
  };
  for (const Row& row : report.rows) {
    json["rows"].push_back({{"name", row.workload.name()},
                            {"format", row.workload.format},
                            {"strips", row.workload.strips},
                            {"samples", row.workload.samples},
                            {"variant", variant_name(row.workload.variant)},
                            {"library_ns", row.library_ns},
                            {"plain_ns", row.plain_ns},
                            {"ratio", row.ratio},
                            {"target", target(row.workload.target)}});
  }
  if (const auto total = sum(report.rows)) {
    json["geometric_mean"] = {{"ratio", total->mean}, {"target", kMeanTarget}};
    json["least"] = {{"ratio", total->least}, {"target", kLeastTarget}};
  }
  return json.dump(2) + '\n';
}

}  // namespace channelstrip::bench
