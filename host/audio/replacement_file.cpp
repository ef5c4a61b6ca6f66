#include "replacement_file.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <utility>

namespace channelstrip::host {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void fail(const std::string& path, std::string_view what) {
  throw std::runtime_error(fmt::format("{}: {}", path, what));
}

// mkstemp makes files private; this is what open would have given.
mode_t ordinary_permissions() {
  const mode_t mask = umask(0);
  umask(mask);
  return 0666 & ~mask;
}

}  // namespace

ReplacementFile::ReplacementFile(const std::string& path) : path_(path), target_(path) {
  if (path.empty()) throw std::runtime_error("the output has no name");
  std::error_code error;
  const fs::file_status status = fs::status(path, error);
  if (!fs::status_known(status)) fail(path, error.message());
  if (fs::exists(status)) {
    if (fs::is_directory(status)) fail(path, std::strerror(EISDIR));
    if (!fs::is_regular_file(status)) fail(path, "Not a regular file");
    if (access(path.c_str(), W_OK) != 0) fail(path, std::strerror(errno));
    target_ = fs::canonical(path).string();
  }
  fs::path folder = fs::path(target_).parent_path();
  if (folder.empty()) folder = ".";
  temporary_ = (folder / ".channelstrip-XXXXXX").string();
  descriptor_ = mkstemp(temporary_.data());
  if (descriptor_ < 0) fail(path, std::strerror(errno));
  fchmod(descriptor_, ordinary_permissions());
}

ReplacementFile::~ReplacementFile() {
  if (descriptor_ >= 0) close(descriptor_);
  if (!temporary_.empty()) unlink(temporary_.c_str());
}

void ReplacementFile::commit() {
  // Some file systems report a full disk only here.
  if (close(std::exchange(descriptor_, -1)) != 0) fail(path_, std::strerror(errno));
  if (std::rename(temporary_.c_str(), target_.c_str()) != 0) fail(path_, std::strerror(errno));
  temporary_.clear();
}

}  // namespace channelstrip::host
