#include "office/fiscal/fiscal_settings.h"

#include "base/text.h"
#include "context/errands.h"
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

FiscalSettings::FiscalSettings(Context& context) : FieldForm(context, "frmRegistros", kFields) {
  caption = "Registros de facturación";
  cmdPruebas.click = [this] { TurnOn(fiscal::Mode::Trial); };
  cmdReal.click = [this] { TurnOn(fiscal::Mode::Real); };
  cmdApagar.click = [this] { TurnOff(); };
  lblFalta.stretch = true;
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
  Change([&] { fiscal::TurnOn(fiscal::DeskOf(context()), mode, OfMachine()); });
}

std::vector<std::string> FiscalSettings::OfMachine() const {
  const Errands* const errands = context().ports.errands;
  const std::string obstacle = errands == nullptr ? std::string() : errands->SendingObstacle();
  return obstacle.empty() ? std::vector<std::string>() : std::vector<std::string>{"un certificado que sirva. " + obstacle};
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
  for (std::string& obstacle : OfMachine()) missing.push_back(std::move(obstacle));
  lblFalta.caption = missing.empty() ? "No falta nada" : "Falta:";
  for (const std::string& what : missing) lblFalta.caption += std::string(kLineBreak) + what;
  cmdPruebas.enabled = mode == fiscal::Mode::Off;
  cmdReal.enabled = mode != fiscal::Mode::Real;
  cmdApagar.enabled = mode == fiscal::Mode::Trial;
}

}  // namespace tpv::office
