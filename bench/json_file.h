// A benchmark's figures for other programs.

#pragma once

#include <host/system/text_output.h>

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace channelstrip::bench {

// A file that appears only when it is complete.
class JsonFile {
 public:
  // Without a path nothing is written. Throws before anything is measured if the file couldn't be
  // replaced afterwards.
  explicit JsonFile(const std::optional<std::string>& path) {
    if (path) file_.emplace(path, std::span<const std::string>{}, host::Existing::kReplaced);
  }

  void write(std::string_view text) {
    if (!file_) return;
    file_->write(text);
    file_->commit();
  }

 private:
  std::optional<host::TextOutput> file_;
};

}  // namespace channelstrip::bench
