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

// Of SF_FORMAT_WAV ...
ChunkFamily chunk_family(int container);

// Whether the chunk holds or describes the samples as they are coded here, so that it is no longer
// true of another file: format, data, peaks, overviews, padding.
bool describes_coding(ChunkFamily family, std::string_view id);

// With a zero behind data of odd size. libsndfile 1.2 can't read RF64 files with any such chunk.
Chunk evened(Chunk chunk);

// As they stand in a file, each padded as its family asks.
std::string serialised(ChunkFamily family, std::span<const Chunk> chunks);

// Where further chunks may stand in a file that begins with `header`: behind the chunk that
// describes the format. 0 if that is incomplete.
std::size_t chunks_offset(ChunkFamily family, std::string_view header);

// The chunks in a RIFF chunk "LIST", which stand behind its type.
std::vector<Chunk> list_entries(std::string_view list);

// Where a WAV file of `length` bytes that begins with `header` leaves the size of its samples open,
// as one does that was written to a pipe or never completed: it says 0, and the file goes on behind
// the end that it states. 0 in any other file.
std::size_t open_size(std::string_view header, std::uint64_t length);

// Adds `growth` bytes to the field of `header` that states the whole file's size, if it has one.
void grow(ChunkFamily family, std::span<char> header, std::uint64_t growth);

}  // namespace channelstrip::host
