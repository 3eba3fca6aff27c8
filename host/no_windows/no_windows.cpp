// The program as built where Qt is missing.
#include "host/play.h"
#include "host/stage.h"

namespace tpv {

std::unique_ptr<Theatre> WindowTheatre() {
  throw UsageError("este programa se construyó sin ventanas (falta Qt 6)");
}

}  // namespace tpv
