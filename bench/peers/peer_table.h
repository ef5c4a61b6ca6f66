// The peers and their settings, from peers.toml.

#pragma once

#include <string>
#include <vector>

#include "lv2_chain.h"

namespace channelstrip::bench {

// One plugin of a peer, as in the table. An empty URI: it has no variant for that channel count.
struct PeerPlugin {
  Stage stage;
  std::string mono, stereo;
  std::map<std::string, float> controls;
};

struct Peer {
  std::string name;
  std::string package;
  std::string notes;
  int bands;  // all at work
  std::vector<PeerPlugin> plugins;

  // Throws std::runtime_error, one line, when a plugin has no variant for so many channels.
  std::vector<ChainLink> chain(int channels) const;
};

// Throws std::runtime_error, one line.
std::vector<Peer> read_peers(const std::string& path);

// "equaliser", as messages name it.
std::string_view stage_name(Stage stage);

}  // namespace channelstrip::bench
