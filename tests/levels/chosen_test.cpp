// The library's file as the dynamic linker loads it.

#include <ChannelStrip/frame/processor.h>
#include <control/library/library.h>
#include <control/library/stem_format.h>
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <link.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <map>
#include <memory>
#include <string>

namespace channelstrip::test::chosen_test {
namespace {

using host::stem_formats;
using host::StemFormat;

// The names of the file's functions by their place in it. The file isn't stripped.
std::map<uintptr_t, std::string> functions_of_the_file() {
  std::map<uintptr_t, std::string> names;
  const std::unique_ptr<FILE, int (*)(FILE*)> listing(
      popen("nm --defined-only " CHANNELSTRIP_LIBRARY, "r"), pclose);
  std::array<char, 4096> line{};
  while (std::fgets(line.data(), line.size(), listing.get())) {
    const std::string text(line.data());
    if (text.find(" AlgEntry_16_Stem_") == text.npos || text.find(" i ") != text.npos) continue;
    names[std::stoull(text, nullptr, 16)] =
        text.substr(text.rfind(' ') + 1, text.rfind('\n') - text.rfind(' ') - 1);
  }
  return names;
}

const char* suffix_of(const channelstrip_processor& processor) {
  switch (channelstrip_level_of(processor)) {
    case CHANNELSTRIP_X86_64_V4:
      return channelstrip_joins_ports(processor) ? "_x86_64_v4_ranges" : "_x86_64_v4";
    case CHANNELSTRIP_X86_64_V3:
      return "_x86_64_v3";
    default:
      return "_x86_64";
  }
}

void expect_own_level(const std::string& path, int mode) {
  static const std::map<uintptr_t, std::string> functions = functions_of_the_file();
  void* const library = dlopen(path.c_str(), mode);
  ASSERT_NE(library, nullptr) << dlerror();
  link_map* map = nullptr;
  ASSERT_EQ(dlinfo(library, RTLD_DI_LINKMAP, &map), 0);
  for (const StemFormat& format : stem_formats()) {
    const std::string name(format.entry_point);
    const auto found =
        functions.find(reinterpret_cast<uintptr_t>(dlsym(library, name.c_str())) - map->l_addr);
    ASSERT_NE(found, functions.end()) << name;
    EXPECT_EQ(found->second, name + suffix_of(channelstrip_this_processor()));
  }
  dlclose(library);
}

TEST(Levels, EveryEntryPointIsThatOfThisProcessor) {
  expect_own_level(CHANNELSTRIP_LIBRARY, RTLD_NOW | RTLD_LOCAL);
}

TEST(Levels, AreChosenWhenSymbolsAreLookedUpLate) {
  expect_own_level(CHANNELSTRIP_LIBRARY, RTLD_LAZY | RTLD_GLOBAL);
}

TEST(Levels, AreChosenWhereverTheFileIs) {
  const auto folder = std::filesystem::path(testing::TempDir()) / "channelstrip levels";
  std::filesystem::create_directories(folder);
  const auto copy = folder / "another name";
  std::filesystem::copy_file(CHANNELSTRIP_LIBRARY, copy,
                             std::filesystem::copy_options::overwrite_existing);
  expect_own_level(copy, RTLD_NOW);
  expect_own_level(std::filesystem::relative(copy), RTLD_LAZY);
  std::filesystem::remove_all(folder);
}

TEST(Levels, AreToldByTheLibraryThatIsLoaded) {
  EXPECT_EQ(host::Library(CHANNELSTRIP_LIBRARY).chosen_level(),
            channelstrip_level_of(channelstrip_this_processor()));
  EXPECT_EQ(host::Library(CHANNELSTRIP_LIBRARY_OF_ONE_LEVEL).chosen_level(), std::nullopt);
}

}  // namespace
}  // namespace channelstrip::test::chosen_test
