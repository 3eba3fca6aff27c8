#include "suite/customer_form.h"

#include "base/number_text.h"
#include "base/text.h"
#include "context/context.h"
#include "data/sql_text.h"
#include "platform/database.h"

namespace tpv::suite {

namespace {

constexpr ChoiceList kStreetTypes{"SELECT TVI_COD,TVI_NOM FROM zrcomun.dbo.TVI", "TVI_COD", "TVI_NOM"};
constexpr ChoiceList kProvinces{"SELECT PROV_COD,PROV_NOM FROM zrcomun.dbo.PROV", "PROV_COD", "PROV_NOM"};

// Another till may give the same code while this one is being written down.
class CodeTaken : public std::exception {};

}  // namespace

CustomerForm::CustomerForm(Context& ctx) : Screen(ctx, "frmNuevoCliente") {
  caption = "Nuevo cliente";
  struct Declared {
    Field index;
    const char* caption;
    int most;
    ui::Input input;
  };
  const Declared fields[] = {
      {kCode, "Código", 6, ui::Input::Number},       {kName, "Nombre o razón social", 50, ui::Input::Any},
      {kSurname1, "Primer apellido", 50, ui::Input::Any},
      {kSurname2, "Segundo apellido", 50, ui::Input::Any},
      {kDocument, "Documento", 20, ui::Input::Any},  {kStreet, "Nombre de la vía", 50, ui::Input::Any},
      {kNumber, "Número", 3, ui::Input::Number},     {kPostCode, "C.P.", 5, ui::Input::Number},
      {kTown, "Población", 50, ui::Input::Any},
  };
  for (const Declared& field : fields) {
    ui::TextBox& box = Text1.Add(field.index, field.caption);
    box.max_length = field.most;
    box.columns = field.most;
    box.input = field.input;
  }
  Frame1.Rows({{&Text1[kCode], &Text1[kName]},
               {&Text1[kSurname1], &Text1[kSurname2], &Text1[kDocument]}});
  Frame2.Rows({{&cboTipoVia, &Text1[kStreet], &Text1[kNumber]},
               {&Text1[kPostCode], &Text1[kTown], &cboProvincias}});
  rows = {{&Frame1}, {&Frame2}, {&cmdAceptar, &cmdCancelar}};
  cmdAceptar.emphasis = ui::Emphasis::Strong;
  cmdAceptar.click = [this] { Accept(); };
  cmdCancelar.click = [this] { Close(); };
}

void CustomerForm::OnLoad() {
  Screen::OnLoad();
  const auto last = Database().Execute("SELECT MAX(CLI_COD) FROM Cli");
  Text1[kCode].text = std::to_string(last->Field(0).IntOr(0) + 1);
  cboTipoVia.Offer(context().choices.Entries(Database(), kStreetTypes));
  cboProvincias.Offer(context().choices.Entries(Database(), kProvinces));
}

bool CustomerForm::Check() {
  const auto refuse = [this](const char* text, Field field) {
    Refuse(text, &Text1[field], ui::Icon::Exclamation, "Atención");
    return false;
  };
  const auto code = ParseInt32(Text1[kCode].text);
  if (!code || *code <= 0) return refuse("No ha indicado el código del cliente", kCode);
  if (Trim(Text1[kName].text).empty()) return refuse("No ha indicado el nombre del cliente", kName);
  if (!Text1[kNumber].text.empty() && !ParseInt32(Text1[kNumber].text)) {
    return refuse("El número de la calle no es correcto", kNumber);
  }
  return true;
}

void CustomerForm::RequireFreeCode() {
  const auto taken = Database().Execute("SELECT TOP 1 CLI_ID FROM Cli WHERE CLI_COD = " +
                                        sql::WholeNumber(Text1[kCode].text));
  if (!taken->Eof()) throw CodeTaken();
}

void CustomerForm::Accept() {
  if (!Check()) return;
  try {
    Store();
    Close();
  } catch (const CodeTaken&) {
    Refuse("Ya existe un cliente con ese código", &Text1[kCode], ui::Icon::Exclamation, "Atención");
  } catch (const DatabaseError& error) {
    Refuse("No se ha podido grabar el cliente. " + std::string(kLineBreak) + error.what(), nullptr,
           ui::Icon::Critical);
  }
}

void CustomerForm::Store() {
  Transaction transaction(Database());
  RequireFreeCode();
  RowBuilder& customer = context().MyBd->NuevaSentencia();
  customer.Tabla("Cli");
  customer.BeginTrans(false);
  const auto text = [](RowBuilder& row, const char* column, const std::string& value) {
    row.Add(column, ValueKind::Text, Variant(value));
  };
  customer.Add("CLI_COD", ValueKind::Whole, Variant(Text1[kCode].text));
  text(customer, "CLI_NOM", Text1[kName].text);
  text(customer, "CLI_APE1", Text1[kSurname1].text);
  text(customer, "CLI_APE2", Text1[kSurname2].text);
  text(customer, "CLI_COMER", Text1[kName].text);
  text(customer, "cli_doc", Text1[kDocument].text);
  customer.Add("CLI_FCO", ValueKind::Whole, Variant(1));
  customer.Add("Cli_Reg", ValueKind::Whole, Variant(1));
  const std::int32_t customer_id = Insert(customer, "SELECT MAX(CLI_ID) FROM Cli");

  RowBuilder& address = context().MyBd->NuevaSentencia();
  address.Tabla("Dir");
  address.BeginTrans(false);
  text(address, "DIR_SG", Left(cboTipoVia.Text(), 2));
  text(address, "DIR_NOMBRE", Text1[kStreet].text);
  address.Add("DIR_NUMERO", ValueKind::Whole, Variant(Int32OrZero(Text1[kNumber].text)));
  text(address, "DIR_CP", Text1[kPostCode].text);
  text(address, "DIR_PROVINCIA", Left(cboProvincias.Text(), 2));
  text(address, "DIR_POBLACION", Text1[kTown].text);
  const std::int32_t address_id = Insert(address, "SELECT MAX(DIR_ID) FROM Dir");

  Database().Execute("INSERT INTO CliDir (CLIDIR_CLI, CLIDIR_DIR) VALUES (" +
                     std::to_string(customer_id) + ", " + std::to_string(address_id) + ")");
  transaction.Commit();
  stored_id_ = customer_id;
  stored_ = Int32OrZero(Text1[kCode].text);
}

std::int32_t CustomerForm::Insert(RowBuilder& row, const char* last_id) {
  std::string error;
  if (!row.Insert(error)) throw DatabaseError(error);
  return Database().Execute(last_id)->Field(0).ToInt32();
}

}  // namespace tpv::suite
