// Markers and other list entries, copied from one kind of file to another.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "../support/audio.h"
#include "../support/rendered.h"
#include "../support/temporary_folder.h"

namespace channelstrip::test::marker_test {
namespace {

using host::AudioReader;
using host::ChunkFamily;
using Names = std::vector<std::string>;
using Places = std::vector<std::pair<std::uint32_t, std::string>>;

constexpr std::uint32_t kFrames = 1000;

SF_CUE_POINT marker(int id, std::uint32_t frame, const char* name) {
  SF_CUE_POINT cue = {};
  cue.indx = id;
  cue.sample_offset = frame;
  std::strncpy(cue.name, name, sizeof cue.name - 1);
  return cue;
}

std::string aiff(const std::string& path, const std::vector<SF_CUE_POINT>& markers) {
  SF_INFO info = {};
  info.samplerate = 48000;
  info.channels = 1;
  info.format = SF_FORMAT_AIFF | SF_FORMAT_PCM_16;
  const host::Sndfile file(sf_open(path.c_str(), SFM_WRITE, &info));
  SF_CUES cues = {};
  cues.cue_count = static_cast<std::uint32_t>(markers.size());
  std::ranges::copy(markers, cues.cue_points);
  EXPECT_TRUE(sf_command(file.get(), SFC_SET_CUE, &cues, sizeof cues));
  sf_write_float(file.get(), noise(kFrames, 0.5f).data(), kFrames);
  return path;
}

Places markers(const std::string& path) {
  Places places;
  const AudioReader reader(path);
  for (const SF_CUE_POINT& cue : reader.metadata().cues) {
    places.emplace_back(cue.sample_offset, cue.name);
  }
  return places;
}

const std::vector<SF_CUE_POINT> kMarkers{marker(1, 0, "start"), marker(2, 500, "verse"),
                                         marker(7, 999, "end.")};
const Places kPlaces{{0, "start"}, {500, "verse"}, {999, "end."}};

TEST(Marker, KeepsPlaceAndNameBetweenAiffAndWav) {
  const TemporaryFolder folder;
  const std::string input = aiff(folder.file("in.aiff"), kMarkers);
  ASSERT_EQ(markers(input), kPlaces);
  for (const char* name : {"out.wav", "out.rf64", "out.aiff"}) {
    const std::string output = folder.file(name), back = folder.file("back.aiff");
    EXPECT_EQ(copy_audio(input, output), Names{}) << name;
    EXPECT_EQ(markers(output), kPlaces) << name;
    EXPECT_EQ(copy_audio(output, back), Names{}) << name;
    EXPECT_EQ(markers(back), kPlaces) << name;
    EXPECT_EQ(read_audio(back).integers, read_audio(input).integers) << name;
  }
}

// A cue point has its position twice: some programs read the one in playing order, others the one
// in the data.
TEST(Marker, IsTwiceInItsWavChunk) {
  const TemporaryFolder folder;
  copy_audio(aiff(folder.file("in.aiff"), {marker(1, 500, "")}), folder.file("out.wav"));
  const std::string bytes = contents(folder.file("out.wav"));
  const std::string frame("\xF4\x01\0\0", 4);
  const std::size_t first = bytes.find("cue ") + 16;
  EXPECT_EQ(bytes.substr(first, 4), frame);
  EXPECT_EQ(bytes.substr(first + 16, 4), frame);
  EXPECT_EQ(bytes.find("LIST"), bytes.npos);
}

TEST(Marker, IsNamedAsLostWhereTheContainerHoldsNone) {
  const TemporaryFolder folder;
  const std::string input = aiff(folder.file("in.aiff"), kMarkers);
  for (const char* name : {"out.caf", "out.flac", "out.w64"}) {
    EXPECT_EQ(copy_audio(input, folder.file(name)), Names{"cue points"}) << name;
  }
}

std::string with_chunks(const std::string& path, int format,
                        const std::vector<host::Chunk>& chunks) {
  write_audio(path, {.format = format | SF_FORMAT_PCM_16, .floats = noise(kFrames, 0.5f)});
  const ChunkFamily family = host::chunk_family(format);
  const std::string bytes = contents(path), added = host::serialised(family, chunks);
  const std::size_t place = host::chunks_offset(family, bytes);
  std::string whole = bytes.substr(0, place) + added + bytes.substr(place);
  host::grow(family, whole, added.size());
  std::ofstream(path, std::ios::binary) << whole;
  return path;
}

TEST(Marker, OfCafStaysThereAndIsNamedElsewhere) {
  const TemporaryFolder folder;
  const std::vector<host::Chunk> chunks{{"mark", std::string(36, '\1')}};
  const std::string input = with_chunks(folder.file("in.caf"), SF_FORMAT_CAF, chunks);
  EXPECT_EQ(copy_audio(input, folder.file("out.caf")), Names{});
  EXPECT_EQ(AudioReader(folder.file("out.caf")).metadata().chunks, chunks);
  for (const char* name : {"out.wav", "out.aiff", "out.flac"}) {
    EXPECT_EQ(copy_audio(input, folder.file(name)), Names{"mark"}) << name;
  }
}

std::string list(const std::string& type, const std::vector<host::Chunk>& entries) {
  return type + host::serialised(ChunkFamily::kRiff, entries);
}

TEST(ListEntry, OfWavBecomesATagOrIsNamed) {
  const TemporaryFolder folder;
  for (const char* id : {"INAM", "ICOP", "ISFT", "IART", "ICMT", "ICRD", "IPRD", "ITRK", "IGNR",
                         "IENG", "ISRC", "IKEY", "ISBJ"}) {
    const std::string input =
        with_chunks(folder.file("in.wav"), SF_FORMAT_WAV,
                    {{"LIST", list("INFO", {{id, std::string("a word\0", 7)}})}});
    const bool is_tag = !AudioReader(input).metadata().tags.empty();
    EXPECT_EQ(copy_audio(input, folder.file("out.flac")), is_tag ? Names{} : Names{id}) << id;
    EXPECT_EQ(copy_audio(input, folder.file("out.wav")), Names{}) << id;
  }
}

TEST(ListEntry, ThatIsMoreThanAMarkersNameIsNamed) {
  const TemporaryFolder folder;
  const std::string one("\1\0\0\0", 4);
  const std::string input =
      with_chunks(folder.file("in.wav"), SF_FORMAT_WAV,
                  {{"cue ", one + one + std::string(4, '\0') + "data" + std::string(12, '\0')},
                   {"LIST", list("adtl", {{"labl", one + std::string("verse\0", 6)},
                                          {"note", one + std::string("loud\0", 5)},
                                          {"ltxt", one + std::string(16, '\0')}})}});
  EXPECT_EQ(copy_audio(input, folder.file("out.aiff")), (Names{"note", "ltxt"}));
  EXPECT_EQ(markers(folder.file("out.aiff")), (Places{{0, "verse"}}));
}

}  // namespace
}  // namespace channelstrip::test::marker_test
