#include "office/people/customer_price_form.h"

#include <optional>

#include "base/rounding.h"
#include "context/context.h"
#include "data/decimals.h"
#include "data/retired.h"
#include "data/sql_text.h"
#include "data/tax_kinds.h"
#include "office/fields.h"
#include "office/price.h"
#include "platform/database.h"

namespace tpv::office {

namespace {

constexpr const char* kArticle = "codigo";
constexpr const char* kWithTax = "con_iva";
constexpr const char* kDiscount = "artcli_dto1";

constexpr FormField kFields[] = {
    {.column = kArticle, .caption = "Artículo", .asks = Asks::Text, .width = 20,
     .help = "Su código, o su código de barras con el lector.", .required = true},
    {.column = kWithTax, .caption = "Precio con IVA", .asks = Asks::Amount, .width = 12,
     .help = "Lo que paga este cliente por una unidad. Vacío: el precio de la tienda.", .beside = true},
    {.column = kDiscount, .caption = "% Dto", .asks = Asks::Amount, .width = 6,
     .help = "El que llevará la línea en la venta, sobre ese precio. Vacío: ninguno.", .most = 100, .beside = true},
};

constexpr RecordTable kPrice{"artcli", "artcli_idart", "Precio propio", kFields};

std::string IdText(std::int32_t id) { return sql::Number(std::int64_t{id}); }

// None for an article whose class has no rate today.
std::optional<Tax> TaxOf(Connection& connection, std::int32_t article_id) {
  const auto kind = connection.Execute("SELECT art_tiva FROM ART WHERE art_id = " + IdText(article_id));
  const TaxKinds taxes = TaxKindsToday(connection);
  const auto tax = kind->Eof() ? taxes.end() : taxes.find(kind->Field(0).IntOr(0));
  return tax == taxes.end() ? std::nullopt : std::optional(tax->second);
}

}  // namespace

CustomerPriceForm::CustomerPriceForm(Context& context, std::int32_t customer_id, std::int32_t article_id)
    : RecordForm(context, "frmPrecioCliente", kPrice, article_id), customer_id_(customer_id) {}

std::string CustomerPriceForm::OfPair(std::int32_t article_id) const {
  return " FROM artcli WHERE artcli_idcli = " + IdText(customer_id_) + " AND artcli_idart = " + IdText(article_id);
}

CustomerPriceForm::Terms CustomerPriceForm::Read(std::int32_t article_id) {
  const auto row = Database().Execute("SELECT TOP 1 artcli_fijo, artcli_dto1, artcli_dto2" + OfPair(article_id));
  if (row->Eof()) return {};
  return {PlainValue(row->Field(0)), PlainValue(row->Field(1)), PlainValue(row->Field(2))};
}

void CustomerPriceForm::Fill() {
  if (IsNew()) return;
  const auto article = Database().Execute("SELECT ART_Cod FROM ART WHERE art_id = " + IdText(Id()));
  if (article->Eof()) throw DatabaseError("El artículo ya no existe");
  Show(kArticle, article->Field(0));
  ControlOf(kArticle).enabled = false;
  read_ = Read(Id());
  if (!read_.discount.empty()) Show(kDiscount, Variant(NumberOf(read_.discount)));
  const auto tax = TaxOf(Database(), Id());
  if (read_.fixed.empty() || !tax) return;
  Show(kWithTax, Variant(PriceWithTax(RoundHalfAway(NumberOf(read_.fixed), PriceDecimals(context())), *tax)));
}

void CustomerPriceForm::Check() {
  if (Plain(kWithTax).empty() && Plain(kDiscount).empty()) {
    throw FieldFault(kWithTax, "falta: escriba un precio, un descuento o los dos");
  }
  for (const char* field : {kWithTax, kDiscount}) {
    if (RoundHalfAway(Amount(field), 2) != Amount(field)) throw FieldFault(field, "se admiten dos decimales");
  }
}

std::int32_t CustomerPriceForm::TypedArticle() {
  if (!IsNew()) return Id();
  const std::string code = sql::Quoted(Plain(kArticle));
  const auto row =
      Database().Execute("SELECT TOP 1 art_id FROM ART WHERE ART_Cod = " + code + " OR ART_BARCODE = " + code);
  if (row->Eof()) throw FieldFault(kArticle, "no es el código de ningún artículo");
  const std::int32_t id = row->Field(0).ToInt32();
  if (IsRetired(Database(), "ART", id)) throw FieldFault(kArticle, "ese artículo está retirado");
  if (!Database().Execute("SELECT TOP 1 artcli_idart" + OfPair(id))->Eof()) {
    throw FieldFault(kArticle, "ya tiene precio para este cliente: cámbielo en la lista");
  }
  return id;
}

// The net price that rings what was typed; what was not typed stays to its last decimal.
std::string CustomerPriceForm::TypedNet(std::int32_t article_id) {
  if (!IsNew() && !IsChanged(kWithTax)) return read_.fixed;
  if (Plain(kWithTax).empty()) return {};
  const auto tax = TaxOf(Database(), article_id);
  if (!tax) throw FieldFault(kArticle, "no tiene un tipo de IVA vigente");
  const int decimals = PriceDecimals(context());
  const auto net = NetThatRings(Amount(kWithTax), *tax, decimals);
  if (net) return PlainValue(Variant(*net));
  throw FieldFault(kWithTax, "con " + std::to_string(decimals) +
                                 " decimales de precio no se puede cobrar exactamente; hacen falta " +
                                 std::to_string(kNewShopPriceDecimals) + " (parámetros)");
}

void CustomerPriceForm::Store() {
  Transaction transaction(Database());
  const std::int32_t article = TypedArticle();
  if (Read(article) != read_) {
    throw FieldFault("", "Otro puesto ha cambiado estos datos mientras tanto. Salga y vuelva a abrirlos");
  }
  const auto literal = [](const std::string& plain) { return office::Literal(plain, FieldKind::Number); };
  const std::string values =
      literal(Plain(kDiscount)) + ", " + literal(read_.second_discount) + ", " + literal(TypedNet(article));
  Database().Execute("DELETE" + OfPair(article));
  Database().Execute("INSERT INTO artcli (artcli_idart, artcli_idcli, artcli_dto1, artcli_dto2, artcli_fijo) VALUES (" +
                     IdText(article) + ", " + IdText(customer_id_) + ", " + values + ")");
  transaction.Commit();
}

}  // namespace tpv::office
