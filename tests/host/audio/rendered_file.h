// A fixture that writes a file and renders it.

#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "../support/audio.h"
#include "../support/refusal.h"
#include "../support/rendered.h"
#include "../support/temporary_folder.h"

namespace channelstrip::test {

class RenderedFile : public testing::Test {
 protected:
  std::string input(const TestAudio& audio, const std::string& name = "in.wav") const {
    return write_audio(folder.file(name), audio);
  }

  host::RenderReport rendered(const std::string& from, const std::string& name = "out.wav",
                              const std::optional<std::string>& preset = {}) {
    output = folder.file(name);
    return render(from, output, preset);
  }

  std::string refused(const std::string& from, const std::string& name = "out.wav") {
    return refusal([&] { rendered(from, name); });
  }

  const TemporaryFolder folder;
  std::string output;  // of the last rendering
};

}  // namespace channelstrip::test
