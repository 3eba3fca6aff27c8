#include "suite/communications.h"

#include "platform/mailer.h"

namespace tpv::suite {

Communications::Communications(Ports& ports) : LateBound("ZRComunicaciones.ZRCOMU"), ports_(ports) {
  Properties(Kind::Object, {"MyBd"});
  Properties(Kind::Whole, {"zPort"});
  Properties(Kind::Text, {"zMailTo", "zSuject", "zNameFrom", "zBody"});
  Define("zDatosParametros", 0, 0, [this](auto) { return Variant(ports_.mailer.Configured()); });
  Define("zSendMail", 1, 1, [this](std::span<Variant> arguments) { return Send(arguments[0]); });
}

Variant Communications::Send(Variant& error) {
  const MailResult result = ports_.mailer.Send(
      {Whole("zPort"), Text("zMailTo"), Text("zNameFrom"), Text("zSuject"), Text("zBody")});
  error = Variant(result.text);
  return Variant(result.sent);
}

}  // namespace tpv::suite
