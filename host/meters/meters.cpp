#include "meters.h"

#include <algorithm>
#include <cmath>

#include "../run/strip_run.h"
#include "../system/interrupt.h"
#include "../system/text_output.h"

namespace channelstrip::host {

std::size_t periods_per_row(double milliseconds, int sample_rate) {
  const double frames = milliseconds / 1000 * sample_rate;
  const double periods = std::round(frames / static_cast<double>(StripStream::kPeriod));
  return static_cast<std::size_t>(std::max(1.0, periods));
}

MetersRemarks write_meters(const MetersOptions& options) {
  StripRun run(options.input, options.strip);
  const std::vector<std::string>& labels = run.layout().labels;
  const double sample_rate = run.format().sample_rate;
  const std::size_t periods = periods_per_row(options.interval, run.format().sample_rate);
  const std::size_t frames_per_row = periods * StripStream::kPeriod;

  std::vector<std::string> inputs = options.strip.files();
  inputs.push_back(options.input);
  TextOutput output(options.output, inputs, options.existing);
  output.write(header(options.format, labels));
  IntervalMeter meter;
  std::size_t rows = 0;
  const auto end_row = [&] {
    const double time = static_cast<double>(rows++ * frames_per_row) / sample_rate;
    output.write(row(options.format, labels, time, meter.interval()));
    meter.reset();
  };
  run.stream().observe([&](const MeterReading& period) {
    meter.add(period);
    if (meter.periods() == periods) end_row();
  });
  for (StripRun::Piece piece; run.next(piece);) {
    if (const int signal = interrupted()) throw Interrupted{signal};
  }
  if (meter.periods() > 0) end_row();
  output.commit();
  return {run.remarks(), run.cut_short()};
}

}  // namespace channelstrip::host
