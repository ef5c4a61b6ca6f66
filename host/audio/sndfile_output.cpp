#include "sndfile_output.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <string_view>
#include <utility>

namespace channelstrip::host {

SndfileOutput::SndfileOutput(int descriptor, ChunkFamily family, std::string chunks,
                             sf_count_t limit)
    : descriptor_(descriptor), family_(family), chunks_(std::move(chunks)), limit_(limit) {}

SF_VIRTUAL_IO SndfileOutput::calls() {
  SF_VIRTUAL_IO calls = {};
  calls.get_filelen = [](void* data) { return static_cast<SndfileOutput*>(data)->length(); };
  calls.seek = [](sf_count_t offset, int whence, void* data) -> sf_count_t {
    auto& output = *static_cast<SndfileOutput*>(data);
    if (whence == SEEK_CUR) offset += output.position_;
    if (whence == SEEK_END) offset += output.length();
    return output.position_ = offset;
  };
  calls.tell = [](void* data) { return static_cast<SndfileOutput*>(data)->position_; };
  // Nothing is read back from a file that is only written.
  calls.read = [](void*, sf_count_t, void*) -> sf_count_t { return 0; };
  calls.write = [](const void* bytes, sf_count_t count, void* data) {
    return static_cast<SndfileOutput*>(data)->write(
        {static_cast<const char*>(bytes), static_cast<std::size_t>(count)});
  };
  return calls;
}

void SndfileOutput::finish() {
  if (chunks_at_ == 0 || error_) return;
  std::array<char, 28> header = {};
  if (pread(descriptor_, header.data(), header.size(), 0) != std::ssize(header)) {
    error_ = EIO;
    return;
  }
  grow(family_, header, chunks_.size());
  put({header.data(), header.size()}, 0);
}

sf_count_t SndfileOutput::length() const {
  struct stat status = {};
  if (fstat(descriptor_, &status) != 0) return -1;
  return chunks_at_ ? status.st_size - std::ssize(chunks_) : status.st_size;
}

sf_count_t SndfileOutput::write(std::string_view bytes) {
  const sf_count_t count = std::ssize(bytes);
  // The first write of libsndfile is the whole header, which it rewrites later.
  if (position_ == 0 && chunks_at_ == 0 && !chunks_.empty()) {
    chunks_at_ = static_cast<sf_count_t>(chunks_offset(family_, bytes));
    if (chunks_at_) put(chunks_, chunks_at_);
  }
  if (chunks_at_ == 0) {
    put(bytes, position_);
  } else {
    const auto before =
        static_cast<std::size_t>(std::clamp<sf_count_t>(chunks_at_ - position_, 0, count));
    const auto behind = position_ + static_cast<sf_count_t>(before) + std::ssize(chunks_);
    put(bytes.substr(0, before), position_);
    put(bytes.substr(before), behind);
  }
  if (error_) return 0;
  position_ += count;
  return count;
}

void SndfileOutput::put(std::string_view bytes, sf_count_t offset) {
  if (offset > limit_ - std::ssize(bytes)) error_ = EFBIG;
  while (!bytes.empty() && error_ == 0) {
    const ssize_t step = pwrite(descriptor_, bytes.data(), bytes.size(), offset);
    if (step >= 0) {
      bytes.remove_prefix(static_cast<std::size_t>(step));
      offset += step;
    } else if (errno != EINTR) {
      error_ = errno;
    }
  }
}

}  // namespace channelstrip::host
