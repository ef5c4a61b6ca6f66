#include "flac_blocks.h"

#include <FLAC/metadata.h>
#include <fmt/format.h>

#include <algorithm>
#include <memory>

namespace channelstrip::host {
namespace {

struct Delete {
  void operator()(FLAC__Metadata_SimpleIterator* blocks) const {
    FLAC__metadata_simple_iterator_delete(blocks);
  }
};

const char* name_of(FLAC__MetadataType type) {
  switch (type) {
    case FLAC__METADATA_TYPE_PICTURE:
      return "picture";
    case FLAC__METADATA_TYPE_CUESHEET:
      return "cue sheet";
    case FLAC__METADATA_TYPE_APPLICATION:
      return "application block";
    default:  // what libsndfile reads, and padding
      return nullptr;
  }
}

}  // namespace

std::vector<std::string> lost_flac_blocks(int descriptor) {
  std::vector<std::string> names;
  const std::unique_ptr<FLAC__Metadata_SimpleIterator, Delete> blocks(
      FLAC__metadata_simple_iterator_new());
  const std::string path = fmt::format("/dev/fd/{}", descriptor);
  if (!blocks || !FLAC__metadata_simple_iterator_init(blocks.get(), path.c_str(), true, false)) {
    return names;
  }
  do {
    const FLAC__MetadataType type = FLAC__metadata_simple_iterator_get_block_type(blocks.get());
    const char* const name = name_of(type);
    if (name && std::ranges::find(names, name) == names.end()) names.emplace_back(name);
  } while (FLAC__metadata_simple_iterator_next(blocks.get()));
  return names;
}

}  // namespace channelstrip::host
