#include "information.h"

#include <ChannelStrip/frame/processor_level.h>
#include <sndfile.h>

#include <optional>

#include "control/design/channel_layout.h"
#include "control/design/link_map.h"
#include "control/preset/preset_keys.h"
#include "wav_mask.h"

namespace channelstrip::host {
namespace {

FormatInformation information(const StemFormat& format) {
  FormatInformation result{.format = format, .orders = {}, .wav_masks = {}, .links = {}};
  for (std::size_t i = 0; i < std::size(kChannelOrders); ++i) {
    result.orders.emplace_back(kChannelOrders[i],
                               default_layout(format, static_cast<ChannelOrder>(i)).labels);
  }
  const ChannelLayout layout = default_layout(format);
  result.wav_masks = wav_masks(layout);
  for (std::size_t i = 0; i < std::size(kLinkStyles); ++i) {
    result.links.emplace_back(kLinkStyles[i],
                              text_of(link_map(layout, static_cast<LinkStyle>(i)), layout));
  }
  return result;
}

// What follows the last `mark` in the text; empty if there is none.
std::string behind(std::string_view mark, std::string_view text) {
  const std::size_t at = text.rfind(mark);
  return at == text.npos ? "" : std::string(text.substr(at + mark.size()));
}

std::string name_of(std::optional<channelstrip_level> level) {
  if (!level) return "";
  return *level == CHANNELSTRIP_X86_64 ? "x86-64" : "x86-64-v" + std::to_string(*level);
}

}  // namespace

Information information(const Library& library, std::span<const StemFormat> formats) {
  Information result{.version = CHANNELSTRIP_VERSION,
                     .library_file = library.file(),
                     .library_soname = library.soname(),
                     .library_level = name_of(library.chosen_level()),
                     .library_version = behind(".so.", library.file()),
                     .libsndfile_version = behind("-", sf_version_string()),
                     .formats = {}};
  for (const StemFormat& format : formats) {
    library.entry_point(format);
    result.formats.push_back(information(format));
  }
  return result;
}

}  // namespace channelstrip::host
