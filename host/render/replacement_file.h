// A file that takes its place in the file system only once it is complete.

#pragma once

#include <string>

namespace channelstrip::host {

// Written under a temporary name in the folder of `path`, renamed onto `path` by commit(), removed
// if that is never reached. What stood at `path` stays untouched until then. All errors are
// std::runtime_error and begin with the path.
class ReplacementFile {
 public:
  // Refuses a path that is there but isn't a regular, writable file. A symbolic link is followed.
  explicit ReplacementFile(const std::string& path);
  ~ReplacementFile();

  ReplacementFile(const ReplacementFile&) = delete;
  ReplacementFile& operator=(const ReplacementFile&) = delete;

  int descriptor() const { return descriptor_; }

  void commit();

 private:
  std::string path_;    // as the user gave it
  std::string target_;  // links resolved
  std::string temporary_;
  int descriptor_ = -1;
};

}  // namespace channelstrip::host
