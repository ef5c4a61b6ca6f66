// What was changed, to be undone and done again.

#pragma once

#include <cstddef>
#include <utility>
#include <vector>

namespace channelstrip::window {

struct Change {
  std::size_t parameter;
  double before, after;
};
// What one gesture changed.
using Step = std::vector<Change>;

class Steps {
 public:
  void add(Step step) {
    done_.push_back(std::move(step));
    undone_.clear();
    if (done_.size() > kMost) done_.erase(done_.begin());
  }
  // Makes a change of the last step's one parameter a part of that step.
  bool extend(const Change& change) {
    if (done_.empty() || done_.back().size() != 1 || !undone_.empty()) return false;
    Change& last = done_.back().front();
    if (last.parameter != change.parameter || last.after != change.before) return false;
    last.after = change.after;
    return true;
  }
  bool can_undo() const { return !done_.empty(); }
  bool can_redo() const { return !undone_.empty(); }
  // The step to be taken back or made again; only if there is one.
  const Step& undo() {
    undone_.push_back(std::move(done_.back()));
    done_.pop_back();
    return undone_.back();
  }
  const Step& redo() {
    done_.push_back(std::move(undone_.back()));
    undone_.pop_back();
    return done_.back();
  }

 private:
  static constexpr std::size_t kMost = 200;
  std::vector<Step> done_, undone_;
};

}  // namespace channelstrip::window
