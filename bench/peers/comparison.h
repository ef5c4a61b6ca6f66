// Every case of every subject.

#pragma once

#include <control/library/library.h>
#include <control/preset/preset.h>

#include <memory>
#include <string>
#include <vector>

#include "lv2_chain.h"
#include "peer_table.h"
#include "report.h"

namespace channelstrip::bench {

class Comparison {
 public:
  // Throws std::runtime_error when the library can't be loaded.
  explicit Comparison(const std::string& library);

  // ChannelStrip first. A peer that can't be measured is among them, with the reason.
  std::vector<Subject> run();

 private:
  void run_case(std::size_t index);
  std::unique_ptr<Lv2Chain> load(const Peer& peer, const Case& conditions, Subject& subject);

  const host::Library library_;
  const host::Preset preset_;
  const std::vector<Peer> peers_;
  const LilvWorldOwner world_;
  std::vector<Subject> subjects_;
};

}  // namespace channelstrip::bench
