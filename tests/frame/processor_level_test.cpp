#include <ChannelStrip/frame/processor_level.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>

namespace channelstrip::test::processor_level_test {
namespace {

using Word = uint32_t channelstrip_processor::*;
constexpr Word kLeaf1 = &channelstrip_processor::leaf_1_ecx;
constexpr Word kLeaf7 = &channelstrip_processor::leaf_7_ebx;
constexpr Word kLeaf80000001 = &channelstrip_processor::leaf_80000001_ecx;
constexpr Word kSaved = &channelstrip_processor::xcr0;

struct Feature {
  const char* name;
  Word word;
  int bit;
};

constexpr Feature kOfV3[] = {
    {"sse3", kLeaf1, 0},         {"ssse3", kLeaf1, 9},     {"fma", kLeaf1, 12},
    {"cx16", kLeaf1, 13},        {"sse4_1", kLeaf1, 19},   {"sse4_2", kLeaf1, 20},
    {"movbe", kLeaf1, 22},       {"popcnt", kLeaf1, 23},   {"osxsave", kLeaf1, 27},
    {"avx", kLeaf1, 28},         {"f16c", kLeaf1, 29},     {"bmi1", kLeaf7, 3},
    {"avx2", kLeaf7, 5},         {"bmi2", kLeaf7, 8},      {"lahf_lm", kLeaf80000001, 0},
    {"lzcnt", kLeaf80000001, 5}, {"XMM saved", kSaved, 1}, {"YMM saved", kSaved, 2},
};
constexpr Feature kOfV4[] = {
    {"avx512f", kLeaf7, 16},  {"avx512dq", kLeaf7, 17},   {"avx512cd", kLeaf7, 28},
    {"avx512bw", kLeaf7, 30}, {"avx512vl", kLeaf7, 31},   {"masks saved", kSaved, 5},
    {"ZMM saved", kSaved, 6}, {"ZMM16 saved", kSaved, 7},
};

channelstrip_processor everything() {
  return {0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF, 0};
}

channelstrip_processor without(channelstrip_processor is, const Feature& feature) {
  is.*feature.word &= ~(uint32_t{1} << feature.bit);
  return is;
}

template <int Count>
channelstrip_processor with(channelstrip_processor is, const Feature (&features)[Count]) {
  for (const Feature& feature : features) is.*feature.word |= uint32_t{1} << feature.bit;
  return is;
}

TEST(ProcessorLevel, APlainProcessorHasTheLowest) {
  EXPECT_EQ(channelstrip_level_of({}), CHANNELSTRIP_X86_64);
}

TEST(ProcessorLevel, TheFeaturesOfALevelSuffice) {
  const channelstrip_processor v3 = with({}, kOfV3);
  EXPECT_EQ(channelstrip_level_of(v3), CHANNELSTRIP_X86_64_V3);
  EXPECT_EQ(channelstrip_level_of(with(v3, kOfV4)), CHANNELSTRIP_X86_64_V4);
}

TEST(ProcessorLevel, EveryFeatureOfALevelIsNeeded) {
  EXPECT_EQ(channelstrip_level_of(everything()), CHANNELSTRIP_X86_64_V4);
  for (const Feature& feature : kOfV3) {
    EXPECT_EQ(channelstrip_level_of(without(everything(), feature)), CHANNELSTRIP_X86_64)
        << feature.name;
  }
  for (const Feature& feature : kOfV4) {
    EXPECT_EQ(channelstrip_level_of(without(everything(), feature)), CHANNELSTRIP_X86_64_V3)
        << feature.name;
  }
}

TEST(ProcessorLevel, Avx512AloneIsNoLevel) {
  EXPECT_EQ(channelstrip_level_of(with({}, kOfV4)), CHANNELSTRIP_X86_64);
}

TEST(ProcessorLevel, IsTheLowestWhereTheOperatingSystemSavesNoRegisters) {
  channelstrip_processor is = everything();
  is.xcr0 = 0;
  EXPECT_EQ(channelstrip_level_of(is), CHANNELSTRIP_X86_64);
  is.xcr0 = 0b111;
  EXPECT_EQ(channelstrip_level_of(is), CHANNELSTRIP_X86_64_V3);
}

TEST(ProcessorLevel, IntelsProcessorsJoinPorts) {
  const auto made_by = [](const char* name) {
    channelstrip_processor is = everything();
    std::memcpy(&is.leaf_0_ecx, name + 8, 4);
    return is;
  };
  EXPECT_TRUE(channelstrip_joins_ports(made_by("GenuineIntel")));
  EXPECT_FALSE(channelstrip_joins_ports(made_by("AuthenticAMD")));
  EXPECT_FALSE(channelstrip_joins_ports(made_by("HygonGenuine")));
}

}  // namespace
}  // namespace channelstrip::test::processor_level_test
