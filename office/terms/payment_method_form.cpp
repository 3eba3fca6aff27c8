#include "office/terms/payment_method_form.h"

#include <cmath>

#include "data/insert_row.h"
#include "office/shop_setup.h"

namespace tpv::office {

namespace {

struct PartFields {
  const char* days;
  const char* days_caption;
  const char* share;
  const char* share_caption;
};

constexpr PartFields kParts[] = {
    {"dias1", "1.º, días", "parte1", "1.º, %"}, {"dias2", "2.º, días", "parte2", "2.º, %"},
    {"dias3", "3.º, días", "parte3", "3.º, %"}, {"dias4", "4.º, días", "parte4", "4.º, %"},
    {"dias5", "5.º, días", "parte5", "5.º, %"}, {"dias6", "6.º, días", "parte6", "6.º, %"},
};
constexpr const char* kNeeds = "pide";
constexpr int kMostMethods = 99;  // the sale's list shows two digits

constexpr FormField Days(std::size_t part) {
  return {.column = kParts[part].days, .caption = kParts[part].days_caption, .asks = Asks::Whole, .width = 4,
          .help = "Días desde la factura hasta que vence; 0 es al contado. Vacío: no hay más vencimientos.",
          .most = 3650, .beside = part % 3 != 0, .frame = part == 0 ? "Vencimientos" : nullptr};
}

constexpr FormField Share(std::size_t part) {
  return {.column = kParts[part].share, .caption = kParts[part].share_caption, .asks = Asks::Amount, .width = 6,
          .help = "Qué parte del total vence ese día. Vacíos todos: partes iguales.", .most = 100, .beside = true};
}

constexpr FormField kFields[] = {
    {.column = "Fco_Des", .caption = "Nombre", .asks = Asks::Text, .width = 50,
     .help = "Como se elige en la venta y al cobrar.", .required = true, .unique = true, .frame = "Forma de pago"},
    {.column = kNeeds, .caption = "Para facturar pide", .asks = Asks::Choice, .width = 40,
     .help = "Lo que ha de estar en la ficha del cliente para hacerle una factura con ella.", .required = true},
    Days(0), Share(0), Days(1), Share(1), Days(2), Share(2),
    Days(3), Share(3), Days(4), Share(4), Days(5), Share(5),
};

constexpr RecordTable kMethod{"Fco", "Fco_Id", "Forma de pago", kFields};

}  // namespace

PaymentMethodForm::PaymentMethodForm(Context& context, std::int32_t id)
    : RecordForm(context, "frmFormaPago", kMethod, id) {}

PaymentMethodForm::Terms PaymentMethodForm::Read() {
  const auto needs =
      Database().Execute("SELECT MAX(Fcol_Mod) FROM Fcol WHERE Fcol_id = " + sql::Number(std::int64_t{Id()}));
  return {needs->Field(0).IntOr(static_cast<int>(PaymentNeeds::Nothing)), ReadDueParts(Database(), Id())};
}

void PaymentMethodForm::Fill() {
  Offer(kNeeds, ui::Entries({"1 - Nada", "2 - La cuenta del cliente (recibos)",
                             "4 - Un banco de la tienda (transferencias)"}));
  RecordForm::Fill();
  if (IsNew()) return;
  read_ = Read();
  Show(kNeeds, Variant(read_.needs));
  const bool even = AreEven(read_.parts);
  for (std::size_t i = 0; i < std::size(kParts); ++i) {
    const bool there = i < read_.parts.size();
    Show(kParts[i].days, there ? Variant(read_.parts[i].days) : Variant());
    Show(kParts[i].share, there && !even ? Variant(read_.parts[i].share) : Variant());
  }
  shown_ = Typed();
}

void PaymentMethodForm::FillNew() {
  Show(kNeeds, Variant(static_cast<int>(PaymentNeeds::Nothing)));
  Show(kParts[0].days, Variant(0));
}

PaymentMethodForm::Terms PaymentMethodForm::Typed() const {
  Terms terms{Whole(kNeeds), {}};
  for (const PartFields& part : kParts) {
    if (!Plain(part.days).empty()) terms.parts.push_back({Whole(part.days), Amount(part.share)});
  }
  return terms;
}

void PaymentMethodForm::Check() {
  CheckDays();
  CheckShares();
}

void PaymentMethodForm::CheckDays() const {
  if (read_.parts.size() > std::size(kParts)) {
    throw FieldFault("", "Tiene más vencimientos de los que caben aquí: no se puede cambiar en esta ventana");
  }
  const PartFields* before = nullptr;
  for (const PartFields& part : kParts) {
    if (Plain(part.days).empty()) {
      if (!Plain(part.share).empty()) throw FieldFault(part.days, "falta: ese tanto por ciento no tiene sus días");
      continue;
    }
    if (before != nullptr && Whole(part.days) <= Whole(before->days)) {
      throw FieldFault(part.days, "cada vencimiento es posterior al de antes");
    }
    before = &part;
  }
  if (before == nullptr) throw FieldFault(kParts[0].days, "falta: escriba 0 si se paga al contado");
}

void PaymentMethodForm::CheckShares() const {
  constexpr double kTolerance = 0.02;  // of thirds
  double sum = 0;
  const PartFields* with = nullptr;
  const PartFields* without = nullptr;
  for (const PartFields& part : kParts) {
    if (Plain(part.days).empty()) continue;
    (Amount(part.share) > 0 ? with : without) = &part;
    sum += Amount(part.share);
  }
  if (with == nullptr) return;
  if (without != nullptr) throw FieldFault(without->share, "falta: los demás lo tienen; se admite más de 0, hasta 100");
  if (std::abs(sum - 100) > kTolerance) throw FieldFault(with->share, "entre todos tienen que sumar 100");
}

void PaymentMethodForm::StoreOwn() {
  if (Id() > kMostMethods) throw FieldFault("", "No caben más de 99 formas de pago");
  if (read_.needs != 0 && Read() != read_) {
    throw FieldFault("", "Otro puesto ha cambiado estos datos mientras tanto. Salga y vuelva a abrirlos");
  }
  const Terms terms = Typed();
  if (terms == shown_) return;
  Database().Execute("DELETE FROM Fcol WHERE Fcol_id = " + sql::Number(std::int64_t{Id()}));
  sql::InsertRow(Database(), "Fcol", "Fcol_id, Fcol_Mod", {Id(), terms.needs});
  StoreDueParts(Database(), Id(), terms.needs, terms.parts);
}

}  // namespace tpv::office
