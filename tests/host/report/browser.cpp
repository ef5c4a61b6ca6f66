#include "browser.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <stdexcept>
#include <vector>

#include "../support/temporary_folder.h"

namespace channelstrip::test {
namespace {

constexpr unsigned kPatience = 120;  // s, after which the browser is ended

[[noreturn]] void become_browser(std::vector<std::string> arguments, int output) {
  std::vector<char*> argv;
  for (std::string& argument : arguments) argv.push_back(argument.data());
  argv.push_back(nullptr);
  dup2(output, STDOUT_FILENO);
  dup2(open("/dev/null", O_WRONLY | O_CLOEXEC), STDERR_FILENO);
  alarm(kPatience);
  execvp(argv[0], argv.data());
  _exit(127);
}

}  // namespace

std::string document_of(const std::string& file) {
  const TemporaryFolder profile;
  const std::vector<std::string> arguments{"chromium",
                                           "--headless",
                                           "--no-sandbox",
                                           "--disable-gpu",
                                           "--disable-quic",
                                           "--no-first-run",
                                           "--disable-background-networking",
                                           "--disable-component-update",
                                           "--disable-sync",
                                           "--user-data-dir=" + profile.file("profile"),
                                           "--dump-dom",
                                           "file://" + file};
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
  const pid_t browser = fork();
  if (browser == 0) become_browser(arguments, ends[1]);
  close(ends[1]);
  std::string document;
  std::array<char, 4096> buffer;
  for (ssize_t got; (got = read(ends[0], buffer.data(), buffer.size())) > 0;) {
    document.append(buffer.data(), static_cast<std::size_t>(got));
  }
  close(ends[0]);
  int status = 0;
  if (browser < 0 || waitpid(browser, &status, 0) < 0 || status != 0) {
    throw std::runtime_error("chromium failed");
  }
  return document;
}

}  // namespace channelstrip::test
