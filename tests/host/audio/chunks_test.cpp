// The chunks of a file whose sizes may be anything.

#include "host/audio/chunks.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "host/audio/byte_order.h"
#include "host/audio/stated_samples.h"

namespace channelstrip::test::chunks_test {
namespace {

using namespace host;

struct Kind {
  ChunkFamily family;
  std::size_t id_bytes, size_bytes;
  std::endian order;
};

constexpr Kind kKinds[] = {{ChunkFamily::kRiff, 4, 4, std::endian::little},
                           {ChunkFamily::kAiff, 4, 4, std::endian::big},
                           {ChunkFamily::kCaf, 4, 8, std::endian::big},
                           {ChunkFamily::kWave64, 16, 8, std::endian::little}};

// A chunk that states this size, without its data.
std::string head(const Kind& kind, const std::string& id, std::uint64_t size) {
  std::string bytes = id;
  bytes.resize(kind.id_bytes + kind.size_bytes);
  write_integer(size, kind.order, std::span(bytes).subspan(kind.id_bytes));
  return bytes;
}

TEST(Chunks, OfAnySizeAreWalkedToTheEndOfTheBytes) {
  constexpr std::uint64_t kMost = std::numeric_limits<std::uint64_t>::max();
  for (const Kind& kind : kKinds) {
    for (const std::uint64_t size :
         {std::uint64_t{0}, std::uint64_t{1}, std::uint64_t{7}, std::uint64_t{23},
          std::uint64_t{24}, std::uint64_t{199}, std::uint64_t{200}, kMost >> 32, kMost >> 1,
          (kMost >> 1) + 1, kMost - 24, kMost - 7, kMost}) {
      const std::string file = std::string(first_chunk(kind.family), ' ') +
                               head(kind, "one ", size) + std::string(200, '\0');
      for (std::size_t length = 0; length <= file.size(); ++length) {
        const std::string_view bytes = std::string_view(file).substr(0, length);
        for (const PlacedChunk& chunk : chunks_in(kind.family, bytes, first_chunk(kind.family))) {
          EXPECT_LE(chunk.begin, bytes.size());
          EXPECT_EQ(chunk.id.size(), 4u);
        }
        EXPECT_LE(chunks_offset(kind.family, bytes), bytes.size());
      }
    }
  }
}

TEST(Chunks, OfAKindWithoutChunksAreNone) {
  EXPECT_EQ(chunks_offset(ChunkFamily::kNone, std::string(100, '\0')), 0u);
}

TEST(Chunks, StandAfterThePaddingOfOnesOfOddSize) {
  for (const Kind& kind : kKinds) {
    const bool counts_all = kind.family == ChunkFamily::kWave64;
    const std::size_t padding = kind.family == ChunkFamily::kCaf ? 0 : counts_all ? 5 : 1;
    const std::string file = std::string(first_chunk(kind.family), ' ') +
                             head(kind, "odd ", counts_all ? 24 + 3 : 3) +
                             std::string(3 + padding, 'x') + head(kind, "next", 5);
    const auto chunks = chunks_in(kind.family, file, first_chunk(kind.family));
    ASSERT_EQ(chunks.size(), 2u);
    EXPECT_EQ(chunks[0].size, 3u);
    EXPECT_EQ(chunks[1].id, "next");
  }
}

TEST(Chunks, ThatEndBehindTheBytesAreNoPlaceForOthers) {
  const std::string file = "RIFF    WAVE" + head(kKinds[0], "fmt ", 16) + std::string(15, ' ');
  EXPECT_EQ(chunks_offset(ChunkFamily::kRiff, file), 0u);
  EXPECT_EQ(chunks_offset(ChunkFamily::kRiff, file + ' '), file.size() + 1);
}

TEST(Chunks, OfAListMayEndEarly) {
  const std::string list =
      "INFO" + head(kKinds[0], "IART", 2) + "me" + head(kKinds[0], "INAM", 0xFFFFFFFF) + "title";
  EXPECT_EQ(list_entries(list), (std::vector<Chunk>{{"IART", "me"}, {"INAM", "title"}}));
}

}  // namespace
}  // namespace channelstrip::test::chunks_test
