#include "adapters/files/channel.h"

#include <fcntl.h>
#include <netdb.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <termios.h>

#include <cerrno>
#include <chrono>
#include <future>
#include <memory>
#include <thread>

#include "adapters/files/descriptor.h"
#include "adapters/files/private_files.h"
#include "adapters/files/program.h"
#include "base/number_text.h"
#include "base/text.h"
#include "platform/printer.h"

namespace tpv {

namespace {

constexpr int kPatience = 4000;  // milliseconds for each step
constexpr std::string_view kQueue = "queue:";
constexpr std::string_view kSocket = "socket://";

[[noreturn]] void Fail(const std::string& target, const std::string& why) {
  throw PrintError("Impresora o dispositivo «" + target + "»: " + why);
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

int WaitUntil(int file, short event) {
  pollfd wait{file, event, 0};
  int ready = -1;
  while ((ready = ::poll(&wait, 1, kPatience)) < 0 && errno == EINTR) {
  }
  return ready == 0 ? ETIMEDOUT : ready < 0 ? errno : 0;
}

// `write_some` writes like write(2) to a file that does not block.
template <typename WriteSome>
int WriteAll(int file, std::string_view bytes, WriteSome write_some) {
  while (!bytes.empty()) {
    const ssize_t written = write_some(bytes);
    if (written >= 0) {
      bytes.remove_prefix(static_cast<std::size_t>(written));
    } else if (errno == EAGAIN) {
      if (const int error = WaitUntil(file, POLLOUT)) return error;
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
int WaitUntilTaken(int device) {
  if (const int error = WaitUntil(device, POLLOUT)) return error;
  int left = 0;
  for (int waited = 0; ::ioctl(device, TIOCOUTQ, &left) == 0 && left > 0; waited += 20) {
    if (waited >= kPatience) {
      ::tcflush(device, TCOFLUSH);
      return ETIMEDOUT;
    }
    ::usleep(20'000);
  }
  return 0;
}

enum class Accept { PortsAndFiles, Ports };

void WriteToDevice(const std::string& path, std::string_view bytes, Accept accept) {
  const Descriptor device(
      ::open(path.c_str(), O_WRONLY | O_NONBLOCK | O_NOCTTY | O_APPEND | O_CLOEXEC));
  if (!device) Fail(path, Reason(errno));
  struct stat about {};
  const bool known = ::fstat(device.get(), &about) == 0;
  const bool fits = known && (S_ISCHR(about.st_mode) ||
                              (accept == Accept::PortsAndFiles && S_ISREG(about.st_mode)));
  if (!fits) Fail(path, "no es un dispositivo en el que se pueda escribir");
  MakeRaw(device.get());
  int error = WriteAll(device.get(), bytes, [&](std::string_view rest) {
    return ::write(device.get(), rest.data(), rest.size());
  });
  if (error == 0) error = WaitUntilTaken(device.get());
  if (error != 0) Fail(path, Reason(error));
}

int ConnectTo(int file, const addrinfo& address) {
  if (::connect(file, address.ai_addr, address.ai_addrlen) == 0) return 0;
  if (errno != EINPROGRESS) return errno;
  if (const int error = WaitUntil(file, POLLOUT)) return error;
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
Addresses LookUpInTime(const Address& address) {
  std::packaged_task<Addresses()> task([address] { return LookUp(address); });
  std::future<Addresses> answer = task.get_future();
  std::thread(std::move(task)).detach();
  const bool came =
      answer.wait_for(std::chrono::milliseconds(kPatience)) == std::future_status::ready;
  return came ? answer.get() : nullptr;
}

Descriptor Connected(const std::string& target, const Address& address) {
  const Addresses addresses = LookUpInTime(address);
  if (!addresses) Fail(target, "no se conoce esa dirección en la red");
  int error = 0;
  for (const addrinfo* next = addresses.get(); next != nullptr; next = next->ai_next) {
    Descriptor file(::socket(next->ai_family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
    error = file ? ConnectTo(file.get(), *next) : errno;
    if (error == 0) return file;
  }
  Fail(target, Reason(error));
}

// Closing while the printer's answer lies unread would throw away what it has
// not printed yet.
void Finish(const Descriptor& connection) {
  ::shutdown(connection.get(), SHUT_WR);
  char unread[512];
  for (pollfd wait{connection.get(), POLLIN, 0}; ::poll(&wait, 1, 200) == 1;) {
    if (::recv(connection.get(), unread, sizeof unread, 0) <= 0) return;
  }
}

void WriteToNetwork(const std::string& target, const Address& address, std::string_view bytes) {
  const Descriptor connection = Connected(target, address);
  const int error = WriteAll(connection.get(), bytes, [&](std::string_view rest) {
    return ::send(connection.get(), rest.data(), rest.size(), MSG_NOSIGNAL);
  });
  if (error != 0) Fail(target, Reason(error));
  Finish(connection);
}

}  // namespace

bool IsTarget(std::string_view target) {
  return target.starts_with('/') || (target.starts_with(kQueue) && target.size() > kQueue.size()) ||
         !AddressOf(target).host.empty();
}

void SendBytes(const std::string& target, std::string_view bytes) {
  if (target.starts_with('/')) return WriteToDevice(target, bytes, Accept::PortsAndFiles);
  if (target.starts_with(kQueue)) return SendToQueue(target.substr(kQueue.size()), {"raw"}, bytes);
  const Address address = AddressOf(target);
  if (address.host.empty()) Fail(target, "no es ni un dispositivo ni una dirección");
  WriteToNetwork(target, address, bytes);
}

void SendBytesToPort(const std::string& path, std::string_view bytes) {
  if (!path.starts_with('/')) Fail(path, "no es un puerto de esta máquina ni está en sus ajustes");
  WriteToDevice(path, bytes, Accept::Ports);
}

void SendToQueue(const std::string& queue, const std::vector<std::string>& options,
                 std::string_view document) {
  std::vector<std::string> words = {"lp", "-d", queue, "-t", "tpv"};
  for (const std::string& option : options) words.insert(words.end(), {"-o", option});
  const ProgramResult result = RunProgram(words, document);
  if (!result.found) Fail(queue, "falta el programa «lp» del sistema de impresión");
  if (!result.done) Fail(queue, "la cola no acepta el documento. " + Trim(result.output));
}

}  // namespace tpv
