#include "office/shop_ini.h"

#include <algorithm>
#include <map>

#include "base/number_text.h"
#include "base/text.h"
#include "office/ini.h"

namespace tpv::office {

namespace {

// Takes a value into the shop; the reason when it is none of its kind.
using Take = std::string (*)(ShopSetup& setup, const std::string& value);

template <auto Member>
std::string TakeText(ShopSetup& setup, const std::string& value) {
  setup.*Member = value;
  return {};
}

template <auto Member>
std::string TakeNumber(ShopSetup& setup, const std::string& value) {
  const auto number = ParseInt32(value);
  if (!number) return "se espera un número entero";
  setup.*Member = *number;
  return {};
}

template <auto Member>
std::string TakeYesOrNo(ShopSetup& setup, const std::string& value) {
  const std::string word = FoldForSearch(value);
  if (word != "si" && word != "no") return "se espera si o no";
  setup.*Member = word == "si";
  return {};
}

template <auto Member>
std::string TakeOneMore(ShopSetup& setup, const std::string& value) {
  (setup.*Member).push_back(value);
  return {};
}

std::string TakeDocuments(ShopSetup& setup, const std::string& value) {
  const auto number = ParseInt32(value);
  if (!number || *number < 0 || *number > 2) return "se espera 0 (ticket), 1 (factura) o 2 (ambos)";
  setup.documents = static_cast<Documents>(*number);
  return {};
}

std::vector<std::string> Pieces(const std::string& value, std::string_view separator) {
  std::vector<std::string> pieces = Split(value, separator);
  for (std::string& piece : pieces) piece = Trim(piece);
  return pieces;
}

// "Recibo 30/60; recibo; 30, 60"
std::string TakePaymentMethod(ShopSetup& setup, const std::string& value) {
  const std::map<std::string, PaymentNeeds> kinds = {{"contado", PaymentNeeds::Nothing},
                                                     {"recibo", PaymentNeeds::CustomerAccount},
                                                     {"transferencia", PaymentNeeds::OwnBank}};
  const auto pieces = Pieces(value, ";");
  PaymentMethod method{pieces[0]};
  if (pieces.size() > 1) {
    const auto kind = kinds.find(FoldForSearch(pieces[1]));
    if (kind == kinds.end()) return "detrás del nombre se espera contado, recibo o transferencia";
    method.needs = kind->second;
  }
  if (pieces.size() > 2) {
    method.days.clear();
    for (const std::string& day : Pieces(pieces[2], ",")) {
      const auto days = ParseInt32(day);
      if (!days) return "los días se escriben separados por comas: 30, 60";
      method.days.push_back(*days);
    }
  }
  if (pieces.size() > 3) return "se espera «nombre; clase; días»";
  setup.payment_methods.push_back(method);
  return {};
}

// "1; 21; 5,2; 01/09/2012"
std::string TakeTaxRate(ShopSetup& setup, const std::string& value) {
  const auto pieces = Pieces(value, ";");
  if (pieces.size() != 4) return "se espera «tipo; IVA; recargo; desde»: 1; 21; 5,2; 01/09/2012";
  const auto kind = ParseInt32(pieces[0]);
  const auto rate = ParseNumber(pieces[1]);
  const auto surcharge = ParseNumber(pieces[2]);
  const auto from = ParseDayFirst(pieces[3]);
  if (!kind || !rate || !surcharge) return "el tipo, el IVA y el recargo son números";
  if (!from) return "la fecha se escribe día/mes/año";
  setup.tax_rates.push_back({*kind, *rate, *surcharge, *from});
  return {};
}

const std::map<std::string, Take>& Keys() {
  using S = ShopSetup;
  static const std::map<std::string, Take> keys = {
      {"tienda.nombre", TakeText<&S::name>},
      {"tienda.nif", TakeText<&S::tax_number>},
      {"tienda.tipo_via", TakeText<&S::street_type>},
      {"tienda.via", TakeText<&S::street>},
      {"tienda.codigo_postal", TakeText<&S::post_code>},
      {"tienda.poblacion", TakeText<&S::town>},
      {"tienda.telefono", TakeText<&S::telephone>},
      {"tienda.correo_cierres", TakeText<&S::closing_mail>},
      {"tienda.recargo_equivalencia", TakeYesOrNo<&S::surcharged>},
      {"tickets.serie", TakeText<&S::ticket_series>},
      {"tickets.serie_facturas", TakeText<&S::invoice_series>},
      {"tickets.documentos", TakeDocuments},
      {"tickets.decimales_precio", TakeNumber<&S::price_decimals>},
      {"tickets.decimales_unidades", TakeNumber<&S::unit_decimals>},
      {"tickets.entrada_rapida", TakeYesOrNo<&S::quick_entry>},
      {"tickets.caja", TakeNumber<&S::till>},
      {"almacen.nombre", TakeText<&S::warehouse>},
      {"cajon.metodo", TakeNumber<&S::drawer>},
      {"cajon.codigos", TakeText<&S::drawer_codes>},
      {"clientes.contado", TakeText<&S::counter_customer>},
      {"vendedores.vendedor", TakeOneMore<&S::sellers>},
      {"formas_de_pago.forma", TakePaymentMethod},
      {"formas_de_pago.banco", TakeOneMore<&S::banks>},
      {"iva.tipo", TakeTaxRate},
  };
  return keys;
}

// Those that a file may have several of; what it says replaces what is usual.
bool IsList(const std::string& key) {
  return key == "vendedores.vendedor" || key == "formas_de_pago.forma" ||
         key == "formas_de_pago.banco" || key == "iva.tipo";
}

void EmptyList(ShopSetup& setup, const std::string& key) {
  if (key == "formas_de_pago.forma") setup.payment_methods.clear();
  if (key == "iva.tipo") setup.tax_rates.clear();
}

}  // namespace

ShopFile ReadShopFile(std::string_view text) { return ReadShop(ReadIni(text)); }

ShopFile ReadShop(const Ini& ini) {
  ShopFile file{{}, ini.refusals};
  std::map<std::string, std::vector<long>> lines;
  for (const IniEntry& entry : ini.entries) {
    const auto key = Keys().find(entry.key);
    lines[entry.key].push_back(entry.line);
    const bool first = lines[entry.key].size() == 1;
    std::string reason;
    if (key == Keys().end()) {
      reason = "clave desconocida";
    } else if (!first && !IsList(entry.key)) {
      reason = "ya estaba en la línea " + std::to_string(lines[entry.key].front());
    } else {
      if (first) EmptyList(file.setup, entry.key);
      reason = key->second(file.setup, entry.value);
    }
    if (!reason.empty()) file.refusals.push_back({entry.line, entry.key, reason});
  }
  if (file.refusals.empty()) {
    file.refusals = CheckShop(file.setup);
    for (Refusal& refusal : file.refusals) {
      const auto found = lines.find(refusal.field);
      const auto entry = static_cast<std::size_t>(std::max(refusal.line - 1, 0L));
      refusal.line = found == lines.end() ? 0 : found->second.at(entry);
    }
  }
  std::stable_sort(
      file.refusals.begin(), file.refusals.end(),
      [](const Refusal& left, const Refusal& right) { return left.line < right.line; });
  return file;
}

}  // namespace tpv::office
