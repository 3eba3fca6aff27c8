// The program as built where Qt is missing.
#include "host/play.h"
#include "host/stage.h"
#include "host/start.h"

namespace tpv {

namespace {

[[noreturn]] void Refuse() {
  throw UsageError("este programa se construyó sin ventanas (falta Qt 6)");
}

}  // namespace

std::unique_ptr<Theatre> WindowTheatre() { Refuse(); }

int Start(const std::string&) { Refuse(); }

}  // namespace tpv
