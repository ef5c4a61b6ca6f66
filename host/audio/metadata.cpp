#include "metadata.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "cue_chunks.h"

namespace channelstrip::host {
namespace {

// Bytes; larger than any chunk in practice. Limits the memory that a damaged size can ask for.
constexpr unsigned kLargestChunk = 64u << 20;

constexpr std::pair<int, const char*> kTags[] = {{SF_STR_TITLE, "title"},
                                                 {SF_STR_COPYRIGHT, "copyright"},
                                                 {SF_STR_SOFTWARE, "software"},
                                                 {SF_STR_ARTIST, "artist"},
                                                 {SF_STR_COMMENT, "comment"},
                                                 {SF_STR_DATE, "date"},
                                                 {SF_STR_ALBUM, "album"},
                                                 {SF_STR_LICENSE, "license"},
                                                 {SF_STR_TRACKNUMBER, "track number"},
                                                 {SF_STR_GENRE, "genre"}};

// Returns whether all of `data` was read. Sets `id` in either case.
bool read_chunk(const SF_CHUNK_ITERATOR* place, std::span<char> data, std::string& id) {
  SF_CHUNK_INFO info = {};
  info.data = data.data();
  info.datalen = static_cast<unsigned>(data.size());
  const bool read = sf_get_chunk_data(place, &info) == SF_ERR_NO_ERROR;
  id.assign(info.id, 4);
  return read;
}

// libsndfile lists the samples, and even the whole file, among the chunks. So at first up to four
// bytes of each chunk are read to learn its id, and the whole of it only if it is to be kept.
void read_chunks(SNDFILE* file, Metadata& metadata) {
  for (SF_CHUNK_ITERATOR* i = sf_get_chunk_iterator(file, nullptr); i;
       i = sf_next_chunk_iterator(i)) {
    SF_CHUNK_INFO info = {};
    if (sf_get_chunk_size(i, &info) != SF_ERR_NO_ERROR) continue;
    Chunk chunk;
    char look[4];
    read_chunk(i, std::span(look).first(std::min<std::size_t>(sizeof look, info.datalen)),
               chunk.id);
    if (describes_coding(metadata.family, chunk.id)) continue;
    if (info.datalen <= kLargestChunk) {
      chunk.data.resize(info.datalen);
      if (read_chunk(i, chunk.data, chunk.id)) {
        metadata.chunks.push_back(std::move(chunk));
        continue;
      }
    }
    metadata.refused.push_back(chunk.id);
  }
}

// In AIFF, libsndfile takes the text of a chunk "APPL", after the application's signature of four
// bytes, for the "software" tag, and reads on into whatever lies in memory after the chunk. This
// cuts the tag at the end of the chunk.
void end_software_tag_with_its_chunk(Metadata& metadata) {
  constexpr std::size_t kSignature = 4;
  const auto tag = metadata.tags.find(SF_STR_SOFTWARE);
  if (tag == metadata.tags.end()) return;
  for (const Chunk& chunk : metadata.chunks) {
    if (chunk.id != "APPL" || chunk.data.size() <= kSignature) continue;
    const std::string whole = chunk.data.substr(kSignature);
    if (tag->second.starts_with(whole)) tag->second = whole;
  }
}

// SF_CUES holds 100; files may hold more.
std::vector<SF_CUE_POINT> read_cues(SNDFILE* file) {
  std::uint32_t count = 0;
  if (!sf_command(file, SFC_GET_CUE_COUNT, &count, sizeof count)) return {};
  std::vector<char> bytes(sizeof count + count * sizeof(SF_CUE_POINT));
  if (!sf_command(file, SFC_GET_CUE, bytes.data(), static_cast<int>(bytes.size()))) return {};
  std::vector<SF_CUE_POINT> cues(count);
  std::memcpy(cues.data(), bytes.data() + sizeof count, count * sizeof(SF_CUE_POINT));
  return cues;
}

void write_cues(SNDFILE* file, const std::vector<SF_CUE_POINT>& cues) {
  const auto count = static_cast<std::uint32_t>(cues.size());
  std::vector<char> bytes(sizeof count + count * sizeof(SF_CUE_POINT));
  std::memcpy(bytes.data(), &count, sizeof count);
  std::memcpy(bytes.data() + sizeof count, cues.data(), count * sizeof(SF_CUE_POINT));
  sf_command(file, SFC_SET_CUE, bytes.data(), static_cast<int>(bytes.size()));
}

// Chunks whose content is read as tags, cue points or loops.
bool is_understood(std::string_view id, const Metadata& metadata) {
  constexpr std::string_view kIds[] = {"cue ", "NAME", "AUTH", "ANNO",
                                       "(c) ", "APPL", "MARK", "info"};
  if (id == "smpl" || id == "INST") return metadata.instrument.has_value();
  return std::ranges::find(kIds, id) != std::end(kIds);
}

// The same of a list's entries.
bool is_understood_entry(std::string_view id) {
  constexpr std::string_view kIds[] = {"INAM", "ICOP", "ISFT", "IART", "ICMT",
                                       "ICRD", "IPRD", "ITRK", "IGNR", "labl"};
  return std::ranges::find(kIds, id) != std::end(kIds);
}

bool same_cues(const Metadata& a, const Metadata& b) {
  return std::ranges::equal(a.cues, b.cues, [](const SF_CUE_POINT& p, const SF_CUE_POINT& q) {
    return p.sample_offset == q.sample_offset && std::strcmp(p.name, q.name) == 0;
  });
}

bool same_loops(const SF_INSTRUMENT& a, const SF_INSTRUMENT& b) {
  if (a.basenote != b.basenote || a.loop_count != b.loop_count) return false;
  for (int i = 0; i < std::min(a.loop_count, 16); ++i) {
    const auto &p = a.loops[i], &q = b.loops[i];
    if (p.mode != q.mode || p.start != q.start || p.end != q.end) return false;
  }
  return true;
}

}  // namespace

Metadata read_metadata(SNDFILE* file, int container) {
  Metadata metadata{.family = chunk_family(container)};
  if (metadata.family != ChunkFamily::kNone) read_chunks(file, metadata);
  for (const auto& [type, name] : kTags) {
    const char* const text = sf_get_string(file, type);
    if (text && *text) metadata.tags[type] = text;  // ID3v1 has empty ones
  }
  end_software_tag_with_its_chunk(metadata);
  metadata.cues =
      metadata.family == ChunkFamily::kRiff ? cue_points(metadata.chunks) : read_cues(file);
  SF_INSTRUMENT instrument = {};
  if (sf_command(file, SFC_GET_INSTRUMENT, &instrument, sizeof instrument)) {
    metadata.instrument = instrument;
  }
  return metadata;
}

void write_metadata(SNDFILE* file, int container, const Metadata& metadata) {
  const ChunkFamily family = chunk_family(container);
  if (family != ChunkFamily::kNone && family == metadata.family) return;
  for (const auto& [type, text] : metadata.tags) sf_set_string(file, type, text.c_str());
  if (family != ChunkFamily::kRiff && !metadata.cues.empty()) write_cues(file, metadata.cues);
  if (metadata.instrument) {
    SF_INSTRUMENT instrument = *metadata.instrument;
    sf_command(file, SFC_SET_INSTRUMENT, &instrument, sizeof instrument);
  }
}

std::vector<std::string> lost_metadata(const Metadata& input, const Metadata& output) {
  std::vector<std::string> lost = input.refused;
  if (input.family != ChunkFamily::kNone && input.family == output.family) {
    for (const Chunk& chunk : input.chunks) {
      const Chunk even = evened(chunk);
      if (std::ranges::count(output.chunks, even, evened) == 0) lost.push_back(chunk.id);
    }
    return lost;
  }
  for (const auto& [type, name] : kTags) {
    const auto before = input.tags.find(type), after = output.tags.find(type);
    if (before == input.tags.end()) continue;
    // libsndfile appends its own name to "software".
    if (after == output.tags.end() || !after->second.starts_with(before->second)) {
      lost.emplace_back(name);
    }
  }
  if (!same_cues(input, output)) lost.emplace_back("cue points");
  if (input.instrument &&
      !(output.instrument && same_loops(*input.instrument, *output.instrument))) {
    lost.emplace_back("loops");
  }
  for (const Chunk& chunk : input.chunks) {
    if (chunk.id == "LIST") {
      for (const Chunk& entry : list_entries(chunk.data)) {
        if (!is_understood_entry(entry.id)) lost.push_back(entry.id);
      }
    } else if (!is_understood(chunk.id, input)) {
      lost.push_back(chunk.id);
    }
  }
  return lost;
}

}  // namespace channelstrip::host
