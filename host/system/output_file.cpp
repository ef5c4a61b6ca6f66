#include "output_file.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
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
constexpr const char* kIsThere = "exists already; --overwrite replaces it";

// The path by which linkat() can give a name to a file that has none.
std::string path_of(int descriptor) {
  return fmt::format("/proc/self/fd/{}", descriptor);
}

// No two files share it.
std::string temporary_name() {
  std::random_device random;
  return fmt::format(".channelstrip-{:08x}{:08x}", random(), random());
}

// What a chain of symbolic links leads to, be there a file or not.
std::string target_of(const std::string& path) {
  constexpr int kMostLinks = 40;  // as the kernel follows
  fs::path target = path;
  std::error_code none;
  for (int i = 0; i < kMostLinks && fs::is_symlink(fs::symlink_status(target, none)); ++i) {
    target = target.parent_path() / fs::read_symlink(target, none);
  }
  return target.string();
}

}  // namespace

void fail_on(const std::string& path, std::string_view what) {
  const std::string_view plain = what.substr(0, what.find_last_not_of(".\n") + 1);
  throw std::runtime_error(fmt::format("{}: {}", path, plain));
}

NamedOutput::NamedOutput(const std::string& path, Existing existing)
    : path_(path), target_(target_of(path)) {
  if (path.empty()) throw std::runtime_error("the output has no name");
  std::error_code error;
  const fs::file_status status = fs::status(target_, error);
  if (!fs::status_known(status)) fail_on(path, error.message());
  if (fs::exists(status)) {
    if (fs::is_directory(status)) fail_on(path, std::strerror(EISDIR));
    if (!fs::is_regular_file(status)) fail_on(path, "Not a regular file");
    if (existing == Existing::kKept) fail_on(path, kIsThere);
    if (access(target_.c_str(), W_OK) != 0) fail_on(path, std::strerror(errno));
    replaces_ = true;
  }
  fs::path folder = fs::path(target_).parent_path();
  if (folder.empty()) folder = ".";
  temporary_ = (folder / temporary_name()).string();
  open_nameless(folder.string());
  if (descriptor_ < 0) open_named();
  if (descriptor_ < 0) fail_on(path, std::strerror(errno));
  if (replaces_) take_after(target_);
}

NamedOutput::~NamedOutput() {
  if (descriptor_ >= 0) close(descriptor_);
  if (named_) unlink(temporary_.c_str());
}

void NamedOutput::open_nameless(const std::string& folder) {
  const int descriptor = open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, kPermissions);
  if (descriptor < 0) return;
  if (access(path_of(descriptor).c_str(), F_OK) == 0) {
    descriptor_ = descriptor;
  } else {
    close(descriptor);
  }
}

void NamedOutput::open_named() {
  descriptor_ = open(temporary_.c_str(), O_CREAT | O_EXCL | O_RDWR | O_CLOEXEC, kPermissions);
  named_ = descriptor_ >= 0;
}

// A process that isn't root's may give away no file, but may have its group in common.
void NamedOutput::take_after(const std::string& replaced) {
  struct stat status = {};
  if (stat(replaced.c_str(), &status) != 0) fail_on(path_, std::strerror(errno));
  if (fchown(descriptor_, status.st_uid, status.st_gid) != 0) {
    [[maybe_unused]] const int kept = fchown(descriptor_, static_cast<uid_t>(-1), status.st_gid);
  }
  if (fchmod(descriptor_, status.st_mode & 0777) != 0) fail_on(path_, std::strerror(errno));
}

void NamedOutput::commit() {
  // linkat() can't replace a file but renaming can, so the file gets a temporary name first.
  if (!named_) {
    named_ = linkat(AT_FDCWD, path_of(descriptor_).c_str(), AT_FDCWD, temporary_.c_str(),
                    AT_SYMLINK_FOLLOW) == 0;
    if (!named_) fail_on(path_, std::strerror(errno));
  }
  // Some file systems report a full disk only here.
  if (close(std::exchange(descriptor_, -1)) != 0) fail_on(path_, std::strerror(errno));
  if (!rename_to_target()) fail_on(path_, errno == EEXIST ? kIsThere : std::strerror(errno));
  named_ = false;
}

// A file that has appeared at the target meanwhile is kept.
bool NamedOutput::rename_to_target() const {
  const auto rename = [&](unsigned flags) {
    return renameat2(AT_FDCWD, temporary_.c_str(), AT_FDCWD, target_.c_str(), flags) == 0;
  };
  if (replaces_) return rename(0);
  if (rename(RENAME_NOREPLACE)) return true;
  // Some file systems don't know that flag.
  return errno == EINVAL && access(target_.c_str(), F_OK) != 0 && rename(0);
}

std::unique_ptr<OutputFile> open_output(const std::string& path, Existing existing) {
  if (path == kStandardStream) return std::make_unique<StandardOutput>();
  return std::make_unique<NamedOutput>(path, existing);
}

}  // namespace channelstrip::host
