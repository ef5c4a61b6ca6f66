#include <string>

#include "layouts.h"
#include "objects.h"

namespace channelstrip::host {

const ChannelLayout* layout_of(std::uint32_t format, channelstrip_order order) {
  static const std::vector<ChannelLayout> layouts = [] {
    std::vector<ChannelLayout> all;
    for (const ChannelOrder each : {ChannelOrder::kWav, ChannelOrder::kFilm}) {
      for (const StemFormat& stem : stem_formats()) all.push_back(default_layout(stem, each));
    }
    return all;
  }();
  const std::size_t count = stem_formats().size();
  if (format >= count) return nullptr;
  if (order != CHANNELSTRIP_ORDER_WAV && order != CHANNELSTRIP_ORDER_FILM) return nullptr;
  return &layouts[format + (order == CHANNELSTRIP_ORDER_FILM ? count : 0)];
}

}  // namespace channelstrip::host

using namespace channelstrip::host;

const char* channelstrip_status_text(channelstrip_status status) {
  switch (status) {
    case CHANNELSTRIP_OK:
      return "no error";
    case CHANNELSTRIP_INVALID:
      return "an argument can't be used";
    case CHANNELSTRIP_UNKNOWN:
      return "there is none of that number or name";
    case CHANNELSTRIP_TOO_SMALL:
      return "there is too little room";
    case CHANNELSTRIP_SYNTAX:
      return "the text isn't TOML";
    case CHANNELSTRIP_NO_MEMORY:
      return "out of memory";
    default:
      return "unknown status";
  }
}

const char* channelstrip_version(void) {
  return CHANNELSTRIP_VERSION;
}

uint32_t channelstrip_format_count(void) {
  return static_cast<uint32_t>(stem_formats().size());
}

channelstrip_status channelstrip_format_info(uint32_t format, channelstrip_format* info,
                                             size_t info_size) {
  if (format >= stem_formats().size()) return CHANNELSTRIP_UNKNOWN;
  const StemFormat& stem = stem_formats()[format];
  const channelstrip_format result{.name = stem.name.data(),
                                   .channels = static_cast<uint32_t>(stem.channels),
                                   .groups = static_cast<uint32_t>(stem.groups)};
  return hand_out(result, info, info_size);
}

channelstrip_status channelstrip_format_find(const char* name, uint32_t* format) {
  if (!name || !format) return CHANNELSTRIP_INVALID;
  const StemFormat* stem = find_stem_format(name);
  if (!stem) return CHANNELSTRIP_UNKNOWN;
  *format = static_cast<uint32_t>(stem - stem_formats().data());
  return CHANNELSTRIP_OK;
}

const char* channelstrip_format_role(uint32_t format, channelstrip_order order, uint32_t channel) {
  const char* role = nullptr;
  guarded([&] {
    const ChannelLayout* layout = layout_of(format, order);
    if (layout && channel < layout->labels.size()) role = layout->labels[channel].c_str();
    return CHANNELSTRIP_OK;
  });
  return role;
}
