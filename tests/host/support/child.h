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

struct ChildOptions {
  std::optional<unsigned long> file_size_limit = {};  // bytes of any file it writes
  // Descriptors. By default it shares our standard input, and result() has what it wrote.
  std::optional<int> standard_input = {}, standard_output = {}, standard_error = {};
};

class Child {
 public:
  // Runs the program with these arguments. File permissions apply to it even if the tests run as
  // the superuser, and signals have their default effect even if the tests ignore them.
  explicit Child(const std::vector<std::string>& arguments, const ChildOptions& options = {});
  ~Child();
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;

  bool runs() const;
  void send(int signal) const;

  // Whether it has a handler of its own for this signal.
  bool catches(int signal) const;

  // Whether it has this file open, or a file in this folder, even one without a name.
  bool has_open(const std::string& path) const;

  // Waits for the program to end.
  ChildResult result();

 private:
  pid_t process_ = -1;
  int errors_ = -1;   // read end of its standard error
  int printed_ = -1;  // its standard output, a file in memory
};

inline ChildResult run(const std::vector<std::string>& arguments,
                       std::optional<unsigned long> file_size_limit = std::nullopt) {
  return Child(arguments, {.file_size_limit = file_size_limit}).result();
}

}  // namespace channelstrip::test
