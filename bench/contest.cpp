#include "contest.h"

#include <cstddef>

#include "turns.h"

namespace channelstrip::bench {

Contest::Contest(const Workload& workload, const Rival& library, const std::vector<Rival>& rivals)
    : row_{.workload = workload, .rivals = std::vector<Row::Rival>(rivals.size())} {
  const host::StemFormat& format = *host::find_stem_format(workload.format);
  entries_.push_back(library.entry_point(format));
  for (const Rival& rival : rivals) entries_.push_back(rival.entry_point(format));
}

void Contest::compare() {
  for (std::size_t i = 1; i < entries_.size(); ++i) {
    Console ours(row_.workload, 0), theirs(row_.workload, 0);
    for (int call = 0; call < ours.calls(); ++call) {
      ours.call(entries_[0], call);
      theirs.call(entries_[i], call);
      if (!ours.equals(theirs)) row_.rivals[i - 1].same_bits = false;
    }
  }
}

// All take turns in going first, as the others find in the caches what the first has left there.
void Contest::take_turns(unsigned layout, int turns) {
  Console console(row_.workload, layout);
  const bool in_place = row_.workload.variant == Variant::kInPlace;
  const double unit = console.frames() * row_.workload.strips;
  const auto time = [&](AlgEntry_16_Stem* entry) {
    if (in_place) console.rewind();
    return nanoseconds([&] { console.play(entry); }) / unit;
  };
  for (AlgEntry_16_Stem* entry : entries_) time(entry);
  std::vector<double> taken(entries_.size());
  for (int turn = 0; turn < turns; ++turn) {
    for (std::size_t i = 0; i < taken.size(); ++i) {
      const std::size_t next = (static_cast<std::size_t>(turn) + i) % taken.size();
      taken[next] = time(entries_[next]);
    }
    row_.nanoseconds.push_back(taken[0]);
    for (std::size_t i = 1; i < taken.size(); ++i) {
      row_.rivals[i - 1].ratios.push_back(taken[i] / taken[0]);
    }
  }
}

}  // namespace channelstrip::bench
