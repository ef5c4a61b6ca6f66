// Text for standard output, or for a file that appears only when it is complete.

#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "output_file.h"

namespace channelstrip::host {

// All errors are std::runtime_error and begin with the path, or with "standard output". Throws
// Interrupted when a signal comes while a reader keeps it waiting.
class TextOutput {
 public:
  // Without a path: standard output. Refuses a path that is one of the `inputs`, which are read
  // meanwhile.
  TextOutput(const std::optional<std::string>& path, std::span<const std::string> inputs,
             Existing existing);

  // Standard output.
  TextOutput() : TextOutput({}, {}, Existing::kKept) {}

  void write(std::string_view text);

  // Writes out what is still buffered and puts a file in its place; without commit() none appears.
  void commit();

 private:
  void flush();

  std::string name_;
  std::optional<NamedOutput> file_;
  std::string pending_;
};

}  // namespace channelstrip::host
