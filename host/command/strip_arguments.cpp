#include "strip_arguments.h"

#include <fmt/format.h>
#include <CLI/CLI.hpp>
#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "choice.h"
#include "command_line.h"
#include "control/library/stem_format.h"
#include "control/preset/preset_keys.h"
#include "shipped_presets.h"

namespace channelstrip::host {
namespace {

// A key at the top of a preset as an option of its own, which counts like the last --set.
void add_key_option(CLI::App& command, const std::string& name, std::string_view key,
                    const std::string& unit, const std::string& meaning, StripOptions& options) {
  const Range& range = std::ranges::find(kTopKeys, key, &Key<StripSettings>::name)->range;
  command
      .add_option_function<double>(
          name,
          [&options, key](double value) {
            options.assignments.push_back(fmt::format("{}={}", key, value));
          },
          meaning)
      ->check(within(range.minimum, range.maximum, range.unit))
      ->type_name(unit);
}

}  // namespace

void add_preset_option(CLI::App& command, const std::string& names, StripOptions& options) {
  command
      .add_option(names, options.preset,
                  "Settings: a TOML file, or the name of a preset that channelstrip presets lists; "
                  "none: neutral")
      ->transform(preset_path)
      ->type_name("PRESET");
}

void add_strip_options(CLI::App& command, StripOptions& options) {
  add_preset_option(command, "--preset", options);
  command
      .add_option("--set", options.assignments,
                  "A setting over the preset's, compressor.threshold=-18; may be repeated")
      ->type_name("KEY=VALUE")
      ->allow_extra_args(false);
  add_key_option(command, "--gain-in", "gain_in", "DB",
                 "Gain before everything else, -60 to 60; detection and input meters see what it "
                 "gives, a key has none. Like the next two it overrides the preset's key of its "
                 "name, as --set gain_in=DB does",
                 options);
  add_key_option(command, "--gain-out", "gain_out", "DB", "Gain after everything else, -60 to 60",
                 options);
  add_key_option(command, "--mix", "mix", "PERCENT",
                 "Share of the processed signal, 0 to 100, in a linear cross-fade with IN behind "
                 "--gain-in",
                 options);
  command.add_option("--format", options.format, "Stem format; default: as IN's channels suggest")
      ->check(one_of(stem_format_names()))
      ->type_name("NAME");
  command
      .add_option_function<std::string>(
          "--order",
          [&options](const std::string& name) {
            const auto place = std::ranges::find(kChannelOrders, name);
            options.order = static_cast<ChannelOrder>(place - std::begin(kChannelOrders));
          },
          "Order of the channels in IN and OUT, whatever IN says: wav (L R C LFE ...) or film "
          "(L C R ... LFE); default: what IN says, wav if nothing")
      ->check(CLI::IsMember(
          std::vector<std::string>(std::begin(kChannelOrders), std::end(kChannelOrders))))
      ->type_name("ORDER");
  command
      .add_option("--key", options.key,
                  "Side-chain: the dynamics of every channel detect from this file, at IN's sample "
                  "rate; where it is shorter than IN, from silence")
      ->type_name("FILE");
  command
      .add_option("--key-channel", options.key_channel,
                  "Which channel of the key file is the key, from 1; without --key: which channel "
                  "of IN, which is processed like the others all the same")
      ->type_name("N");
  command
      .add_option_function<std::string>(
          "--listen", [&options](const std::string&) { options.listen_to_key = true; },
          "key: OUT carries what the dynamics detect from, behind the key filter")
      ->check(CLI::IsMember({"key"}))
      ->type_name("WHAT");
  command.add_flag("--strict", options.strict,
                   "Refuse bands above half of IN's sample rate; without it they are left out, "
                   "with a warning");
  command.add_option("--library", options.library, "The library to load")
      ->type_name("PATH")
      ->capture_default_str();
}

}  // namespace channelstrip::host
