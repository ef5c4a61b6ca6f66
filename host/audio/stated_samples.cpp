#include "stated_samples.h"

#include <algorithm>
#include <bit>
#include <iterator>

#include "byte_order.h"

namespace channelstrip::host {
namespace {

constexpr std::uint64_t kUnknown = 0xFFFFFFFF;

// A container's chunks: an id, a size, bytes.
struct Chunks {
  std::size_t start;     // of the first one
  std::size_t id_bytes;  // of which four tell them apart
  std::size_t size_bytes;
  std::endian order;
  std::size_t alignment;
  bool size_counts_all;  // id and size too, not only the bytes after them
  std::string_view samples;
};

constexpr Chunks kRiff{12, 4, 4, std::endian::little, 2, false, "data"};
constexpr Chunks kAiff{12, 4, 4, std::endian::big, 2, false, "SSND"};
constexpr Chunks kWave64{40, 16, 8, std::endian::little, 8, true, "data"};

std::optional<StatedSamples> find(std::string_view header, const Chunks& rules) {
  const std::size_t head = rules.id_bytes + rules.size_bytes;
  for (std::uint64_t at = rules.start; at + head <= header.size();) {
    std::uint64_t size =
        read_integer(header.substr(at + rules.id_bytes, rules.size_bytes), rules.order);
    if (rules.size_counts_all) size = std::max<std::uint64_t>(size, head) - head;
    const std::uint64_t begin = at + head;
    if (header.substr(at, 4) == rules.samples) return StatedSamples{begin, begin + size};
    if (size > header.size()) break;  // whatever the sum, it lies beyond the header
    at = begin + (size + rules.alignment - 1) / rules.alignment * rules.alignment;
  }
  return std::nullopt;
}

// The first chunk of RF64 holds the sizes that need 64 bits: the file's, the samples'.
std::optional<StatedSamples> in_rf64(std::string_view header) {
  auto samples = find(header, kRiff);
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
  if (id == "RIFF" && form == "WAVE") samples = find(header, kRiff);
  if (id == "RF64" && form == "WAVE") return in_rf64(header);
  if (id == "FORM" && (form == "AIFF" || form == "AIFC")) samples = find(header, kAiff);
  if (id == "riff" && header.substr(24, 4) == "wave") return find(header, kWave64);
  if (id == ".snd") samples = in_au(header);
  if (samples && is_open(samples->end - samples->begin)) return std::nullopt;
  return samples;
}

}  // namespace channelstrip::host
