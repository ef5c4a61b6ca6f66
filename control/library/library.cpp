#include "library.h"

#include <algorithm>
#include <stdexcept>

namespace channelstrip::host {

AlgEntry_16_Stem* Library::entry_point(const StemFormat& format) const {
  const std::string name(format.entry_point);
  AlgEntry_16_Stem* const found = find(name);
  if (!found) throw std::runtime_error(path_ + " has no " + name);
  return found;
}

EntryPoints Library::entry_points() const {
  EntryPoints all;
  std::ranges::transform(stem_formats(), all.begin(),
                         [this](const StemFormat& format) { return entry_point(format); });
  return all;
}

}  // namespace channelstrip::host
