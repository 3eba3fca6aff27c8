#include "cash/mail_queue.h"

#include <functional>
#include <memory>
#include <vector>

#include "base/date_time.h"
#include "base/text.h"
#include "context/context.h"
#include "context/errands.h"
#include "data/sql_text.h"
#include "platform/clock.h"
#include "platform/database.h"
#include "platform/mailer.h"
#include "platform/ui/front_end.h"

namespace tpv {

namespace {

constexpr std::string_view kNotSent = "No se han podido enviar los correos de cierre pendientes. ";
constexpr int kMailPort = 25;
constexpr std::size_t kSubjectLength = 50;
constexpr std::size_t kErrorLength = 500;
// A till that starts does not wait longer than this for a dead mail server.
constexpr int kPatienceSeconds = 8;

struct Letter {
  std::string recipient;
  std::string subject;
  std::string body;
};

struct Waiting {
  std::string id;
  Letter letter;
  bool doubtful = false;  // may have arrived: nobody sends it again without being told to
};

// The suite's communications component, ready to send; null when there are no
// mail settings.
std::shared_ptr<Object> MailComponent(Context& context) {
  auto component = context.ports.objects.Create("ZRComunicaciones.ZRCOMU");
  component->Put("MyBd", Variant(std::static_pointer_cast<Object>(context.MyBd)));
  return component->Invoke("zDatosParametros").ToBool() ? component : nullptr;
}

bool Send(Context& context, Object& component, const Letter& letter, std::string& error) {
  component.Put("zPort", Variant(kMailPort));
  component.Put("zMailTo", Variant(letter.recipient));
  component.Put("zSuject", Variant(letter.subject));
  component.Put("zNameFrom", Variant(Trim(context.Parameter("par_nombre").TextOr(""))));
  component.Put("zBody", Variant(letter.body));
  Variant reason("");
  const bool sent = component.Call("zSendMail", {&reason, 1}).ToBool();
  error = reason.TextOr("");
  return sent;
}

std::string Now(Context& context) { return ToDayFirstSeconds(context.ports.clock.Now()); }

// By id, read whole: taking one ends what a rollback ends.
std::vector<Waiting> WaitingMails(Connection& connection) {
  std::vector<Waiting> letters;
  const auto rows = connection.Execute("Select * from QCIERRES where QCIERRES_Enviado is null");
  for (; !rows->Eof(); rows->MoveNext()) {
    const std::string error = rows->Field("QCIERRES_Error").TextOr("");
    letters.push_back({sql::Number(rows->Field("QCIERRES_id").ToInt64()),
                       {rows->Field("QCIERRES_Email").TextOr(""),
                        rows->Field("QCIERRES_Asunto").TextOr(""),
                        rows->Field("QCIERRES_Texto").TextOr("")},
                       error.find(kMayHaveArrived) != std::string::npos});
  }
  return letters;
}

void Release(Context& context, const std::string& id) {
  context.Database().Execute("DELETE FROM QCIERRESEnvio WHERE Qen_Id = " + id);
}

// Whether some till took the mail a short while ago. One that died with it leaves it
// to the others after that.
bool TakenElsewhere(Connection& connection, const std::string& id) {
  constexpr int kSendingSeconds = 300;
  const auto taken = connection.Execute(
      "SELECT Qen_Desde, getdate() AS Ahora FROM QCIERRESEnvio WHERE Qen_Id = " + id);
  return !taken->Eof() && !taken->Field(0).IsNull() &&
         AddSeconds(taken->Field(0).ToDate(), kSendingSeconds) > taken->Field(1).ToDate();
}

// The mail is this till's to send; false when it is gone out or another till has it.
bool Take(Context& context, const std::string& id) {
  Connection& connection = context.Database();
  Transaction transaction(connection);
  const bool waiting = !connection
                            .Execute("SELECT QCIERRES_id FROM QCIERRES WHERE QCIERRES_Enviado IS NULL "
                                     "AND QCIERRES_id = " + id)
                            ->Eof();
  if (!waiting || TakenElsewhere(connection, id)) return false;
  Release(context, id);  // of a till that died
  connection.Execute("INSERT INTO QCIERRESEnvio (Qen_Id) VALUES (" + id + ")");
  transaction.Commit();
  return true;
}

void MarkSent(Context& context, const std::string& id) {
  Transaction transaction(context.Database());
  context.Database().Execute(
      "Update QCIERRES Set QCIERRES_Enviado=getdate() where  QCIERRES_id=" + id);
  Release(context, id);
  transaction.Commit();
}

void NoteFailure(Context& context, const std::string& id, const std::string& error) {
  context.Database().Execute(
      "Update QCIERRES Set QCIERRES_Error=" +
      sql::Quoted(Left(Now(context) + " - " + error, kErrorLength)) + " where  QCIERRES_id=" + id);
}

void ForgetFailure(Context& context, const std::string& id) {
  context.Database().Execute("UPDATE QCIERRES SET QCIERRES_Error = NULL WHERE QCIERRES_id = " + id);
}

using Stop = std::function<bool()>;

// With the operator waiting (no `stop`), a failure that took too long ends the round.
void SendRound(Context& context, const Stop& stop) {
  const auto component = MailComponent(context);
  if (!component) return;
  const DateTime until = AddSeconds(context.ports.clock.Now(), kPatienceSeconds);
  for (const auto& [id, letter, doubtful] : WaitingMails(context.Database())) {
    if (doubtful || !Take(context, id)) continue;
    std::string error;
    const bool sent = Send(context, *component, letter, error);
    if (sent) MarkSent(context, id);
    if (!error.empty()) NoteFailure(context, id, error);
    if (!sent) Release(context, id);
    const bool enough = stop ? stop() : !sent && context.ports.clock.Now() > until;
    if (enough) return;
  }
}

// Until somebody answers they wait.
void SettleDoubtfulMails(Context& context) {
  if (MailComponent(context) == nullptr) return;
  for (const auto& [id, letter, doubtful] : WaitingMails(context.Database())) {
    if (!doubtful) continue;
    ui::MessageBox box;
    box.text = "El correo «" + letter.subject + "» para " + letter.recipient +
               " puede haber llegado ya. ¿Enviarlo otra vez? Con «No» se da por enviado";
    box.buttons = {ui::Answer::Yes, ui::Answer::No, ui::Answer::Cancel};
    box.default_button = ui::Answer::Cancel;
    box.icon = ui::Icon::Question;
    const ui::Answer answer = context.ports.ui.Show(box);
    if (answer == ui::Answer::Yes) ForgetFailure(context, id);
    if (answer == ui::Answer::No) MarkSent(context, id);
  }
}

// The round behind the window; false when this host has none.
bool SendBehind(Context& context) {
  if (context.ports.errands == nullptr) return false;
  context.ports.errands->Run([](Context& own, const Stop& stop) {
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
          Variant(Left("Cierre de caja ejecutado el " + Now(context), kSubjectLength)));
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
  const auto send = [letter](Context& own, const Stop&) {
    try {
      const auto component = MailComponent(own);
      std::string unexamined;
      if (component != nullptr) Send(own, *component, letter, unexamined);
    } catch (const std::exception&) {
      // Best effort: it must not hide what it was to tell.
    }
  };
  if (context.ports.errands != nullptr) return context.ports.errands->Run(send);
  send(context, {});
}

}  // namespace tpv
