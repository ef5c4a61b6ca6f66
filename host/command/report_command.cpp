#include "commands.h"

#include <CLI/CLI.hpp>
#include <memory>
#include <string>
#include <vector>

#include "../report/page.h"
#include "../system/interrupt.h"
#include "../system/progress.h"
#include "../system/standard_streams.h"
#include "../system/text_output.h"
#include "command_line.h"
#include "strip_arguments.h"

namespace channelstrip::host {
namespace {

struct ReportOptions {
  std::string input, output, page;
  StripOptions strip;
  Existing existing = Existing::kKept;
};

constexpr const char* kReportDescription =
    "Show what a render did to a file, as a web page\n"
    "Runs the settings over IN once more, says whether OUT is what they give, and shows waveform, "
    "spectrum, gain reduction, loudness, peaks and the settings, before and after. The page is "
    "one file without scripts that every browser opens, to keep beside OUT or to send on. Of an "
    "OUT rendered with --loudness, the gain that render told is part of its settings: --gain-out.";

constexpr int kNotWhatTheSettingsGive = 4;

constexpr const char* kReportFooter = R"(Exit status:
  0  OUT is what the settings give, or a lossy coding of something
  1  an error, told in one line on standard error; no page was written
  3  as 0, but IN or the key was cut short: it holds less than it states
  4  the page was written, and says that OUT isn't what the settings give

Examples:
  $ channelstrip render voice.wav out.wav --preset voice.toml
  $ channelstrip report voice.wav out.wav --preset voice.toml -o out.html)";

RenderAnalysis analysed(const ReportOptions& options) {
  Progress progress(1, true);
  return analyse_render(options.input, options.output, options.strip,
                        [&](double seconds, double part) {
                          progress.advance(0, input_name(options.input), seconds, part);
                        });
}

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
  add_overwrite_option(*command, options->existing);
  command->footer(kReportFooter);
  command->callback([options] {
    catch_interrupts();
    std::vector<std::string> inputs = options->strip.files();
    inputs.insert(inputs.end(), {options->input, options->output});
    TextOutput page(options->page, inputs, options->existing);
    const RenderAnalysis analysis = analysed(*options);
    page.write(report_page(analysis));
    page.commit();
    for (const std::string& line : analysis.remarks) print_message(line);
    for (const std::string& line : analysis.cut_short) print_message(line);
    if (analysis.comparison.verdict() == Verdict::kDifferent) {
      throw CLI::RuntimeError(kNotWhatTheSettingsGive);
    }
    if (!analysis.cut_short.empty()) throw CLI::RuntimeError(kIncomplete);
  });
}

}  // namespace channelstrip::host
