// What every command that runs a strip takes.

#pragma once

#include <optional>
#include <string>
#include <vector>

#include "control/design/channel_layout.h"
#include "control/library/library.h"

namespace channelstrip::host {

struct StripOptions {
  std::optional<std::string> preset = {};     // none: everything neutral
  std::vector<std::string> assignments = {};  // over the preset, "compressor.ratio=4"
  std::optional<std::string> format = {};     // none: as the file's channels suggest
  std::optional<ChannelOrder> order = {};     // none: as the file says, or WAV's
  std::optional<std::string> key = {};        // a file
  std::optional<int> key_channel = {};  // from 1; of the key file or, without one, of the input
  bool listen_to_key = false;
  bool strict = false;  // refuse bands above half the sample rate, which else are left out
  std::string library = Library::default_path();

  bool has_key() const { return key || key_channel; }

  // What is read beside the audio.
  std::vector<std::string> files() const {
    std::vector<std::string> names{library};
    for (const auto& file : {preset, key}) {
      if (file) names.push_back(*file);
    }
    return names;
  }
};

}  // namespace channelstrip::host
