#include "report.h"

#include <fmt/format.h>

#include <cmath>
#include <cstddef>
#include <fstream>
#include <nlohmann/json.hpp>

#include "spread.h"

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

std::size_t turns_of(const Report& report) {
  return report.rows.front().nanoseconds.size();
}

// The geometric means over all rows of what one rival took: of the medians and of both quartiles.
Spread mean(const std::vector<Row>& rows, std::size_t rival) {
  Spread sum = {0, 0, 0};
  for (const Row& row : rows) {
    const Spread ratios = spread(row.rivals[rival].ratios);
    sum.low += std::log(ratios.low);
    sum.median += std::log(ratios.median);
    sum.high += std::log(ratios.high);
  }
  const auto count = static_cast<double>(rows.size());
  return {std::exp(sum.low / count), std::exp(sum.median / count), std::exp(sum.high / count)};
}

std::string text_of(const Spread& value, int digits) {
  return fmt::format("{0:.{3}f} ({1:.{3}f} to {2:.{3}f})", value.median, value.low, value.high,
                     digits);
}

nlohmann::ordered_json json_of(const Spread& value) {
  return {{"median", value.median}, {"low", value.low}, {"high", value.high}};
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
      "Nanoseconds that the library takes per frame and strip, and how many times as long\n{}; "
      "medians and quartiles of {} turns\n\n",
      processor(), CHANNELSTRIP_COMPILER, CHANNELSTRIP_FLAGS, report.library, report.against,
      turns_of(report));
  text += fmt::format("{:24}{:>24}", "strips, samples per call", "ns");
  for (const std::string& rival : report.rivals) text += fmt::format("{:>26}", rival);
  text += '\n';
  for (const Row& row : report.rows) {
    text += fmt::format("{:24}{:>24}", row.workload.name(), text_of(spread(row.nanoseconds), 2));
    bool same_bits = true;
    for (const Row::Rival& rival : row.rivals) {
      text += fmt::format("{:>26}", text_of(spread(rival.ratios), 3));
      same_bits = same_bits && rival.same_bits;
    }
    text += same_bits ? "\n" : "  other bits\n";
  }
  text += fmt::format("\n{:48}", "geometric mean");
  for (std::size_t rival = 0; rival < report.rivals.size(); ++rival) {
    text += fmt::format("{:>26}", text_of(mean(report.rows, rival), 3));
  }
  return text + '\n';
}

std::string as_json(const Report& report) {
  nlohmann::ordered_json json = {{"processor", processor()},    {"compiler", CHANNELSTRIP_COMPILER},
                                 {"flags", CHANNELSTRIP_FLAGS}, {"library", report.library},
                                 {"against", report.against},   {"turns", turns_of(report)}};
  for (const Row& row : report.rows) {
    nlohmann::ordered_json ratios, same_bits;
    for (std::size_t i = 0; i < row.rivals.size(); ++i) {
      ratios[report.rivals[i]] = json_of(spread(row.rivals[i].ratios));
      same_bits[report.rivals[i]] = row.rivals[i].same_bits;
    }
    json["rows"].push_back({{"name", row.workload.name()},
                            {"format", row.workload.format},
                            {"strips", row.workload.strips},
                            {"samples", row.workload.samples},
                            {"variant", variant_name(row.workload.variant)},
                            {"ns", json_of(spread(row.nanoseconds))},
                            {"ratios", ratios},
                            {"same_bits", same_bits}});
  }
  for (std::size_t i = 0; i < report.rivals.size(); ++i) {
    json["geometric_mean"][report.rivals[i]] = json_of(mean(report.rows, i));
  }
  return json.dump(2) + '\n';
}

}  // namespace channelstrip::bench
