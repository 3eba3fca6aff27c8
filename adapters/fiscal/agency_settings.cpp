#include "adapters/fiscal/agency_settings.h"

#include "base/text.h"

namespace tpv::fiscal {

AgencySettings ReadAgencySettings(const Settings& settings) {
  const auto read = [&](std::string_view key) { return settings.Read("TPV", "Fiscal", key); };
  AgencySettings agency;
  agency.certificate = Trim(read("Certificate"));
  agency.key = Trim(read("Key"));
  agency.password = read("Password");
  agency.seal = EqualNoCase(Trim(read("Seal")), "yes");
  agency.ca_file = Trim(read("CaFile"));
  agency.test_server = Trim(read("TestServer"));
  return agency;
}

std::string AgencyUrl(const AgencySettings& settings, bool real) {
  const std::string path = "/wlpl/TIKE-CONT/ws/SistemaFacturacion/VerifactuSOAP";
  const std::string host = settings.seal ? "www10" : "www1";
  if (real) return "https://" + host + ".agenciatributaria.gob.es" + path;
  return (settings.test_server.empty() ? "https://pre" + host + ".aeat.es" : settings.test_server) + path;
}

}  // namespace tpv::fiscal
