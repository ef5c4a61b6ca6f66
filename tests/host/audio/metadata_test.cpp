// Which metadata of the input a written file keeps.

#include "host/audio/metadata.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "../support/audio.h"
#include "../support/rendered.h"
#include "../support/temporary_folder.h"

namespace channelstrip::test::metadata_test {
namespace {

using host::AudioReader;
using host::Chunk;
using host::ChunkFamily;
using host::Metadata;
using Names = std::vector<std::string>;

std::string numbers(std::initializer_list<std::uint32_t> values) {
  std::string bytes;
  for (const std::uint32_t value : values) {
    for (int shift = 0; shift < 32; shift += 8) bytes += static_cast<char>(value >> shift & 0xFF);
  }
  return bytes;
}

std::string broadcast_chunk() {
  std::string bext(602, '\0');
  bext.replace(0, 10, "A dialogue");
  bext.replace(256, 8, "Recorder");
  bext.replace(320, 18, "2026-01-0209:10:11");
  bext.replace(338, 8, numbers({48000, 1}));
  for (int i = 0; i < 40; ++i) bext += "A=ANALOGUE,M=stereo,T=some tape machine\r\n";
  return bext;
}

// A version, 2044 bytes of fields with a title in them, and free text of odd length.
std::string cart_chunk() {
  std::string cart(2048, '\0');
  cart.replace(0, 4, "0101");
  cart.replace(4, 9, "A station");
  return cart + "segue: none";
}

std::string loop_chunk() {
  return numbers({0, 0, 20833, 60, 0, 0, 0, 1, 0, 0, 0, 100, 900, 0, 0});
}

// Chunks of odd size, a long one, and ones that libsndfile writes differently or not at all.
const std::vector<Chunk> kChunks = {
    {"bext", broadcast_chunk()},
    {"cart", cart_chunk()},
    {"iXML", std::string("<BWFXML><SCENE>1</SCENE></BWFXML>")},
    {"cue ", numbers({1, 7, 50, 0x61746164, 0, 0, 50})},
    {"LIST", "adtllabl" + numbers({10}) + numbers({7}) + std::string("verse\0", 6)},
    {"LIST", "INFOINAM" + numbers({6}) + std::string("Title\0", 6) + "ISFT" + numbers({6}) +
                 std::string("Maker\0", 6)},
    {"smpl", loop_chunk()},
    {"ID3 ", std::string(300001, 'p')},
};

std::string wav_with_chunks(const std::string& path) {
  write_audio(path, {.format = SF_FORMAT_WAV | SF_FORMAT_PCM_16, .floats = noise(1000, 0.5f)});
  std::string bytes = contents(path) + host::serialised(ChunkFamily::kRiff, kChunks);
  bytes.replace(4, 4, numbers({static_cast<std::uint32_t>(bytes.size() - 8)}));
  std::ofstream(path, std::ios::binary) << bytes;
  return path;
}

TEST(Metadata, IsCopiedByteForByteWithinAFamily) {
  const TemporaryFolder folder;
  const std::string input = wav_with_chunks(folder.file("in.wav"));
  EXPECT_EQ(AudioReader(input).metadata().chunks, kChunks);
  EXPECT_EQ(copy_audio(input, folder.file("out.wav")), Names{});
  EXPECT_EQ(AudioReader(folder.file("out.wav")).metadata().chunks, kChunks);
  EXPECT_EQ(read_audio(folder.file("out.wav")).integers, read_audio(input).integers);
}

TEST(Metadata, OfOddSizeEndsWithAZeroInRf64) {
  const TemporaryFolder folder;
  const std::string input = wav_with_chunks(folder.file("in.wav"));
  const std::string output = folder.file("out.rf64");
  EXPECT_EQ(copy_audio(input, output), Names{});
  std::vector<Chunk> even = kChunks;
  std::ranges::transform(even, even.begin(), host::evened);
  EXPECT_EQ(AudioReader(output).metadata().chunks, even);
  EXPECT_EQ(read_audio(output).integers, read_audio(input).integers);
}

TEST(Metadata, StandsBehindTheFormatAndIsCountedIntoTheSize) {
  const TemporaryFolder folder;
  copy_audio(wav_with_chunks(folder.file("in.wav")), folder.file("out.wav"));
  const std::string bytes = contents(folder.file("out.wav"));
  EXPECT_EQ(bytes.substr(4, 4), numbers({static_cast<std::uint32_t>(bytes.size() - 8)}));
  EXPECT_EQ(bytes.substr(12, 4), "fmt ");
  EXPECT_EQ(bytes.substr(36, 4), "bext");
  copy_audio(folder.file("in.wav"), folder.file("out.rf64"));
  const std::string rf64 = contents(folder.file("out.rf64"));
  EXPECT_EQ(rf64.substr(20, 8), numbers({static_cast<std::uint32_t>(rf64.size() - 8), 0}));
}

TEST(Metadata, OfBroadcastReadsAsItWas) {
  const TemporaryFolder folder;
  copy_audio(wav_with_chunks(folder.file("in.wav")), folder.file("out.wav"));
  SF_INFO info = {};
  const host::Sndfile file(sf_open(folder.file("out.wav").c_str(), SFM_READ, &info));
  SF_BROADCAST_INFO_VAR(4096) broadcast = {};
  ASSERT_TRUE(sf_command(file.get(), SFC_GET_BROADCAST_INFO, &broadcast, sizeof broadcast));
  EXPECT_STREQ(broadcast.description, "A dialogue");
  EXPECT_STREQ(broadcast.originator, "Recorder");
  EXPECT_EQ(broadcast.time_reference_low, 48000u);
  EXPECT_EQ(broadcast.time_reference_high, 1u);
  EXPECT_EQ(std::string(broadcast.coding_history), broadcast_chunk().substr(602));
}

TEST(Metadata, ThatAnotherContainerCannotHoldIsNamed) {
  const TemporaryFolder folder;
  const std::string input = wav_with_chunks(folder.file("in.wav"));
  const Names rest{"bext", "cart", "iXML", "ID3 "};
  Names all{"cue points", "loops"};
  all.insert(all.end(), rest.begin(), rest.end());
  for (const char* name : {"out.flac", "out.caf"}) {
    EXPECT_EQ(copy_audio(input, folder.file(name)), all) << name;
    EXPECT_EQ(AudioReader(folder.file(name)).metadata().tags.at(SF_STR_TITLE), "Title") << name;
  }
  all.insert(all.begin(), {"title", "software"});
  EXPECT_EQ(copy_audio(input, folder.file("out.w64")), all);
}

TEST(Metadata, OfAnUntaggedFileIsNothing) {
  const TemporaryFolder folder;
  const std::string input = write_audio(folder.file("in.wav"), {.floats = noise(10, 0.5f)});
  const Metadata metadata = AudioReader(input).metadata();
  EXPECT_TRUE(metadata.chunks.empty() && metadata.tags.empty() && metadata.cues.empty());
  EXPECT_FALSE(metadata.instrument);
}

}  // namespace
}  // namespace channelstrip::test::metadata_test
