#include "../design/band.h"
#include "../design/link_map.h"
#include "preset.h"

namespace channelstrip::host {

void check_fits(const Preset& preset, double sample_rate, const ChannelLayout& layout) {
  for (const auto& [place, band] : preset.bands) {
    placing(place, [&band = band, sample_rate] { design_stored_band(band, sample_rate); });
  }
  for (const auto& [place, format, map] : preset.links) {
    if (format != layout.format->name) continue;
    placing(place, [&map = map, &layout] { parse_link_map(map, layout); });
  }
}

}  // namespace channelstrip::host
