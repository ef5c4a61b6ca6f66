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

// Bytes. The headers of these containers hold sizes of 32 bits.
sf_count_t size_limit(int container) {
  switch (container) {
    case SF_FORMAT_WAV:
    case SF_FORMAT_WAVEX:
    case SF_FORMAT_AIFF:
    case SF_FORMAT_AU:
      return std::numeric_limits<std::uint32_t>::max();
    default:
      return std::numeric_limits<sf_count_t>::max();
  }
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
      format_(format),
      options_(std::move(options)),
      place_(open_output(path)),
      output_(place_->descriptor(), chunk_family(format.container),
              chunks_for(format, options_.metadata), size_limit(format.container)) {
  open();
  // That chunk holds the time of day, but the same input must give the same file.
  sf_command(file_.get(), SFC_SET_ADD_PEAK_CHUNK, nullptr, SF_FALSE);
  set_channel_map();
  write_metadata(file_.get(), format.container, options_.metadata);
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
  if (format_.channels <= 2) return;
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

void AudioWriter::write(std::span<const float> frames) {
  const sf_count_t count = std::ssize(frames) / format_.channels;
  sf_count_t done = 0;
  if (const int bits = integer_bits(format_)) {
    const auto put = [&](auto& integers, auto* write_frames) {
      integers.resize(frames.size());
      clipped_ += to_pcm(frames, bits, options_.dither, written_, integers);
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
