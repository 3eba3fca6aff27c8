#include "sale/checkout_dialog.h"

#include "base/mask.h"
#include "base/number_text.h"
#include "base/rounding.h"
#include "base/text.h"
#include "data/retired.h"

namespace tpv {

using ui::Answer;
using ui::Icon;

void FrmTpv1::OnF1(std::string_view tag) {
  if (tag != "Clientes") return ShowManual();
  pending_message = "e";
  msBuscarClientes(-1, 0);
}

void FrmTpv1::OnF5() {
  Text1[0].text = Text1[8].text;
  Text1[6].text = Text1[7].text = FormatNumber(0, "0.00");
  SetFocus(cmdTicket);
}

Payment FrmTpv1::ReadPayment() const {
  return {total_, NumberOrZero(Text1[6].text), NumberOrZero(Text1[0].text),
          NumberOrZero(Text1[7].text)};
}

void FrmTpv1::OnKeyUp(ui::Key key) {
  Screen::OnKeyUp(key);
  if (focus == &Text1[6] || focus == &Text1[0]) FollowChange();
}

// The change while the amount is being typed; what is no number yet changes nothing.
void FrmTpv1::FollowChange() {
  const std::string amounts = Text1[6].text + "/" + Text1[0].text;
  if (amounts == followed_) return;
  for (const int index : {6, 0}) {
    if (!Text1[index].text.empty() && !ParseNumber(Text1[index].text)) return;
  }
  followed_ = amounts;
  Text1[7].text = FormatNumber(ReadPayment().DueChange(), "#,##0.00");
}

void FrmTpv1::LeaveAmount(ui::TextBox& box) {
  if (!box.text.empty()) box.text = toolkit().FormatearImporte(box.text);
  Text1[7].text = FormatNumber(ReadPayment().DueChange(), "#,##0.00");
}

bool FrmTpv1::CheckFields() {
  const auto refuse = [this](const char* text, ui::TextBox& box) {
    Refuse(text, &box);
    return false;
  };
  for (const int index : {6, 0, 7}) {
    const std::string& text = Text1[index].text;
    if (!text.empty() && !ParseNumber(text)) return refuse("El importe no es correcto", Text1[index]);
  }
  if (!ReadPayment().ChangeIsRight()) {
    return refuse("La devolución no corresponde al importe cobrado", Text1[7]);
  }
  if (customer_id_ == 0) return refuse("Codigo de cliente no existe", Text1[2]);
  const bool another = customer_id_ != context().IdCliente;
  if (another && IsRetired(context(), "Cli", customer_id_)) return refuse("El cliente está retirado", Text1[2]);
  if (!Text1[4].text.empty() && !ParseInt32(Text1[4].text)) {
    return refuse("El número de la calle no es correcto", Text1[4]);
  }
  return true;
}

bool FrmTpv1::CheckPayment() {
  on_credit_ = false;
  if (Text1[6].text.empty() && Text1[0].text.empty()) {
    Refuse("No ha indicado el importe cobrado", nullptr);
    FocusPayment();
    return false;
  }
  if (!CheckFields()) return false;
  if (ReadPayment().CoversTotal() || AcceptShortfall()) return true;
  FocusPayment();
  return false;
}

bool FrmTpv1::AcceptShortfall() {
  pending_message = "e";
  const std::string question = "El cobro es inferior al total de la venta. " +
                               std::string(kLineBreak) + "Confirma el importe cobrado";
  if (!Confirm(question, Icon::Question, Answer::No)) return false;
  const Answer discount =
      Ask("Es un descuento al cliente?", Icon::Question, Answer::No, true);
  if (discount != Answer::No) return discount == Answer::Yes;
  if (Ask("Es una venta a credito", Icon::Question, Answer::No, true) != Answer::Yes) return false;
  if (Int32OrZero(Text1[2].text) == Parameter("Par_CliCon").IntOr(0)) {
    Refuse("No se aceptan ventas a credito para el cliente contado", nullptr);
    return false;
  }
  on_credit_ = true;
  return true;
}

void FrmTpv1::FocusPayment() {
  if (!Text1[6].text.empty()) {
    SetFocus(Text1[6]);
  } else if (!Text1[0].text.empty()) {
    SetFocus(Text1[0]);
  }
}

bool FrmTpv1::ConfirmChange(double limit) {
  if (RoundHalfAway(ReadPayment().change, 2) <= limit) return true;
  pending_message = "e";
  if (Confirm("Confirma el importe de la devolución", Icon::Critical)) return true;
  SetFocus(Text1[6]);
  return false;
}

}  // namespace tpv
