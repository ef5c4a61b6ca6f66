// A fixture for rendering: the program, a folder, and an input in it.

#pragma once

#include <string>

#include "../support/audio.h"
#include "../support/command.h"

namespace channelstrip::test {

class Program : public Command {
 protected:
  std::string tone(const std::string& name, int channels = 1, std::size_t frames = 5000) {
    return write_audio(folder.file(name),
                       {.format = SF_FORMAT_WAV | SF_FORMAT_PCM_16,
                        .channels = channels,
                        .floats = noise(frames * static_cast<std::size_t>(channels), 0.5f)});
  }

  const std::string input = tone("in.wav");
  const std::string output = folder.file("out.wav");
};

}  // namespace channelstrip::test
