#include "office/menu_screen.h"

#include "office/articles/article_list.h"
#include "office/articles/label_screen.h"
#include "office/articles/price_screen.h"
#include "office/articles/quick_key_list.h"
#include "office/export_window.h"
#include "office/fiscal/fiscal_settings.h"
#include "office/fiscal/records_to_mend.h"
#include "office/import/import_window.h"
#include "office/parameters.h"
#include "office/people/customers.h"
#include "office/people/sellers.h"
#include "office/terms/payment_methods.h"
#include "office/terms/tax_rates.h"
#include "office/warehouses.h"
#include "panel/panel_screen.h"

namespace tpv::office {

namespace {

using Made = std::unique_ptr<ui::Form>;

template <typename Window>
Made Make(Context& context, const Tools&) {
  return std::make_unique<Window>(context);
}

template <typename Window>
Made MakeWithTools(Context& context, const Tools& tools) {
  return std::make_unique<Window>(context, tools);
}

// A new window of the office is a line here.
struct Entry {
  const char* button;
  const char* caption;
  Made (*make)(Context& context, const Tools& tools);
  const char* frame = nullptr;  // the caption of the frame that it begins
};

constexpr Entry kEntries[] = {
    {"cmdArticulos", "&Artículos", Make<ArticleList>, "Artículos"},
    {"cmdPrecios", "Cambio de p&recios", Make<PriceScreen>},
    {"cmdEtiquetas", "&Etiquetas", MakeWithTools<LabelScreen>},
    {"cmdTeclas", "&Teclas rápidas", Make<QuickKeyList>},
    {"cmdClientes", "C&lientes", Make<CustomerList>, "Clientes y cobro"},
    {"cmdVendedores", "&Vendedores", Make<SellerList>},
    {"cmdFormasPago", "&Formas de pago", Make<PaymentMethodList>},
    {"cmdParametros", "&Parámetros", Make<ParametersForm>, "Tienda"},
    {"cmdAlmacenes", "Al&macenes", Make<WarehouseList>},
    {"cmdTiposIva", "Tip&os de IVA", Make<TaxRateList>},
    {"cmdPanel", "Pa&nel", Make<FrmPanel>},
    {"cmdRegistros", "Re&gistros de facturación", Make<FiscalSettings>, "Agencia Tributaria"},
    {"cmdSubsanar", "Registros por s&ubsanar", Make<RecordsToMend>},
    {"cmdImportar", "&Importar", MakeWithTools<ImportWindow>, "Hojas de cálculo"},
    {"cmdExportar", "E&xportar", MakeWithTools<ExportWindow>},
};

constexpr std::size_t kInARow = 3;

}  // namespace

MenuScreen::MenuScreen(Context& context, const Tools& tools) : Screen(context, "frmOficina"), tools_(tools) {
  caption = "Oficina";
  std::vector<std::vector<ui::Control*>> group;
  const auto close_group = [&] {
    if (!frames_.empty()) frames_.back()->Rows(std::move(group));
    group.clear();
  };
  for (std::size_t i = 0; i < std::size(kEntries); ++i) {
    const Entry& entry = kEntries[i];
    if (entry.frame != nullptr) {
      close_group();
      const std::string number = "(" + std::to_string(frames_.size()) + ")";
      frames_.push_back(std::make_unique<ui::Frame>(*this, "Frame1" + number, entry.frame));
      rows.push_back({frames_.back().get()});
    }
    buttons_.push_back(std::make_unique<ui::Button>(*this, entry.button, entry.caption));
    buttons_.back()->stretch = true;
    buttons_.back()->click = [this, i] { Run(i); };
    if (group.empty() || group.back().size() == kInARow) group.emplace_back();
    group.back().push_back(buttons_.back().get());
  }
  close_group();
  cmdCerrar.click = [this] { Close(); };
  rows.push_back({&cmdCerrar});
}

void MenuScreen::Run(std::size_t entry) {
  const Made window = kEntries[entry].make(context(), tools_);
  context().ports.ui.ShowModal(*window);
}

void OpenOffice(Context& context, const Tools& tools) {
  MenuScreen menu(context, tools);
  context.ports.ui.ShowModal(menu);
}

}  // namespace tpv::office
