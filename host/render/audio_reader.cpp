#include "audio_reader.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>

namespace channelstrip::host {

AudioReader::AudioReader(const std::string& path) : path_(path) {
  const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (descriptor < 0) fail_on(path, std::strerror(errno));
  struct stat status = {};
  if (fstat(descriptor, &status) == 0 && S_ISDIR(status.st_mode)) {
    close(descriptor);
    fail_on(path, std::strerror(EISDIR));
  }
  SF_INFO info = {};
  file_.reset(sf_open_fd(descriptor, SFM_READ, &info, SF_TRUE));
  if (!file_) fail_on(path, sf_strerror(nullptr));

  format_.sample_rate = info.samplerate;
  format_.channels = info.channels;
  format_.container = info.format & SF_FORMAT_TYPEMASK;
  format_.sample_type = info.format & SF_FORMAT_SUBMASK;
  std::vector<int> map(static_cast<std::size_t>(info.channels));
  const bool named = sf_command(file_.get(), SFC_GET_CHANNEL_MAP_INFO, map.data(),
                                static_cast<int>(map.size() * sizeof(int)));
  // A mask of fewer bits than channels names only some of them, which is no map.
  if (named && std::ranges::count(map, SF_CHANNEL_MAP_INVALID) == 0) format_.channel_map = map;
}

std::span<const float> AudioReader::read(std::span<float> frames) {
  const auto channels = static_cast<std::size_t>(format_.channels);
  const sf_count_t got =
      sf_readf_float(file_.get(), frames.data(), static_cast<sf_count_t>(frames.size() / channels));
  if (sf_error(file_.get()) != SF_ERR_NO_ERROR) fail_on(path_, sf_strerror(file_.get()));
  const std::span<const float> samples = frames.first(static_cast<std::size_t>(got) * channels);
  const auto odd = std::ranges::find_if_not(samples, [](float x) { return std::isfinite(x); });
  if (odd != samples.end()) {
    const sf_count_t frame = position_ + (odd - samples.begin()) / format_.channels;
    fail_on(path_, fmt::format("the sample at {:.3f} s isn't a finite number",
                               static_cast<double>(frame) / format_.sample_rate));
  }
  position_ += got;
  return samples;
}

}  // namespace channelstrip::host
