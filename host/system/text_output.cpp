#include "text_output.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

namespace channelstrip::host {
namespace {

constexpr std::size_t kFlushAt = 1 << 16;  // bytes

}  // namespace

TextOutput::TextOutput(const std::optional<std::string>& path, std::span<const std::string> inputs)
    : name_(path.value_or("standard output")) {
  if (!path) return;
  for (const std::string& input : inputs) {
    std::error_code none_there;
    if (std::filesystem::equivalent(input, *path, none_there)) {
      fail_on(*path, "is an input");
    }
  }
  file_.emplace(*path);
}

void TextOutput::write(std::string_view text) {
  pending_ += text;
  if (pending_.size() >= kFlushAt) flush();
}

void TextOutput::commit() {
  flush();
  if (file_) file_->commit();
}

void TextOutput::flush() {
  const int descriptor = file_ ? file_->descriptor() : STDOUT_FILENO;
  for (std::string_view rest = pending_; !rest.empty();) {
    const ssize_t written = ::write(descriptor, rest.data(), rest.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) fail_on(name_, std::strerror(errno));
    rest.remove_prefix(static_cast<std::size_t>(written));
  }
  pending_.clear();
}

}  // namespace channelstrip::host
