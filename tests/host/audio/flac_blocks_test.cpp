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

TEST_F(FlacBlocks, LeaveTheSamplesAsTheyAre) {
  const std::string file = flac({FLAC__METADATA_TYPE_PICTURE});
  rendered(file, "out.flac");
  EXPECT_EQ(read_audio(output).integers, read_audio(file).integers);
}

}  // namespace
}  // namespace channelstrip::test::flac_blocks_test
