#include "audio_writer.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <utility>

#include "../system/standard_streams.h"
#include "containers.h"
#include "cue_chunks.h"
#include "pcm.h"

namespace channelstrip::host {
namespace {

constexpr sf_count_t kUnlimited = std::numeric_limits<sf_count_t>::max();

// Bytes. The headers of these containers hold sizes of 32 bits.
sf_count_t size_limit(int container) {
  switch (container) {
    case SF_FORMAT_WAV:
    case SF_FORMAT_WAVEX:
    case SF_FORMAT_AIFF:
    case SF_FORMAT_AU:
      return std::numeric_limits<std::uint32_t>::max();
    default:
      return kUnlimited;
  }
}

// Bytes, and enough for whatever stands before and behind the samples; 0 for sample types that have
// no fixed size.
sf_count_t expected_size(const AudioFormat& format, const AudioWriterOptions& options) {
  constexpr sf_count_t kHeader = 1 << 16;
  const int bits = format.sample_type == SF_FORMAT_FLOAT    ? 32
                   : format.sample_type == SF_FORMAT_DOUBLE ? 64
                                                            : integer_bits(format);
  sf_count_t size = kHeader;
  for (const Chunk& chunk : options.metadata.chunks) size += std::ssize(chunk.data) + 16;
  return bits == 0 ? 0 : size + options.frames * format.channels * (bits / 8);
}

// With RF64 in place of WAV where it may take that. Throws for samples that are too many for a
// container, before any of them is rendered.
AudioFormat fitting(const std::string& name, AudioFormat format,
                    const AudioWriterOptions& options) {
  const bool too_large = expected_size(format, options) > size_limit(format.container);
  const bool is_wav = format.container == SF_FORMAT_WAV || format.container == SF_FORMAT_WAVEX;
  if (is_wav && (too_large || options.frames < 0)) {
    format.container = SF_FORMAT_RF64;
  } else if (too_large) {
    fail_on(name, libsndfile_name(format.container) +
                      " can't hold more than 4 GiB; wav, w64 and caf can");
  }
  return format;
}

std::string chunks_for(const AudioFormat& format, const Metadata& metadata) {
  const ChunkFamily family = chunk_family(format.container);
  std::vector<Chunk> chunks;
  if (family == metadata.family) {
    chunks = metadata.chunks;
  } else if (family == ChunkFamily::kRiff) {
    chunks = cue_chunks(metadata.cues);
  }
  if (format.container == SF_FORMAT_RF64) std::ranges::transform(chunks, chunks.begin(), evened);
  return serialised(family, chunks);
}

bool is_mono_or_stereo(const std::vector<Speaker>& named, int channels) {
  if (named.empty()) return channels <= 2;
  return named == std::vector{Speaker::kFrontCenter} ||
         named == std::vector{Speaker::kFrontLeft, Speaker::kFrontRight};
}

// The metadata of the file just written, which must stay open. libsndfile closes the descriptor of
// a file that it doesn't recognise, so it gets a duplicate.
Metadata read_back(const std::string& name, int descriptor, int container) {
  SF_INFO info = {};
  lseek(descriptor, 0, SEEK_SET);
  const Sndfile file =
      opened(name, [&] { return Sndfile(sf_open_fd(dup(descriptor), SFM_READ, &info, SF_TRUE)); });
  return read_metadata(file.get(), container);
}

}  // namespace

AudioWriter::AudioWriter(const std::string& path, const AudioFormat& format,
                         AudioWriterOptions options)
    : name_(output_name(path)),
      format_(fitting(name_, format, options)),
      options_(std::move(options)),
      place_(open_output(path, options_.existing)),
      output_(place_->descriptor(), chunk_family(format_.container),
              chunks_for(format_, options_.metadata), size_limit(format_.container)) {
  open();
  // That chunk holds the time of day, but the same input must give the same file.
  sf_command(file_.get(), SFC_SET_ADD_PEAK_CHUNK, nullptr, SF_FALSE);
  // A short file becomes WAV in the end.
  if (options_.frames < 0 && format_.container != format.container) {
    sf_command(file_.get(), SFC_RF64_AUTO_DOWNGRADE, nullptr, SF_TRUE);
  }
  set_channel_map();
  write_metadata(file_.get(), format_.container, options_.metadata);
}

void AudioWriter::open() {
  SF_INFO info = {};
  info.samplerate = format_.sample_rate;
  info.channels = format_.channels;
  info.format = format_.container | format_.sample_type;
  SF_VIRTUAL_IO calls = SndfileOutput::calls();
  file_ = opened(name_, [&] {
    Sndfile file(sf_open_virtual(&calls, SFM_WRITE, &info, &output_));
    check();
    return file;
  });
}

void AudioWriter::set_channel_map() {
  // One channel is mono and two are stereo in every container, without a map.
  if (is_mono_or_stereo(speakers(format_), format_.channels)) return;
  std::vector<int> map = format_.channel_map;
  const bool is_set =
      !map.empty() && sf_command(file_.get(), SFC_SET_CHANNEL_MAP_INFO, map.data(),
                                 static_cast<int>(map.size() * sizeof(int))) == SF_TRUE;
  keeps_channel_map_ = is_set || map.empty();
  guesses_mask_ =
      !is_set && (format_.container == SF_FORMAT_WAVEX || format_.container == SF_FORMAT_RF64);
}

// libsndfile guesses the mask of an extensible WAV header from the number of channels. This sets it
// to 0, which names no speakers.
void AudioWriter::clear_mask() {
  std::array<char, 128> header = {};
  const ssize_t got = pread(place_->descriptor(), header.data(), header.size(), 0);
  const std::size_t end = chunks_offset(
      ChunkFamily::kRiff, {header.data(), static_cast<std::size_t>(std::max<ssize_t>(got, 0))});
  constexpr std::size_t kToTheEnd = 20;  // the mask's four bytes and the sub-format
  if (end < kToTheEnd ||
      pwrite(place_->descriptor(), "\0\0\0\0", 4, static_cast<off_t>(end - kToTheEnd)) != 4) {
    fail_on(name_, "the channel mask can't be cleared");
  }
}

void AudioWriter::write(std::span<const float> frames, std::span<const float> sources) {
  const sf_count_t count = std::ssize(frames) / format_.channels;
  sf_count_t done = 0;
  if (const int bits = integer_bits(format_)) {
    const auto put = [&](auto& integers, auto* write_frames) {
      integers.resize(frames.size());
      clipped_ += to_pcm(frames, bits, options_.dither, written_, integers, sources);
      done = write_frames(file_.get(), integers.data(), count);
    };
    if (bits <= 16) {
      put(shorts_, sf_writef_short);
    } else {
      put(integers_, sf_writef_int);
    }
  } else if (format_.sample_type == SF_FORMAT_FLOAT || format_.sample_type == SF_FORMAT_DOUBLE) {
    done = sf_writef_float(file_.get(), frames.data(), count);
  } else {
    // Companded and compressed samples can't exceed full scale either; libsndfile's tables rely on
    // it.
    floats_.resize(frames.size());
    clipped_ += to_full_scale(frames, floats_);
    done = sf_writef_float(file_.get(), floats_.data(), count);
  }
  written_ += static_cast<std::uint32_t>(frames.size());
  check();
  if (done != count) fail_on(name_, sf_strerror(file_.get()));
}

void AudioWriter::commit() {
  const int error = sf_close(file_.release());
  check();
  if (error != SF_ERR_NO_ERROR) fail_on(name_, sf_error_number(error));
  output_.finish();
  check();
  if (guesses_mask_) clear_mask();
  // libsndfile writes the header of a FLAC file only with the first samples.
  if (lseek(place_->descriptor(), 0, SEEK_END) == 0) {
    fail_on(name_, libsndfile_name(format_.container) + " can't be without samples");
  }
  lost_metadata_ = host::lost_metadata(options_.metadata,
                                       read_back(name_, place_->descriptor(), format_.container));
  place_->commit();
}

void AudioWriter::check() const {
  if (output_.error()) fail_on(name_, std::strerror(output_.error()));
}

}  // namespace channelstrip::host
