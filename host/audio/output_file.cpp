#include "output_file.h"

#include "replacement_file.h"
#include "standard_streams.h"

namespace channelstrip::host {

std::unique_ptr<OutputFile> open_output(const std::string& path) {
  if (path == kStandardStream) return std::make_unique<StandardOutput>();
  return std::make_unique<ReplacementFile>(path);
}

}  // namespace channelstrip::host
