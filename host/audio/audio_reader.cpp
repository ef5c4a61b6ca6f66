#include "audio_reader.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "../system/standard_streams.h"
#include "chunks.h"
#include "flac_blocks.h"
#include "lost_tags.h"
#include "pcm.h"
#include "stated_samples.h"

namespace channelstrip::host {
namespace {

// What a header may take up, tags before the samples included.
std::string beginning_of(int descriptor) {
  std::string bytes(1 << 16, '\0');
  const ssize_t got = pread(descriptor, bytes.data(), bytes.size(), 0);
  bytes.resize(static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
  return bytes;
}

std::uint64_t length_of(int descriptor) {
  struct stat status = {};
  return fstat(descriptor, &status) == 0 ? static_cast<std::uint64_t>(status.st_size) : 0;
}

// In seconds, from the samples' bytes; `frames` of them are there.
double missing_time(int descriptor, sf_count_t frames, int sample_rate) {
  const auto stated = stated_samples(beginning_of(descriptor));
  const std::uint64_t length = length_of(descriptor);
  if (!stated || frames <= 0 || length >= stated->end || length <= stated->begin) return 0;
  const double present = static_cast<double>(length - stated->begin);
  return static_cast<double>(stated->end - length) / present * static_cast<double>(frames) /
         sample_rate;
}

// The caller's to close. Where a WAV file's header leaves its length open, a copy has the largest
// size there, which libsndfile takes for "up to the end"; 0 would mean no samples.
int open_audio(const std::string& path, const std::string& name) {
  SeekableInput input = open_input(path);
  const auto open_size_at =
      static_cast<off_t>(open_size(beginning_of(input.descriptor), length_of(input.descriptor)));
  if (open_size_at == 0) return input.descriptor;
  if (!input.is_copy) input = copy_of(input, name);
  if (pwrite(input.descriptor, "\xFF\xFF\xFF\xFF", 4, open_size_at) != 4) {
    const int error = errno;
    close(input.descriptor);
    fail_on(name, std::strerror(error));
  }
  return input.descriptor;
}

}  // namespace

SF_INFO AudioReader::open(int descriptor) {
  SF_INFO info = {};
  file_ = opened(name_, [&] { return Sndfile(sf_open_fd(descriptor, SFM_READ, &info, SF_TRUE)); });
  descriptor_ = descriptor;
  position_ = 0;
  return info;
}

AudioReader::AudioReader(const std::string& path) : name_(input_name(path)) {
  const SF_INFO info = open(open_audio(path, name_));
  format_.sample_rate = info.samplerate;
  format_.channels = info.channels;
  format_.container = info.format & SF_FORMAT_TYPEMASK;
  format_.sample_type = info.format & SF_FORMAT_SUBMASK;
  frames_ = info.frames < SF_COUNT_MAX ? info.frames : -1;
  missing_ = missing_time(descriptor_, frames_, info.samplerate);
  std::vector<int> map(static_cast<std::size_t>(info.channels));
  const bool named = sf_command(file_.get(), SFC_GET_CHANNEL_MAP_INFO, map.data(),
                                static_cast<int>(map.size() * sizeof(int)));
  // A mask of fewer bits than channels names only some of them, which is no map.
  if (named && std::ranges::count(map, SF_CHANNEL_MAP_INVALID) == 0) format_.channel_map = map;
  metadata_ = read_metadata(file_.get(), format_.container);
  note_lost_metadata();
}

void AudioReader::note_lost_metadata() {
  const int container = format_.container;
  if (container == SF_FORMAT_FLAC) metadata_.refused = lost_flac_blocks(descriptor_);
  if (container == SF_FORMAT_FLAC || container == SF_FORMAT_OGG || container == SF_FORMAT_MPEG) {
    std::ranges::move(lost_tags(descriptor_, metadata_.tags),
                      std::back_inserter(metadata_.refused));
  }
}

void AudioReader::rewind() {
  const int again = fcntl(descriptor_, F_DUPFD_CLOEXEC, 0);
  if (again < 0 || lseek(again, 0, SEEK_SET) != 0) {
    const int error = errno;
    if (again >= 0) close(again);
    fail_on(name_, std::strerror(error));
  }
  open(again);
}

std::string AudioReader::cut_short() const {
  if (missing_ <= 0) return {};
  const double present = static_cast<double>(frames_) / format_.sample_rate;
  return fmt::format("{}: is cut short, its last {:.3f} s of {:.3f} s are missing", name_, missing_,
                     missing_ + present);
}

std::span<const float> AudioReader::read(std::span<float> frames) {
  const auto channels = static_cast<std::size_t>(format_.channels);
  const sf_count_t got =
      sf_readf_float(file_.get(), frames.data(), static_cast<sf_count_t>(frames.size() / channels));
  if (sf_error(file_.get()) != SF_ERR_NO_ERROR) fail_on(name_, sf_strerror(file_.get()));
  const std::span<const float> samples = frames.first(static_cast<std::size_t>(got) * channels);
  if (const std::size_t at = first_not_finite(samples); at < samples.size()) {
    const sf_count_t frame = position_ + static_cast<sf_count_t>(at / channels);
    fail_on(name_, fmt::format("the sample at {:.3f} s isn't a finite number",
                               static_cast<double>(frame) / format_.sample_rate));
  }
  position_ += got;
  return samples;
}

}  // namespace channelstrip::host
