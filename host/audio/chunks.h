// Containers made of chunks: an id of four characters, a size, bytes.

#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace channelstrip::host {

enum class ChunkFamily { kNone, kRiff, kAiff, kCaf };

struct Chunk {
  std::string id;    // 4 characters
  std::string data;  // without padding

  bool operator==(const Chunk&) const = default;
};

// The family of a container, SF_FORMAT_WAV ...
ChunkFamily chunk_family(int container);

// Whether the chunk holds the samples or describes how this file codes them, so that it must not be
// copied to another file: format, data, peaks, overviews, padding.
bool describes_coding(ChunkFamily family, std::string_view id);

// Appends a zero to data of odd size: libsndfile 1.2 can't read an RF64 file with a chunk of odd
// size.
Chunk evened(Chunk chunk);

// The chunks as the bytes of a file, each padded as its family requires.
std::string serialised(ChunkFamily family, std::span<const Chunk> chunks);

// The offset at which chunks can be inserted into a file that begins with `header`: after the chunk
// that describes the format. 0 if `header` doesn't hold that chunk whole.
std::size_t chunks_offset(ChunkFamily family, std::string_view header);

// The chunks within the data of a RIFF chunk "LIST", which begins with four characters for its
// type.
std::vector<Chunk> list_entries(std::string_view list);

// In a WAV file of `length` bytes whose sizes were never filled in, because it was written to a
// pipe or not completed, the offset of the size of its samples: that size is 0, and the file goes
// on beyond the end that its header states. 0 for any other file. `header` is its beginning.
std::size_t open_size(std::string_view header, std::uint64_t length);

// Adds `growth` bytes to the field of `header` that states the whole file's size, if it has one.
void grow(ChunkFamily family, std::span<char> header, std::uint64_t growth);

}  // namespace channelstrip::host
