// Output files that don't appear before they are complete.

#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace channelstrip::host {

// Throws std::runtime_error "<path>: <what>", without a full stop at the end (libsndfile's messages
// have one).
[[noreturn]] void fail_on(const std::string& path, std::string_view what);

// What becomes of a file that is there already.
enum class Existing { kKept, kReplaced };

// All errors are std::runtime_error and begin with the file's name.
class OutputFile {
 public:
  OutputFile() = default;
  virtual ~OutputFile() = default;
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  // The descriptor of a regular file, readable, writable and seekable.
  virtual int descriptor() const = 0;

  // Puts the complete file in its place.
  virtual void commit() = 0;
};

// Written to a file without a name in the folder of `path`, which commit() gives its name: however
// the process ends, an incomplete file vanishes. On file systems that can't do this the file has a
// temporary name until commit() and is removed if that is never reached. What exists at `path`
// stays untouched until then; the file that replaces it has its permissions and, where the process
// may set it, its owner. A symbolic link stays and its target is written, even if there is none
// yet. All errors are std::runtime_error and begin with the path.
class NamedOutput : public OutputFile {
 public:
  // Refuses a path that is there, unless it is a regular, writable file and to be replaced.
  NamedOutput(const std::string& path, Existing existing);
  ~NamedOutput() override;

  int descriptor() const override { return descriptor_; }

  void commit() override;

 private:
  void open_nameless(const std::string& folder);
  void open_named();
  void take_after(const std::string& replaced);
  bool rename_to_target() const;

  std::string path_;       // as the user gave it
  std::string target_;     // links resolved
  std::string temporary_;  // in the folder of the target; to be removed as long as `named_`
  bool replaces_ = false;
  bool named_ = false;
  int descriptor_ = -1;
};

// "-" is standard output, everything else a NamedOutput.
std::unique_ptr<OutputFile> open_output(const std::string& path, Existing existing);

}  // namespace channelstrip::host
