// A folder, programs and variables of its own for a test of what leaves the till.
#pragma once

#include <arpa/inet.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "adapters/files/private_files.h"
#include "adapters/files/temporary_folder.h"

namespace tpv {

class TestFolder : public TemporaryFolder {
 public:
  std::string Text(const std::string& name) const {
    return ReadFile(*this / name).value_or("(none)");
  }
  // A program for the path, as shell text; it may write into $FOLDER.
  void Program(const std::string& name, const std::string& shell) const {
    std::filesystem::create_directory(path() + "/bin");
    std::ofstream(path() + "/bin/" + name) << "#!/bin/sh\nFOLDER=" << path() << "\n" << shell << "\n";
    ::chmod((path() + "/bin/" + name).c_str(), 0755);
  }
  // Paths of all files that end so, in order.
  std::vector<std::string> Files(const std::string& ending) const {
    std::vector<std::string> found;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(path())) {
      if (entry.path().string().ends_with(ending)) found.push_back(entry.path().string());
    }
    std::sort(found.begin(), found.end());
    return found;
  }
};

// An environment variable for the time of a test.
class TestVariable {
 public:
  TestVariable(std::string name, const std::string& value) : name_(std::move(name)) {
    if (const char* before = std::getenv(name_.c_str())) before_ = before;
    ::setenv(name_.c_str(), value.c_str(), 1);
  }
  ~TestVariable() { ::setenv(name_.c_str(), before_.c_str(), 1); }
  TestVariable(const TestVariable&) = delete;
  TestVariable& operator=(const TestVariable&) = delete;

 private:
  std::string name_;
  std::string before_;
};

// Listens on the loopback and never says a word.
class SilentServer {
 public:
  SilentServer() : socket_(::socket(AF_INET, SOCK_STREAM, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    ::bind(socket_, reinterpret_cast<sockaddr*>(&address), size);
    ::listen(socket_, 1);
    ::getsockname(socket_, reinterpret_cast<sockaddr*>(&address), &size);
    port = ntohs(address.sin_port);
  }
  ~SilentServer() { ::close(socket_); }
  SilentServer(const SilentServer&) = delete;
  SilentServer& operator=(const SilentServer&) = delete;
  int Accept() const { return ::accept(socket_, nullptr, nullptr); }

  int port = 0;

 private:
  int socket_;
};

inline mode_t ModeOf(const std::string& path) {
  struct stat about {};
  ::stat(path.c_str(), &about);
  return about.st_mode & 0777;
}

}  // namespace tpv
