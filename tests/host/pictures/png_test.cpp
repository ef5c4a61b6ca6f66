// What becomes of a picture when memory runs out while it is written.

#include "host/pictures/png.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <new>
#include <stdexcept>
#include <string>

namespace {

// Bytes; larger allocations of this thread fail.
thread_local std::size_t largest = static_cast<std::size_t>(-1);

}  // namespace

// Not inlined, for GCC takes an inlined free() for a mistake.
[[gnu::noinline]] void* operator new(std::size_t size) {
  void* const bytes = size <= largest ? std::malloc(size) : nullptr;
  if (!bytes) throw std::bad_alloc();
  return bytes;
}
[[gnu::noinline]] void operator delete(void* bytes) noexcept {
  std::free(bytes);
}
[[gnu::noinline]] void operator delete(void* bytes, std::size_t) noexcept {
  std::free(bytes);
}

namespace channelstrip::test::png_test {
namespace {

// Noise, which a PNG can't make small.
std::string picture() {
  return R"--(<svg xmlns="http://www.w3.org/2000/svg" width="200" height="200"><filter id="n">
<feTurbulence baseFrequency="0.9"/></filter>
<rect width="200" height="200" filter="url(#n)"/></svg>)--";
}

TEST(Png, IsAFile) {
  EXPECT_EQ(host::to_png(picture(), 1).substr(1, 3), "PNG");
  EXPECT_GT(host::to_png(picture(), 1).size(), 50000u);
}

// libpng, which calls back, is C and would keep what it holds if an exception passed through it.
TEST(Png, FailsInWordsAndHoldsNothingWhenMemoryRunsOut) {
  const std::string svg = picture();
  largest = 20000;
  std::string what;
  try {
    host::to_png(svg, 1);
  } catch (const std::runtime_error& error) {
    what = error.what();
  }
  largest = static_cast<std::size_t>(-1);
  EXPECT_EQ(what, "can't draw the picture: out of memory");
}

}  // namespace
}  // namespace channelstrip::test::png_test
