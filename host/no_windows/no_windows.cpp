// The program as built where Qt is missing.
#include "host/host_windows.h"
#include "host/play.h"
#include "host/stage.h"
#include "host/start.h"

namespace tpv {

namespace {

constexpr const char* kWithout = "este programa se construyó sin ventanas (falta Qt 6)";

[[noreturn]] void Refuse() { throw UsageError(kWithout); }

}  // namespace

std::unique_ptr<Theatre> WindowTheatre(const ScreenSize&) { Refuse(); }

int Start(const std::string&) { Refuse(); }

std::unique_ptr<HostWindows> OpenHostWindows() { throw NoWindows(kWithout); }

}  // namespace tpv
