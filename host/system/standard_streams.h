// Standard input and output in place of files. Pipes are copied to or from a temporary file without
// a name in $TMPDIR or /tmp: audio files are full of sizes and offsets, and a pipe can't seek.
// (libsndfile reads some containers from a pipe, but loses frames of others without a word.) WAV
// files whose header leaves their length open are copied too, to fill it in.

#pragma once

#include <string>

#include "output_file.h"

namespace channelstrip::host {

// The name that means them on the command line.
inline constexpr const char* kStandardStream = "-";

// What messages call the input or output at `path`.
std::string input_name(const std::string& path);
std::string output_name(const std::string& path);

// A descriptor, the caller's to close, from which all of the input can be read and sought. Refuses
// a terminal as standard input. Throws std::runtime_error that begins with the input's name, or
// Interrupted.
int open_input(const std::string& path);

// Copied to standard output by commit(), which throws Interrupted when a signal comes. SIGPIPE must
// be ignored for a closed pipe to be an error like any other.
class StandardOutput : public OutputFile {
 public:
  // Refuses a terminal.
  StandardOutput();
  ~StandardOutput() override;

  int descriptor() const override { return descriptor_; }
  void commit() override;

 private:
  int descriptor_;
};

}  // namespace channelstrip::host
