#include "audio_writer.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>

#include "pcm.h"

namespace channelstrip::host {
namespace {

// The headers of these count bytes in 32 bits.
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

}  // namespace

AudioWriter::AudioWriter(const std::string& path, const AudioFormat& format)
    : path_(path), format_(format), replacement_(path) {
  output_.descriptor = replacement_.descriptor();
  output_.limit = size_limit(format.container);

  SF_INFO info = {};
  info.samplerate = format.sample_rate;
  info.channels = format.channels;
  info.format = format.container | format.sample_type;
  SF_VIRTUAL_IO calls = output_calls();
  file_.reset(sf_open_virtual(&calls, SFM_WRITE, &info, &output_));
  check();
  if (!file_) fail_on(path, sf_strerror(nullptr));

  // It carries the time of day: the same input shall give the same file.
  sf_command(file_.get(), SFC_SET_ADD_PEAK_CHUNK, nullptr, SF_FALSE);

  // Up to two channels every container says enough by their number.
  if (format.channels > 2 && !format.channel_map.empty()) {
    std::vector<int> map = format.channel_map;
    keeps_channel_map_ = sf_command(file_.get(), SFC_SET_CHANNEL_MAP_INFO, map.data(),
                                    static_cast<int>(map.size() * sizeof(int))) == SF_TRUE;
    // Without a mask of our own libsndfile would write one by the number of channels.
    const bool guessed = format.container == SF_FORMAT_WAVEX || format.container == SF_FORMAT_RF64;
    if (!keeps_channel_map_ && guessed) fail_on(path, "a WAV mask can't express the channel order");
  }
}

void AudioWriter::write(std::span<const float> frames) {
  const sf_count_t count = static_cast<sf_count_t>(frames.size()) / format_.channels;
  sf_count_t written = 0;
  if (const int bits = integer_bits(format_)) {
    integers_.resize(frames.size());
    std::ranges::transform(frames, integers_.begin(),
                           [&](float x) { return to_pcm(x, bits, clipped_); });
    written = sf_writef_int(file_.get(), integers_.data(), count);
  } else if (format_.sample_type == SF_FORMAT_FLOAT || format_.sample_type == SF_FORMAT_DOUBLE) {
    written = sf_writef_float(file_.get(), frames.data(), count);
  } else {
    // Companded and compressed samples end at full scale too; libsndfile's tables rely on it.
    floats_.resize(frames.size());
    std::ranges::transform(frames, floats_.begin(), [&](float x) {
      if (std::isnan(x)) return 0.0f;
      if (std::abs(x) > 1.0f) ++clipped_;
      return std::clamp(x, -1.0f, 1.0f);
    });
    written = sf_writef_float(file_.get(), floats_.data(), count);
  }
  check();
  if (written != count) fail_on(path_, sf_strerror(file_.get()));
}

void AudioWriter::commit() {
  const int error = sf_close(file_.release());
  check();
  if (error != SF_ERR_NO_ERROR) fail_on(path_, sf_error_number(error));
  replacement_.commit();
}

void AudioWriter::check() const {
  if (output_.error) fail_on(path_, std::strerror(output_.error));
}

SF_VIRTUAL_IO AudioWriter::output_calls() {
  SF_VIRTUAL_IO calls = {};
  calls.get_filelen = [](void* data) -> sf_count_t {
    struct stat status = {};
    return fstat(static_cast<Output*>(data)->descriptor, &status) == 0 ? status.st_size : -1;
  };
  calls.seek = [](sf_count_t offset, int whence, void* data) -> sf_count_t {
    return lseek(static_cast<Output*>(data)->descriptor, offset, whence);
  };
  calls.tell = [](void* data) -> sf_count_t {
    return lseek(static_cast<Output*>(data)->descriptor, 0, SEEK_CUR);
  };
  calls.read = [](void* bytes, sf_count_t count, void* data) -> sf_count_t {
    return ::read(static_cast<Output*>(data)->descriptor, bytes, static_cast<std::size_t>(count));
  };
  calls.write = [](const void* bytes, sf_count_t count, void* data) -> sf_count_t {
    auto& output = *static_cast<Output*>(data);
    if (lseek(output.descriptor, 0, SEEK_CUR) > output.limit - count) output.error = EFBIG;
    sf_count_t done = 0;
    while (done < count && output.error == 0) {
      const ssize_t step = ::write(output.descriptor, static_cast<const char*>(bytes) + done,
                                   static_cast<std::size_t>(count - done));
      if (step >= 0) {
        done += step;
      } else if (errno != EINTR) {
        output.error = errno;
      }
    }
    return done;
  };
  return calls;
}

}  // namespace channelstrip::host
