// The program as a child process.

#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <vector>

namespace channelstrip::test {

struct ChildResult {
  int exit_status = -1;  // -1: ended by a signal
  int signal = 0;
  std::string output;   // standard error
  std::string printed;  // standard output
};

class Child {
 public:
  // Runs the program with these arguments. It obeys file permissions even where the tests run as
  // the superuser, and may be given a limit to the bytes of any file it writes.
  explicit Child(const std::vector<std::string>& arguments,
                 std::optional<unsigned long> file_size_limit = std::nullopt);
  ~Child();
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;

  bool runs() const;
  void send(int signal) const;

  // Waits for the end.
  ChildResult result();

 private:
  pid_t process_ = -1;
  int errors_ = -1;   // read end of its standard error
  int printed_ = -1;  // its standard output, in memory
};

inline ChildResult run(const std::vector<std::string>& arguments,
                       std::optional<unsigned long> file_size_limit = std::nullopt) {
  return Child(arguments, file_size_limit).result();
}

}  // namespace channelstrip::test
