#include "strip_arguments.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

#include "shipped_presets.h"

namespace channelstrip::host {

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
  command.add_option("--format", options.format, "Stem format; default: as IN's channels suggest")
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
