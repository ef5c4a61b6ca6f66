// Whole pages of memory, which the operating system lets a program access or not.

#pragma once

#if defined(_WIN32)
#define WIN32_LEAN_AND_MEAN
#define NOMINMAX 1
#include <windows.h>
#else
#include <sys/mman.h>
#include <unistd.h>
#endif

#include <cerrno>
#include <cstddef>
#include <system_error>

namespace channelstrip::test {

enum class Access { kReadOnly, kReadWrite };

#if defined(_WIN32)

inline std::size_t page_size() {
  SYSTEM_INFO info;
  GetSystemInfo(&info);
  return info.dwPageSize;
}

// What an access faults on until it is allowed.
inline std::byte* reserve_pages(std::size_t bytes) {
  void* const base = VirtualAlloc(nullptr, bytes, MEM_RESERVE | MEM_COMMIT, PAGE_NOACCESS);
  if (!base) {
    throw std::system_error(static_cast<int>(GetLastError()), std::system_category());
  }
  return static_cast<std::byte*>(base);
}

inline void allow(std::byte* pages, std::size_t bytes, Access access) {
  DWORD before;
  const DWORD wanted = access == Access::kReadOnly ? PAGE_READONLY : PAGE_READWRITE;
  if (!VirtualProtect(pages, bytes, wanted, &before)) {
    throw std::system_error(static_cast<int>(GetLastError()), std::system_category());
  }
}

inline void release_pages(std::byte* base, std::size_t) {
  VirtualFree(base, 0, MEM_RELEASE);
}

#else

inline std::size_t page_size() {
  return static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

inline std::byte* reserve_pages(std::size_t bytes) {
  void* const base = mmap(nullptr, bytes, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (base == MAP_FAILED) throw std::system_error(errno, std::generic_category());
  return static_cast<std::byte*>(base);
}

inline void allow(std::byte* pages, std::size_t bytes, Access access) {
  const int wanted = access == Access::kReadOnly ? PROT_READ : PROT_READ | PROT_WRITE;
  if (mprotect(pages, bytes, wanted) != 0) {
    throw std::system_error(errno, std::generic_category());
  }
}

inline void release_pages(std::byte* base, std::size_t bytes) {
  munmap(base, bytes);
}

#endif

}  // namespace channelstrip::test
