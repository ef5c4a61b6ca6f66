// A file read and written again with nothing in between.

#pragma once

#include <string>
#include <vector>

#include "host/audio/audio_reader.h"
#include "host/audio/audio_writer.h"
#include "host/audio/output_format.h"

namespace channelstrip::test {

// Returns what the writer lost of the metadata.
inline std::vector<std::string> copy_audio(const std::string& input, const std::string& output,
                                           const host::OutputChoice& choice = {},
                                           host::Dither dither = host::Dither::kNone) {
  host::AudioReader reader(input);
  host::AudioWriter writer(output, host::output_format(reader.format(), output, choice),
                           {.dither = dither, .metadata = reader.metadata()});
  std::vector<float> frames(4096 * static_cast<std::size_t>(reader.format().channels));
  for (auto piece = reader.read(frames); !piece.empty(); piece = reader.read(frames)) {
    writer.write(piece);
  }
  writer.commit();
  return writer.lost_metadata();
}

}  // namespace channelstrip::test
