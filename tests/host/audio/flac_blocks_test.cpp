#include "host/audio/flac_blocks.h"

#include <FLAC/metadata.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "rendered_file.h"

namespace channelstrip::test::flac_blocks_test {
namespace {

using namespace host;

// Adds an empty block of the type.
void add_block(const std::string& file, FLAC__MetadataType type) {
  const std::unique_ptr<FLAC__Metadata_Chain, decltype(&FLAC__metadata_chain_delete)> chain(
      FLAC__metadata_chain_new(), FLAC__metadata_chain_delete);
  const std::unique_ptr<FLAC__Metadata_Iterator, decltype(&FLAC__metadata_iterator_delete)> place(
      FLAC__metadata_iterator_new(), FLAC__metadata_iterator_delete);
  ASSERT_TRUE(FLAC__metadata_chain_read(chain.get(), file.c_str()));
  FLAC__metadata_iterator_init(place.get(), chain.get());
  ASSERT_TRUE(
      FLAC__metadata_iterator_insert_block_after(place.get(), FLAC__metadata_object_new(type)));
  ASSERT_TRUE(FLAC__metadata_chain_write(chain.get(), false, false));
}

// Instead of those that the file has.
void set_comments(const std::string& file, const std::vector<std::string>& comments) {
  FLAC__StreamMetadata* tags = nullptr;
  ASSERT_TRUE(FLAC__metadata_get_tags(file.c_str(), &tags));
  const std::unique_ptr<FLAC__StreamMetadata, decltype(&FLAC__metadata_object_delete)> block(
      tags, FLAC__metadata_object_delete);
  FLAC__metadata_object_vorbiscomment_resize_comments(tags, 0);
  for (std::string comment : comments) {
    const FLAC__StreamMetadata_VorbisComment_Entry entry{
        static_cast<FLAC__uint32>(comment.size()), reinterpret_cast<FLAC__byte*>(comment.data())};
    ASSERT_TRUE(FLAC__metadata_object_vorbiscomment_append_comment(tags, entry, true));
  }
  const std::unique_ptr<FLAC__Metadata_SimpleIterator,
                        decltype(&FLAC__metadata_simple_iterator_delete)>
      place(FLAC__metadata_simple_iterator_new(), FLAC__metadata_simple_iterator_delete);
  ASSERT_TRUE(FLAC__metadata_simple_iterator_init(place.get(), file.c_str(), false, false));
  while (FLAC__metadata_simple_iterator_get_block_type(place.get()) !=
         FLAC__METADATA_TYPE_VORBIS_COMMENT) {
    ASSERT_TRUE(FLAC__metadata_simple_iterator_next(place.get()));
  }
  ASSERT_TRUE(FLAC__metadata_simple_iterator_set_block(place.get(), tags, true));
}

class FlacBlocks : public RenderedFile {
 protected:
  std::string flac(const std::vector<FLAC__MetadataType>& blocks) {
    const std::string file = input(
        {.format = SF_FORMAT_FLAC | SF_FORMAT_PCM_16, .floats = noise(1000, 0.5f)}, "in.flac");
    for (const FLAC__MetadataType type : blocks) add_block(file, type);
    return file;
  }
};

TEST_F(FlacBlocks, ThatAreDroppedAreNamedOnce) {
  const std::string file = flac(
      {FLAC__METADATA_TYPE_PICTURE, FLAC__METADATA_TYPE_CUESHEET, FLAC__METADATA_TYPE_PICTURE});
  for (const char* name : {"out.flac", "out.wav"}) {
    EXPECT_EQ(rendered(file, name).warnings,
              std::vector{folder.file(name) + " doesn't keep picture, cue sheet"});
  }
}

TEST_F(FlacBlocks, OfTheStreamAndItsTagsAreNotLost) {
  EXPECT_EQ(rendered(flac({FLAC__METADATA_TYPE_PADDING}), "out.flac").warnings,
            std::vector<std::string>{});
}

// libsndfile reads ten of the usual comments, in either case.
TEST_F(FlacBlocks, CommentsThatAreDroppedAreNamed) {
  const std::string file = flac({});
  set_comments(file, {"TITLE=A song", "artist=Somebody", "REPLAYGAIN_TRACK_GAIN=-7.03 dB",
                      "mood=calm", "mood=bright"});
  for (const char* name : {"out.flac", "out.wav"}) {
    EXPECT_EQ(rendered(file, name).warnings,
              std::vector{folder.file(name) + " doesn't keep REPLAYGAIN_TRACK_GAIN, mood"});
  }
}

TEST_F(FlacBlocks, LeaveTheSamplesAsTheyAre) {
  const std::string file = flac({FLAC__METADATA_TYPE_PICTURE});
  rendered(file, "out.flac");
  EXPECT_EQ(read_audio(output).integers, read_audio(file).integers);
}

}  // namespace
}  // namespace channelstrip::test::flac_blocks_test
