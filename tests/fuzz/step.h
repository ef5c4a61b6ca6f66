// How the fuzzer's bytes are read: a head that chooses a random scene, then steps of ten bytes that
// say what the host does to it. Any bytes give a history that a host may produce.

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace channelstrip::test {

// Reads as zeros past its end.
class Bytes {
 public:
  explicit Bytes(std::span<const uint8_t> rest) : rest_(rest) {}

  bool empty() const { return rest_.empty(); }

  uint8_t byte() {
    if (rest_.empty()) return 0;
    const uint8_t value = rest_.front();
    rest_ = rest_.subspan(1);
    return value;
  }

  uint16_t half() {
    const unsigned low = byte();
    return static_cast<uint16_t>(low + 256U * byte());
  }

  uint32_t word() {
    const uint32_t low = half();
    return low + 65536U * half();
  }

 private:
  std::span<const uint8_t> rest_;
};

enum class What : uint8_t {
  kCall,         // process the scene's range
  kNewSettings,  // all settings, and the audio with them
  kNewAudio,
  kDynNumber,  // a float of Dyn_SCoefsBlock
  kDynMode,    // an integer of Dyn_SCoefsBlock
  kFilter,     // a coefficient of the key or the detector filter
  kLinkGroup,
  kBandTarget,
  kBandInUse,
  kBandRange,
  kBandMemory,
  kDynState,
  kMeter,
  kSamples,
  kWiring,  // which buffers and whose records an instance works on
  kRange,   // which instances a call processes
  kCount,
  kKey,
  kEnd,
};

struct Step {
  explicit Step(Bytes& bytes)
      : what(static_cast<What>(bytes.byte() % static_cast<unsigned>(What::kEnd))),
        how(bytes.byte()),
        instance(bytes.byte()),
        part(bytes.byte()),
        index(bytes.half()),
        value(bytes.word()) {}

  What what;
  uint8_t how;           // the bits of `value` are to be read
  std::size_t instance;  // this and the next two are taken modulo the number of choices
  std::size_t part;
  std::size_t index;
  uint32_t value;
};

}  // namespace channelstrip::test
