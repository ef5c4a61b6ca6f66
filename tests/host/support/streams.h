// Pipes and terminals for a child's standard streams, and a named pipe that keeps it waiting.

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

  // Reads up to the end.
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

// A pseudo-terminal that passes every byte on unchanged.
class Terminal {
 public:
  explicit Terminal(unsigned short columns = 80);

  // The program's side. Close it here once a child has inherited it.
  OpenFile& program_side() { return program_; }

  // Reads until `enough` is true of everything shown so far, or until no program has the terminal
  // open any more.
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

  // Waits until a reader has opened the pipe; returns the end to write to.
  int opened() const;

 private:
  std::string path_;
};

// Polls until `condition` holds; throws after a minute.
void wait_until(const std::function<bool()>& condition);

}  // namespace channelstrip::test
