#include "commands.h"

#include <CLI/CLI.hpp>
#include <memory>
#include <string>
#include <vector>

#include "../report/page.h"
#include "../system/interrupt.h"
#include "../system/text_output.h"
#include "strip_arguments.h"

namespace channelstrip::host {
namespace {

struct ReportOptions {
  std::string input, output, page;
  StripOptions strip;
};

constexpr const char* kReportDescription =
    "Show what a render did to a file, as a web page\n"
    "Runs the settings over IN once more, says whether OUT is what they give, and shows waveform, "
    "spectrum, gain reduction, loudness, peaks and the settings, before and after. The page is "
    "one file without scripts that every browser opens, to keep beside OUT or to send on.";

constexpr const char* kReportFooter = R"(Examples:
  $ channelstrip render voice.wav out.wav --preset voice.toml
  $ channelstrip report voice.wav out.wav --preset voice.toml -o out.html)";

}  // namespace

void add_report_command(CLI::App& program) {
  CLI::App* command = program.add_subcommand("report", kReportDescription);
  const auto options = std::make_shared<ReportOptions>();
  command->add_option("IN", options->input, "Audio file that was rendered")->required();
  command->add_option("OUT", options->output, "What it was rendered to")->required();
  add_strip_options(*command, options->strip);
  command->add_option("-o,--output", options->page, "HTML file to write")
      ->type_name("PAGE.html")
      ->required();
  command->footer(kReportFooter);
  command->callback([options] {
    catch_interrupts();
    std::vector<std::string> inputs{options->input, options->output};
    for (const auto& file : {options->strip.preset, options->strip.key}) {
      if (file) inputs.push_back(*file);
    }
    TextOutput page(options->page, inputs);
    page.write(report_page(analyse_render(options->input, options->output, options->strip)));
    page.commit();
  });
}

}  // namespace channelstrip::host
