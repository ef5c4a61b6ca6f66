// Hosts that do anything which a plugin's rules allow, as the bytes of a history choose.

#pragma once

#include <tests/control/fuzz/buffers.h>
#include <tests/control/fuzz/choices.h>

#include <array>
#include <memory>
#include <vector>

#include "../clap_host.h"
#include "../lv2_host.h"

namespace channelstrip::test {

// The buffers of a call: apart, or outputs in place of their inputs.
class CallBuffers {
 public:
  // Chooses and fills them.
  void prepare(Bytes& bytes, std::uint32_t channels);
  // Throws a Fault if the call has written what it must not, or what isn't finite.
  void check(std::uint32_t frames) const;

  std::vector<const float*> inputs;
  const float* key = nullptr;
  std::vector<float*> outputs;

 private:
  StripBuffers buffers_;
};

class ClapPlayer {
 public:
  // Does what the next bytes say. Throws a Fault if the plugin doesn't do what it must.
  void step(Bytes& bytes);

 private:
  void change_format(Bytes& bytes);
  void switch_on_or_off(Bytes& bytes);
  void process(Bytes& bytes);
  void flush(Bytes& bytes);
  void load(Bytes& bytes);
  void look(Bytes& bytes);

  std::unique_ptr<plugin_test::ClapInstance> instance_;
  std::uint32_t format_ = 1;
  bool is_active_ = false;
  CallBuffers buffers_;
};

class Lv2Player {
 public:
  void step(Bytes& bytes);

 private:
  void make(Bytes& bytes);
  void set(Bytes& bytes);
  void run(Bytes& bytes);
  void restore(Bytes& bytes);

  std::unique_ptr<plugin_test::Lv2Instance> instance_;
  CallBuffers buffers_;
};

}  // namespace channelstrip::test
