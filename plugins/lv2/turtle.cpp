#include "turtle.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <map>
#include <string_view>
#include <tuple>
#include <utility>

#include "../held_meters.h"
#include "ports.h"

namespace channelstrip::lv2 {
namespace {

constexpr std::string_view kPrefixes = R"(@prefix atom: <http://lv2plug.in/ns/ext/atom#> .
@prefix doap: <http://usefulinc.com/ns/doap#> .
@prefix foaf: <http://xmlns.com/foaf/0.1/> .
@prefix lv2: <http://lv2plug.in/ns/lv2core#> .
@prefix pg: <http://lv2plug.in/ns/ext/port-groups#> .
@prefix pprops: <http://lv2plug.in/ns/ext/port-props#> .
@prefix pset: <http://lv2plug.in/ns/ext/presets#> .
@prefix rdfs: <http://www.w3.org/2000/01/rdf-schema#> .
@prefix state: <http://lv2plug.in/ns/ext/state#> .
@prefix units: <http://lv2plug.in/ns/extensions/units#> .

)";

std::string quoted(std::string_view text) {
  std::string result = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') result += '\\';
    if (c == '\n') {
      result += "\\n";
    } else {
      result += c;
    }
  }
  return result + '"';
}

// Writes a plugin's ports one after the other.
class PortList {
 public:
  // The lines, each a predicate with its objects.
  void add(std::string_view type, std::string_view symbol, std::string_view name,
           const std::vector<std::string>& lines) {
    auto to = std::back_inserter(text_);
    fmt::format_to(to, "{} [\n    a {} ;\n    lv2:index {} ;\n    lv2:symbol {} ;\n    lv2:name {}",
                   index_ == 0 ? "  lv2:port" : " ,", type, index_, quoted(symbol), quoted(name));
    for (const std::string& line : lines) fmt::format_to(to, " ;\n    {}", line);
    text_ += "\n  ]";
    ++index_;
  }
  const std::string& text() const { return text_; }

 private:
  std::uint32_t index_ = 0;
  std::string text_;
};

std::string symbol_of(std::string_view prefix, std::string_view role) {
  std::string symbol(prefix);
  for (const char c : role) symbol += static_cast<char>(c | 0x20);  // letters in lower case
  return symbol;
}

// What a channel is, in the vocabulary of port groups. A pair of surrounds stands at the sides
// where there is something behind it, and behind the listener otherwise.
std::string designation(std::string_view role, bool has_rear) {
  static const std::map<std::string_view, std::string_view> names{{"M", "center"},
                                                                  {"L", "left"},
                                                                  {"R", "right"},
                                                                  {"C", "center"},
                                                                  {"Lb", "rearLeft"},
                                                                  {"Rb", "rearRight"},
                                                                  {"Cs", "rearCenter"},
                                                                  {"S", "rearCenter"},
                                                                  {"Ls", "rearLeft"},
                                                                  {"Rs", "rearRight"},
                                                                  {"LFE", "lowFrequencyEffects"}};
  std::string_view name = names.at(role);
  if (has_rear && role == "Ls") name = "sideLeft";
  if (has_rear && role == "Rs") name = "sideRight";
  return fmt::format("lv2:designation pg:{}", name);
}

// The group's class that has just these channels, or one for any.
std::string_view group_class(std::string_view format) {
  static const std::map<std::string_view, std::string_view> classes{
      {"Mono", "pg:MonoGroup"},          {"Stereo", "pg:StereoGroup"},
      {"LCRS", "pg:FourPointZeroGroup"}, {"5.0", "pg:FivePointZeroGroup"},
      {"5.1", "pg:FivePointOneGroup"},   {"6.1", "pg:SixPointOneGroup"},
      {"7.1", "pg:SevenPointOneGroup"}};
  const auto found = classes.find(format);
  return found == classes.end() ? "pg:DiscreteGroup" : found->second;
}

std::string range(double least, double greatest, double initial) {
  return fmt::format("lv2:default {} ;\n    lv2:minimum {} ;\n    lv2:maximum {}", initial, least,
                     greatest);
}

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

std::string group_symbol(std::string_view group) {
  std::string symbol;
  for (const char c : group) {
    if (c != ' ') symbol += static_cast<char>(c | 0x20);
  }
  return symbol;
}

void add_parameter(PortList& ports, const channelstrip_parameter& p, const std::string& uri) {
  std::vector<std::string> lines{fmt::format("lv2:shortName {}", quoted(p.short_name)),
                                 range(p.minimum, p.maximum, p.initial),
                                 fmt::format("rdfs:comment {}", quoted(p.meaning)),
                                 fmt::format("pg:group <{}:{}>", uri, group_symbol(p.group))};
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
  ports.add("lv2:InputPort , lv2:ControlPort", p.symbol, p.name, lines);
}

void add_meter(PortList& ports, const std::string& symbol, const std::string& name, double least,
               double greatest) {
  ports.add("lv2:OutputPort , lv2:ControlPort", symbol, name,
            {fmt::format("lv2:minimum {} ;\n    lv2:maximum {}", least, greatest), unit_of("dB")});
}

}  // namespace

std::string file_of(std::uint32_t format) {
  return uri_of(format).substr(std::string_view("urn:channelstrip:lv2:").size()) + ".ttl";
}

std::string manifest(const std::string& binary, const std::vector<PluginPreset>& presets) {
  std::string text(kPrefixes), all;
  for (std::uint32_t format = 0; format < channelstrip_format_count(); ++format) {
    const std::string uri = uri_of(format);
    text += fmt::format("<{}>\n  a lv2:Plugin ;\n  lv2:binary <{}> ;\n  rdfs:seeAlso <{}> .\n\n",
                        uri, binary, file_of(format));
    all += fmt::format("{}<{}>", all.empty() ? "" : " , ", uri);
  }
  for (const PluginPreset& preset : presets) {
    text += fmt::format(
        "<urn:channelstrip:lv2:preset:{}>\n  a pset:Preset ;\n  lv2:appliesTo {} ;\n"
        "  rdfs:label {} ;\n  rdfs:seeAlso <{}> .\n\n",
        preset.symbol, all, quoted(preset.name), kPresetsFile);
  }
  return text;
}

std::string description(std::uint32_t format) {
  channelstrip_format info;
  channelstrip_format_info(format, &info, sizeof info);
  const std::string uri = uri_of(format), in = uri + ":in", out = uri + ":out", key = uri + ":key";
  std::string text(kPrefixes);
  text.insert(text.find("@prefix rdfs:"),
              "@prefix rdf: <http://www.w3.org/1999/02/22-rdf-syntax-ns#> .\n");
  auto to = std::back_inserter(text);

  fmt::format_to(
      to, "<{}>\n  a pg:InputGroup , {} ;\n  lv2:symbol \"in\" ;\n  lv2:name \"Input\" .\n\n", in,
      group_class(info.name));
  fmt::format_to(
      to,
      "<{}>\n  a pg:OutputGroup , {} ;\n  lv2:symbol \"out\" ;\n  lv2:name \"Output\" ;\n"
      "  pg:source <{}> .\n\n",
      out, group_class(info.name), in);
  fmt::format_to(to,
                 "<{}>\n  a pg:InputGroup , pg:MonoGroup ;\n  lv2:symbol \"key\" ;\n"
                 "  lv2:name \"Key\" ;\n  pg:sideChainOf <{}> .\n\n",
                 key, in);
  std::string_view last;
  for (const channelstrip_parameter& p : port_parameters()) {
    if (p.group == last) continue;
    last = p.group;
    fmt::format_to(to, "<{}:{}>\n  a pg:InputGroup ;\n  lv2:symbol {} ;\n  lv2:name {} .\n\n", uri,
                   group_symbol(last), quoted(group_symbol(last)), quoted(last));
  }

  text += "<urn:channelstrip>\n  a doap:Project ;\n  doap:name \"ChannelStrip\" .\n\n";
  fmt::format_to(to, R"(<{0}>
  a lv2:Plugin , lv2:DynamicsPlugin , doap:Project ;
  doap:name "ChannelStrip {1}" ;
  doap:license <https://opensource.org/licenses/MIT> ;
  doap:maintainer [ foaf:name "The ChannelStrip authors" ] ;
  lv2:project <urn:channelstrip> ;
  lv2:minorVersion 1 ;
  lv2:microVersion 0 ;
  lv2:optionalFeature lv2:hardRTCapable , <http://lv2plug.in/ns/ext/buf-size#boundedBlockLength> ,
    <http://lv2plug.in/ns/ext/urid#map> ;
  lv2:extensionData state:interface ;
  pg:mainInput <{2}> ;
  pg:mainOutput <{3}> ;
  rdfs:comment "An equaliser of eight bands, a compressor with a soft knee, an expander that can be a gate, a side-chain and meters. Nothing clicks, and nothing is delayed." ;
)",
                 uri, info.name, in, out);

  PortList ports;
  const auto add_audio = [&](std::string_view type, const std::string& symbol,
                             const std::string& name, const std::vector<std::string>& lines) {
    ports.add(fmt::format("lv2:{}Port , lv2:AudioPort", type), symbol, name, lines);
  };
  std::vector<std::string> roles;
  for (std::uint32_t c = 0; c < info.channels; ++c) {
    roles.emplace_back(channelstrip_format_role(format, CHANNELSTRIP_ORDER_WAV, c));
  }
  const bool has_rear = std::ranges::any_of(
      roles, [](const std::string& role) { return role == "Lb" || role == "Cs"; });
  for (const auto& [type, prefix, title, group] :
       {std::tuple{"Input", "in_", "In", in}, {"Output", "out_", "Out", out}}) {
    for (const std::string& role : roles) {
      add_audio(type, symbol_of(prefix, role), fmt::format("{} {}", title, role),
                {fmt::format("pg:group <{}>", group), designation(role, has_rear)});
    }
  }
  add_audio("Input", "key", "Key",
            {"lv2:portProperty lv2:connectionOptional , lv2:isSideChain",
             fmt::format("pg:group <{}>", key), "lv2:designation pg:center"});
  ports.add("lv2:InputPort , lv2:ControlPort", "enabled", "Enabled",
            {range(0, 1, 1), "lv2:designation lv2:enabled", "lv2:portProperty lv2:toggled"});
  ports.add("lv2:OutputPort , lv2:ControlPort", "latency", "Latency",
            {range(0, 0, 0), "lv2:designation lv2:latency", "units:unit units:frame",
             "lv2:portProperty lv2:reportsLatency , lv2:integer , pprops:notOnGUI"});
  for (const auto& [prefix, title] :
       {std::pair{"peak_in_", "Peak in"}, {"peak_out_", "Peak out"}}) {
    for (const std::string& role : roles) {
      add_meter(ports, symbol_of(prefix, role), fmt::format("{} {}", title, role),
                plugins::kLeastPeak, plugins::kGreatestPeak);
    }
  }
  add_meter(ports, "compressor_reduction", "Compressor reduction", 0, plugins::kGreatestReduction);
  add_meter(ports, "expander_reduction", "Expander reduction", 0, plugins::kGreatestReduction);
  for (const channelstrip_parameter& p : port_parameters()) add_parameter(ports, p, uri);
  return text + ports.text() + " .\n";
}

std::string descriptions(const std::vector<PluginPreset>& presets) {
  std::string text = fmt::format(
      "{}<{}>\n  a lv2:Parameter ;\n  rdfs:label \"Link maps\" ;\n  rdfs:range atom:String ;\n"
      "  rdfs:comment \"Which channels share one gain, by format.\" .\n\n",
      kPrefixes, kLinksUri);
  for (const PluginPreset& preset : presets) {
    text += fmt::format("<urn:channelstrip:lv2:preset:{}>\n  a pset:Preset ;\n  rdfs:label {} ;\n",
                        preset.symbol, quoted(preset.name));
    if (!preset.links.empty()) {
      text += fmt::format("  state:state [ <{}> {} ] ;\n", kLinksUri, quoted(preset.links));
    }
    text += "  lv2:port [ lv2:symbol \"enabled\" ; pset:value 1 ]";
    for (std::size_t i = 0; i < preset.values.size(); ++i) {
      text += fmt::format(" ,\n    [ lv2:symbol {} ; pset:value {} ]",
                          quoted(port_parameters()[i].symbol), preset.values[i]);
    }
    text += " .\n\n";
  }
  return text;
}

}  // namespace channelstrip::lv2
