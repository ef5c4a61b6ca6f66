#include "batch.h"

#include <filesystem>
#include <mutex>
#include <system_error>
#include <utility>

#include "../system/interrupt.h"
#include "../system/output_file.h"
#include "../system/parallel.h"
#include "../system/standard_streams.h"

namespace channelstrip::host {
namespace {

class Jobs {
 public:
  Jobs(const Batch& batch, Progress& progress,
       const std::function<void(const RenderResult&)>& report)
      : batch_(batch), progress_(progress), report_(report), results_(batch.files.size()) {}

  void run() {
    in_parallel(batch_.files.size(), batch_.jobs,
                [this](std::size_t index) { finish(index, result_of(index)); });
    if (const int signal = interrupted()) throw Interrupted{signal};
  }

 private:
  RenderResult result_of(std::size_t index) {
    RenderResult result{.file = batch_.files[index], .report = {}, .error = {}};
    try {
      make_folder_of(result.file.output);
      result.report =
          render({.input = result.file.input,
                  .output = result.file.output,
                  .strip = batch_.strip,
                  .choice = batch_.choice,
                  .dither = batch_.dither,
                  .loudness = batch_.loudness,
                  .existing = batch_.existing,
                  .on_progress = [&](double seconds, double part) {
                    progress_.advance(index, input_name(result.file.input), seconds, part);
                  }});
    } catch (const std::exception& error) {
      result.error = error.what();
    }
    return result;
  }

  void finish(std::size_t index, RenderResult result) {
    progress_.end(index);
    const std::scoped_lock lock(mutex_);
    results_[index] = std::move(result);
    for (; reported_ < results_.size() && results_[reported_]; ++reported_) {
      const Progress::Room room(progress_);
      report_(*results_[reported_]);
      results_[reported_]->report.reset();
    }
  }

  // Only below folders that are to hold many outputs; others must be there.
  void make_folder_of(const std::string& output) const {
    if (!batch_.makes_folders) return;
    std::error_code error;
    std::filesystem::create_directories(std::filesystem::path(output).parent_path(), error);
    if (error) fail_on(output, error.message());
  }

  const Batch& batch_;
  Progress& progress_;
  const std::function<void(const RenderResult&)>& report_;
  std::mutex mutex_;
  std::vector<std::optional<RenderResult>> results_;
  std::size_t reported_ = 0;
};

}  // namespace

void render_all(const Batch& batch, Progress& progress,
                const std::function<void(const RenderResult&)>& report) {
  Jobs(batch, progress, report).run();
}

}  // namespace channelstrip::host
