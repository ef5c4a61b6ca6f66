#include "audio_reader.h"

#include <fmt/format.h>

#include <algorithm>

#include "../system/standard_streams.h"
#include "flac_blocks.h"
#include "pcm.h"

namespace channelstrip::host {

AudioReader::AudioReader(const std::string& path) : name_(input_name(path)) {
  SF_INFO info = {};
  const int input = open_input(path);
  file_ = opened(name_, [&] { return Sndfile(sf_open_fd(input, SFM_READ, &info, SF_TRUE)); });

  format_.sample_rate = info.samplerate;
  format_.channels = info.channels;
  format_.container = info.format & SF_FORMAT_TYPEMASK;
  format_.sample_type = info.format & SF_FORMAT_SUBMASK;
  frames_ = info.frames < SF_COUNT_MAX ? info.frames : 0;
  std::vector<int> map(static_cast<std::size_t>(info.channels));
  const bool named = sf_command(file_.get(), SFC_GET_CHANNEL_MAP_INFO, map.data(),
                                static_cast<int>(map.size() * sizeof(int)));
  // A mask of fewer bits than channels names only some of them, which is no map.
  if (named && std::ranges::count(map, SF_CHANNEL_MAP_INVALID) == 0) format_.channel_map = map;
  metadata_ = read_metadata(file_.get(), format_.container);
  if (format_.container == SF_FORMAT_FLAC) metadata_.refused = unknown_flac_blocks(input);
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
