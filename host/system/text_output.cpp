#include "text_output.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

#include "standard_streams.h"

namespace channelstrip::host {
namespace {

constexpr std::size_t kFlushAt = 1 << 16;  // bytes

}  // namespace

TextOutput::TextOutput(const std::optional<std::string>& path, std::span<const std::string> inputs,
                       Existing existing)
    : name_(path.value_or("standard output")) {
  if (!path) return;
  for (const std::string& input : inputs) {
    std::error_code none_there;
    if (std::filesystem::equivalent(input, *path, none_there)) {
      fail_on(*path, "is an input");
    }
  }
  file_.emplace(*path, existing);
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
  if (!write_all(descriptor, pending_)) fail_on(name_, std::strerror(errno));
  pending_.clear();
}

}  // namespace channelstrip::host
