// A file that takes its place in the file system only once it is complete.

#pragma once

#include <string>

#include "output_file.h"

namespace channelstrip::host {

// Written under a temporary name in the folder of `path`, renamed onto `path` by commit(), removed
// if that is never reached. What stood at `path` stays untouched until then. All errors are
// std::runtime_error and begin with the path.
class ReplacementFile : public OutputFile {
 public:
  // Refuses a path that is there but isn't a regular, writable file. A symbolic link is followed.
  explicit ReplacementFile(const std::string& path);
  ~ReplacementFile() override;

  int descriptor() const override { return descriptor_; }

  void commit() override;

 private:
  std::string path_;    // as the user gave it
  std::string target_;  // links resolved
  std::string temporary_;
  int descriptor_ = -1;
};

}  // namespace channelstrip::host
