// A library that Windows loads.

#include "library.h"

#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include <array>
#include <filesystem>
#include <stdexcept>
#include <system_error>

namespace channelstrip::host {
namespace {

HMODULE module_of(void* handle) {
  return static_cast<HMODULE>(handle);
}

std::runtime_error last_error() {
  const auto error = static_cast<int>(GetLastError());
  return std::runtime_error("can't load the library: " + std::system_category().message(error));
}

}  // namespace

Library::Library(const std::string& path) : path_(path) {
  if (path.empty()) throw std::runtime_error("can't load the library: its path is empty");
  const std::u8string utf8(path.begin(), path.end());
  handle_.reset(LoadLibraryW(std::filesystem::path(utf8).make_preferred().c_str()));
  if (!handle_) throw last_error();
}

std::string Library::default_path() {
  return CHANNELSTRIP_SONAME;
}

std::string Library::file() const {
  std::array<wchar_t, 32768> path;  // the longest that Windows knows
  if (GetModuleFileNameW(module_of(handle_.get()), path.data(), path.size()) == 0) {
    throw last_error();
  }
  const std::u8string utf8 = std::filesystem::canonical(path.data()).u8string();
  return {utf8.begin(), utf8.end()};
}

// A DLL's own name carries no version.
std::string Library::soname() const {
  return "";
}

// It holds one level.
std::optional<channelstrip_level> Library::chosen_level() const {
  return std::nullopt;
}

AlgEntry_16_Stem* Library::find(const std::string& name) const {
  const FARPROC found = GetProcAddress(module_of(handle_.get()), name.c_str());
  return reinterpret_cast<AlgEntry_16_Stem*>(reinterpret_cast<void*>(found));
}

void Library::Close::operator()(void* handle) const {
  FreeLibrary(module_of(handle));
}

}  // namespace channelstrip::host
