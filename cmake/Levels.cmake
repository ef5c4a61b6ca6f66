# Which processors to build for: CHANNELSTRIP_ARCH. Where it is `levels`, the library holds x86-64,
# x86-64-v3 and x86-64-v4, and the dynamic linker chooses when it loads the file. That takes indirect
# functions, which glibc resolves and others don't. A sanitizer's functions can't run that early.
include(CheckCXXSourceCompiles)

# Compiled and linked, not run, so that the answer is right for another machine's build, too.
function(channelstrip_check_levels result)
  set(CMAKE_REQUIRED_FLAGS -march=x86-64-v4)
  check_cxx_source_compiles([[
    #include <stdint.h>
    #if !defined(__x86_64__) || defined(__ILP32__) || !defined(__ELF__) || !defined(__GLIBC__)
    #error the levels are those of x86-64 under glibc
    #endif
    extern "C" {
    void for_every_processor() {}
    void (*choose())() { return for_every_processor; }
    __attribute__((ifunc("choose"))) void chosen();
    }
    int main() { chosen(); }]]
    ${result})
  set(${result} ${${result}} PARENT_SCOPE)
endfunction()

set(default_arch "")
if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64)$")
  set(default_arch x86-64-v3)
  if(NOT CHANNELSTRIP_SANITIZE AND NOT DEFINED CHANNELSTRIP_ARCH)
    channelstrip_check_levels(CHANNELSTRIP_HAS_INDIRECT_FUNCTIONS)
    if(CHANNELSTRIP_HAS_INDIRECT_FUNCTIONS)
      set(default_arch levels)
    endif()
  endif()
endif()
set(CHANNELSTRIP_ARCH "${default_arch}" CACHE STRING
  "Processor architecture (-march) to build for; levels: x86-64, x86-64-v3 and x86-64-v4 in one library, chosen on loading; empty: the compiler's default")

# What tests and benchmarks are compiled for: in lanes as wide as those of most processors.
if(CHANNELSTRIP_ARCH STREQUAL levels)
  if(CHANNELSTRIP_SANITIZE)
    message(FATAL_ERROR "CHANNELSTRIP_ARCH=levels goes without CHANNELSTRIP_SANITIZE")
  endif()
  set(channelstrip_levels x86-64 x86-64-v3 x86-64-v4)
  set(channelstrip_march "")
  set(channelstrip_tests_march x86-64-v3)
else()
  set(channelstrip_levels "")
  set(channelstrip_march "${CHANNELSTRIP_ARCH}")
  set(channelstrip_tests_march "")
endif()
