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

// Geometric means and least ratios of the rows that have a target.
struct Sum {
  double mean, least, mean_to_memory, least_to_memory;
};

std::optional<Sum> sum(const std::vector<Row>& rows) {
  double count = 0;
  Sum sum = {0, HUGE_VAL, 0, HUGE_VAL};
  for (const Row& row : rows) {
    if (row.workload.target == 0) continue;
    sum.mean += std::log(row.ratio);
    sum.mean_to_memory += std::log(row.ratio_to_memory);
    sum.least = std::min(sum.least, row.ratio);
    sum.least_to_memory = std::min(sum.least_to_memory, row.ratio_to_memory);
    ++count;
  }
  if (count == 0) return std::nullopt;
  sum.mean = std::exp(sum.mean / count);
  sum.mean_to_memory = std::exp(sum.mean_to_memory / count);
  return sum;
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
      "Nanoseconds per frame and strip, and how many times faster the library is than the plain\n"
      "loops of the tests' model and than its own way through memory, all compiled with the same\n"
      "flags; medians of {} turns\n\n",
      processor(), CHANNELSTRIP_COMPILER, CHANNELSTRIP_FLAGS, report.library, report.turns);
  text += fmt::format("{:28}{:>9}{:>9}{:>9}{:>9}\n", "strips, samples per call", "ns", "model",
                      "target", "memory");
  const auto target = [](double value) { return value > 0 ? fmt::format("{:.1f}", value) : ""; };
  for (const Row& row : report.rows) {
    text += fmt::format("{:28}{:9.2f}{:9.2f}{:>9}{:9.2f}\n", row.workload.name(), row.nanoseconds,
                        row.ratio, target(row.workload.target), row.ratio_to_memory);
  }
  if (const auto total = sum(report.rows)) {
    constexpr const char* kLine = "{:37}{:9.2f}{:>9}{:9.2f}\n";
    text += '\n' + fmt::format(kLine, "geometric mean with a target", total->mean,
                               target(kMeanTarget), total->mean_to_memory);
    text += fmt::format(kLine, "least of them", total->least, target(kLeastTarget),
                        total->least_to_memory);
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
                            {"ns", row.nanoseconds},
                            {"ratio", row.ratio},
                            {"ratio_to_memory", row.ratio_to_memory},
                            {"target", target(row.workload.target)}});
  }
  if (const auto total = sum(report.rows)) {
    json["geometric_mean"] = {{"ratio", total->mean},
                              {"target", kMeanTarget},
                              {"ratio_to_memory", total->mean_to_memory}};
    json["least"] = {{"ratio", total->least},
                     {"target", kLeastTarget},
                     {"ratio_to_memory", total->least_to_memory}};
  }
  return json.dump(2) + '\n';
}

}  // namespace channelstrip::bench
