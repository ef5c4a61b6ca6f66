#include "commands.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>

#include "../render/batch.h"
#include "../render/summary.h"
#include "../run/strip_run.h"
#include "../system/interrupt.h"
#include "../system/text_output.h"
#include "command_line.h"
#include "render_arguments.h"

namespace channelstrip::host {
namespace {

std::string json_document(const nlohmann::json& files) {
  using Json = nlohmann::json;
  return Json{{"files", files}}.dump(2, ' ', false, Json::error_handler_t::replace) + '\n';
}

void run(const RenderArguments& options) {
  const Batch batch = batch_of(options);
  check_strip_options(batch.strip);
  auto files = nlohmann::json::array();
  const bool many = batch.files.size() > 1;
  bool incomplete = false;
  Tally tally;
  Progress progress(batch.files.size(), !options.quiet);
  render_all(batch, progress, [&](const RenderResult& result) {
    if (!result.report) {
      ++tally.failed;
      print_message(result.error);
      files.push_back(
          {{"input", result.file.input}, {"output", result.file.output}, {"error", result.error}});
      return;
    }
    if (!options.quiet) {
      const auto told = many ? summary_line : summary_text;
      std::fputs(told(result.file, *result.report).c_str(), stderr);
    }
    ++tally.rendered;
    tally.with_warnings += result.report->warnings.empty() ? 0 : 1;
    tally.seconds += static_cast<double>(result.report->frames) / result.report->format.sample_rate;
    for (const std::string& line : result.report->cut_short) {
      incomplete = true;
      print_message(line);
    }
    files.push_back(summary_json(result.file, *result.report));
  });
  if (many && !options.quiet) std::fputs(tally_line(tally).c_str(), stderr);
  if (options.json) {
    TextOutput output;
    output.write(json_document(files));
    output.commit();
  }
  if (tally.failed > 0) throw CLI::RuntimeError(1);
  if (incomplete) throw CLI::RuntimeError(kIncomplete);
}

}  // namespace

void add_render_command(CLI::App& program) {
  CLI::App* command = program.add_subcommand("render", "Render audio files through a strip");
  const auto options = std::make_shared<RenderArguments>();
  add_render_arguments(*command, *options);
  command->callback([options] {
    catch_interrupts();
    run(*options);
  });
}

}  // namespace channelstrip::host
