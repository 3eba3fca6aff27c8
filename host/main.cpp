// tpv: the point of sale as a program of its own.
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

#include "adapters/headless/recorders.h"
#include "adapters/headless/scenario/display.h"
#include "adapters/headless/scenario/script.h"
#include "base/number_text.h"
#include "context/context.h"
#include "host/demo/demonstration.h"
#include "host/config.h"
#include "host/machine.h"
#include "host/play.h"
#include "host/start.h"
#include "host/store.h"

namespace tpv {
namespace {

constexpr const char* kHelp =
    "tpv: punto de venta rápido\n"
    "\n"
    "  tpv                               abre el punto de venta\n"
    "  tpv play [opciones] GUION…        reproduce guiones y muestra lo que pasa\n"
    "      --store FICHERO               almacén que usar; se crea si no existe\n"
    "      --empty                       un almacén nuevo sin datos (si no, los de demostración)\n"
    "      --ui headless|qt              sin ventanas (lo normal) o con ellas\n"
    "      --screenshots CARPETA         con ventanas: una imagen por guion, antes de su última orden\n"
    "      --paper CARPETA               guarda allí lo impreso, como texto y PDF\n"
    "      --user N                      usuario conectado (1)\n"
    "      --now \"dd/mm/aaaa hh:mm:ss\"   fija el reloj; cada orden lo adelanta un segundo\n"
    "  tpv store create FICHERO [--demo|--empty]\n"
    "                                    crea un almacén, con los datos de demostración (--demo,\n"
    "                                    lo normal) o vacío\n"
    "  tpv store fill FICHERO [--tickets N] [--days D] [--articles A] [--seed S]\n"
    "                                    crea un almacén con años de ventas, para medir\n"
    "  tpv sql FICHERO \"SENTENCIA\"…      ejecuta sentencias y muestra sus filas\n"
    "  tpv config                        ajustes: impresoras, cajón y correo\n"
    "      set NOMBRE [VALOR] | get NOMBRE | unset NOMBRE\n"
    "                                    sin VALOR se lee de la entrada (la contraseña, siempre)\n"
    "      printers                      impresoras que ve la caja, la actual con *\n"
    "      try-printer [IMPRESORA] | try-mail DIRECCIÓN\n"
    "                                    imprime o envía una prueba\n"
    "  tpv --version | --help\n"
    "\n"
    "Termina con 0 si todo fue bien, 1 si algo falló, 2 si la orden o el guion no son correctos.\n";

using Arguments = std::vector<std::string>;

int Fill(const Arguments& arguments) {
  LargeStore size;
  for (std::size_t i = 2; i + 1 < arguments.size(); i += 2) {
    const auto number = ParseInt32(arguments[i + 1]);
    if (!number || *number < 1) throw UsageError(arguments[i] + ": se espera un número");
    if (arguments[i] == "--tickets") {
      size.tickets = *number;
    } else if (arguments[i] == "--days") {
      size.days = *number;
    } else if (arguments[i] == "--articles") {
      size.articles = *number;
    } else if (arguments[i] == "--seed") {
      size.seed = static_cast<std::uint64_t>(*number);
    } else {
      throw UsageError("opción desconocida: " + arguments[i]);
    }
  }
  MakeLargeStore(arguments[1], size, StepClock());
  std::cout << "Almacén creado en " << arguments[1] << "\n";
  return 0;
}

int Store(const Arguments& arguments) {
  if (arguments.size() >= 2 && arguments.size() % 2 == 0 && arguments[0] == "fill") {
    return Fill(arguments);
  }
  const bool create = arguments.size() >= 2 && arguments[0] == "create";
  if (!create || arguments.size() > 3) throw UsageError("store create FICHERO [--demo|--empty]");
  const std::string contents = arguments.size() == 3 ? arguments[2] : "--demo";
  if (contents != "--demo" && contents != "--empty") throw UsageError("opción desconocida: " + contents);
  MakeStore(arguments[1], contents == "--demo" ? Contents::Demonstration : Contents::Empty,
            StepClock());
  std::cout << "Almacén creado en " << arguments[1] << "\n";
  return 0;
}

int Sql(const Arguments& arguments) {
  if (arguments.size() < 2) throw UsageError("sql FICHERO \"SENTENCIA\"…");
  const StepClock clock;
  if (!std::filesystem::exists(arguments[0])) {
    throw DatabaseError("No existe el almacén «" + arguments[0] + "»");
  }
  const auto connection = OpenStore(arguments[0], Contents::Empty, clock);
  for (std::size_t i = 1; i < arguments.size(); ++i) {
    std::cout << scenario::PlainRows(*connection->Execute(arguments[i]));
  }
  return 0;
}

int Run(const Arguments& arguments) {
  if (arguments.empty()) return Start();
  if (arguments[0] == "--help" || arguments[0] == "-h") {
    std::cout << kHelp;
    return 0;
  }
  const Arguments rest(arguments.begin() + 1, arguments.end());
  if (arguments[0] == "--version") {
    std::cout << "tpv " << kVersion << "\n";
    return 0;
  }
  if (arguments[0] == "play") return Play(ReadPlayOptions(rest), std::cout);
  if (arguments[0] == "store") return Store(rest);
  if (arguments[0] == "sql") return Sql(rest);
  if (arguments[0] == "config") {
    Machine machine;
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
