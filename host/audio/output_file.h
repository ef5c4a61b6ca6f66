// A file on its way: nothing of it is seen before it is complete.

#pragma once

#include <memory>
#include <string>

namespace channelstrip::host {

// All errors are std::runtime_error and begin with the file's name.
class OutputFile {
 public:
  OutputFile() = default;
  virtual ~OutputFile() = default;
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  // Of a regular file, readable, writable and seekable.
  virtual int descriptor() const = 0;

  // Puts it in its place.
  virtual void commit() = 0;
};

// "-" is standard output, everything else a ReplacementFile.
std::unique_ptr<OutputFile> open_output(const std::string& path);

}  // namespace channelstrip::host
