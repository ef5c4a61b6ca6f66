#include "strip_run.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <stdexcept>
#include <string_view>

#include "control/design/refusal_words.h"
#include "control/preset/left_out.h"
#include "control/preset/precision.h"

namespace channelstrip::host {
namespace {

constexpr std::size_t kFramesPerPiece = 4096;  // frames

const StemFormat* forced_format(const StripOptions& options) {
  if (!options.format) return nullptr;
  if (const StemFormat* format = find_stem_format(*options.format)) return format;
  std::vector<std::string_view> names;
  for (const StemFormat& format : stem_formats()) names.push_back(format.name);
  throw std::runtime_error(
      fmt::format("--format: \"{}\" is none of {}", *options.format, fmt::join(names, ", ")));
}

ChannelLayout layout_of(const std::string& input, const AudioFormat& format,
                        const StripOptions& options) {
  try {
    return choose_layout(format.channels, speakers(format), forced_format(options), options.order);
  } catch (const std::invalid_argument& error) {
    throw std::runtime_error(fmt::format("{}: {}", input, error.what()));
  }
}

// A key that is given is used all the time, unless the preset has key.enable, which then decides.
Preset preset_of(const StripOptions& options, double sample_rate) {
  Preset preset = load_preset(options.preset, options.assignments);
  std::vector<StripSettings*> all{&preset.settings};
  for (Preset::Change& change : preset.changes) all.push_back(&change.settings);
  const bool said = std::ranges::any_of(all, &StripSettings::key_enable);
  if (said && !options.has_key()) {
    throw std::runtime_error(
        fmt::format("{}: key.enable asks for a key, --key FILE or --key-channel N",
                    options.preset.value_or("--set")));
  }
  for (StripSettings* settings : all) {
    settings->key_enable = said ? settings->key_enable : options.has_key();
    settings->key_listen |= options.listen_to_key;
  }
  if (!options.strict) leave_out_bands_above(preset, sample_rate);
  remark_on_precision(preset, sample_rate);
  return preset;
}

// Throws std::invalid_argument for settings that no strip can have.
std::vector<StripStream::Change> changes_of(const Preset& preset, double sample_rate,
                                            const ChannelLayout& layout) {
  std::vector<StripStream::Change> changes;
  for (const auto& [time, settings] : preset.changes) {
    require_possible(settings, sample_rate, layout);
    changes.push_back({static_cast<std::uint64_t>(std::llround(time * sample_rate)), settings});
  }
  return changes;
}

}  // namespace

void check_strip_options(const StripOptions& options) {
  load_preset(options.preset, options.assignments);
  forced_format(options);
  const Library library(options.library);
}

StripRun::StripRun(const std::string& input, const StripOptions& options)
    : culprit_(options.preset.value_or(input)),
      reader_(input),
      preset_(preset_of(options, format().sample_rate)),
      layout_(layout_of(input, format(), options)),
      library_(options.library),
      key_(options, input, format()),
      stream_(make_stream()),
      input_(kFramesPerPiece * static_cast<std::size_t>(format().channels)) {}

double StripRun::part_read() const {
  const auto frames = static_cast<double>(reader_.frames());
  return frames > 0 ? std::min(1.0, static_cast<double>(frames_read()) / frames) : -1;
}

std::vector<std::string> StripRun::cut_short() const {
  std::vector<std::string> lines{reader_.cut_short(), key_.cut_short()};
  std::erase(lines, std::string());
  return lines;
}

StripStream StripRun::make_stream() const {
  const double sample_rate = format().sample_rate;
  check_fits(preset_, sample_rate, layout_);
  try {
    return {library_, layout_, sample_rate, preset_.settings,
            changes_of(preset_, sample_rate, layout_)};
  } catch (const std::invalid_argument& error) {
    throw std::runtime_error(fmt::format("{}: {}", culprit_, error.what()));
  }
}

bool StripRun::next(Piece& piece) {
  if (ended_) return false;
  piece.input = reader_.read(input_);
  ended_ = piece.input.empty();
  sources_.erase(sources_.begin(), sources_.begin() + std::ssize(output_));
  sources_.insert(sources_.end(), piece.input.begin(), piece.input.end());
  output_.clear();
  stream_.process(piece.input, key_.next(piece.input), output_);
  if (ended_) stream_.finish(output_);
  piece.output = output_;
  piece.source = std::span<const float>(sources_).first(output_.size());
  return true;
}

void StripRun::rewind() {
  reader_.rewind();
  key_.rewind();
  stream_ = make_stream();
  output_.clear();
  sources_.clear();
  ended_ = false;
}

}  // namespace channelstrip::host
