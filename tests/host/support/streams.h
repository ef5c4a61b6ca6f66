// What a child's standard streams can be, and what it can be kept waiting with.

#pragma once

#include <functional>
#include <string>

namespace channelstrip::test {

// A descriptor that children don't inherit, closed with its owner.
class OpenFile {
 public:
  explicit OpenFile(int descriptor) : descriptor_(descriptor) {}
  ~OpenFile() { close(); }
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;

  operator int() const { return descriptor_; }
  void close();

  // All that can be read, up to the end.
  std::string read_all() const;
  void write(const std::string& bytes) const;

 private:
  int descriptor_;
};

class Pipe {
 public:
  Pipe() : Pipe(make()) {}
  OpenFile reading, writing;

 private:
  struct Ends {
    int reading, writing;
  };
  static Ends make();
  explicit Pipe(const Ends& ends) : reading(ends.reading), writing(ends.writing) {}
};

// A pseudo-terminal that passes on every byte as it is.
class Terminal {
 public:
  explicit Terminal(unsigned short columns = 80);

  // The program's side, to be closed here once a child has it.
  OpenFile& program_side() { return program_; }

  // Reads on until `enough` of all that was shown so far, or until no program has the terminal any
  // more.
  const std::string& shown(const std::function<bool(const std::string&)>& enough);
  const std::string& all_shown();

  void disappear() { user_.close(); }

 private:
  OpenFile user_, program_;
  std::string shown_;
};

// A named pipe, which keeps its reader waiting.
class NamedPipe {
 public:
  explicit NamedPipe(std::string path);
  const std::string& path() const { return path_; }

  // The end to write to, as soon as a reader has opened the other.
  int opened() const;

 private:
  std::string path_;
};

// Looks again and again until `condition` holds; throws after a minute.
void wait_until(const std::function<bool()>& condition);

}  // namespace channelstrip::test
