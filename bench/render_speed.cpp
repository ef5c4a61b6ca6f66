// What a render costs beyond the library and the files: its time divided by that of the library on
// the same samples in memory plus that of libsndfile reading the input and writing the output, in
// turns. 60 s of noise at 48 kHz, WAV of each sample type (16 bits dithered, as render does unless
// told otherwise), through a strip without bands: there the library is at its fastest and
// everything else weighs most.
//
//   render_speed LIBRARY

#include <control/library/library.h>
#include <control/strip/denormals.h>
#include <control/strip/instance.h>
#include <fmt/format.h>
#include <host/render/render.h>
#include <sndfile.h>
#include <stdlib.h>

#include <exception>
#include <filesystem>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "turns.h"

namespace channelstrip::bench {
namespace {

constexpr int kSeconds = 60, kTurns = 9;
constexpr std::size_t kPiece = 4096, kFrames = kSeconds * 48000 / kPiece * kPiece;

class Folder {
 public:
  Folder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "render-XXXXXX").string();
    if (!mkdtemp(pattern.data())) throw std::runtime_error("no temporary folder");
    path_ = pattern;
  }
  ~Folder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;
  std::string file(const char* name) const { return (path_ / name).string(); }

 private:
  std::filesystem::path path_;
};

struct SampleType {
  const char* name;
  int format;
};
constexpr SampleType kTypes[] = {
    {"float", SF_FORMAT_FLOAT}, {"24-bit", SF_FORMAT_PCM_24}, {"16-bit", SF_FORMAT_PCM_16}};

void write(const std::string& path, int channels, int type, std::vector<float>& piece) {
  SF_INFO info = {};
  info.samplerate = 48000;
  info.channels = channels;
  info.format = SF_FORMAT_WAV | type;
  SNDFILE* file = sf_open(path.c_str(), SFM_WRITE, &info);
  if (!file) throw std::runtime_error(path + ": " + sf_strerror(nullptr));
  // A render writes no PEAK chunk either; for one, libsndfile would scan every float.
  sf_command(file, SFC_SET_ADD_PEAK_CHUNK, nullptr, SF_FALSE);
  for (std::size_t at = 0; at < kFrames; at += kPiece) {
    sf_writef_float(file, piece.data(), kPiece);
  }
  sf_close(file);
}

void read(const std::string& path, std::vector<float>& piece) {
  SF_INFO info = {};
  SNDFILE* file = sf_open(path.c_str(), SFM_READ, &info);
  if (!file) throw std::runtime_error(path + ": " + sf_strerror(nullptr));
  while (sf_readf_float(file, piece.data(), kPiece) > 0) {
  }
  sf_close(file);
}

// The library alone, called to its advantage: a whole piece at once.
void process(AlgEntry_16_Stem* entry, const host::StemFormat& format,
             const host::StripCoefficients& coefficients, const std::vector<float>& noise) {
  const auto channels = static_cast<std::size_t>(format.channels);
  host::Instance strip(format, coefficients);
  std::vector<float> result(noise.size());
  std::vector<const float*> inputs;
  std::vector<float*> outputs;
  for (std::size_t c = 0; c < channels; ++c) {
    inputs.push_back(noise.data() + c * kPiece);
    outputs.push_back(result.data() + c * kPiece);
  }
  const host::FlushDenormals flush;
  for (std::size_t at = 0; at < kFrames; at += kPiece) {
    const SChannelStrip_Alg_Context* context =
        strip.prepare(inputs.data(), outputs.data(), static_cast<int>(kPiece));
    entry(&context, &context + 1);
  }
}

double measure(const std::string& library_path, const char* format_name, int type) {
  const host::Library library(library_path);
  const host::StemFormat& format = *host::find_stem_format(format_name);
  const host::StripOptions options{.library = library_path};
  const auto coefficients = host::design_strip({}, 48000, host::default_layout(format));
  std::mt19937 random;
  std::vector<float> piece(kPiece * static_cast<std::size_t>(format.channels));
  for (float& x : piece) x = static_cast<float>(random() >> 8) * 0x1p-24f - 0.5f;

  const Folder folder;
  const std::string in = folder.file("in.wav"), out = folder.file("out.wav");
  const std::string copy = folder.file("copy.wav");
  write(in, format.channels, type, piece);
  std::vector<double> ratios;
  std::vector<float> buffer(piece.size());
  for (int turn = 0; turn < kTurns; ++turn) {
    // Some file systems write a file to the disk at once if it replaces another.
    std::filesystem::remove(out);
    std::filesystem::remove(copy);
    const double render =
        nanoseconds([&] { host::render({.input = in, .output = out, .strip = options}); });
    const double alone = nanoseconds([&] {
      read(in, buffer);
      process(library.entry_point(format), format, coefficients, piece);
      write(copy, format.channels, type, piece);
    });
    ratios.push_back(render / alone);
  }
  return median(ratios);
}

}  // namespace
}  // namespace channelstrip::bench

int main(int argc, char** argv) try {
  if (argc != 2) {
    fmt::print(stderr, "usage: render_speed LIBRARY\n");
    return 2;
  }
  channelstrip::bench::stay_on_this_processor();
  fmt::print("A render's time over the library's and plain file access together\n\n{:8}", "");
  for (const auto& [name, type] : channelstrip::bench::kTypes) fmt::print("{:>8}", name);
  for (const char* format : {"Mono", "Stereo", "5.1", "7.1"}) {
    fmt::print("\n{:<8}", format);
    for (const auto& [name, type] : channelstrip::bench::kTypes) {
      fmt::print("{:>8.2f}", channelstrip::bench::measure(argv[1], format, type));
    }
  }
  fmt::print("\n");
  return 0;
} catch (const std::exception& error) {
  fmt::print(stderr, "render_speed: {}\n", error.what());
  return 1;
}
