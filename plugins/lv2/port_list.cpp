#include "port_list.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>

#include "turtle_text.h"

namespace channelstrip::lv2 {
namespace {

std::string unit_of(std::string_view unit) {
  if (unit == "Hz") return "units:unit units:hz";
  if (unit == "dB") return "units:unit units:db";
  if (unit == "ms") return "units:unit units:ms";
  if (unit == "%") return "units:unit units:pc";
  return fmt::format(
      "units:unit [\n      a units:Unit ;\n      rdfs:label {0} ;\n      units:symbol {0} ;\n"
      "      units:render {1}\n    ]",
      quoted(unit), quoted(fmt::format("%f {}", unit)));
}

// A choice's word as hosts show and read it out: "low_shelf" as "low shelf".
std::string spoken(std::string word) {
  std::ranges::replace(word, '_', ' ');
  return word;
}

}  // namespace

std::string range(double least, double greatest, double initial) {
  return fmt::format("lv2:default {} ;\n    lv2:minimum {} ;\n    lv2:maximum {}", initial, least,
                     greatest);
}

std::string group_symbol(std::string_view group) {
  std::string symbol;
  for (const char c : group) {
    if (c != ' ') symbol += static_cast<char>(c | 0x20);
  }
  return symbol;
}

void PortList::add(std::string_view type, std::string_view symbol, std::string_view name,
                   const std::vector<std::string>& lines) {
  auto to = std::back_inserter(text_);
  fmt::format_to(to, "{} [\n    a {} ;\n    lv2:index {} ;\n    lv2:symbol {} ;\n    lv2:name {}",
                 index_ == 0 ? "  lv2:port" : " ,", type, index_, quoted(symbol), quoted(name));
  for (const std::string& line : lines) fmt::format_to(to, " ;\n    {}", line);
  text_ += "\n  ]";
  ++index_;
}

void PortList::add_parameter(const channelstrip_parameter& p, const std::string& uri) {
  std::vector<std::string> lines{fmt::format("lv2:shortName {}", quoted(p.short_name)),
                                 range(p.minimum, p.maximum, p.initial),
                                 fmt::format("rdfs:comment {}", quoted(p.meaning))};
  if (has_groups_) lines.push_back(fmt::format("pg:group <{}:{}>", uri, group_symbol(p.group)));
  if (*p.unit) lines.push_back(unit_of(p.unit));
  if (p.scale == CHANNELSTRIP_LOGARITHMIC && p.minimum > 0) {
    lines.emplace_back("lv2:portProperty pprops:logarithmic");
  }
  if (p.kind == CHANNELSTRIP_NUMBER && p.step >= 1) {
    lines.emplace_back("lv2:portProperty lv2:integer");
  }
  if (p.kind == CHANNELSTRIP_SWITCH) lines.emplace_back("lv2:portProperty lv2:toggled");
  if (p.kind == CHANNELSTRIP_CHOICE) {
    lines.emplace_back("lv2:portProperty lv2:enumeration , lv2:integer");
    std::string points;
    for (std::uint32_t word = 0; word < p.word_count; ++word) {
      points += fmt::format("{} [ rdfs:label {} ; rdf:value {} ]", word == 0 ? "" : " ,",
                            quoted(spoken(p.words[word])), word);
    }
    lines.push_back("lv2:scalePoint" + points);
  }
  add("lv2:InputPort , lv2:ControlPort", p.symbol, p.name, lines);
}

void PortList::add_meter(const std::string& symbol, const std::string& name, double least,
                         double greatest) {
  add("lv2:OutputPort , lv2:ControlPort", symbol, name,
      {fmt::format("lv2:minimum {} ;\n    lv2:maximum {}", least, greatest), unit_of("dB")});
}

}  // namespace channelstrip::lv2
