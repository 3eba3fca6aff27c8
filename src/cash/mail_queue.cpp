#include "cash/mail_queue.h"

#include <memory>
#include <utility>
#include <vector>

#include "base/date_time.h"
#include "base/text.h"
#include "context/context.h"
#include "data/sql_text.h"
#include "platform/clock.h"
#include "platform/database.h"
#include "platform/ui/front_end.h"

namespace tpv {

namespace {

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
std::vector<std::pair<std::string, Letter>> Waiting(Connection& connection) {
  std::vector<std::pair<std::string, Letter>> letters;
  const auto rows = connection.Execute("Select * from QCIERRES where QCIERRES_Enviado is null");
  for (; !rows->Eof(); rows->MoveNext()) {
    letters.push_back({sql::Number(rows->Field("QCIERRES_id").ToInt64()),
                       {rows->Field("QCIERRES_Email").TextOr(""),
                        rows->Field("QCIERRES_Asunto").TextOr(""),
                        rows->Field("QCIERRES_Texto").TextOr("")}});
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

void SendQueuedMails(Context& context) {
  const auto component = MailComponent(context);
  if (!component) return;
  const DateTime until = AddSeconds(context.ports.clock.Now(), kPatienceSeconds);
  for (const auto& [id, letter] : Waiting(context.Database())) {
    if (!Take(context, id)) continue;
    std::string error;
    if (Send(context, *component, letter, error)) {
      MarkSent(context, id);
      continue;
    }
    if (!error.empty()) NoteFailure(context, id, error);
    Release(context, id);
    if (context.ports.clock.Now() > until) return;
  }
}

void SendQueuedMailsOrTell(Context& context) {
  try {
    SendQueuedMails(context);
  } catch (const std::exception& error) {
    ui::MessageBox box;
    box.text = "No se han podido enviar los correos de cierre pendientes. " +
               std::string(kLineBreak) + error.what();
    box.icon = ui::Icon::Exclamation;
    context.ports.ui.Show(box);
  }
}

void SendMailNow(Context& context, std::string_view recipient, std::string_view body,
                 std::string_view subject) {
  try {
    const auto component = MailComponent(context);
    if (!component) return;
    std::string unexamined;
    Send(context, *component, {std::string(recipient), std::string(subject), std::string(body)},
         unexamined);
  } catch (const std::exception&) {
    // Best effort: it must not hide what it was to tell.
  }
}

}  // namespace tpv
