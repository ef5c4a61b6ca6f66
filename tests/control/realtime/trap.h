// Counts what an audio thread must not do: allocate, lock, throw.

#pragma once

namespace channelstrip::test {

struct Trapped {
  int allocations = 0;  // and releases
  int locks = 0;        // of any kind, waits and signals too
  int exceptions = 0;

  bool operator==(const Trapped&) const = default;
};

// Counts while it lives, in the whole program and in the libraries that it has loaded. One at a
// time.
class Trap {
 public:
  explicit Trap(Trapped& counted);
  ~Trap();

  Trap(const Trap&) = delete;
  Trap& operator=(const Trap&) = delete;
};

// What `work` does of it.
template <typename Work>
Trapped trapped(Work work) {
  Trapped counted;
  const Trap trap(counted);
  work();
  return counted;
}

}  // namespace channelstrip::test
