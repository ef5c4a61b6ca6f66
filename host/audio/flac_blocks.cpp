#include "flac_blocks.h"

#include <FLAC/metadata.h>
#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <iterator>
#include <memory>
#include <span>
#include <string_view>

namespace channelstrip::host {
namespace {

struct Delete {
  void operator()(FLAC__Metadata_SimpleIterator* blocks) const {
    FLAC__metadata_simple_iterator_delete(blocks);
  }
  void operator()(FLAC__StreamMetadata* block) const { FLAC__metadata_object_delete(block); }
};

using Names = std::vector<std::string>;

void add_once(Names& names, const std::string& name) {
  if (std::ranges::find(names, name) == names.end()) names.push_back(name);
}

// Names of comments are in ASCII and have no case.
bool is_understood_comment(std::string name) {
  constexpr std::string_view kUnderstood[] = {"TITLE",       "COPYRIGHT", "SOFTWARE", "ARTIST",
                                              "COMMENT",     "DATE",      "ALBUM",    "LICENSE",
                                              "TRACKNUMBER", "GENRE"};
  std::ranges::transform(name, name.begin(),
                         [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  return std::ranges::find(kUnderstood, name) != std::end(kUnderstood);
}

void add_unknown_comments(FLAC__Metadata_SimpleIterator* place, Names& names) {
  const std::unique_ptr<FLAC__StreamMetadata, Delete> block(
      FLAC__metadata_simple_iterator_get_block(place));
  if (!block) return;
  const FLAC__StreamMetadata_VorbisComment& comments = block->data.vorbis_comment;
  for (const auto& [length, entry] : std::span(comments.comments, comments.num_comments)) {
    const std::string_view text(reinterpret_cast<const char*>(entry), length);
    const std::string name(text.substr(0, text.find('=')));
    if (!is_understood_comment(name)) add_once(names, name);
  }
}

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

std::vector<std::string> unknown_flac_metadata(int descriptor) {
  Names names;
  const std::unique_ptr<FLAC__Metadata_SimpleIterator, Delete> blocks(
      FLAC__metadata_simple_iterator_new());
  const std::string path = fmt::format("/dev/fd/{}", descriptor);
  if (!blocks || !FLAC__metadata_simple_iterator_init(blocks.get(), path.c_str(), true, false)) {
    return names;
  }
  do {
    const FLAC__MetadataType type = FLAC__metadata_simple_iterator_get_block_type(blocks.get());
    if (const char* name = name_of(type)) add_once(names, name);
    if (type == FLAC__METADATA_TYPE_VORBIS_COMMENT) add_unknown_comments(blocks.get(), names);
  } while (FLAC__metadata_simple_iterator_next(blocks.get()));
  return names;
}

}  // namespace channelstrip::host
