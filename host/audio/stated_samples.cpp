#include "stated_samples.h"

#include <algorithm>
#include <bit>
#include <iterator>

#include "byte_order.h"
#include "chunks.h"

namespace channelstrip::host {
namespace {

constexpr std::uint64_t kUnknown = 0xFFFFFFFF;

std::optional<PlacedChunk> find(std::string_view header, ChunkFamily family, std::string_view id) {
  const auto chunks = chunks_in(family, header, first_chunk(family));
  const auto found = std::ranges::find(chunks, id, &PlacedChunk::id);
  return found == chunks.end() ? std::nullopt : std::optional(*found);
}

std::optional<StatedSamples> in_chunk(std::string_view header, ChunkFamily family,
                                      std::string_view id) {
  const auto chunk = find(header, family, id);
  if (!chunk) return std::nullopt;
  return StatedSamples{chunk->begin, chunk->begin + chunk->size};
}

// The first chunk of RF64 holds the sizes that need 64 bits: the file's, the samples'.
std::optional<StatedSamples> in_rf64(std::string_view header) {
  auto samples = in_chunk(header, ChunkFamily::kRiff, "data");
  if (samples && samples->end - samples->begin == kUnknown && header.substr(12, 4) == "ds64") {
    samples->end = samples->begin + read_integer(header.substr(28, 8), std::endian::little);
  }
  return samples;
}

std::optional<StatedSamples> in_au(std::string_view header) {
  const std::uint64_t begin = read_integer(header.substr(4, 4), std::endian::big);
  return StatedSamples{begin, begin + read_integer(header.substr(8, 4), std::endian::big)};
}

// What programs write into a pipe for a size that they can't know: the largest one, also less what
// comes before the samples, or the largest that is a multiple of a page (sox) or signed (arecord).
bool is_open(std::uint64_t size) {
  constexpr std::uint64_t kOpen[] = {0, 0x7FFFF000, 0x7FFFFFFF, 0x80000000};
  return (size >= kUnknown - 0x1000 && size <= kUnknown) ||
         std::ranges::find(kOpen, size) != std::end(kOpen);
}

}  // namespace

std::optional<StatedSamples> stated_samples(std::string_view header) {
  if (header.size() < 40) return std::nullopt;
  const std::string_view id = header.substr(0, 4);
  const std::string_view form = header.substr(8, 4);
  std::optional<StatedSamples> samples;
  if (id == "RIFF" && form == "WAVE") samples = in_chunk(header, ChunkFamily::kRiff, "data");
  if (id == "RF64" && form == "WAVE") return in_rf64(header);
  if (id == "FORM" && (form == "AIFF" || form == "AIFC")) {
    samples = in_chunk(header, ChunkFamily::kAiff, "SSND");
  }
  if (id == "riff" && header.substr(24, 4) == "wave") {
    return in_chunk(header, ChunkFamily::kWave64, "data");
  }
  if (id == ".snd") samples = in_au(header);
  if (samples && is_open(samples->end - samples->begin)) return std::nullopt;
  return samples;
}

std::size_t open_size(std::string_view header, std::uint64_t length) {
  if (header.size() < 12 || !header.starts_with("RIFF") || header.substr(8, 4) != "WAVE") return 0;
  const std::uint64_t stated = read_integer(header.substr(4, 4), std::endian::little);
  if (stated != kUnknown && stated + 8 >= length) return 0;
  const auto samples = find(header, ChunkFamily::kRiff, "data");
  return samples && samples->size == 0 && samples->begin < header.size() ? samples->begin - 4 : 0;
}

}  // namespace channelstrip::host
