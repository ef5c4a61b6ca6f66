// Pictures are compared byte for byte with those in golden/. After an intended change,
//   CHANNELSTRIP_WRITE_GOLDEN=1 build/gcc/tests/host/pictures/host_pictures_tests
// rewrites them; look at each before you commit it.

#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <string>

#include "../support/temporary_folder.h"

namespace channelstrip::test {

inline void expect_golden(const std::string& name, const std::string& picture) {
  const std::string path = CHANNELSTRIP_GOLDEN "/" + name;
  if (std::getenv("CHANNELSTRIP_WRITE_GOLDEN")) std::ofstream(path, std::ios::binary) << picture;
  EXPECT_TRUE(contents(path) == picture) << name << " looks different; see golden.h";
}

}  // namespace channelstrip::test
