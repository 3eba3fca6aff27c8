#include "host/start_screen.h"

#include <algorithm>
#include <filesystem>

#include "adapters/files/paper_delivery.h"
#include "adapters/files/private_files.h"
#include "adapters/files/setting_names.h"
#include "base/number_text.h"
#include "base/text.h"
#include "data/till_state.h"
#include "host/chosen_store.h"
#include "host/closed_shop_window.h"
#include "host/new_shop.h"
#include "host/settings_window.h"
#include "host/store.h"
#include "host/welcome_window.h"
#include "office/menu_screen.h"
#include "panel/panel_screen.h"
#include "panel/past_months.h"
#include "screen/list_exits.h"
#include "screen/unprinted_screen.h"
#include "screen/waiting_items.h"
#include "suite/till_settings.h"

namespace tpv {

namespace {

namespace fs = std::filesystem;

constexpr std::int32_t kNoSale = -1;
// Where the choices are kept from one start to the next.
constexpr const char* kSection = "Start";

}  // namespace

StartScreen::StartScreen(Program program)
    : Window(program.ports.ui, "frmInicio"),
      program_(std::move(program)),
      shops_(program_.ports.settings),
      copies_(program_.ports.settings, program_.ports.clock) {
  caption = "Punto de venta";
  DeclareLayout();
  cmdTienda.click = [this] { OfferShops(); };
  cmdAyuda.click = [this] { front_end().ShowManual(""); };
  cmdAcercaDe.click = [this] { TellAbout(); };
  cmdCopia.click = [this] { MakeCopy(); };
  cmdAjustes.click = [this] { OpenSettings(); };
  cmdSalir.click = [this] { Leave(); };
  cmdOficina.click = [this] { OpenOffice(); };
  cmdPanel.click = [this] { OpenPanel(); };
  const std::pair<ui::Button*, void (Zrtpve::*)()> screens[] = {
      {&cmdVenta, &Zrtpve::zTpv},
      {&cmdMovimientos, &Zrtpve::zMovCaja},
      {&cmdCierre, &Zrtpve::zAperturaCierre},
      {&cmdDiario, &Zrtpve::zDiario},
      {&cmdDiarioCaja, &Zrtpve::zDiarioCaja},
      {&cmdFacturacion, &Zrtpve::zFacturacion},
      {&cmdPendiente, &Zrtpve::zInfPendienteCobro},
      {&cmdProveedores, &Zrtpve::zFindByName}};
  for (const auto& [button, screen] : screens) {
    button->click = [this, screen = screen] { Run([&] { (shop_->component().*screen)(); }); };
  }
}

StartScreen::~StartScreen() { front_end().SetBanner(""); }

void StartScreen::DeclareLayout() {
  Text1.Add(0, "Tienda").columns = 66;
  Text1[0].stretch = true;
  Text1[0].locked = true;
  Text1[0].tab_stop = false;
  ui::TextBox& till = Text1.Add(1, "Caja");
  till.columns = 6;
  till.max_length = 5;
  till.input = ui::Input::Number;
  till.align = ui::Align::Right;
  cboVendedor.columns = 28;
  cmdVenta.emphasis = ui::Emphasis::Strong;
  Frame1.Rows({{&Text1[0], &cmdTienda}, {&Text1[1], &cboVendedor}});
  Frame2.Rows({{&cmdVenta},
               {&cmdMovimientos, &cmdCierre},
               {&cmdDiario, &cmdDiarioCaja},
               {&cmdFacturacion, &cmdPendiente},
               {&cmdProveedores, &cmdOficina, &cmdPanel},
               {&cmdCopia, &cmdAjustes},
               {&cmdAyuda, &cmdAcercaDe},
               {&cmdSalir}});
  Spread(Frame2);
  rows = {{&Frame1}, {&Frame2}, {&lblImpresora}, {&lblCopia}};
}

void StartScreen::OnLoad() {
  InheritTill();
  ShowShop();
  if (const std::string chosen = shops_.Chosen(); !chosen.empty()) Open(chosen);
  ShowPrinter();
  SetFocus(cmdVenta);
}

void StartScreen::OnFirstActivate() {
  if (!program_.notice.empty()) Tell(program_.notice, ui::Icon::Exclamation);
  if (!shop_) OfferShops();
}

void StartScreen::OnKeyUp(ui::Key key) {
  if (key == ui::Key::F8 && shop_) return Run([this] { ShowUnprinted(shop_->context()); });
  Window::OnKeyUp(key);
}

void StartScreen::ExportList(ui::List& list, const std::string& path) {
  tpv::ExportList(shop_->context(), list, path);
}

void StartScreen::PrintList(ui::List& list, ui::ListPaper paper) { tpv::PrintList(shop_->context(), list, paper); }

// Without a printer the operator wants to know where the tickets go.
void StartScreen::ShowPrinter() {
  try {
    const std::string printer = program_.ports.printers.Current();
    lblImpresora.caption =
        printer.empty() ? "Impresora: el sistema de impresión no responde"
        : printer == kFolderPrinter
            ? "Los tickets se guardan en " + Shortened(PaperFolder(program_.ports.settings, kTicketFolder))
            : "Impresora: " + printer;
  } catch (const PrintError& error) {
    lblImpresora.caption = error.what();
  }
}

void StartScreen::ShowCopies() {
  lblCopia.caption = copies_.Said();
  copy_warning_ = copies_.Warning();
  cmdCopia.enabled = !lblCopia.caption.empty();
}

void StartScreen::MakeCopy() {
  try {
    const std::string text = copies_.MakeNow();
    ShowCopies();
    Tell(text);
  } catch (const std::exception& error) {
    Tell(std::string("No se ha hecho la copia de seguridad.\r\n") + error.what(), ui::Icon::Critical);
  }
}

void StartScreen::TellFailedCopy(bool wait) {
  const auto failure = copies_.Failure(wait);
  if (!failure) return;
  Tell("La copia de seguridad del cierre no se ha hecho bien.\r\n" + *failure, ui::Icon::Critical);
}

void StartScreen::Leave() {
  TellFailedCopy(true);
  Close();
}

// The window's own till of versions that had no setting for the machine.
void StartScreen::InheritTill() {
  Settings& settings = program_.ports.settings;
  const std::string kept = settings.Read(kTpv, kSection, "Till");
  const bool stated = !settings.Read(kTpv, suite::kTill, suite::kTillNumber).empty();
  if (!kept.empty() && !stated) settings.Write(kTpv, suite::kTill, suite::kTillNumber, kept);
}

// The shop that was open stays open when another one cannot be opened.
bool StartScreen::Open(const std::string& store) {
  try {
    auto shop = std::make_unique<OpenShop>(program_.ports, store, program_.in_background);
    const std::string till = shop->context().Parameter("Par_NumCaja").TextOr("");
    TellFailedCopy(true);  // of the shop before
    shop_ = std::move(shop);
    shop_->context().till_closed = [this] {
      copies_.Closed();
      panel::KeepPastMonthsBehind(shop_->context());
    };
    panel::KeepPastMonthsBehind(shop_->context());
    refused_ = {};
    Text1[1].text = till;
    // The demonstration can be made again; a server has its own copies.
    copies_.Watch(IsServerStore(store) || !shop_->banner().empty() ? "" : store);
    FillAgents();
    ShowShop();
    if (program_.opened) program_.opened(store);
    if (!shop_->archive()) KeepChoice();  // the next start is for selling again
    if (const std::string missing = MissingLogOf(shop_->connection()); !missing.empty()) {
      Tell(missing, ui::Icon::Exclamation);
    }
    return true;
  } catch (const std::exception& error) {
    refused_ = {store, ""};
    reason_ = error.what();
    return false;
  }
}

// A shop that cannot be remembered can sell.
void StartScreen::KeepChoice() {
  try {
    shops_.Choose(shop_->about());
  } catch (const FileError& error) {
    Tell(std::string("La tienda está abierta, pero no se recordará.\r\n") + error.what(), ui::Icon::Exclamation);
  }
}

// With no shop open nothing can be done but to choose one.
void StartScreen::ShowShop() {
  for (ui::Control* button : {&cmdVenta, &cmdMovimientos, &cmdCierre, &cmdDiario, &cmdDiarioCaja, &cmdFacturacion,
                              &cmdPendiente, &cmdProveedores, &cmdOficina, &cmdPanel}) {
    button->enabled = shop_ != nullptr;
  }
  if (shop_ && shop_->archive()) {
    for (ui::Control* button : {&cmdVenta, &cmdMovimientos, &cmdCierre, &cmdFacturacion}) button->enabled = false;
  }
  ShowCopies();
  front_end().SetBanner(shop_ ? shop_->banner() : "");
  if (!shop_) {
    Text1[0].text = "Ninguna abierta";
    return;
  }
  const std::string where = Shortened(shop_->store());
  Text1[0].text = shop_->about().name.empty() ? where : shop_->about().name + " — " + where;
}

// Until a shop is open, or the operator gives up. The one remembered stays so while no
// other is opened by choice.
void StartScreen::OfferShops() {
  for (bool asked = false; !shop_ || !asked; asked = true) {
    std::string store;
    if (!shop_ && !refused_.store.empty()) {
      for (const KnownShop& known : shops_.Known()) {
        if (known.store == refused_.store) refused_ = known;
      }
      ClosedShopWindow window(front_end(), program_.ports.settings, program_.ports.clock, refused_, reason_);
      front_end().ShowModal(window);
      if (window.way() == ClosedShopWindow::Way::Leave) return;
      store = window.way() == ClosedShopWindow::Way::Retry ? refused_.store : AskForShop();
    } else {
      store = AskForShop();
      if (store.empty()) return;
    }
    if (!store.empty() && !Open(store) && shop_) {
      Tell("No se puede abrir «" + Shortened(store) + "».\r\n" + reason_, ui::Icon::Critical);
    }
  }
  SetFocus(cmdVenta);
}

std::string StartScreen::AskForShop() {
  WelcomeWindow window(front_end(), shops_.Known(), shop_ != nullptr || !refused_.store.empty());
  window.create_shop = [this] { return CreateShop(front_end(), program_.ports.clock); };
  window.make_demonstration = [this] { return MakeDemonstration(program_.ports.clock); };
  front_end().ShowModal(window);
  return window.chosen();
}

void StartScreen::FillAgents() {
  std::vector<std::string> entries;
  const auto agents = shop_->connection().Execute("SELECT Age_Id, Age_Nom FROM Age ORDER BY Age_Id");
  for (; !agents->Eof(); agents->MoveNext()) {
    entries.push_back(agents->Field(0).ToText() + " - " + agents->Field(1).TextOr(""));
  }
  cboVendedor.Offer(ui::Entries(std::move(entries)));
  const std::string kept = program_.ports.settings.Read(kTpv, kSection, "Agent");
  if (kept.empty()) return;
  cboVendedor.SelectIf([&](std::string_view entry) { return entry.starts_with(kept + " - "); });
}

std::int32_t StartScreen::Agent() const {
  const std::string entry = cboVendedor.Text();
  return Int32OrZero(entry.substr(0, entry.find(' ')));
}

bool StartScreen::CheckTill() {
  if (suite::IsTillNumber(Text1[1].text)) return true;
  Refuse("El número de caja no es válido", Text1[1]);
  return false;
}

void StartScreen::Remember() {
  const auto keep = [this](std::string_view section, std::string_view key, const std::string& value) {
    if (program_.ports.settings.Read(kTpv, section, key) == value) return;
    program_.ports.settings.Write(kTpv, section, key, value);
  };
  keep(suite::kTill, suite::kTillNumber, Text1[1].text);
  keep(kSection, "Agent", std::to_string(Agent()));
}

void StartScreen::OpenOffice() {
  const office::Tools tools{.tables = &program_.tables, .labels = &program_.labels};
  Run([&] { office::OpenOffice(shop_->context(), tools); });
  if (shop_) FillAgents();  // as the office has left them
}

void StartScreen::OpenPanel() {
  Run([&] {
    FrmPanel panel(shop_->context());
    front_end().ShowModal(panel);
  });
}

void StartScreen::OpenSettings() {
  SettingsWindow window(program_.ports);
  if (shop_) window.open_drawer = [this] { shop_->component().Abre_Cajon(); };
  if (cmdCopia.enabled) window.make_copy = [this] { return copies_.MakeNow(); };
  front_end().ShowModal(window);
  if (shop_) Text1[1].text = shop_->context().Parameter("Par_NumCaja").TextOr("");
  ShowPrinter();
  ShowCopies();
}

void StartScreen::Run(const std::function<void()>& screen) {
  if (!shop_ || !CheckTill()) return;
  try {
    Remember();
    Context& context = shop_->context();
    context.Caja = Variant(Text1[1].text).ToInt16();
    context.IdAgente = Agent();
    context.IdCliente = 0;
    context.IdAlbaran = kNoSale;
    TellFailedCopy(false);
    screen();
    ShowCopies();
  } catch (const std::exception& error) {
    Tell(error.what(), ui::Icon::Critical);
  }
}

void StartScreen::TellAbout() {
  Tell("tpv " + std::string(kVersion) + "\r\nAlmacén: " + (shop_ ? Shortened(shop_->store()) : "ninguno abierto"));
}

std::vector<ui::StatusItem> StartScreen::Status() const {
  using Tone = ui::StatusItem::Tone;
  if (!shop_) return {{"Tienda", "cerrada", Tone::Missing}};
  const std::string store = !shop_->about().name.empty()   ? shop_->about().name
                            : IsServerStore(shop_->store()) ? "Servidor"
                                                            : fs::path(shop_->store()).stem().string();
  try {
    const bool known = ParseInt32(Text1[1].text).has_value();
    const bool open = known && TillIsOpen(shop_->connection(), Text1[1].text);
    std::vector<ui::StatusItem> waiting;
    AddWaiting(shop_->context().ports, waiting);
    std::vector<ui::StatusItem> items{{"Tienda", store, Tone::Neutral},
                                      {"Caja", Text1[1].text + (open ? " · abierta" : " · cerrada"),
                                       open ? Tone::Good : Tone::Missing}};
    // The narrow window names the seller below the band, too: what waits takes the room.
    if (waiting.empty()) items.push_back({"Vendedor", cboVendedor.Text(), Tone::Neutral});
    items.insert(items.end(), waiting.begin(), waiting.end());
    if (!copy_warning_.empty()) items.push_back({"Copia", copy_warning_, Tone::Missing});
    return items;
  } catch (const DatabaseError&) {
    // The line only informs; the next command reports what is wrong.
    return {{"Tienda", store + " · sin conexión", Tone::Missing}};
  }
}

}  // namespace tpv
