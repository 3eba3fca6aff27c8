#include "adapters/fiscal/tax_agency.h"

#include "adapters/fiscal/agency_post.h"
#include "adapters/fiscal/agency_settings.h"
#include "adapters/fiscal/answer_reader.h"
#include "adapters/fiscal/message.h"

namespace tpv::fiscal {

void TaxAgency::RequireReady() { LoadCertificate(ReadAgencySettings(settings_)); }

Answer TaxAgency::Send(std::span<const Record> records, bool outage) {
  const AgencySettings settings = ReadAgencySettings(settings_);
  const bool real = records.front().mode == Mode::Real;
  const ClientCertificate certificate = LoadCertificate(settings);
  return ReadAnswer(
      Post(AgencyUrl(settings, real), SoapMessage(records, outage), certificate, settings.ca_file, stop_));
}

}  // namespace tpv::fiscal
