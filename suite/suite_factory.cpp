#include "suite/suite_factory.h"

#include "base/text.h"
#include "suite/article_search.h"
#include "suite/communications.h"
#include "suite/customer_card.h"
#include "suite/delivery_notes.h"
#include "suite/invoices.h"
#include "suite/printer_choice.h"
#include "suite/reports.h"
#include "suite/treasury.h"

namespace tpv::suite {

std::shared_ptr<Object> SuiteFactory::Create(std::string_view class_name) {
  if (EqualNoCase(class_name, "ZRALBARANES.ZRAlbVentas")) return std::make_shared<DeliveryNotes>();
  if (EqualNoCase(class_name, "ZRARTICULOS.ZRArtic")) {
    return std::make_shared<ArticleSearch>(ports_->ui);
  }
  if (EqualNoCase(class_name, "ZRCLIENTES.ZRCLI")) return std::make_shared<CustomerCard>(*ports_);
  if (EqualNoCase(class_name, "ZRFACTUVEN.ZRFACVENTAS")) return std::make_shared<Invoices>(*ports_);
  if (EqualNoCase(class_name, "ZRTESORERIA.ZRTESORE")) return std::make_shared<Treasury>();
  if (EqualNoCase(class_name, "ZRSPOOL.ClsSpool")) return std::make_shared<PrinterChoice>(*ports_);
  if (EqualNoCase(class_name, "ZRComunicaciones.ZRCOMU")) {
    return std::make_shared<Communications>(*ports_);
  }
  if (EqualNoCase(class_name, "ZRReportes.ZRReports")) return std::make_shared<Reports>(*ports_);
  throw ObjectError("No se puede crear el componente «" + std::string(class_name) + "»");
}

}  // namespace tpv::suite
