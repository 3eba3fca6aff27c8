#include "bench/machine.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <string>

#include "adapters/files/temporary_folder.h"
#include "bench/harness.h"

namespace tpv::bench {

namespace {

// What follows the name and its colon in a file of the system; the last line's.
std::string Entry(const char* file, const std::string& name) {
  std::ifstream in(file);
  std::string found = "?";
  for (std::string line; std::getline(in, line);) {
    const std::size_t colon = line.find(':');
    if (colon != std::string::npos && line.starts_with(name)) {
      found = line.substr(line.find_first_not_of(" \t", colon + 1));
    }
  }
  return found;
}

Times FlushTimes() {
  const TemporaryFolder folder(std::filesystem::current_path());
  const int file = ::open((folder / "write").c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600);
  const std::string page(4096, 'x');
  const Row row =
      Measure({}, 500, {{}, [&] {
                          if (::write(file, page.data(), page.size()) < 0 || ::fsync(file) != 0) {
                            throw std::runtime_error("the disk refuses");
                          }
                        }});
  ::close(file);
  return row.till;
}

}  // namespace

void PrintMachine() {
  utsname system{};
  ::uname(&system);
  const Times flush = FlushTimes();
  std::printf("| the machine | |\n|---|---|\n");
  std::printf("| processor | %s, %ld cores |\n", Entry("/proc/cpuinfo", "model name").c_str(),
              ::sysconf(_SC_NPROCESSORS_ONLN));
  std::printf("| memory | %s |\n", Entry("/proc/meminfo", "MemTotal").c_str());
  std::printf("| a write of 4 KiB kept by the disk | median %.0f µs, 99 %% %.0f µs |\n",
              flush.median, flush.p99);
  std::printf("| system | %s %s |\n", system.sysname, system.release);
  std::printf("| compiler | " __VERSION__ " |\n| SQLite | %s |\n\n", sqlite3_libversion());
}

}  // namespace tpv::bench
