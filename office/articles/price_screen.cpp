#include "office/articles/price_screen.h"

#include <algorithm>

#include "base/mask.h"
#include "base/number_text.h"
#include "base/text.h"
#include "data/tax_kinds.h"
#include "office/articles/tax_entries.h"
#include "office/forms/counted.h"
#include "platform/database.h"

namespace tpv::office {

namespace {

constexpr double kLeastPercent = -90;
constexpr double kMostPercent = 900;
constexpr const char* kAmount = "#,##0.00";

// In the order of PriceEnd.
const ui::Entries& Ends() {
  static const ui::Entries entries({"Al céntimo", "A 5 céntimos", "A 10 céntimos", "Acabado en ,95", "Acabado en ,99"});
  return entries;
}

}  // namespace

PriceScreen::PriceScreen(Context& context) : Screen(context, "frmPrecios") {
  caption = "Cambio de precios";
  Text1.Add(kSearch, "Artículos que contengan").columns = 30;
  Text1[kSearch].stretch = true;
  ui::TextBox& percent = Text1.Add(kPercent, "% de cambio (-10, 2,5)");
  percent.columns = 8;
  percent.align = ui::Align::Right;
  for (ui::TextBox* box : {&Text1[kSearch], &percent}) box->left = [this] { ForgetPlan(); };
  cboTipo.columns = 20;
  cboFinal.columns = 18;
  cboTipo.changed = cboFinal.changed = [this] { ForgetPlan(); };
  Frame1.Rows({{&Text1[kSearch], &cboTipo}, {&percent, &cboFinal, &cmdCalcular}});
  using enum ui::Align;
  lstPrecios.layout = {{"Código", "", 1500, Left},
                       {"Artículo", "", 4500, Left},
                       {"Precio", "", 1200, Right},
                       {"Nuevo", "", 1200, Right},
                       {"Aviso", "", 2400, Left}};
  lstPrecios.check_boxes = true;
  lstPrecios.checked = [this](int row) { Tick(row); };
  cmdAplicar.emphasis = ui::Emphasis::Strong;
  cmdAplicar.enabled = false;
  cmdCalcular.click = [this] { Plan(); };
  cmdAplicar.click = [this] { Store(); };
  cmdCerrar.click = [this] { Close(); };
  rows = {{&Frame1}, {&lstPrecios}, {&lblCuenta}, {&cmdAplicar, &cmdCerrar}};
}

void PriceScreen::OnLoad() {
  Screen::OnLoad();
  cboTipo.Offer(TaxEntries(TaxKindsToday(Database()), "Todos"));
  cboFinal.Offer(Ends());
}

std::optional<PriceRule> PriceScreen::Rule() {
  const auto percent = ParseNumber(Trim(Text1[kPercent].text));
  if (!percent || *percent < kLeastPercent || *percent > kMostPercent) {
    Refuse("% de cambio: " + std::string(percent ? "" : "no es un número; ") + "se admite de " + ToSpanish(kLeastPercent) + " a " + ToSpanish(kMostPercent),
           &Text1[kPercent], ui::Icon::Exclamation, "Atención");
    return std::nullopt;
  }
  return PriceRule{Text1[kSearch].text, LeadingNumber(cboTipo.Text()), *percent, static_cast<PriceEnd>(cboFinal.index)};
}

void PriceScreen::Plan() {
  const auto rule = Rule();
  if (!rule) return;
  const ui::WaitCursor wait(*this);
  rule_ = *rule;
  plan_ = PlanPrices(*context().MyBd, rule_);
  ShowPlan();
}

void PriceScreen::ShowPlan() {
  lstPrecios.items.clear();
  lstPrecios.current_row = plan_.empty() ? -1 : 0;
  for (const PriceChange& change : plan_) {
    const bool possible = change.fault.empty();
    const std::string now = change.price == 0 ? "" : FormatNumber(change.price, kAmount);
    const bool down = rule_.percent > 0 && change.new_price < change.price;
    const bool up = rule_.percent < 0 && change.new_price > change.price;
    const char* surprise = down ? "baja por el redondeo" : up ? "sube por el redondeo" : "";
    lstPrecios.items.push_back({{change.code, change.description, now,
                                 possible ? FormatNumber(change.new_price, kAmount) : "",
                                 possible ? surprise : change.fault},
                                possible,
                                change.id});
  }
  Count();
}

// Other conditions need another plan.
void PriceScreen::ForgetPlan() {
  const bool same = Text1[kSearch].text == rule_.search &&
                    ParseNumber(Trim(Text1[kPercent].text)) == std::optional(rule_.percent) &&
                    LeadingNumber(cboTipo.Text()) == rule_.tax_kind && cboFinal.index == static_cast<int>(rule_.end);
  if (same || plan_.empty()) return;
  plan_.clear();
  ShowPlan();
}

void PriceScreen::Tick(int row) {
  const auto at = static_cast<std::size_t>(row);
  if (!plan_.at(at).fault.empty()) lstPrecios.Mark(at, false);
  Count();
}

void PriceScreen::Count() {
  const auto ticked = std::count_if(lstPrecios.items.begin(), lstPrecios.items.end(),
                                    [](const ui::ListItem& item) { return item.checked; });
  cmdAplicar.enabled = ticked > 0;
  lblCuenta.caption = plan_.empty() ? "Ningún precio cambia" : Counted(static_cast<std::size_t>(ticked), "precio cambia", "precios cambian");
}

void PriceScreen::Store() {
  std::set<std::int32_t> chosen;
  for (const ui::ListItem& item : lstPrecios.items) {
    if (item.checked) chosen.insert(item.tag);
  }
  const std::string question = "¿Desea cambiar " + Counted(chosen.size(), "precio?", "precios?");
  if (!Confirm(question, ui::Icon::Question, ui::Answer::No)) return;
  try {
    const ui::WaitCursor wait(*this);
    if (!StorePrices(*context().MyBd, rule_, plan_, chosen)) {
      Refuse("Otro puesto ha cambiado artículos mientras tanto. Se calcula otra vez: repáselo", nullptr,
             ui::Icon::Exclamation, "Atención");
      return Plan();
    }
  } catch (const DatabaseError& error) {
    return Refuse("No se ha cambiado ningún precio." + std::string(kLineBreak) + error.what(), nullptr,
                  ui::Icon::Critical);
  }
  plan_.clear();
  ShowPlan();
  lblCuenta.caption = "Cambiado: " + Counted(chosen.size(), "precio", "precios");
}

}  // namespace tpv::office
