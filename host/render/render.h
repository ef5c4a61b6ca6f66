// A strip over an audio file.

#pragma once

#include <optional>
#include <string>

#include "../design/channel_layout.h"
#include "../library.h"
#include "audio_format.h"
#include "strip_stream.h"

namespace channelstrip::host {

struct RenderOptions {
  std::string input;
  std::string output;
  std::optional<std::string> preset;  // none: everything neutral
  std::optional<std::string> format;  // none: as the file's channels suggest
  std::string library = Library::default_path();
};

struct RenderReport {
  std::string preset_name;
  AudioFormat format;  // of the input; the output's but for the container
  ChannelLayout layout;
  sf_count_t frames = 0;
  StripMeters meters;
  long long clipped = 0;          // samples
  bool keeps_channel_map = true;  // if the input has one
};

// A signal ended the rendering; no file is left.
struct Interrupted {
  int signal;
};

// Either the whole output stands in its place or nothing has changed. Throws std::runtime_error,
// one line for the user, or Interrupted.
RenderReport render(const RenderOptions& options);

// What was rendered and what the meters showed, as lines for the user.
std::string summary(const RenderOptions& options, const RenderReport& report);

}  // namespace channelstrip::host
