#include "cash/mail_queue.h"

#include <functional>
#include <memory>

#include "base/date_time.h"
#include "base/text.h"
#include "cash/queued_mail.h"
#include "context/context.h"
#include "context/errands.h"
#include "platform/clock.h"
#include "platform/mailer.h"
#include "platform/ui/front_end.h"

namespace tpv {

namespace {

constexpr std::string_view kNotSent = "No se han podido enviar los correos de cierre pendientes. ";
constexpr std::string_view kNotNoted = "No se ha podido anotar qué fue de un correo de cierre. ";
constexpr int kMailPort = 25;
constexpr std::size_t kSubjectLength = 50;
// A till that starts does not wait longer than this for a dead mail server.
constexpr int kPatienceSeconds = 8;

// The suite's communications component, ready to send; null when there are no
// mail settings.
std::shared_ptr<Object> MailComponent(Context& context) {
  auto component = context.ports.objects.Create("ZRComunicaciones.ZRCOMU");
  component->Put("MyBd", Variant(std::static_pointer_cast<Object>(context.MyBd)));
  return component->Invoke("zDatosParametros").ToBool() ? component : nullptr;
}

void Address(Context& context, Object& component, const Letter& letter) {
  component.Put("zPort", Variant(kMailPort));
  component.Put("zMailTo", Variant(letter.recipient));
  component.Put("zSuject", Variant(letter.subject));
  component.Put("zNameFrom", Variant(Trim(context.Parameter("par_nombre").TextOr(""))));
  component.Put("zBody", Variant(letter.body));
}

bool Post(Object& component, std::string& error) {
  Variant reason("");
  const bool sent = component.Call("zSendMail", {&reason, 1}).ToBool();
  error = reason.TextOr("");
  return sent;
}

bool Send(Context& context, Object& component, const Letter& letter, std::string& error) {
  Address(context, component, letter);
  return Post(component, error);
}

using Stop = std::function<bool()>;

// What the operator did not wait for is told once, not at each new attempt.
// The server's own words stand beside the mail in the store, for the technician.
void TellFailure(ui::FrontEnd& front_end, const QueuedMail& mail, bool sent, const std::string& error) {
  if (error.empty() || mail.Says(error)) return;
  std::string what = "no ha salido; se intentará otra vez.";
  if (sent) what = "no ha llegado a todos sus destinatarios.";
  if (error.starts_with(kMayHaveArrived)) what = "puede haber llegado; el próximo ticket de cierre pregunta si se repite.";
  front_end.Notify({"El correo «" + mail.letter.subject + "» para " + mail.letter.recipient + " " + what, error});
}

// With the operator waiting (no `stop`), a failure that took too long ends the round.
void SendRound(Context& context, const Stop& stop) {
  const auto component = MailComponent(context);
  if (!component) return;
  const DateTime until = AddSeconds(context.ports.clock.Now(), kPatienceSeconds);
  for (const QueuedMail& mail : WaitingMails(context.Database())) {
    if (mail.Doubtful() || !TakeMail(context, mail.id)) continue;
    std::string error;
    const bool sent = Send(context, *component, mail.letter, error);
    NoteOutcome(context, mail.id, sent, error);
    if (stop) TellFailure(context.ports.ui, mail, sent, error);
    const bool enough = stop ? stop() : !sent && context.ports.clock.Now() > until;
    if (enough) return;
  }
}

Errands::Rest Outcome(const std::string& id, bool sent, const std::string& error) {
  return [=](Context& context) {
    try {
      if (error.empty()) ForgetFailure(context, id);
      NoteOutcome(context, id, sent, error);
    } catch (const std::exception& failure) {
      context.ports.ui.Notify({std::string(kNotNoted) + failure.what(), {}});
    }
  };
}

// Where only the window's thread reaches the store, the sending alone is done behind it. A
// till that ends before it notes what became of a mail leaves one that may have arrived.
void SendApart(Context& context, Errands& errands) {
  if (MailComponent(context) == nullptr) return;
  for (const QueuedMail& mail : WaitingMails(context.Database())) {
    if (mail.Doubtful() || !TakeMail(context, mail.id)) continue;
    NoteFailure(context, mail.id, std::string(kMayHaveArrived) + ": el programa terminó mientras se enviaba");
    const auto component = MailComponent(context);
    Address(context, *component, mail.letter);
    const auto send = [mail, component, &front_end = context.ports.ui] {
      std::string error;
      const bool sent = Post(*component, error);
      TellFailure(front_end, mail, sent, error);
      return Outcome(mail.id, sent, error);
    };
    errands.RunApart(send, Outcome(mail.id, false, "El programa terminó antes de enviarlo"));
  }
}

// Until somebody answers they wait.
void SettleDoubtfulMails(Context& context) {
  if (MailComponent(context) == nullptr) return;
  for (const QueuedMail& mail : WaitingMails(context.Database())) {
    if (!mail.Doubtful() || TakenElsewhere(context.Database(), mail.id)) continue;
    ui::MessageBox box;
    box.text = "El correo «" + mail.letter.subject + "» para " + mail.letter.recipient +
               " puede haber llegado ya. ¿Enviarlo otra vez? Con «No» se da por enviado";
    box.buttons = {ui::Answer::Yes, ui::Answer::No, ui::Answer::Cancel};
    box.default_button = ui::Answer::Cancel;
    box.icon = ui::Icon::Question;
    const ui::Answer answer = context.ports.ui.Show(box);
    if (answer == ui::Answer::Yes) ForgetFailure(context, mail.id);
    if (answer == ui::Answer::No) MarkSent(context, mail.id);
  }
}

// The round behind the window; false when this host has none.
bool SendBehind(Context& context) {
  Errands* const errands = context.ports.errands;
  if (errands == nullptr) return false;
  if (!errands->ReachStore()) return SendApart(context, *errands), true;
  errands->Run([](Context& own, const Stop& stop) {
    try {
      SendRound(own, stop);
    } catch (const std::exception& error) {
      own.ports.ui.Notify({std::string(kNotSent) + error.what(), {}});
    }
  });
  return true;
}

}  // namespace

void QueueClosureMail(Context& context, std::string_view text) {
  const std::string recipient = context.Parameter("par_tpvemail").TextOr("");
  if (Trim(recipient).empty()) return;
  RowBuilder& row = context.MyBd->NuevaSentencia();
  row.Tabla("QCIERRES");
  row.Add("QCIERRES_Email", ValueKind::Text, Variant(recipient));
  row.Add("QCIERRES_Asunto", ValueKind::Text,
          Variant(Left("Cierre de caja ejecutado el " + MailMoment(context), kSubjectLength)));
  row.Add("QCIERRES_Texto", ValueKind::Text, Variant(text));
  std::string unexamined;
  row.Insert(unexamined);
}

void SendQueuedMails(Context& context) { SendRound(context, {}); }

void SendQueuedMailsOrTell(Context& context, Doubtful doubtful) {
  try {
    if (doubtful == Doubtful::Ask) SettleDoubtfulMails(context);
    if (!SendBehind(context)) SendQueuedMails(context);
  } catch (const std::exception& error) {
    ui::MessageBox box;
    box.text = std::string(kNotSent) + std::string(kLineBreak) + error.what();
    box.icon = ui::Icon::Exclamation;
    context.ports.ui.Show(box);
  }
}

void SendMailNow(Context& context, std::string_view recipient, std::string_view body,
                 std::string_view subject) {
  const Letter letter{std::string(recipient), std::string(subject), std::string(body)};
  Errands* const errands = context.ports.errands;
  // Best effort: an error must not hide what the mail was to tell.
  const auto send = [letter](Context& own, const Stop&) {
    try {
      const auto component = MailComponent(own);
      std::string unexamined;
      if (component != nullptr) Send(own, *component, letter, unexamined);
    } catch (const std::exception&) {
    }
  };
  if (errands == nullptr) return send(context, {});
  if (errands->ReachStore()) return errands->Run(send);
  try {
    const auto component = MailComponent(context);
    if (component == nullptr) return;
    Address(context, *component, letter);
    errands->RunApart([component] {
      std::string unexamined;
      Post(*component, unexamined);
      return Errands::Rest();
    }, {});
  } catch (const std::exception&) {
  }
}

}  // namespace tpv
