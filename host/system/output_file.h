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

// Written without a name in the folder of `path` and named by commit(): however the process ends, a
// file that wasn't completed is gone. Where the file system knows no nameless files it has a
// temporary name, removed if commit() is never reached. What stood at `path` stays untouched until
// then. All errors are std::runtime_error and begin with the path.
class ReplacementFile : public OutputFile {
 public:
  // Refuses a path that is there but isn't a regular, writable file. A symbolic link is followed.
  explicit ReplacementFile(const std::string& path);
  ~ReplacementFile() override;

  int descriptor() const override { return descriptor_; }

  void commit() override;

 private:
  void open_nameless(const std::string& folder);
  void open_named();

  std::string path_;       // as the user gave it
  std::string target_;     // links resolved
  std::string temporary_;  // in the folder of the target; to be removed as long as `named_`
  bool named_ = false;
  int descriptor_ = -1;
};

// "-" is standard output, everything else a ReplacementFile.
std::unique_ptr<OutputFile> open_output(const std::string& path);

}  // namespace channelstrip::host
