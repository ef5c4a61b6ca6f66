#include "choices.h"

#include <channelstrip/channelstrip.h>

#include <bit>
#include <cmath>
#include <iterator>
#include <limits>
#include <random>

namespace channelstrip::test {
namespace {

constexpr double kSpecialNumbers[] = {0,
                                      -0.0,
                                      1,
                                      -1,
                                      0.5,
                                      -0.4,
                                      0.05,
                                      1000,
                                      48000,
                                      1e10,
                                      -1e10,
                                      1e308,
                                      -1e308,
                                      1e-308,
                                      5e-324,
                                      -5e-324,
                                      4294967296.0,
                                      std::numeric_limits<double>::infinity(),
                                      -std::numeric_limits<double>::infinity(),
                                      std::numeric_limits<double>::quiet_NaN()};

constexpr float kSpecialSamples[] = {0,
                                     -0.0f,
                                     1,
                                     -1,
                                     1e-42f,
                                     -1e-38f,
                                     1e10f,
                                     -1e11f,
                                     3.4e38f,
                                     -3e38f,
                                     1e30f,
                                     std::numeric_limits<float>::infinity(),
                                     std::numeric_limits<float>::quiet_NaN()};

// clang-format off
constexpr const char* kPieces[] = {
    "\n", " = ", "[[eq]]\n", "[compressor]\n", "[expander]\n", "[key_filter]\n", "[detector]\n",
    "[link]\n", "[meter]\n", "[key]\n", "[[at]]\n", "type = \"high_pass\"\n", "slope = 96\n",
    "slope = 7\n", "frequency = 1e9\n", "frequency = 20\n", "frequency = nan\n",
    "gain = -1e400\n", "gain = 5e-324\n", "gain = -0.0\n", "ratio = inf\n", "ratio = -inf\n",
    "hysteresis = 3\n", "hysteresis = -0\n", "gate = false\n", "on = false\n", "on = 1\n",
    "q = 100\n", "shelf_slope = 0.01\n", "design = \"matched\"\n", "position = \"post\"\n",
    "idle = { q = 3 }\n", "idle = { gain = { gain = 1 } }\n", "mode = \"rms\"\n",
    "mode = \"none\"\n", "style = \"film\"\n", "\"5.1\" = \"L R C | LFE | Ls Rs\"\n",
    "Stereo = \"L | R\"\n", "\"7.1\" = \"L\"\n", "mix = 1e3\n", "bypass = true\n",
    "name = \"\\u00e4\"\n", "eq = 3\n", "eq = [1, {on = true}]\n", "compressor = []\n",
    "glide = 1979-05-27\n", "threshold = 0x10\n", "[", "]", "{", "\"", "'''", "\\", "\xff", "é",
    "0", "e", ".",
};
// clang-format on

}  // namespace

double any_number(Bytes& bytes) {
  const std::uint8_t how = bytes.byte();
  switch (how % 4) {
    case 0:
      return kSpecialNumbers[bytes.byte() % std::size(kSpecialNumbers)];
    case 1: {
      const std::uint64_t high = bytes.word();
      return std::bit_cast<double>(high << 32 | bytes.word());
    }
    default:
      return std::ldexp(static_cast<double>(static_cast<std::int16_t>(bytes.half())),
                        -static_cast<int>(how / 4 % 16));
  }
}

std::uint32_t any_id(Bytes& bytes) {
  const std::uint8_t which = bytes.byte();
  channelstrip_parameter info{};
  if (which >= 250 || channelstrip_parameter_info(which % channelstrip_parameter_count(), &info,
                                                  sizeof info) != CHANNELSTRIP_OK) {
    return bytes.half();
  }
  return info.id;
}

AnyValue any_value(Bytes& bytes) {
  const std::uint32_t id = any_id(bytes);
  const std::uint8_t how = bytes.byte();
  double value = 0;
  if (how % 2 == 0 || channelstrip_position_to_value(id, how / 255.0, &value) != CHANNELSTRIP_OK) {
    value = any_number(bytes);
  }
  return {id, value};
}

std::uint32_t any_format(Bytes& bytes) {
  const std::uint8_t which = bytes.byte();
  return which < 250 ? which % channelstrip_format_count() : bytes.word();
}

void fill(Bytes& bytes, std::span<float> samples) {
  const std::uint8_t how = bytes.byte();
  std::minstd_rand random(1 + how / 8u);
  const float special = kSpecialSamples[how / 8 % std::size(kSpecialSamples)];
  for (std::size_t i = 0; i < samples.size(); ++i) {
    const float noise = static_cast<float>(random() % 65536) / 32768 - 1;
    switch (how % 8) {
      case 0:
        samples[i] = special;
        break;
      case 1:
        samples[i] = random() % 32 == 0 ? special : noise;
        break;
      case 2:
        samples[i] = std::bit_cast<float>(static_cast<std::uint32_t>(random() * 2));
        break;
      case 3:
        samples[i] = noise * 1e-38f;
        break;
      default:
        samples[i] = noise;
    }
  }
}

std::string any_toml(Bytes& bytes) {
  std::string text;
  const std::uint8_t how = bytes.byte();
  for (int i = how / 4 % 32; i > 0 && !bytes.empty(); --i) {
    if (how % 4 == 0) {
      text += static_cast<char>(bytes.byte());
    } else {
      text += kPieces[bytes.byte() % std::size(kPieces)];
    }
  }
  return text;
}

std::string any_word(Bytes& bytes) {
  constexpr const char* kWords[] = {"",       "L R",     "L|R",   "L R C | LFE | Ls Rs",
                                    "5.1",    "stereo",  "MONO",  "eq1_gain",
                                    "inf:1",  "off",     "on",    "peak",
                                    "-18 dB", "2.5 kHz", "1e999", "nan",
                                    " 3 s ",  "+4",      "\xff",  "L L",
                                    "|",      "| L"};
  const std::uint8_t which = bytes.byte();
  if (which < 200) return kWords[which % std::size(kWords)];
  std::string word;
  for (int i = which % 16; i > 0; --i) {
    const char c = static_cast<char>(bytes.byte());
    if (c != '\0') word += c;
  }
  return word;
}

}  // namespace channelstrip::test
