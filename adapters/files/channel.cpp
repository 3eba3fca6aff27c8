#include "adapters/files/channel.h"

#include <fcntl.h>
#include <netdb.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <termios.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <climits>
#include <future>
#include <memory>
#include <thread>

#include "adapters/files/descriptor.h"
#include "adapters/files/private_files.h"
#include "base/number_text.h"
#include "platform/printer.h"

namespace tpv {

namespace {

constexpr std::size_t kSlowest = 500;  // bytes a second, about half of what a serial line does
constexpr std::chrono::seconds kLongest{30};
constexpr std::string_view kQueue = "queue:";
constexpr std::string_view kSocket = "socket://";

[[noreturn]] void Fail(const std::string& target, const std::string& why) {
  throw PrintError("Impresora o dispositivo «" + target + "»: " + why);
}

// When some bytes were taken, something may have come out.
[[noreturn]] void FailMidway(const std::string& target, int error, bool taken) {
  if (!taken) Fail(target, Reason(error));
  throw UnsurePrint("Impresora o dispositivo «" + target + "»: " + Reason(error));
}

struct Address {
  std::string host;
  std::string port;
};

// Both parts empty when the target is no address.
Address AddressOf(std::string_view target) {
  if (target.starts_with(kSocket)) target.remove_prefix(kSocket.size());
  const std::size_t colon = target.rfind(':');
  if (colon == std::string_view::npos || target.find('/') != std::string_view::npos) return {};
  std::string_view host = target.substr(0, colon);
  if (host.starts_with('[') && host.ends_with(']')) host = host.substr(1, host.size() - 2);
  const auto port = ParseInt32(target.substr(colon + 1));
  if (host.empty() || !port || *port < 1 || *port > 65535) return {};
  return {std::string(host), std::to_string(*port)};
}

// How long bytes may take: until the deadline without one of them taken, a slow printer
// longer as a whole.
class Patience {
 public:
  Patience(std::size_t bytes, const Deadline& deadline)
      : silence_(deadline.Left()),
        whole_(silence_ + std::min<std::chrono::milliseconds>(
                              std::chrono::seconds(bytes / kSlowest), kLongest)) {}
  int Milliseconds() const {
    return static_cast<int>(Sooner(Deadline(silence_), whole_).Left().count());
  }

 private:
  std::chrono::milliseconds silence_;
  Deadline whole_;
};

// The error, 0 for none.
int WaitUntil(int file, short event, const Patience& patience) {
  pollfd wait{file, event, 0};
  int ready = -1;
  while ((ready = ::poll(&wait, 1, patience.Milliseconds())) < 0 && errno == EINTR) {
  }
  return ready == 0 ? ETIMEDOUT : ready < 0 ? errno : 0;
}

// `write_some` writes like write(2) to a file that does not block; what is taken goes off
// `bytes`.
template <typename WriteSome>
int WriteAll(int file, std::string_view& bytes, const Patience& patience, WriteSome write_some) {
  while (!bytes.empty()) {
    const ssize_t written = write_some(bytes);
    if (written >= 0) {
      bytes.remove_prefix(static_cast<std::size_t>(written));
      if (!bytes.empty() && patience.Milliseconds() == 0) return ETIMEDOUT;
    } else if (errno == EAGAIN) {
      if (const int error = WaitUntil(file, POLLOUT, patience)) return error;
    } else if (errno != EINTR) {
      return errno;
    }
  }
  return 0;
}

// Control characters are for the printer, not for the port's driver.
void MakeRaw(int port) {
  termios settings{};
  if (::tcgetattr(port, &settings) != 0) return;  // no serial port
  ::cfmakeraw(&settings);
  ::tcsetattr(port, TCSANOW, &settings);
}

// Closing drops what a USB printer has not taken yet, and waits half a minute for
// a serial one that is off.
int WaitUntilTaken(int device, const Patience& patience) {
  if (const int error = WaitUntil(device, POLLOUT, patience)) return error;
  int left = 0;
  int before = INT_MAX;
  Deadline end(std::chrono::milliseconds(patience.Milliseconds()));
  while (::ioctl(device, TIOCOUTQ, &left) == 0 && left > 0) {
    if (left < before) end = Deadline(std::chrono::milliseconds(patience.Milliseconds()));
    before = left;
    if (end.Passed()) {
      ::tcflush(device, TCOFLUSH);
      return ETIMEDOUT;
    }
    ::usleep(20'000);
  }
  return 0;
}

enum class Accept { PortsAndFiles, Ports };

void WriteToDevice(const std::string& path, std::string_view bytes, Accept accept,
                   const Patience& patience) {
  const Descriptor device(
      ::open(path.c_str(), O_WRONLY | O_NONBLOCK | O_NOCTTY | O_APPEND | O_CLOEXEC));
  if (!device) Fail(path, Reason(errno));
  struct stat about {};
  const bool known = ::fstat(device.get(), &about) == 0;
  const bool fits = known && (S_ISCHR(about.st_mode) ||
                              (accept == Accept::PortsAndFiles && S_ISREG(about.st_mode)));
  if (!fits) Fail(path, "no es un dispositivo en el que se pueda escribir");
  MakeRaw(device.get());
  const std::size_t all = bytes.size();
  int error = WriteAll(device.get(), bytes, patience, [&](std::string_view rest) {
    return ::write(device.get(), rest.data(), rest.size());
  });
  if (error == 0) error = WaitUntilTaken(device.get(), patience);
  if (error != 0) FailMidway(path, error, bytes.size() < all);
}

int ConnectTo(int file, const addrinfo& address, const Patience& patience) {
  if (::connect(file, address.ai_addr, address.ai_addrlen) == 0) return 0;
  if (errno != EINPROGRESS) return errno;
  if (const int error = WaitUntil(file, POLLOUT, patience)) return error;
  int error = 0;
  socklen_t size = sizeof error;
  ::getsockopt(file, SOL_SOCKET, SO_ERROR, &error, &size);
  return error;
}

struct FreeAddresses {
  void operator()(addrinfo* addresses) const { ::freeaddrinfo(addresses); }
};
using Addresses = std::unique_ptr<addrinfo, FreeAddresses>;

Addresses LookUp(const Address& address) {
  addrinfo wanted{};
  wanted.ai_socktype = SOCK_STREAM;
  addrinfo* found = nullptr;
  const int error = ::getaddrinfo(address.host.c_str(), address.port.c_str(), &wanted, &found);
  return Addresses(error == 0 ? found : nullptr);
}

// A name server may take longer than the till has: it is then left to itself.
Addresses LookUpInTime(const Address& address, const Patience& patience) {
  std::packaged_task<Addresses()> task([address] { return LookUp(address); });
  std::future<Addresses> answer = task.get_future();
  std::thread(std::move(task)).detach();
  const bool came =
      answer.wait_for(std::chrono::milliseconds(patience.Milliseconds())) == std::future_status::ready;
  return came ? answer.get() : nullptr;
}

Descriptor Connected(const std::string& target, const Address& address,
                     const Patience& patience) {
  const Addresses addresses = LookUpInTime(address, patience);
  if (!addresses) Fail(target, "no se conoce esa dirección en la red");
  int error = 0;
  for (const addrinfo* next = addresses.get(); next != nullptr; next = next->ai_next) {
    Descriptor file(::socket(next->ai_family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
    error = file ? ConnectTo(file.get(), *next, patience) : errno;
    if (error == 0) return file;
  }
  Fail(target, Reason(error));
}

// Closing while the printer's answer lies unread would throw away what it has
// not printed yet.
void Finish(const Descriptor& connection) {
  ::shutdown(connection.get(), SHUT_WR);
  char unread[512];
  const Deadline end(std::chrono::seconds(1));
  for (pollfd wait{connection.get(), POLLIN, 0}; !end.Passed() && ::poll(&wait, 1, 200) == 1;) {
    if (::recv(connection.get(), unread, sizeof unread, 0) <= 0) return;
  }
}

void WriteToNetwork(const std::string& target, const Address& address, std::string_view bytes,
                    const Patience& patience) {
  const Descriptor connection = Connected(target, address, patience);
  const std::size_t all = bytes.size();
  const int error = WriteAll(connection.get(), bytes, patience, [&](std::string_view rest) {
    return ::send(connection.get(), rest.data(), rest.size(), MSG_NOSIGNAL);
  });
  if (error != 0) FailMidway(target, error, bytes.size() < all);
  Finish(connection);
}

}  // namespace

bool IsTarget(std::string_view target) {
  return target.starts_with('/') || (target.starts_with(kQueue) && target.size() > kQueue.size()) ||
         !AddressOf(target).host.empty();
}

std::string QueueOf(std::string_view target) {
  return target.starts_with(kQueue) ? std::string(target.substr(kQueue.size())) : std::string();
}

void SendBytes(const std::string& target, std::string_view bytes, const Deadline& deadline) {
  const Patience patience(bytes.size(), deadline);
  if (target.starts_with('/')) {
    return WriteToDevice(target, bytes, Accept::PortsAndFiles, patience);
  }
  const Address address = AddressOf(target);
  if (address.host.empty()) Fail(target, "no es ni un dispositivo ni una dirección");
  WriteToNetwork(target, address, bytes, patience);
}

void SendBytesToPort(const std::string& path, std::string_view bytes, const Deadline& deadline) {
  WriteToDevice(path, bytes, Accept::Ports, Patience(bytes.size(), deadline));
}

}  // namespace tpv
