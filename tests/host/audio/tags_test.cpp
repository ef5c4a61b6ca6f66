// Title, artist and similar tags, copied from container to container.

#include <gtest/gtest.h>

#include <cstddef>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <vector>

#include "../support/audio.h"
#include "../support/rendered.h"
#include "../support/temporary_folder.h"

namespace channelstrip::test::tags_test {
namespace {

using host::AudioReader;
using Names = std::vector<std::string>;

void write_tags(const std::string& path, int format, const std::map<int, std::string>& tags) {
  SF_INFO info = {};
  info.samplerate = 48000;
  info.channels = 1;
  info.format = format | SF_FORMAT_PCM_16;
  const host::Sndfile file(sf_open(path.c_str(), SFM_WRITE, &info));
  for (const auto& [type, text] : tags) sf_set_string(file.get(), type, text.c_str());
  const std::vector<float> samples = noise(1000, 0.5f);
  sf_write_float(file.get(), samples.data(), std::ssize(samples));
}

std::string tagged(const std::string& path, int format) {
  std::map<int, std::string> tags;
  for (const int type :
       {SF_STR_TITLE, SF_STR_COPYRIGHT, SF_STR_SOFTWARE, SF_STR_ARTIST, SF_STR_COMMENT, SF_STR_DATE,
        SF_STR_ALBUM, SF_STR_LICENSE, SF_STR_TRACKNUMBER, SF_STR_GENRE}) {
    tags[type] = "value " + std::to_string(type);
  }
  write_tags(path, format, tags);
  return path;
}

struct Tagged {
  const char* name;
  int format;
};
const Tagged kTagged[] = {{"wav", SF_FORMAT_WAV},
                          {"rf64", SF_FORMAT_RF64},
                          {"aiff", SF_FORMAT_AIFF},
                          {"caf", SF_FORMAT_CAF},
                          {"flac", SF_FORMAT_FLAC}};

TEST(Tags, AreKeptOrNamedFromEveryContainerToEvery) {
  const TemporaryFolder folder;
  for (const Tagged& from : kTagged) {
    const std::string input = tagged(folder.file(std::string("in.") + from.name), from.format);
    const auto before = AudioReader(input).metadata().tags;
    ASSERT_GE(before.size(), 5u);
    for (const Tagged& to : kTagged) {
      SCOPED_TRACE(std::string(from.name) + " to " + to.name);
      const std::string output = folder.file(std::string("out.") + to.name);
      const Names lost = copy_audio(input, output);
      const auto after = AudioReader(output).metadata().tags;
      std::size_t kept = 0;
      for (const auto& [type, text] : before)
        kept += after.contains(type) && after.at(type) == text;
      EXPECT_EQ(kept + lost.size(), before.size());
      EXPECT_EQ(read_audio(output).integers, read_audio(input).integers);
      if (from.format == to.format) {
        EXPECT_EQ(after, before);
      }
    }
  }
}

TEST(Tags, ThatAiffDoesNotKnowAreNamed) {
  const TemporaryFolder folder;
  EXPECT_EQ(copy_audio(tagged(folder.file("in.flac"), SF_FORMAT_FLAC), folder.file("out.aiff")),
            (Names{"date", "album", "license", "track number", "genre"}));
}

// When libsndfile reads the software tag, its buffer still holds the longer title that came before.
// On writing it appends its own name to the software, unless the text contains it already.
TEST(Tags, OfAiffEndWithTheirChunks) {
  const TemporaryFolder folder;
  const std::string file = folder.file("in.aiff");
  for (const std::string software : {"A libsndfile", "An libsndfile"}) {
    write_tags(file, SF_FORMAT_AIFF,
               {{SF_STR_TITLE, std::string(100, 'x')}, {SF_STR_SOFTWARE, software}});
    EXPECT_EQ(AudioReader(file).metadata().tags.at(SF_STR_SOFTWARE), software);
    std::string bytes = contents(file);
    bytes.replace(bytes.find("m3ga"), 4, "othr");  // another program's signature
    std::ofstream(file, std::ios::binary) << bytes;
    EXPECT_EQ(AudioReader(file).metadata().tags.at(SF_STR_SOFTWARE), software);
  }
}

}  // namespace
}  // namespace channelstrip::test::tags_test
