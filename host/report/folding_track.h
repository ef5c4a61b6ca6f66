// The columns of a picture of a stream whose length isn't known beforehand.

#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace channelstrip::host {

// All columns hold the same number of units, except that the last one may hold fewer. When there
// are twice as many columns as wanted, neighbours are merged: memory stays constant, and the work
// is little more than one merge per unit. `Column` has merge(const Column&).
template <typename Column>
class FoldingTrack {
 public:
  // In the end there are `wanted` to 2 * wanted - 1 columns, or one per unit if there are fewer.
  explicit FoldingTrack(std::size_t wanted) : wanted_(wanted) { columns_.reserve(2 * wanted); }

  // How many units the column that is being filled still takes.
  std::size_t room() const { return units_per_column_ - filled_; }

  // `merged` holds `units` units, room() at most.
  void add(const Column& merged, std::size_t units = 1) {
    if (filled_ == 0) {
      columns_.push_back(merged);
    } else {
      columns_.back().merge(merged);
    }
    filled_ += units;
    if (filled_ < units_per_column_) return;
    filled_ = 0;
    if (columns_.size() == 2 * wanted_) fold();
  }

  std::span<const Column> columns() const { return columns_; }
  std::size_t units_per_column() const { return units_per_column_; }

 private:
  void fold() {
    for (std::size_t i = 0; i < wanted_; ++i) {
      columns_[i] = columns_[2 * i];
      columns_[i].merge(columns_[2 * i + 1]);
    }
    columns_.resize(wanted_);
    units_per_column_ *= 2;
  }

  std::size_t wanted_;
  std::size_t units_per_column_ = 1;
  std::size_t filled_ = 0;  // units in the last column; 0: it is full
  std::vector<Column> columns_;
};

}  // namespace channelstrip::host
