// The description of a plugin.

#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <map>
#include <string_view>
#include <tuple>
#include <utility>

#include "../held_meters.h"
#include "inline_display.h"
#include "port_list.h"
#include "ports.h"
#include "turtle.h"
#include "turtle_text.h"

namespace channelstrip::lv2 {
namespace {

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

// The groups of the channels.
std::string channel_groups(const std::string& uri, std::string_view type) {
  return fmt::format(
      "<{0}:in>\n  a pg:InputGroup , {1} ;\n  lv2:symbol \"in\" ;\n  lv2:name \"Input\" .\n\n"
      "<{0}:out>\n  a pg:OutputGroup , {1} ;\n  lv2:symbol \"out\" ;\n  lv2:name \"Output\" ;\n"
      "  pg:source <{0}:in> .\n\n",
      uri, type);
}

// Those of the key and of each part of the strip.
std::string other_groups(const std::string& uri) {
  std::string text = fmt::format(
      "<{0}:key>\n  a pg:InputGroup , pg:MonoGroup ;\n  lv2:symbol \"key\" ;\n"
      "  lv2:name \"Key\" ;\n  pg:sideChainOf <{0}:in> .\n\n",
      uri);
  std::string_view last;
  for (const channelstrip_parameter& p : port_parameters()) {
    if (p.group == last) continue;
    last = p.group;
    text += fmt::format("<{}:{}>\n  a pg:InputGroup ;\n  lv2:symbol {} ;\n  lv2:name {} .\n\n", uri,
                        group_symbol(last), quoted(group_symbol(last)), quoted(last));
  }
  return text;
}

}  // namespace

std::string description(std::uint32_t format, Reader reader) {
  const bool has_groups = reader == Reader::kAnyHost;
  channelstrip_format info;
  channelstrip_format_info(format, &info, sizeof info);
  const std::string uri = uri_of(format), in = uri + ":in", out = uri + ":out";
  std::string text(kPrefixes);
  text.insert(text.find("@prefix rdfs:"),
              "@prefix rdf: <http://www.w3.org/1999/02/22-rdf-syntax-ns#> .\n");
  auto to = std::back_inserter(text);

  text += channel_groups(uri, group_class(info.name));
  if (has_groups) text += other_groups(uri);
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

  if (kHasView && has_groups) {
    text += fmt::format("  lv2:extensionData <{}> ;\n  lv2:optionalFeature <{}> ;\n",
                        kInlineDisplayInterface, kInlineDisplayQueueDraw);
    text += fmt::format("  ui:ui <{}> ;\n", kUiUri);
  }
  PortList ports(has_groups);
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
  std::vector<std::string> key{"lv2:portProperty lv2:connectionOptional , lv2:isSideChain",
                               "lv2:designation pg:center"};
  if (has_groups) key.push_back(fmt::format("pg:group <{}:key>", uri));
  ports.add(has_groups ? "lv2:InputPort , lv2:AudioPort" : "lv2:InputPort , lv2:CVPort", "key",
            "Key", key);
  ports.add("lv2:InputPort , lv2:ControlPort", "enabled", "Enabled",
            {range(0, 1, 1), "lv2:designation lv2:enabled", "lv2:portProperty lv2:toggled"});
  ports.add("lv2:OutputPort , lv2:ControlPort", "latency", "Latency",
            {range(0, 0, 0), "lv2:designation lv2:latency", "units:unit units:frame",
             "lv2:portProperty lv2:reportsLatency , lv2:integer , pprops:notOnGUI"});
  for (const auto& [prefix, title] :
       {std::pair{"peak_in_", "Peak in"}, {"peak_out_", "Peak out"}}) {
    for (const std::string& role : roles) {
      ports.add_meter(symbol_of(prefix, role), fmt::format("{} {}", title, role),
                      plugins::kLeastPeak, plugins::kGreatestPeak);
    }
  }
  ports.add_meter("compressor_reduction", "Compressor reduction", 0, plugins::kGreatestReduction);
  ports.add_meter("expander_reduction", "Expander reduction", 0, plugins::kGreatestReduction);
  for (const channelstrip_parameter& p : port_parameters()) ports.add_parameter(p, uri);
  return text + ports.text() + " .\n";
}

}  // namespace channelstrip::lv2
