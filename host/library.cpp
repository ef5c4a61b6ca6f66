#include "library.h"

#include <dlfcn.h>
#include <fmt/format.h>

#include <stdexcept>

namespace channelstrip::host {

Library::Library(const std::string& path) : path_(path) {
  // An empty name would give a handle on this very program.
  if (path.empty()) throw std::runtime_error("can't load the library: its path is empty");
  handle_.reset(dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL));
  if (!handle_) throw std::runtime_error(fmt::format("can't load the library: {}", dlerror()));
}

std::string Library::default_path() {
  return CHANNELSTRIP_SONAME;
}

AlgEntry_16_Stem* Library::entry_point(const StemFormat& format) const {
  void* symbol = dlsym(handle_.get(), std::string(format.entry_point).c_str());
  if (!symbol) throw std::runtime_error(fmt::format("{} has no {}", path_, format.entry_point));
  return reinterpret_cast<AlgEntry_16_Stem*>(symbol);
}

void Library::Close::operator()(void* handle) const {
  dlclose(handle);
}

}  // namespace channelstrip::host
