#include "peer_table.h"

#include <fmt/format.h>

#include <toml++/toml.h>

#include <stdexcept>

namespace channelstrip::bench {
namespace {

template <typename Node>
const Node& require(const Node* node, std::string_view what) {
  if (node == nullptr) throw std::runtime_error(fmt::format("peers.toml: no {}", what));
  return *node;
}

void add_controls(const toml::table& from, std::map<std::string, float>& controls) {
  for (const auto& [symbol, value] : from) {
    const auto number = value.value<double>();
    if (!number) throw std::runtime_error(fmt::format("peers.toml: {} is no number", symbol.str()));
    controls[std::string(symbol.str())] = static_cast<float>(*number);
  }
}

PeerPlugin read_plugin(Stage stage, const toml::table& table) {
  PeerPlugin plugin{stage, table["mono"].value_or(""), table["stereo"].value_or(""), {}};
  if (const toml::table* controls = table["controls"].as_table()) {
    add_controls(*controls, plugin.controls);
  }
  if (const toml::array* bands = table["bands"].as_array()) {
    for (const toml::node& band : *bands) {
      add_controls(require(band.as_table(), "table of a band"), plugin.controls);
    }
  }
  return plugin;
}

Peer read_peer(const toml::table& table) {
  const auto& bands = require(table["equaliser"]["bands"].as_array(), "equaliser with bands");
  Peer peer{table["name"].value_or(""),
            table["package"].value_or(""),
            table["notes"].value_or(""),
            static_cast<int>(bands.size()),
            {}};
  for (const Stage stage : {Stage::kEqualiser, Stage::kGate, Stage::kCompressor}) {
    if (const toml::table* plugin = table[stage_name(stage)].as_table()) {
      peer.plugins.push_back(read_plugin(stage, *plugin));
    }
  }
  return peer;
}

}  // namespace

std::string_view stage_name(Stage stage) {
  switch (stage) {
    case Stage::kEqualiser:
      return "equaliser";
    case Stage::kGate:
      return "gate";
    case Stage::kCompressor:
      return "compressor";
    case Stage::kStrip:
      break;
  }
  return "strip";
}

std::vector<ChainLink> Peer::chain(int channels) const {
  std::vector<ChainLink> links;
  for (const PeerPlugin& plugin : plugins) {
    const std::string& uri = channels == 1 ? plugin.mono : plugin.stereo;
    if (uri.empty()) {
      throw std::runtime_error(
          fmt::format("has no {} {}", channels == 1 ? "mono" : "stereo", stage_name(plugin.stage)));
    }
    links.push_back({plugin.stage, {uri, plugin.controls}});
  }
  return links;
}

std::vector<Peer> read_peers(const std::string& path) try {
  const toml::table table = toml::parse_file(path);
  std::vector<Peer> peers;
  for (const toml::node& peer : require(table["peer"].as_array(), "peer")) {
    peers.push_back(read_peer(require(peer.as_table(), "table of a peer")));
  }
  return peers;
} catch (const toml::parse_error& error) {
  throw std::runtime_error(
      fmt::format("{}:{}: {}", path, error.source().begin.line, error.description()));
}

}  // namespace channelstrip::bench
