#include "adapters/fiscal/answer_reader.h"

#include "adapters/fiscal/xml_document.h"
#include "base/number_text.h"
#include "base/text.h"

namespace tpv::fiscal {

namespace {

Verdict VerdictOf(const std::string& state) {
  if (state == "Correcto" || state == "Correcta" || state == "Anulada") return Verdict::Accepted;
  if (state == "AceptadoConErrores" || state == "AceptadaConErrores") return Verdict::AcceptedWithErrors;
  if (state == "Incorrecto") return Verdict::Rejected;
  throw NoAnswer("La respuesta tiene un estado desconocido: «" + OneLine(state) + "»");
}

int CodeBelow(xmlNode* node) { return Int32OrZero(TextOf(Below(node, "CodigoErrorRegistro"))); }

AnswerLine LineOf(xmlNode* node) {
  xmlNode* const invoice = Below(node, "IDFactura");
  AnswerLine line;
  line.number = TextOf(Below(invoice, "NumSerieFactura"));
  line.date = TextOf(Below(invoice, "FechaExpedicionFactura"));
  line.cancellation = TextOf(Below(Below(node, "Operacion"), "TipoOperacion")) == "Anulacion";
  line.verdict = VerdictOf(TextOf(Below(node, "EstadoRegistro")));
  line.code = CodeBelow(node);
  line.text = OneLine(TextOf(Below(node, "DescripcionErrorRegistro")));
  xmlNode* const held = Below(node, "RegistroDuplicado");
  if (held == nullptr) return line;
  const std::string state = TextOf(Below(held, "EstadoRegistroDuplicado"));
  line.duplicate = true;
  line.verdict = VerdictOf(state);
  line.text += (line.text.empty() ? "" : " ") + ("(la Agencia lo tiene: " + state + ")");
  const std::string about_held = OneLine(TextOf(Below(held, "DescripcionErrorRegistro")));
  if (!about_held.empty()) line.text += " " + about_held;
  return line;
}

}  // namespace

Answer ReadAnswer(std::string_view soap) {
  const XmlDocument document(soap);
  if (xmlNode* const fault = document.Find("Fault")) {
    const std::string text = OneLine(TextOf(Below(fault, "faultstring")));
    throw MessageRefused(text.empty() ? "sin decir por qué" : text);
  }
  xmlNode* const body = document.Find("RespuestaRegFactuSistemaFacturacion");
  if (body == nullptr) throw NoAnswer("La respuesta no es la de la Agencia Tributaria");
  Answer answer;
  answer.receipt = TextOf(Below(body, "CSV"));
  if (const auto wait = ParseInt32(TextOf(Below(body, "TiempoEsperaEnvio")))) answer.wait_seconds = *wait;
  for (xmlNode* const line : AllBelow(body, "RespuestaLinea")) answer.lines.push_back(LineOf(line));
  return answer;
}

}  // namespace tpv::fiscal
