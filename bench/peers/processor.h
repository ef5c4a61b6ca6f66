// What is measured: stages in a row that process a fixed number of samples per call.

#pragma once

#include <string>
#include <vector>

namespace channelstrip::bench {

enum class Stage { kEqualiser, kGate, kCompressor, kStrip };

class Processor {
 public:
  Processor() = default;
  virtual ~Processor() = default;
  Processor(const Processor&) = delete;
  Processor& operator=(const Processor&) = delete;

  // One call; `inputs` are one pointer per channel.
  virtual void process(const float* const* inputs) = 0;

  virtual const std::vector<Stage>& stages() const = 0;
  virtual std::string name_of(std::size_t stage) const = 0;

  // Of the last call, valid until the next.
  virtual const float* output(std::size_t stage, int channel) const = 0;

  // Samples that the output lags behind, after a call.
  virtual double latency() const = 0;
};

}  // namespace channelstrip::bench
