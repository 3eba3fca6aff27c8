#include "adapters/files/system_queues.h"

#include <algorithm>
#include <map>
#include <thread>

#include "adapters/files/program.h"
#include "adapters/files/queue_words.h"
#include "base/text.h"
#include "platform/printer.h"

namespace tpv {

namespace {

constexpr std::chrono::milliseconds kPause{250};
constexpr const char* kRunning = "scheduler is running";

// Nobody answers, which may be otherwise in a moment.
class NotThere : public PrintError {
 public:
  using PrintError::PrintError;
};

[[noreturn]] void FailLate() {
  throw PrintError("El sistema de impresión no ha respondido a tiempo");
}

ProgramResult Ask(const std::vector<std::string>& words, const Deadline& deadline) {
  ProgramResult result = RunProgram(words, {}, deadline.Left());
  if (result.late) FailLate();
  return result;
}

void RequireRunning(const ProgramResult& said) {
  if (said.output.find(kRunning) != std::string::npos) return;
  throw NotThere("El sistema de impresión no está en marcha", Trim(OneLine(said.output)));
}

// Asks until the printing system is there or the time is over.
template <typename Question>
auto Await(const Deadline& deadline, Question question) {
  for (;;) {
    try {
      return question();
    } catch (const NotThere&) {
      if (deadline.Left() <= kPause) throw;
    }
    std::this_thread::sleep_for(kPause);
  }
}

// "printer-state=3 printer-info='Caja uno' …"
std::map<std::string, std::string> Attributes(const std::string& line) {
  std::map<std::string, std::string> attributes;
  for (std::size_t at = 0; at < line.size(); ++at) {
    const std::size_t name_end = std::min(line.find_first_of("= \n", at), line.size());
    std::string& value = attributes[line.substr(at, name_end - at)];
    at = name_end;
    if (at == line.size() || line[at] != '=') continue;
    const bool quoted = line.substr(at + 1, 1) == "'";
    const std::size_t start = at + (quoted ? 2 : 1);
    at = std::min(quoted ? line.find('\'', start) : line.find_first_of(" \n", start), line.size());
    value = line.substr(start, at - start);
    if (quoted) ++at;
  }
  return attributes;
}

SystemQueue AskQueue(const std::string& name, const Deadline& deadline) {
  const ProgramResult said = Ask({"lpoptions", "-p", name}, deadline);
  if (!said.found) throw PrintError("Falta el sistema de impresión de esta máquina");
  auto attributes = Attributes(said.output);
  if (attributes.count("printer-state") == 0 && attributes.count("printer-type") == 0) {
    RequireRunning(Ask({"lpstat", "-r"}, deadline));
    throw PrintError("No existe la cola «" + name + "» en el sistema de impresión",
                     Trim(OneLine(said.output)));
  }
  if (attributes["printer-is-accepting-jobs"] == "false") {
    throw PrintError("La cola «" + name + "» no admite documentos");
  }
  return {name, attributes["printer-make-and-model"].ends_with("Raw Printer"),
          TroubleIn(attributes["printer-state"], attributes["printer-state-reasons"])};
}

}  // namespace

SystemQueues AskForQueues(const Deadline& deadline) {
  SystemQueues queues;
  const ProgramResult said = Ask({"lpstat", "-r", "-d", "-e"}, deadline);
  if (!said.found) return queues;
  RequireRunning(said);
  constexpr std::string_view kUsual = "system default destination: ";
  for (const std::string& line : Split(said.output, "\n")) {
    if (line.starts_with(kUsual)) queues.usual = line.substr(kUsual.size());
    // A queue's name has no blanks, a sentence has.
    if (!line.empty() && line.find(' ') == std::string::npos) queues.names.push_back(line);
  }
  return queues;
}

SystemQueue AwaitQueue(const std::string& name, const Deadline& deadline) {
  return Await(deadline, [&] { return AskQueue(name, deadline); });
}

QueuePaper PaperOf(const SystemQueue& queue, const Deadline& deadline) {
  return ReadQueuePaper(Ask({"lpoptions", "-p", queue.name, "-l"}, deadline).output);
}

void SendToQueue(const std::string& queue, std::string_view title,
                 const std::vector<std::string>& options, std::string_view document,
                 const Deadline& deadline) {
  std::vector<std::string> words = {"lp", "-d", queue, "-t", title.empty() ? "tpv" : OneLine(title)};
  for (const std::string& option : options) words.insert(words.end(), {"-o", option});
  const ProgramResult result = RunProgram(words, document, deadline.Left());
  if (!result.found) throw PrintError("Falta el programa «lp» del sistema de impresión");
  if (result.late) {
    throw UnsurePrint("El sistema de impresión no ha respondido a tiempo; puede que el documento "
                     "salga más tarde");
  }
  if (!result.done) throw PrintError(RefusalIn(queue, result.output), Trim(OneLine(result.output)));
}

}  // namespace tpv
