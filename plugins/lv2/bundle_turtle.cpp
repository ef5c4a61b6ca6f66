// What the bundle holds: its manifest and its presets.

#include <fmt/format.h>

#include "inline_display.h"
#include "ports.h"
#include "turtle.h"
#include "turtle_text.h"

namespace channelstrip::lv2 {

std::string file_of(std::uint32_t format) {
  return uri_of(format).substr(std::string_view("urn:channelstrip:lv2:").size()) + ".ttl";
}

std::string manifest(const std::string& binary, const std::vector<PluginPreset>& presets,
                     Reader reader) {
  std::string text(kPrefixes), all;
  if (kHasView && reader == Reader::kAnyHost) {  // validators don't know the extension
    text += fmt::format("<{}>\n  a lv2:ExtensionData .\n\n<{}>\n  a lv2:Feature .\n\n",
                        kInlineDisplayInterface, kInlineDisplayQueueDraw);
    text += fmt::format("<{}>\n  a ui:X11UI ;\n  ui:binary <{}> ;\n  rdfs:seeAlso <{}> .\n\n",
                        kUiUri, kViewFile, kUiFile);
  }
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

std::string ui_description() {
  std::string text = fmt::format(
      "{}@prefix opts: <http://lv2plug.in/ns/ext/options#> .\n\n<{}>\n  a ui:X11UI ;\n"
      "  lv2:requiredFeature ui:idleInterface ;\n"
      "  lv2:optionalFeature ui:parent , ui:resize , ui:touch , opts:options ,\n"
      "    <http://lv2plug.in/ns/ext/urid#map> ,\n"
      "    <http://lv2plug.in/ns/ext/instance-access> ;\n"
      "  lv2:extensionData ui:idleInterface , ui:resize",
      kPrefixes, kUiUri);
  for (std::uint32_t format = 0; format < channelstrip_format_count(); ++format) {
    channelstrip_format info{};
    channelstrip_format_info(format, &info, sizeof info);
    const Ports ports(info.channels);
    for (std::uint32_t meter = 0; meter < ports.meter_count(); ++meter) {
      text += fmt::format(
          " ;\n  ui:portNotification [\n    ui:plugin <{}> ;\n    ui:portIndex {} ;\n"
          "    ui:protocol ui:floatProtocol\n  ]",
          uri_of(format), ports.first_meter() + meter);
    }
  }
  return text + " .\n";
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
