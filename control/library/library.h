// The loaded library and its entry points.

#pragma once

#include <ChannelStrip/frame/entry_points.h>
#include <ChannelStrip/frame/processor_level.h>

#include <array>
#include <memory>
#include <optional>
#include <string>

#include "stem_format.h"

namespace channelstrip::host {

// In the order of stem_formats().
using EntryPoints = std::array<AlgEntry_16_Stem*, 11>;

class Library {
 public:
  // Loads the shared library at `path`, in UTF-8; a name without a slash is looked up as the
  // dynamic linker does, this program's run path or, on Windows, its folder first. Throws
  // std::runtime_error when it can't be loaded.
  explicit Library(const std::string& path = default_path());

  // The library's soname, which carries the major version this host was built against.
  static std::string default_path();

  // The file that was loaded, links resolved.
  std::string file() const;

  // The soname it was linked with; empty if it has none.
  std::string soname() const;

  // The level of x86-64 whose entry points the dynamic linker chose; none if the file holds one
  // level.
  std::optional<channelstrip_level> chosen_level() const;

  // Both are valid as long as this object, and throw std::runtime_error if the library doesn't
  // export an entry point.
  AlgEntry_16_Stem* entry_point(const StemFormat& format) const;
  EntryPoints entry_points() const;

 private:
  struct Close {
    void operator()(void* handle) const;
  };
  AlgEntry_16_Stem* find(const std::string& name) const;  // null if there is none

  std::string path_;
  std::unique_ptr<void, Close> handle_;
};

}  // namespace channelstrip::host
