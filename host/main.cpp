// tpv: the point of sale as a program of its own.
#include <algorithm>
#include <iostream>
#include <optional>
#include <string>
#include <vector>

#include "adapters/headless/scenario/script.h"
#include "context/context.h"
#include "host/archive_command.h"
#include "host/backup_commands.h"
#include "host/config.h"
#include "host/fiscal_commands.h"
#include "host/help.h"
#include "host/machine.h"
#include "host/play.h"
#include "host/start.h"
#include "host/store_commands.h"
#include "host/table_commands.h"

namespace tpv {
namespace {

constexpr const char* kHelp =
    "tpv: punto de venta rápido\n"
    "\n"
    "  tpv                               abre el punto de venta\n"
    "      --screenshot FICHERO          solo guarda una imagen de su primera ventana\n"
    "  tpv play [opciones] GUION…        reproduce guiones y muestra lo que pasa\n"
    "      --store FICHERO               almacén que usar; se crea si no existe\n"
    "      --odbc CONEXIÓN               o un almacén de un servidor\n"
    "      --empty                       un almacén nuevo sin datos (si no, los de demostración)\n"
    "      --ui headless|qt              sin ventanas (lo normal) o con ellas\n"
    "      --screen ANCHOxALTO           con ventanas y sin pantalla: el tamaño que se supone\n"
    "      --screenshots CARPETA         con ventanas: una imagen por guion, antes de su última orden\n"
    "      --paper CARPETA               guarda allí lo impreso, como texto y PDF\n"
    "      --user N                      usuario conectado (1)\n"
    "      --now \"dd/mm/aaaa hh:mm:ss\"   fija el reloj; cada orden lo adelanta un segundo\n"
    "      Las órdenes de un guion, entre ellas «sort LISTA COLUMNA» y «export LISTA FICHERO»,\n"
    "      están en docs/scenarios.md\n"
    "  tpv store create ALMACÉN [--demo|--empty|--shop FICHERO.ini]\n"
    "                                    crea un almacén, con los datos de demostración (--demo,\n"
    "                                    lo normal), vacío o el de una tienda propia: examples/shop.ini\n"
    "  tpv store copy ALMACÉN ALMACÉN    copia un almacén entero a otro sitio y lo comprueba\n"
    "  tpv store check ALMACÉN           comprueba que todo cuadra: tickets, cobros, cierres, facturas\n"
    "  tpv store release ALMACÉN [NÚMERO]\n"
    "                                    ventas que una caja dejó a medias; con NÚMERO, esa queda\n"
    "                                    como un ticket pendiente (sin líneas, se elimina)\n"
    "  tpv store mend ALMACÉN [--yes]    lista lo fechado después de hoy (una apertura de 2062) y qué\n"
    "                                    fecha le toca; con --yes la cambia\n"
    "  tpv store backup [FICHERO] [--to CARPETA] [--keep N]\n"
    "                                    copia de seguridad de un almacén, también mientras se vende;\n"
    "                                    sin más, del que recuerda la ventana de inicio y adonde\n"
    "                                    dicen los ajustes (Backup.Folder, Backup.Keep)\n"
    "  tpv store restore COPIA FICHERO   recupera una copia; lo que había se aparta con otro nombre\n"
    "  tpv store archive --before AÑO [FICHERO] [ARCHIVO] [--no-shrink]\n"
    "                                    pasa lo saldado antes de ese año a un archivo que solo se consulta,\n"
    "                                    tienda-hasta-2019.db; con todas las cajas cerradas\n"
    "  tpv store fill FICHERO [--tickets N] [--days D] [--articles A] [--seed S]\n"
    "                                    crea un almacén con años de ventas, para medir\n"
    "  tpv sql ALMACÉN \"SENTENCIA\"…      ejecuta sentencias y muestra sus filas\n"
    "  tpv import articles|customers|stock FICHERO [--store ALMACÉN|--odbc CONEXIÓN] [--dry-run|--yes]\n"
    "                                    toma artículos, clientes o existencias de un fichero CSV:\n"
    "                                    enseña qué cambiaría (--dry-run: solo eso) y pregunta (--yes: no)\n"
    "  tpv export articles|customers|stock|tickets|lines|payments|invoices|closures FICHERO\n"
    "      [--from dd/mm/aaaa] [--to dd/mm/aaaa] [--store ALMACÉN|--odbc CONEXIÓN]\n"
    "                                    escribe un fichero CSV para una hoja de cálculo\n"
    "  tpv fiscal on pruebas|real ALMACÉN\n"
    "                                    enciende los registros de facturación; si falta algo, lo dice\n"
    "      off ALMACÉN                   los apaga, mientras no haya ninguno de verdad\n"
    "      set ALMACÉN productor|productor-nif|instalacion|zona VALOR\n"
    "                                    lo que la tienda dice de su programa, y su zona: madrid o canarias\n"
    "      check ALMACÉN                 recalcula la cadena y la compara con tickets y facturas\n"
    "      export CARPETA [--from dd/mm/aaaa] [--to dd/mm/aaaa] [--store ALMACÉN|--odbc CONEXIÓN]\n"
    "                                    escribe los registros como los pide la Agencia, en ficheros XML\n"
    "      send [--store ALMACÉN|--odbc CONEXIÓN]\n"
    "                                    envía una vez los que esperan y dice qué ha pasado\n"
    "  tpv config                        ajustes: caja, impresoras, cajón y correo\n"
    "      set NOMBRE [VALOR] | get NOMBRE | unset NOMBRE\n"
    "                                    sin VALOR se lee de la entrada (la contraseña, siempre)\n"
    "      printers                      impresoras que ve la caja, la actual con *\n"
    "      try-printer [--qr] [IMPRESORA] | try-mail DIRECCIÓN\n"
    "                                    imprime (también un código QR) o envía una prueba\n"
    "  tpv help [ORDEN]                  esta ayuda, o la de una orden; también ORDEN --help\n"
    "  tpv --version                     qué versión es\n"
    "\n"
    "Un ALMACÉN es un FICHERO o --odbc CONEXIÓN: un origen de datos o una cadena de conexión\n"
    "sin contraseña, que va en TPV_ODBC_PASSWORD o en el fichero TPV_ODBC_CREDENTIALS.\n"
    "Termina con 0 si todo fue bien, 1 si algo falló, 2 si la orden o el guion no son correctos.\n";

using Arguments = std::vector<std::string>;

bool IsHelp(std::string_view word) { return word == "--help" || word == "-h" || word == "help"; }

// The order that help is asked about, "" for all of them; nullopt when none is asked.
std::optional<std::string> AsksAbout(const Arguments& arguments) {
  if (IsHelp(arguments[0])) return arguments.size() > 1 ? arguments[1] : std::string();
  const bool asked = std::find(arguments.begin() + 1, arguments.end(), "--help") != arguments.end();
  const bool shortly = arguments.size() == 2 && arguments[1] == "-h";
  return asked || shortly ? std::optional(arguments[0]) : std::nullopt;
}

int Help(const std::string& order) {
  const std::string text = order.empty() ? kHelp : HelpAbout(kHelp, order);
  if (text.empty()) throw UsageError("orden desconocida: " + order);
  std::cout << text;
  return 0;
}

int Run(const Arguments& arguments) {
  if (arguments.empty()) return Start();
  if (const auto order = AsksAbout(arguments)) return Help(*order);
  if (arguments[0] == "--screenshot" && arguments.size() == 2) return Start(arguments[1]);
  const Arguments rest(arguments.begin() + 1, arguments.end());
  if (arguments[0] == "--version" || arguments[0] == "-v") {
    std::cout << "tpv " << kVersion << "\n";
    return 0;
  }
  if (arguments[0] == "play") return Play(ReadPlayOptions(rest), std::cout);
  if (arguments[0] == "store" && !rest.empty() &&
      (rest[0] == "backup" || rest[0] == "restore" || rest[0] == "archive")) {
    const Machine machine;
    const Arguments order(rest.begin() + 1, rest.end());
    if (rest[0] == "archive") return ArchiveCommand(machine, order, std::cout);
    return rest[0] == "backup" ? BackupCommand(machine, order, std::cout)
                               : RestoreCommand(machine, order, std::cout);
  }
  if (arguments[0] == "store") return StoreCommand(rest, std::cout);
  if (arguments[0] == "sql") return SqlCommand(rest, std::cout);
  if (arguments[0] == "import" || arguments[0] == "export" || arguments[0] == "config" ||
      arguments[0] == "fiscal") {
    Machine machine;
    if (const std::string notice = machine.settings.Protect(); !notice.empty()) std::cerr << notice << "\n";
    if (arguments[0] == "import") return ImportCommand(machine, rest, std::cin, std::cout);
    if (arguments[0] == "export") return ExportCommand(machine, rest, std::cout);
    if (arguments[0] == "fiscal") return FiscalCommand(machine, rest, std::cout);
    return Config(machine, rest, std::cin, std::cout);
  }
  throw UsageError("orden desconocida: " + arguments[0]);
}

}  // namespace
}  // namespace tpv

int main(int argc, char** argv) {
  try {
    return tpv::Run(tpv::Arguments(argv + 1, argv + argc));
  } catch (const tpv::UsageError& error) {
    std::cerr << "tpv: " << error.what() << "\nPruebe tpv --help\n";
    return 2;
  } catch (const tpv::scenario::ScriptError& error) {
    std::cerr << "tpv: " << error.what() << "\n";
    return 2;
  } catch (const std::exception& error) {
    std::cerr << "tpv: " << error.what() << "\n";
    return 1;
  }
}
