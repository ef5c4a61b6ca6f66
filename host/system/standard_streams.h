// Standard input and output in place of files. Pipes are copied to or from a temporary file without
// a name in $TMPDIR or /tmp: audio files are full of sizes and offsets, and a pipe can't seek.
// (libsndfile reads some containers from a pipe, but loses frames of others without a word.)

#pragma once

#include <string>
#include <string_view>

#include "output_file.h"

namespace channelstrip::host {

// To be called first: gives the numbers of standard input, output and error, where a descriptor is
// closed, to one that can't be read or written. Otherwise the next file that is opened would take
// the number, and what is printed would go there.
void reserve_standard_streams();

// The name that means them on the command line.
inline constexpr const char* kStandardStream = "-";

// What messages call the input or output at `path`.
std::string input_name(const std::string& path);
std::string output_name(const std::string& path);

// Writes all of it, however slow the reader is. Returns false, with errno set, on failure; throws
// Interrupted when a signal comes.
bool write_all(int descriptor, std::string_view bytes);

// All bytes of the input at `path`, a terminal's too. Throws as open_input() does.
std::string read_text(const std::string& path);

// An input of which every part can be read at any time.
struct SeekableInput {
  int descriptor;  // the caller's to close
  bool is_copy;    // a temporary file that nobody else sees
};

// Refuses a terminal as standard input. Throws std::runtime_error that begins with the input's
// name, or Interrupted.
SeekableInput open_input(const std::string& path);

// A temporary copy of the input, which is closed. Throws likewise; `name` is the input's.
SeekableInput copy_of(const SeekableInput& input, const std::string& name);

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
