#include "adapters/files/program.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/wait.h>
extern "C" {  // this header of the C library forgets to say so
#include <sys/pidfd.h>
}

#include <cerrno>
#include <csignal>
#include <thread>

#include "adapters/files/descriptor.h"

extern char** environ;  // NOLINT: the system's name

namespace tpv {

namespace {

std::vector<char*> Pointers(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

// What is the till's own, its passwords among it, is nobody else's.
std::vector<std::string> ChildEnvironment() {
  std::vector<std::string> variables;
  for (char** variable = environ; *variable != nullptr; ++variable) {
    if (!std::string_view(*variable).starts_with("TPV_")) variables.emplace_back(*variable);
  }
  return variables;
}

std::vector<std::string> EnvironmentWithoutLanguage() {
  std::vector<std::string> variables = ChildEnvironment();
  std::erase_if(variables, [](const std::string& variable) { return variable.starts_with("LC_ALL="); });
  variables.emplace_back("LC_ALL=C");
  return variables;
}

class Actions {
 public:
  Actions() { ::posix_spawn_file_actions_init(&actions_); }
  ~Actions() { ::posix_spawn_file_actions_destroy(&actions_); }
  Actions(const Actions&) = delete;
  Actions& operator=(const Actions&) = delete;
  void Take(int from, int as) { ::posix_spawn_file_actions_adddup2(&actions_, from, as); }
  void Discard(int output) {
    ::posix_spawn_file_actions_addopen(&actions_, output, "/dev/null", O_RDWR, 0);
  }
  // The process, or -1 when there is no such program.
  pid_t Start(std::vector<std::string> words, std::vector<std::string> environment) {
    pid_t process = -1;
    const std::vector<char*> arguments = Pointers(words);
    const int error = ::posix_spawnp(&process, arguments[0], &actions_, nullptr, arguments.data(),
                                     Pointers(environment).data());
    return error == 0 ? process : -1;
  }

 private:
  posix_spawn_file_actions_t actions_;
};

// A file without a name that holds a program's input or output: unlike a pipe
// it never blocks either side.
Descriptor Scratch(std::string_view bytes) {
  Descriptor file(::memfd_create("tpv", MFD_CLOEXEC));
  while (file && !bytes.empty()) {
    const ssize_t written = ::write(file.get(), bytes.data(), bytes.size());
    if (written < 0) return Descriptor();
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  if (file) ::lseek(file.get(), 0, SEEK_SET);
  return file;
}

std::string Contents(const Descriptor& file) {
  std::string text;
  char piece[4096];
  ::lseek(file.get(), 0, SEEK_SET);
  for (ssize_t count; (count = ::read(file.get(), piece, sizeof piece)) > 0;) {
    text.append(piece, static_cast<std::size_t>(count));
  }
  return text;
}

bool EndsWithin(pid_t process, std::chrono::milliseconds may_take) {
  const Descriptor handle(::pidfd_open(process, 0));
  pollfd wait{handle.get(), POLLIN, 0};
  return ::poll(&wait, 1, static_cast<int>(may_take.count())) == 1;
}

// Waits for its end; whether it ended well.
bool Reap(pid_t process) {
  int status = 0;
  while (::waitpid(process, &status, 0) < 0 && errno == EINTR) {
  }
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

}  // namespace

ProgramResult RunProgram(const std::vector<std::string>& words, std::string_view input,
                         std::chrono::milliseconds may_take) {
  const Descriptor in = Scratch(input);
  const Descriptor out = Scratch({});
  if (!in || !out) return {};
  Actions actions;
  actions.Take(in.get(), STDIN_FILENO);
  actions.Take(out.get(), STDOUT_FILENO);
  actions.Take(out.get(), STDERR_FILENO);
  const pid_t process = actions.Start(words, EnvironmentWithoutLanguage());
  if (process < 0) return {};
  const bool late = !EndsWithin(process, may_take);
  if (late) ::kill(process, SIGKILL);
  const bool done = Reap(process) && !late;
  return {true, done, late, Contents(out)};
}

bool LaunchProgram(const std::vector<std::string>& words, std::chrono::milliseconds look) {
  Actions actions;
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) actions.Discard(stream);
  const pid_t process = actions.Start(words, ChildEnvironment());
  if (process < 0) return false;
  if (EndsWithin(process, look)) return Reap(process);
  std::thread([process] { ::waitpid(process, nullptr, 0); }).detach();
  return true;
}

}  // namespace tpv
