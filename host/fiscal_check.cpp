#include "host/fiscal_check.h"

#include <algorithm>

#include "fiscal/chain_check.h"
#include "host/machine.h"

namespace tpv {

FiscalCheck CheckFiscal(Connection& connection) {
  FiscalCheck check;
  const auto digest = MakeDigest();
  check.records = fiscal::CheckChain(
      fiscal::DeskOf(connection, digest.get()), [&](std::string_view what, std::int64_t id) {
        const auto known = std::find_if(check.findings.begin(), check.findings.end(),
                                        [&](const StoreFinding& finding) { return finding.text == what; });
        if (known != check.findings.end()) return known->Add(id);
        check.findings.push_back({std::string(what), {}, 0});
        check.findings.back().Add(id);
      });
  return check;
}

}  // namespace tpv
