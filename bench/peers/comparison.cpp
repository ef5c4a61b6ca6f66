#include "comparison.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <stdexcept>

#include "measure.h"
#include "programme.h"
#include "stage_check.h"
#include "strip.h"

namespace channelstrip::bench {
namespace {

// Of this process.
int count_threads() {
  using Iterator = std::filesystem::directory_iterator;
  return static_cast<int>(std::distance(Iterator("/proc/self/task"), Iterator()));
}

}  // namespace

Comparison::Comparison(const std::string& library)
    : library_(library),
      preset_(host::read_preset(CHANNELSTRIP_PEERS "/strip.toml")),
      peers_(read_peers(CHANNELSTRIP_PEERS "/peers.toml")),
      world_(load_lv2_world()) {
  subjects_.push_back({.name = "ChannelStrip",
                       .bands = static_cast<int>(preset_.bands.size()),
                       .notes = "peak detection, hold, gate with hysteresis, level meters"});
  for (const Peer& peer : peers_) {
    subjects_.push_back(
        {.name = peer.name, .package = peer.package, .bands = peer.bands, .notes = peer.notes});
  }
}

std::vector<Subject> Comparison::run() {
  for (std::size_t i = 0; i < kCases.size(); ++i) run_case(i);
  return subjects_;
}

void Comparison::run_case(std::size_t index) {
  const auto [channels, samples] = kCases[index];
  const host::StemFormat& format = *host::find_stem_format(format_name(channels));
  StripProcessor strip(library_, preset_, format, kSampleRate, samples);
  check_stages(strip, channels, samples);

  std::vector<std::unique_ptr<Lv2Chain>> chains;
  std::vector<Processor*> processors{&strip};
  std::vector<Subject*> measured{&subjects_.front()};
  for (std::size_t p = 0; p < peers_.size(); ++p) {
    Subject& subject = subjects_[p + 1];
    try {
      chains.push_back(load(peers_[p], kCases[index], subject));
      processors.push_back(chains.back().get());
      measured.push_back(&subject);
    } catch (const std::runtime_error& error) {
      subject.unmeasured[channels] = error.what();
    }
  }
  const std::vector<double> medians = measure(processors, channels, samples);
  for (std::size_t m = 0; m < measured.size(); ++m) measured[m]->nanoseconds[index] = medians[m];
}

std::unique_ptr<Lv2Chain> Comparison::load(const Peer& peer, const Case& conditions,
                                           Subject& subject) {
  const auto [channels, samples] = conditions;
  const int threads = count_threads();
  auto chain = std::make_unique<Lv2Chain>(world_.get(), peer.chain(channels), kSampleRate, channels,
                                          samples);
  check_stages(*chain, channels, samples);
  subject.threads = std::max(subject.threads, count_threads() - threads);
  subject.latency = std::max(subject.latency, chain->latency());
  std::string& names = subject.plugins[channels] = chain->name_of(0);
  for (std::size_t s = 1; s < chain->stages().size(); ++s) names += ", " + chain->name_of(s);
  return chain;
}

}  // namespace channelstrip::bench
