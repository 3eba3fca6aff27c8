#include "cash/queued_mail.h"

#include "base/date_time.h"
#include "base/text.h"
#include "context/context.h"
#include "data/sql_text.h"
#include "platform/clock.h"
#include "platform/mailer.h"

namespace tpv {

namespace {

constexpr std::size_t kErrorLength = 500;

void Release(Context& context, const std::string& id) {
  context.Database().Execute("DELETE FROM QCIERRESEnvio WHERE Qen_Id = " + id);
}

}  // namespace

bool QueuedMail::Doubtful() const { return error.find(kMayHaveArrived) != std::string::npos; }

bool QueuedMail::Says(const std::string& reason) const {
  return !reason.empty() && error.find(" - " + reason) != std::string::npos;
}

std::string MailMoment(Context& context) { return ToDayFirstSeconds(context.ports.clock.Now()); }

std::vector<QueuedMail> WaitingMails(Connection& connection) {
  std::vector<QueuedMail> letters;
  const auto rows = connection.Execute("Select * from QCIERRES where QCIERRES_Enviado is null");
  for (; !rows->Eof(); rows->MoveNext()) {
    letters.push_back({sql::Number(rows->Field("QCIERRES_id").ToInt64()),
                       {rows->Field("QCIERRES_Email").TextOr(""),
                        rows->Field("QCIERRES_Asunto").TextOr(""),
                        rows->Field("QCIERRES_Texto").TextOr("")},
                       rows->Field("QCIERRES_Error").TextOr("")});
  }
  return letters;
}

bool TakenElsewhere(Connection& connection, const std::string& id) {
  constexpr int kSendingSeconds = 300;
  const auto taken = connection.Execute(
      "SELECT Qen_Desde, getdate() AS Ahora FROM QCIERRESEnvio WHERE Qen_Id = " + id);
  return !taken->Eof() && !taken->Field(0).IsNull() &&
         AddSeconds(taken->Field(0).ToDate(), kSendingSeconds) > taken->Field(1).ToDate();
}

bool TakeMail(Context& context, const std::string& id) {
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
      sql::Quoted(Left(MailMoment(context) + " - " + error, kErrorLength)) + " where  QCIERRES_id=" + id);
}

void ForgetFailure(Context& context, const std::string& id) {
  context.Database().Execute("UPDATE QCIERRES SET QCIERRES_Error = NULL WHERE QCIERRES_id = " + id);
}

void NoteOutcome(Context& context, const std::string& id, bool sent, const std::string& error) {
  if (sent) MarkSent(context, id);
  if (!error.empty()) NoteFailure(context, id, error);
  if (!sent) Release(context, id);
}

}  // namespace tpv
