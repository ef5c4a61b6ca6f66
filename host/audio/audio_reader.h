// An audio file read a piece at a time.

#pragma once

#include <span>
#include <string>

#include "audio_format.h"
#include "metadata.h"
#include "sndfile_handle.h"

namespace channelstrip::host {

// Frames are interleaved, full scale is 1.0. "-" is standard input. All errors are
// std::runtime_error and begin with the path.
class AudioReader {
 public:
  explicit AudioReader(const std::string& path);

  const AudioFormat& format() const { return format_; }
  const Metadata& metadata() const { return metadata_; }

  // Fills `frames` and returns the part that was filled, shorter than asked only at the end of the
  // file. Throws for samples that aren't finite: the strip's filters would never recover from one.
  std::span<const float> read(std::span<float> frames);

  // Begins again with the first frame. Works for pipes, of which there is a copy, and needs no
  // format that can be searched.
  void rewind();

  // The length that the file states; below 0 if it states none.
  sf_count_t frames() const { return frames_; }

  // What the user should know of a file that states more samples than it holds: one line, empty for
  // a file that is whole.
  std::string cut_short() const;

  // Frames read so far.
  sf_count_t position() const { return position_; }

 private:
  void note_lost_metadata();
  // Takes the descriptor.
  SF_INFO open(int descriptor);

  std::string name_;
  int descriptor_ = -1;  // closed with file_
  Sndfile file_;
  AudioFormat format_;
  Metadata metadata_;
  sf_count_t frames_ = 0;
  double missing_ = 0;  // seconds
  sf_count_t position_ = 0;
};

}  // namespace channelstrip::host
