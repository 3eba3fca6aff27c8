#include "host/start_screen.h"

#include <filesystem>

#include "adapters/files/private_files.h"
#include "adapters/files/setting_names.h"
#include "base/number_text.h"
#include "base/text.h"
#include "data/till_state.h"
#include "host/chosen_store.h"
#include "host/machine.h"
#include "host/store.h"
#include "host/store_errands.h"
#include "office/menu_screen.h"
#include "screen/unsent_item.h"
#include "suite/store_database.h"
#include "suite/till_settings.h"

namespace tpv {

namespace {

constexpr std::int32_t kUser = 1;
constexpr std::int32_t kNoSale = -1;
// Where the choices are kept from one start to the next.
constexpr const char* kApplication = "TPV";
constexpr const char* kSection = "Start";
// A path as the operator reads it, the home folder as "~".
std::string Shortened(const std::string& path) {
  const std::string home = ExpandHome("~/");
  return path.starts_with(home) ? "~/" + path.substr(home.size()) : path;
}

}  // namespace

std::string UsualStore() { return DataFolder() + "/demo/tienda.db"; }

StartScreen::StartScreen(Machine& machine, ui::FrontEnd& front_end, Sound& sound)
    : Form("frmInicio"),
      machine_(machine),
      front_end_(front_end),
      ports_(machine.PortsFor(front_end, objects_, sound)),
      copies_(machine.settings, machine.clock) {
  tools.tables = machine.tables.get();
  objects_.SetPorts(ports_);
  caption = "Punto de venta";
  DeclareLayout();
  Text1[0].left = [this] { OpenTyped(); };
  cmdAlmacen.click = [this] { ChooseStore(); };
  cmdAyuda.click = [this] { front_end_.ShowManual(""); };
  cmdAcercaDe.click = [this] { TellAbout(); };
  cmdCopia.click = [this] { MakeCopy(); };
  cmdSalir.click = [this] { Leave(); };
  cmdOficina.click = [this] { OpenOffice(); };
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
    button->click = [this, screen = screen] { Run([&] { (component_.get()->*screen)(); }); };
  }
}

StartScreen::~StartScreen() = default;

void StartScreen::DeclareLayout() {
  Text1.Add(0, "Almacén de la tienda").columns = 48;
  Text1[0].stretch = true;
  ui::TextBox& till = Text1.Add(1, "Caja");
  till.columns = 6;
  till.max_length = 5;
  till.input = ui::Input::Number;
  till.align = ui::Align::Right;
  cboVendedor.columns = 28;
  cmdVenta.emphasis = ui::Emphasis::Strong;
  Frame1.Rows({{&Text1[0], &cmdAlmacen}, {&Text1[1], &cboVendedor}});
  Frame2.Rows({{&cmdVenta},
               {&cmdMovimientos, &cmdCierre},
               {&cmdDiario, &cmdDiarioCaja},
               {&cmdFacturacion, &cmdPendiente},
               {&cmdProveedores, &cmdOficina},
               {&cmdCopia},
               {&cmdAyuda, &cmdAcercaDe},
               {&cmdSalir}});
  for (const auto& row : Frame2.rows) {
    for (ui::Control* button : row) button->stretch = true;
  }
  rows = {{&Frame1}, {&Frame2}, {&lblImpresora}, {&lblCopia}};
}

void StartScreen::OnLoad() {
  ProtectSettings();
  InheritTill();
  const std::string kept = machine_.settings.Read(kApplication, kSection, "Store");
  const bool usable = !kept.empty() && (IsServerStore(kept) || std::filesystem::exists(kept));
  const bool open = Open(usable ? kept : UsualStore());
  // A till of a server that does not answer must not sell on another store.
  if (!open && usable && !IsServerStore(kept)) Open(UsualStore());
  ShowPrinter();
  SetFocus(cmdVenta);
}

void StartScreen::ProtectSettings() {
  try {
    const std::string notice = machine_.settings.Protect();
    if (!notice.empty()) Tell(notice, ui::Icon::Exclamation);
  } catch (const FileError& error) {
    Tell(error.what(), ui::Icon::Exclamation);
  }
}

// Without a printer the operator wants to know where the tickets go.
void StartScreen::ShowPrinter() {
  try {
    const std::string printer = machine_.printers.Current();
    lblImpresora.caption =
        printer.empty() ? "Impresora: el sistema de impresión no responde"
        : printer == kFolderPrinter
            ? "Los tickets se guardan en " + Shortened(PaperFolder(machine_.settings, kTicketFolder))
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
    Tell(text, ui::Icon::Information);
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

void StartScreen::OnKeyUp(ui::Key key) {
  if (key == ui::Key::Esc) Leave();
  if (key == ui::Key::F1) front_end_.ShowManual("");
  if (key == ui::Key::Enter) tab_sent = true;
}

void StartScreen::ChooseStore() {
  const std::string path = choose_file ? choose_file(opened_) : std::string();
  if (!path.empty()) Open(path);
}

// A store is made only where a usual one is missing, never from a typing slip.
void StartScreen::OpenTyped() {
  const std::string path = ExpandHome(Trim(Text1[0].text));
  if (path == opened_) return;
  if (IsServerStore(path) || std::filesystem::exists(path) || path == UsualStore()) {
    Open(path);
  } else {
    Tell("No existe el almacén «" + path + "»", ui::Icon::Exclamation);
    Text1[0].text = Shortened(opened_);
  }
}

std::unique_ptr<Connection> StartScreen::Connect(const std::string& path) {
  if (IsServerStore(path)) return OpenChosenStore(path, machine_.clock);
  if (path == UsualStore()) MakePrivateFolder(DataFolder() + "/demo");
  return OpenStore(path, Contents::Demonstration, machine_.clock);
}

// The window's own till of versions that had no setting for the machine.
void StartScreen::InheritTill() {
  FileSettings& settings = machine_.settings;
  const std::string kept = settings.Read(kApplication, kSection, "Till");
  const bool stated = !settings.Read(kApplication, suite::kTill, suite::kTillNumber).empty();
  if (!kept.empty() && !stated) settings.Write(kApplication, suite::kTill, suite::kTillNumber, kept);
}

bool StartScreen::Open(const std::string& path) {
  try {
    auto connection = Connect(path);
    auto database =
        std::make_shared<suite::StoreDatabase>(*connection, kUser, front_end_, machine_.clock,
                                               machine_.settings);
    const std::string till = database->Parametro("Par_NumCaja").TextOr("");
    auto component = std::make_unique<Zrtpve>(ports_);
    component->context().MyBd = std::move(database);
    component_ = std::move(component);  // the old one lets its connection go first
    errands_ = std::make_unique<StoreErrands>(ports_, kUser, [this, path] { return Connect(path); });
    ports_.errands = errands_.get();
    connection_ = std::move(connection);
    opened_ = path;
    Text1[0].text = Shortened(path);
    Text1[1].text = till;
    FillAgents();
    // The demonstration can be made again; a server has its own copies.
    copies_.Watch(IsServerStore(path) || path == UsualStore() ? "" : path);
    ShowCopies();
    if (const std::string missing = MissingLogOf(*connection_); !missing.empty()) Tell(missing, ui::Icon::Exclamation);
    return true;
  } catch (const std::exception& error) {
    Text1[0].text = opened_.empty() && IsServerStore(path) ? path : Shortened(opened_);
    Tell("No se puede abrir el almacén «" + path + "».\r\n" + error.what(), ui::Icon::Critical);
    return false;
  }
}

void StartScreen::FillAgents() {
  std::vector<std::string> entries;
  const auto agents = connection_->Execute("SELECT Age_Id, Age_Nom FROM Age ORDER BY Age_Id");
  for (; !agents->Eof(); agents->MoveNext()) {
    entries.push_back(agents->Field(0).ToText() + " - " + agents->Field(1).TextOr(""));
  }
  cboVendedor.Offer(ui::Entries(std::move(entries)));
  const std::string kept = machine_.settings.Read(kApplication, kSection, "Agent");
  if (kept.empty()) return;
  cboVendedor.SelectIf([&](std::string_view entry) { return entry.starts_with(kept + " - "); });
}

std::int32_t StartScreen::Agent() const {
  const std::string entry = cboVendedor.Text();
  return Int32OrZero(entry.substr(0, entry.find(' ')));
}

bool StartScreen::CheckTill() {
  if (suite::IsTillNumber(Text1[1].text)) return true;
  Tell("El número de caja no es válido", ui::Icon::Exclamation);
  SetFocus(Text1[1]);
  return false;
}

void StartScreen::Remember() {
  const auto keep = [this](std::string_view section, std::string_view key, const std::string& value) {
    if (machine_.settings.Read(kApplication, section, key) == value) return;
    machine_.settings.Write(kApplication, section, key, value);
  };
  keep(suite::kTill, suite::kTillNumber, Text1[1].text);
  keep(kSection, "Store", opened_);
  keep(kSection, "Agent", std::to_string(Agent()));
}

void StartScreen::OpenOffice() {
  Run([this] { office::OpenOffice(component_->context(), tools); });
  if (connection_) FillAgents();  // as the office has left them
}

void StartScreen::Run(const std::function<void()>& screen) {
  const bool again = !component_ && IsServerStore(Text1[0].text);
  if (again && !Open(Text1[0].text)) return;
  if (!component_ || !CheckTill()) return;
  try {
    Remember();
    Context& context = component_->context();
    context.Caja = Variant(Text1[1].text).ToInt16();
    context.IdAgente = Agent();
    context.IdCliente = 0;
    context.IdAlbaran = kNoSale;
    TellFailedCopy(false);
    copies_.Begin(*connection_, context.Caja);
    screen();
    copies_.End(*connection_);
    ShowCopies();
  } catch (const std::exception& error) {
    Tell(error.what(), ui::Icon::Critical);
  }
}

void StartScreen::TellAbout() {
  Tell("tpv " + std::string(kVersion) + "\r\nAlmacén: " +
           (opened_.empty() ? "ninguno abierto" : Shortened(opened_)),
       ui::Icon::Information);
}

std::vector<ui::StatusItem> StartScreen::Status() const {
  using Tone = ui::StatusItem::Tone;
  if (!connection_) return {};
  const std::string store =
      IsServerStore(opened_) ? "Servidor" : std::filesystem::path(opened_).stem().string();
  try {
    const bool known = ParseInt32(Text1[1].text).has_value();
    const bool open = known && TillIsOpen(*connection_, Text1[1].text);
    std::vector<ui::StatusItem> items{{"Tienda", store, Tone::Neutral},
                                      {"Caja", Text1[1].text + (open ? " · abierta" : " · cerrada"),
                                       open ? Tone::Good : Tone::Missing},
                                      {"Vendedor", cboVendedor.Text(), Tone::Neutral}};
    AddUnsentRecords(ports_, items);
    if (!copy_warning_.empty()) items.push_back({"Copia", copy_warning_, Tone::Missing});
    return items;
  } catch (const DatabaseError&) {
    // The line only informs; the next command reports what is wrong.
    return {{"Tienda", store + " · sin conexión", Tone::Missing}};
  }
}

void StartScreen::Tell(const std::string& text, ui::Icon icon) {
  ui::MessageBox box;
  box.text = text;
  box.icon = icon;
  box.title = "Punto de venta";
  front_end_.Show(box);
}

}  // namespace tpv
