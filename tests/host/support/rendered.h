// A file made of another: copied, or rendered with the library just built.

#pragma once

#include <optional>
#include <string>
#include <vector>

#include "host/audio/audio_reader.h"
#include "host/audio/audio_writer.h"
#include "host/audio/output_format.h"
#include "host/render/render.h"

namespace channelstrip::test {

// Reads a file and writes what it read; returns what of the metadata the writer had to leave out.
inline std::vector<std::string> copy_audio(const std::string& input, const std::string& output,
                                           const host::OutputChoice& choice = {},
                                           host::Dither dither = host::Dither::kNone) {
  host::AudioReader reader(input);
  host::AudioWriter writer(
      output, host::output_format(reader.format(), output, choice),
      {.dither = dither, .metadata = reader.metadata(), .existing = host::Existing::kReplaced});
  std::vector<float> frames(4096 * static_cast<std::size_t>(reader.format().channels));
  for (auto piece = reader.read(frames); !piece.empty(); piece = reader.read(frames)) {
    writer.write(piece);
  }
  writer.commit();
  return writer.lost_metadata();
}

inline host::RenderReport render(const std::string& input, const std::string& output,
                                 const std::optional<std::string>& preset = {}) {
  return host::render({.input = input,
                       .output = output,
                       .strip = {.preset = preset, .library = CHANNELSTRIP_LIBRARY},
                       .dither = host::Dither::kNone,
                       .existing = host::Existing::kReplaced});
}

}  // namespace channelstrip::test
