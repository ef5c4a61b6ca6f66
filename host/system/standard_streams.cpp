#include "standard_streams.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

#include "interrupt.h"

namespace channelstrip::host {
namespace {

constexpr const char* kInput = "standard input";
constexpr const char* kOutput = "standard output";

// Not every file system knows O_TMPFILE.
int open_nameless(const std::string& for_whom) {
  std::error_code error;
  const std::filesystem::path folder = std::filesystem::temp_directory_path(error);
  if (error) fail_on(for_whom, "TMPDIR is not a folder");
  int descriptor = open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
  if (descriptor < 0) {
    std::string name = (folder / "channelstrip-XXXXXX").string();
    descriptor = mkostemp(name.data(), O_CLOEXEC);
    if (descriptor >= 0) unlink(name.c_str());
  }
  if (descriptor < 0) fail_on(for_whom, folder.string() + ": " + std::strerror(errno));
  return descriptor;
}

class Descriptor {
 public:
  explicit Descriptor(int descriptor) : descriptor_(descriptor) {}
  ~Descriptor() {
    if (descriptor_ >= 0) close(descriptor_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  int get() const { return descriptor_; }
  int release() { return std::exchange(descriptor_, -1); }

 private:
  int descriptor_;
};

bool is_regular(int descriptor) {
  struct stat status = {};
  return fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
}

// Whether a call failed only because a non-blocking descriptor wasn't ready, or because of a
// signal.
bool is_to_be_retried() {
  return errno == EAGAIN || errno == EINTR;
}

// Gives `take` what there is to read, a piece at a time, as long as it returns true. Returns false,
// with errno set, on failure.
template <typename Take>
bool read_all(int from, Take take) {
  std::array<char, PIPE_BUF> bytes = {};
  for (;;) {
    wait_for(from, POLLIN);
    const ssize_t got = ::read(from, bytes.data(), bytes.size());
    if (got == 0) return true;
    if (got < 0 && is_to_be_retried()) continue;
    if (got < 0 || !take(std::string_view(bytes.data(), static_cast<std::size_t>(got)))) {
      return false;
    }
  }
}

// Returns false, with errno set, on failure.
bool copy(int from, int to) {
  return read_all(from, [to](std::string_view bytes) { return write_all(to, bytes); });
}

// O_NONBLOCK opens a named pipe at once; it is the first read that waits for a writer.
int opened(const std::string& path) {
  const int descriptor = path == kStandardStream
                             ? fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 0)
                             : open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  if (descriptor < 0) fail_on(input_name(path), std::strerror(errno));
  return descriptor;
}

}  // namespace

void reserve_standard_streams() {
  for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (fcntl(descriptor, F_GETFD) >= 0) continue;
    // The lowest number that is free is this one. Reading input and writing output fails there.
    open("/dev/null", descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY);
  }
}

// A blocking read or write simply goes on after a signal that is only noted, so everything that may
// block waits in wait_for(). A pipe that is ready takes PIPE_BUF bytes without blocking.
bool write_all(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    wait_for(descriptor, POLLOUT);
    const std::string_view piece = bytes.substr(0, PIPE_BUF);
    const ssize_t step = ::write(descriptor, piece.data(), piece.size());
    if (step >= 0) {
      bytes.remove_prefix(static_cast<std::size_t>(step));
    } else if (!is_to_be_retried()) {
      return false;
    }
  }
  return true;
}

std::string input_name(const std::string& path) {
  return path == kStandardStream ? kInput : path;
}

std::string output_name(const std::string& path) {
  return path == kStandardStream ? kOutput : path;
}

std::string read_text(const std::string& path) {
  const Descriptor input(opened(path));
  std::string text;
  const auto append = [&text](std::string_view bytes) {
    text += bytes;
    return true;
  };
  if (!read_all(input.get(), append)) fail_on(input_name(path), std::strerror(errno));
  return text;
}

SeekableInput open_input(const std::string& path) {
  const std::string name = input_name(path);
  if (path == kStandardStream && isatty(STDIN_FILENO)) fail_on(name, "is a terminal");
  const int given = opened(path);
  const SeekableInput input{given, false};
  if (is_regular(given) && lseek(given, 0, SEEK_CUR) == 0) return input;
  return copy_of(input, name);
}

SeekableInput copy_of(const SeekableInput& input, const std::string& name) {
  const Descriptor original(input.descriptor);
  Descriptor temporary(open_nameless(name));
  if (!copy(original.get(), temporary.get()) || lseek(temporary.get(), 0, SEEK_SET) != 0) {
    fail_on(name, std::strerror(errno));
  }
  return {temporary.release(), true};
}

StandardOutput::StandardOutput() {
  if (isatty(STDOUT_FILENO)) fail_on(kOutput, "is a terminal; redirect it to a file or a program");
  descriptor_ = open_nameless(kOutput);
}

StandardOutput::~StandardOutput() {
  close(descriptor_);
}

void StandardOutput::commit() {
  if (lseek(descriptor_, 0, SEEK_SET) != 0 || !copy(descriptor_, STDOUT_FILENO)) {
    fail_on(kOutput, std::strerror(errno));
  }
}

}  // namespace channelstrip::host
