#include "office/fiscal/fiscal_settings.h"

#include "base/text.h"
#include "data/sql_text.h"
#include "platform/database.h"

namespace tpv::office {

namespace {

constexpr FormField kFields[] = {
    {.column = "Par_FisProductor", .caption = "Productor del programa", .asks = Asks::Text, .width = 100,
     .help = "Quién ha hecho el programa: va en cada registro", .frame = "Lo que dicen los registros"},
    {.column = "Par_FisProdDoc", .caption = "NIF del productor", .asks = Asks::Text, .width = 9,
     .help = "Nueve letras y cifras"},
    {.column = "Par_FisInstalacion", .caption = "Número de instalación", .asks = Asks::Text, .width = 100,
     .help = "El que distingue esta tienda de otras del mismo dueño", .beside = true},
    {.column = "Par_FisZona", .caption = "Zona horaria", .asks = Asks::Choice, .width = 20,
     .help = "La hora de los registros: la de la Península o la de Canarias"},
};

}  // namespace

FiscalSettings::FiscalSettings(Context& context, const Tools& tools)
    : FieldForm(context, "frmRegistros", kFields), tools_(tools) {
  caption = "Registros de facturación";
  cmdPruebas.click = [this] { TurnOn(fiscal::Mode::Trial); };
  cmdReal.click = [this] { TurnOn(fiscal::Mode::Real); };
  cmdApagar.click = [this] { TurnOff(); };
  AddRows({{&lblEstado}, {&lblFalta}, {&cmdPruebas, &cmdReal, &cmdApagar}});
}

void FiscalSettings::Fill() {
  Offer("Par_FisZona", ui::Entries({"madrid - Península y Baleares", "canarias - Canarias"}));
  for (const FormField& field : kFields) Show(field.column, Parameter(field.column));
  ShowState();
}

void FiscalSettings::Store() {
  std::string changes;
  for (const FormField& field : kFields) {
    if (!IsChanged(field.column)) continue;
    const std::string value = Plain(field.column);
    changes += std::string(changes.empty() ? "" : ", ") + field.column + " = " +
               (value.empty() ? "NULL" : sql::Quoted(value));
  }
  if (!changes.empty()) Database().Execute("UPDATE Parametros SET " + changes);
}

void FiscalSettings::TurnOn(fiscal::Mode mode) {
  const bool real = mode == fiscal::Mode::Real;
  const bool agreed = !real || Confirm("Desde el primer ticket, los registros irán a la Agencia Tributaria y no se podrán "
                                       "apagar. ¿Encenderlos?",
                                       ui::Icon::Exclamation, ui::Answer::No);
  if (!agreed) return;
  Change([&] {
    std::vector<std::string> of_machine;
    const std::string trouble = tools_.agency_obstacle ? tools_.agency_obstacle() : std::string();
    if (!trouble.empty()) of_machine.push_back(trouble);
    fiscal::TurnOn(fiscal::DeskOf(context()), mode, of_machine);
  });
}

void FiscalSettings::TurnOff() {
  Change([&] { fiscal::TurnOff(fiscal::DeskOf(context())); });
}

// With what the fields say stored first.
void FiscalSettings::Change(const std::function<void()>& change) {
  try {
    Store();
    Refill();
    change();
  } catch (const DatabaseError& error) {
    return Refuse(error.what(), nullptr, ui::Icon::Exclamation, "Atención");
  }
  ShowState();
}

void FiscalSettings::ShowState() {
  const fiscal::Desk desk = fiscal::DeskOf(context());
  const fiscal::Mode mode = fiscal::ModeOf(desk);
  lblEstado.caption = mode == fiscal::Mode::Real    ? "Encendidos: se envían a la Agencia Tributaria"
                      : mode == fiscal::Mode::Trial ? "Encendidos, en pruebas"
                                                    : "Apagados";
  std::vector<std::string> missing = fiscal::MissingOf(desk);
  if (tools_.agency_obstacle && !tools_.agency_obstacle().empty()) missing.push_back(tools_.agency_obstacle());
  lblFalta.caption = missing.empty() ? "No falta nada" : "Falta:";
  for (const std::string& what : missing) lblFalta.caption += std::string(kLineBreak) + what;
  cmdPruebas.enabled = mode == fiscal::Mode::Off;
  cmdReal.enabled = mode != fiscal::Mode::Real;
  cmdApagar.enabled = mode == fiscal::Mode::Trial;
}

}  // namespace tpv::office
