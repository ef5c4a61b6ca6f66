#include "child.h"

#include <fcntl.h>
#include <linux/capability.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <stdexcept>
#include <utility>

namespace channelstrip::test {
namespace {

std::string read_all(int descriptor) {
  std::string text;
  char buffer[4096];
  for (ssize_t got; (got = read(descriptor, buffer, sizeof buffer)) > 0;) {
    text.append(buffer, static_cast<std::size_t>(got));
  }
  return text;
}

}  // namespace

Child::Child(const std::vector<std::string>& arguments, const ChildOptions& options) {
  std::vector<char*> argv{const_cast<char*>(CHANNELSTRIP_PROGRAM)};
  for (const std::string& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
  argv.push_back(nullptr);

  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
  printed_ = memfd_create("printed", MFD_CLOEXEC);
  process_ = fork();
  if (process_ == 0) {
    if (options.standard_input) dup2(*options.standard_input, STDIN_FILENO);
    dup2(options.standard_output.value_or(printed_), STDOUT_FILENO);
    dup2(options.standard_error.value_or(ends[1]), STDERR_FILENO);
    for (const int number : {SIGINT, SIGTERM, SIGHUP, SIGPIPE}) signal(number, SIG_DFL);
    prctl(PR_CAPBSET_DROP, CAP_DAC_OVERRIDE);
    if (options.file_size_limit) {
      const rlimit limit{*options.file_size_limit, *options.file_size_limit};
      setrlimit(RLIMIT_FSIZE, &limit);
    }
    execv(argv[0], argv.data());
    _exit(127);
  }
  close(ends[1]);
  errors_ = ends[0];
  if (process_ < 0) throw std::runtime_error("no child process");
}

Child::~Child() {
  if (process_ > 0) {
    kill(process_, SIGKILL);
    waitpid(process_, nullptr, 0);
  }
  close(errors_);
  close(printed_);
}

bool Child::runs() const {
  siginfo_t info = {};
  return waitid(P_PID, static_cast<id_t>(process_), &info, WEXITED | WNOHANG | WNOWAIT) == 0 &&
         info.si_pid == 0;
}

void Child::send(int signal) const {
  kill(process_, signal);
}

bool Child::catches(int signal) const {
  std::ifstream status("/proc/" + std::to_string(process_) + "/status");
  for (std::string line; std::getline(status, line);) {
    if (!line.starts_with("SigCgt:")) continue;
    return (std::stoull(line.substr(7), nullptr, 16) >> (signal - 1) & 1) != 0;
  }
  return false;
}

bool Child::has_open(const std::string& path) const {
  namespace fs = std::filesystem;
  std::error_code gone;
  for (const auto& entry :
       fs::directory_iterator("/proc/" + std::to_string(process_) + "/fd", gone)) {
    if (fs::read_symlink(entry, gone).string().starts_with(path)) return true;
  }
  return false;
}

ChildResult Child::result() {
  ChildResult result;
  result.output = read_all(errors_);
  int status = 0;
  waitpid(std::exchange(process_, -1), &status, 0);
  lseek(printed_, 0, SEEK_SET);
  result.printed = read_all(printed_);
  if (WIFEXITED(status)) result.exit_status = WEXITSTATUS(status);
  if (WIFSIGNALED(status)) result.signal = WTERMSIG(status);
  return result;
}

}  // namespace channelstrip::test
