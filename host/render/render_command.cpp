#include "render_command.h"

#include <cstdio>
#include <memory>

#include "interrupt.h"
#include "render.h"

namespace channelstrip::host {

void add_render_command(CLI::App& program) {
  CLI::App* command = program.add_subcommand("render", "Render an audio file through a strip");
  const auto options = std::make_shared<RenderOptions>();
  command->add_option("IN", options->input, "Audio file of 1 to 8 channels")->required();
  command
      ->add_option("OUT", options->output,
                   "File to write; its extension chooses the container, IN the sample type")
      ->required();
  command->add_option("--preset", options->preset, "Settings, a TOML file; none: neutral")
      ->type_name("FILE.toml");
  command->add_option("--format", options->format, "Stem format; default: as IN's channels suggest")
      ->type_name("NAME");
  command->add_option("--library", options->library, "The library to load")
      ->type_name("PATH")
      ->capture_default_str();
  command->callback([options] {
    catch_interrupts();
    const RenderReport report = render(*options);
    std::fputs(summary(*options, report).c_str(), stderr);
  });
}

}  // namespace channelstrip::host
