#include "key_source.h"

#include <fmt/format.h>

#include "../system/output_file.h"

namespace channelstrip::host {

KeySource::KeySource(const StripOptions& options, const std::string& input,
                     const AudioFormat& format)
    : input_channels_(static_cast<std::size_t>(format.channels)), channels_(input_channels_) {
  if (!options.has_key()) return;
  if (options.key) {
    file_.emplace(*options.key);
    const AudioFormat& key = file_->format();
    if (key.sample_rate != format.sample_rate) {
      fail_on(*options.key, fmt::format("its sample rate is {} Hz, that of {} {} Hz",
                                        key.sample_rate, input, format.sample_rate));
    }
    channels_ = static_cast<std::size_t>(key.channels);
  }
  const std::string& source = options.key.value_or(input);
  if (!options.key_channel && channels_ > 1) {
    fail_on(source, fmt::format("has {} channels; --key-channel says which is the key", channels_));
  }
  const int number = options.key_channel.value_or(1);
  if (number < 1 || static_cast<std::size_t>(number) > channels_) {
    fail_on(source, fmt::format("has no channel {} to be the key", number));
  }
  channel_ = static_cast<std::size_t>(number) - 1;
}

std::span<const float> KeySource::next(std::span<const float> frames) {
  if (!channel_) return {};
  if (file_) {
    frames_.resize(frames.size() / input_channels_ * channels_);
    frames = file_->read(frames_);
  }
  key_.resize(frames.size() / channels_);
  for (std::size_t i = 0; i < key_.size(); ++i) key_[i] = frames[i * channels_ + *channel_];
  return key_;
}

}  // namespace channelstrip::host
