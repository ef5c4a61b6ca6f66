// A library that the dynamic linker of an ELF system loads.

#include "library.h"

#ifdef __x86_64__
#include <ChannelStrip/frame/processor.h>
#endif
#include <dlfcn.h>
#include <link.h>

#include <bit>
#include <filesystem>
#include <optional>
#include <stdexcept>

namespace channelstrip::host {
namespace {

const ::link_map& link_map_of(void* handle) {
  ::link_map* map = nullptr;
  if (dlinfo(handle, RTLD_DI_LINKMAP, &map) != 0) throw std::runtime_error(dlerror());
  return *map;
}

}  // namespace

Library::Library(const std::string& path) : path_(path) {
  // An empty name would give a handle on this very program.
  if (path.empty()) throw std::runtime_error("can't load the library: its path is empty");
  handle_.reset(dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL));
  if (!handle_) throw std::runtime_error(std::string("can't load the library: ") + dlerror());
}

std::string Library::default_path() {
  return CHANNELSTRIP_SONAME;
}

std::string Library::file() const {
  return std::filesystem::canonical(link_map_of(handle_.get()).l_name).string();
}

std::string Library::soname() const {
  // glibc has made the table's address absolute.
  const char* strings = nullptr;
  std::optional<std::size_t> name;
  for (const ElfW(Dyn)* entry = link_map_of(handle_.get()).l_ld; entry->d_tag != DT_NULL; ++entry) {
    if (entry->d_tag == DT_STRTAB) strings = std::bit_cast<const char*>(entry->d_un.d_ptr);
    if (entry->d_tag == DT_SONAME) name = entry->d_un.d_val;
  }
  return strings && name ? strings + *name : "";
}

std::optional<channelstrip_level> Library::chosen_level() const {
#ifdef __x86_64__
  // What an exported name stands for is found under that name; what was chosen for it has none.
  ::Dl_info found{};
  void* const code = reinterpret_cast<void*>(entry_point(stem_formats().front()));
  if (dladdr(code, &found) != 0 && found.dli_sname == nullptr) {
    return channelstrip_level_of(channelstrip_this_processor());
  }
#endif
  return std::nullopt;
}

AlgEntry_16_Stem* Library::find(const std::string& name) const {
  return reinterpret_cast<AlgEntry_16_Stem*>(dlsym(handle_.get(), name.c_str()));
}

void Library::Close::operator()(void* handle) const {
  dlclose(handle);
}

}  // namespace channelstrip::host
