#include "host/meters/meter_rows.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace channelstrip::test::meter_rows_test {
namespace {

using namespace host;

const std::vector<std::string> kLabels{"L", "R"};

// 0.5 is -6.0206 dB, 0.25 is -12.0412 dB.
MeterInterval interval() {
  return {.input_peak = {1, 0},
          .output_peak = {0.5f, 0.25f},
          .level = 0.5f,
          .gain = 1,
          .compressor_reduction = 0.5f,
          .expander_reduction = 0,
          .channel_gain = {1, 0.5f}};
}

TEST(MeterRows, CsvHasAHeaderThatNamesTheChannels) {
  EXPECT_EQ(header(RowFormat::kCsv, kLabels),
            "time,input_peak_L,input_peak_R,output_peak_L,output_peak_R,level,gain,"
            "compressor_reduction,expander_reduction,channel_gain_L,channel_gain_R\r\n");
}

TEST(MeterRows, CsvIsInDecibels) {
  EXPECT_EQ(row(RowFormat::kCsv, kLabels, 0.1, interval()),
            "0.100000,0.000,-inf,-6.021,-12.041,-6.021,0.000,6.021,0.000,0.000,-6.021\r\n");
}

TEST(MeterRows, JsonHasNoHeader) {
  EXPECT_EQ(header(RowFormat::kJsonLines, kLabels), "");
}

TEST(MeterRows, JsonNamesChannelsAndWritesSilenceAsNull) {
  EXPECT_EQ(row(RowFormat::kJsonLines, kLabels, 0.1, interval()),
            "{\"time\":0.1,\"input_peak\":{\"L\":0.0,\"R\":null},"
            "\"output_peak\":{\"L\":-6.021,\"R\":-12.041},\"level\":-6.021,\"gain\":0.0,"
            "\"compressor_reduction\":6.021,\"expander_reduction\":0.0,"
            "\"channel_gain\":{\"L\":0.0,\"R\":-6.021}}\n");
}

TEST(MeterRows, ReductionDeeperThanSinglePrecisionIsInfinite) {
  MeterInterval shut = interval();
  shut.compressor_reduction = 1;
  EXPECT_NE(row(RowFormat::kCsv, kLabels, 0, shut).find(",inf,"), std::string::npos);
  EXPECT_NE(row(RowFormat::kJsonLines, kLabels, 0, shut).find("\"compressor_reduction\":null"),
            std::string::npos);
}

}  // namespace
}  // namespace channelstrip::test::meter_rows_test
