#include "output_file.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <random>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <utility>

#include "standard_streams.h"

namespace channelstrip::host {
namespace {

namespace fs = std::filesystem;

constexpr mode_t kPermissions = 0666;  // before the umask

// The path by which linkat() can give a name to a file that has none.
std::string path_of(int descriptor) {
  return fmt::format("/proc/self/fd/{}", descriptor);
}

// No two files share it.
std::string temporary_name() {
  std::random_device random;
  return fmt::format(".channelstrip-{:08x}{:08x}", random(), random());
}

}  // namespace

void fail_on(const std::string& path, std::string_view what) {
  const std::string_view plain = what.substr(0, what.find_last_not_of(".\n") + 1);
  throw std::runtime_error(fmt::format("{}: {}", path, plain));
}

ReplacementFile::ReplacementFile(const std::string& path) : path_(path), target_(path) {
  if (path.empty()) throw std::runtime_error("the output has no name");
  std::error_code error;
  const fs::file_status status = fs::status(path, error);
  if (!fs::status_known(status)) fail_on(path, error.message());
  if (fs::exists(status)) {
    if (fs::is_directory(status)) fail_on(path, std::strerror(EISDIR));
    if (!fs::is_regular_file(status)) fail_on(path, "Not a regular file");
    if (access(path.c_str(), W_OK) != 0) fail_on(path, std::strerror(errno));
    target_ = fs::canonical(path).string();
  }
  fs::path folder = fs::path(target_).parent_path();
  if (folder.empty()) folder = ".";
  temporary_ = (folder / temporary_name()).string();
  open_nameless(folder.string());
  if (descriptor_ < 0) open_named();
  if (descriptor_ < 0) fail_on(path, std::strerror(errno));
}

ReplacementFile::~ReplacementFile() {
  if (descriptor_ >= 0) close(descriptor_);
  if (named_) unlink(temporary_.c_str());
}

void ReplacementFile::open_nameless(const std::string& folder) {
  const int descriptor = open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, kPermissions);
  if (descriptor < 0) return;
  if (access(path_of(descriptor).c_str(), F_OK) == 0) {
    descriptor_ = descriptor;
  } else {
    close(descriptor);
  }
}

void ReplacementFile::open_named() {
  descriptor_ = open(temporary_.c_str(), O_CREAT | O_EXCL | O_RDWR | O_CLOEXEC, kPermissions);
  named_ = descriptor_ >= 0;
}

void ReplacementFile::commit() {
  // linkat() can't replace a file but rename() can, so the file gets a temporary name first.
  if (!named_) {
    named_ = linkat(AT_FDCWD, path_of(descriptor_).c_str(), AT_FDCWD, temporary_.c_str(),
                    AT_SYMLINK_FOLLOW) == 0;
    if (!named_) fail_on(path_, std::strerror(errno));
  }
  // Some file systems report a full disk only here.
  if (close(std::exchange(descriptor_, -1)) != 0) fail_on(path_, std::strerror(errno));
  if (std::rename(temporary_.c_str(), target_.c_str()) != 0) fail_on(path_, std::strerror(errno));
  named_ = false;
}

std::unique_ptr<OutputFile> open_output(const std::string& path) {
  if (path == kStandardStream) return std::make_unique<StandardOutput>();
  return std::make_unique<ReplacementFile>(path);
}

}  // namespace channelstrip::host
