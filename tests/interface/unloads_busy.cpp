// unloads_busy LIBRARY: a host that closes the library while a thread of it is busy
// with the drawer. The drawer opens all the same, and the host goes on.
#include <arpa/inet.h>
#include <dlfcn.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <string>

#include "adapters/files/temporary_folder.h"
#include "zrtpv.h"

namespace {

// A printer on the network that takes no second call until it has met the first.
class SlowPrinter {
 public:
  SlowPrinter() {
    address_.sin_family = AF_INET;
    address_.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address_;
    ::bind(listener_, Address(), size);
    ::getsockname(listener_, Address(), &size);
    ::listen(listener_, 0);
    ::connect(first_, Address(), size);
  }
  std::string Name() const { return "127.0.0.1:" + std::to_string(ntohs(address_.sin_port)); }
  std::string Second() {
    ::close(Accept());
    const int caller = Accept();
    std::string bytes;
    char byte = 0;
    while (caller >= 0 && ::read(caller, &byte, 1) == 1) bytes += byte;
    return bytes;
  }

 private:
  sockaddr* Address() { return reinterpret_cast<sockaddr*>(&address_); }
  int Accept() const {
    pollfd calls{listener_, POLLIN, 0};
    return ::poll(&calls, 1, 10'000) == 1 ? ::accept(listener_, nullptr, nullptr) : -1;
  }

  sockaddr_in address_{};
  const int listener_ = ::socket(AF_INET, SOCK_STREAM, 0);
  const int first_ = ::socket(AF_INET, SOCK_STREAM, 0);
};

// The drawer is being opened when this returns.
bool OpenDrawer(void* library, const std::string& settings, const std::string& store) {
  const auto create = reinterpret_cast<decltype(&zrtpv_create)>(::dlsym(library, "zrtpv_create"));
  const auto open = reinterpret_cast<decltype(&zrtpv_open_file)>(::dlsym(library, "zrtpv_open_file"));
  const auto call = reinterpret_cast<decltype(&zrtpv_call)>(::dlsym(library, "zrtpv_call"));
  zrtpv_options options{};
  options.size = sizeof options;
  options.settings = settings.c_str();
  zrtpv_till* till = nullptr;
  return create(&options, &till) == ZRTPV_OK && open(till, store.c_str(), ZRTPV_MAKE_DEMO, 1) == ZRTPV_OK &&
         call(till, "Abre_Cajon", nullptr, 0, nullptr) == ZRTPV_OK;
}

}  // namespace

int main(int count, char** words) {
  const tpv::TemporaryFolder folder;
  SlowPrinter printer;
  const std::string settings = folder / "tpv.conf";
  std::ofstream(settings) << "[TPV/Devices]\nLPT1=" << printer.Name()
                          << "\n[TPV/Till]\nDrawerMethod=4\nDrawerCodes=27,112\n";
  void* library = count == 2 ? ::dlopen(words[1], RTLD_NOW | RTLD_LOCAL) : nullptr;
  if (library == nullptr || !OpenDrawer(library, settings, folder / "t.db") || ::dlclose(library) != 0) return 2;
  if (printer.Second() == "\x1Bp\r\n") return 0;
  std::fputs("the drawer did not open\n", stderr);
  return 1;
}
