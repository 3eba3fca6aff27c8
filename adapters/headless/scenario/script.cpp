#include "adapters/headless/scenario/script.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <istream>
#include <limits>
#include <map>

#include "base/text.h"

namespace tpv::scenario {

namespace {

constexpr std::size_t kAny = std::numeric_limits<std::size_t>::max();

struct Shape {
  std::size_t least;
  std::size_t most;
};

const std::map<std::string, Shape, std::less<>>& Commands() {
  static const std::map<std::string, Shape, std::less<>> commands = {
      {"set", {2, 2}},       {"call", {1, kAny}},    {"param", {2, 2}},       {"sql", {1, kAny}},
      {"focus", {1, 1}},     {"type", {1, kAny}},    {"clear", {0, 0}},       {"key", {1, 1}},
      {"enter", {2, kAny}},  {"click", {1, 1}},      {"select", {2, kAny}},   {"tick", {2, 2}},
      {"untick", {2, 2}},    {"cellbutton", {3, 3}}, {"menu", {1, 2}},        {"answer", {1, 2}},
      {"pick", {1, 1}},      {"find", {1, kAny}},    {"close", {0, 0}},       {"show", {1, 1}},
      {"expect", {2, kAny}}, {"forget", {0, 0}},     {"printers", {0, kAny}}, {"setting", {1, 1}},
      {"mail", {1, 1}},      {"include", {1, 1}},    {"fails", {1, kAny}},    {"fail", {1, 2}},
      {"sort", {2, 2}},       {"export", {2, 2}},    {"listmenu", {1, 1}},
      {"config", {2, 2}},    {"office", {0, 0}},  {"other", {1, kAny}},   {"scan", {1, 1}},        {"kill", {0, 0}},
      {"giveup", {1, 1}},
      {"start", {0, 0}},     {"file", {2, 2}},
  };
  return commands;
}

const std::map<std::string, Shape, std::less<>>& Expectations() {
  static const std::map<std::string, Shape, std::less<>> expectations = {
      {"enabled", {2, 2}}, {"visible", {2, 2}},  {"focus", {1, 1}},     {"rows", {2, 2}},
      {"cell", {4, 4}},    {"property", {2, 2}}, {"screen", {1, 1}},    {"sql", {2, kAny}},
      {"labels", {1, 1}},  {"value", {3, 3}},
      {"call", {2, kAny}}, {"printed", {1, 1}},  {"documents", {1, 1}}, {"device", {2, 2}},
      {"raw", {1, 1}},     {"mails", {1, 1}},    {"mail", {1, 1}},      {"setting", {1, 1}},
      {"printer", {1, 1}}, {"sent", {1, 1}},     {"sound", {1, 1}},     {"title", {1, 1}},
      {"current", {2, 2}}, {"band", {2, 2}},     {"matches", {1, 1}},   {"match", {2, 2}},
      {"progress", {1, 1}}, {"notice", {1, 1}},
      {"exported", {1, 1}}, {"report", {1, 1}},
  };
  return expectations;
}

// Where only certain words can stand: by verb (and what is expected), the word's place.
struct Choice {
  std::string_view verb;
  std::string_view expected;
  std::size_t argument;
  std::vector<std::string_view> words;
};

const std::vector<Choice>& Choices() {
  static const std::vector<Choice> choices = {
      {"key", "", 0, {"Enter", "Tab", "Esc", "F1", "F4", "F5", "F8", "Add", "Subtract", "Up", "Down", "Delete"}},
      {"answer", "", 0, {"OK", "Yes", "No", "Cancel", "Default"}},
      {"mail", "", 0, {"on", "off"}},
      {"fail", "", 0, {"printer", "late", "mail", "device", "sql", "nothing"}},
      {"expect", "enabled", 2, {"True", "False"}},
      {"expect", "visible", 2, {"True", "False"}},
      {"expect", "sound", 1, {"error", "none"}},
  };
  return choices;
}

void RequireKnownWords(const Command& command) {
  for (const Choice& choice : Choices()) {
    if (choice.verb != command.Verb()) continue;
    if (!choice.expected.empty() && choice.expected != command.Argument(0)) continue;
    const std::string& word = command.Argument(choice.argument);
    if (std::find(choice.words.begin(), choice.words.end(), word) == choice.words.end()) {
      command.Fail("palabra desconocida «" + word + "»");
    }
  }
}

void RequireCount(const Command& command, const Shape& shape, std::size_t count) {
  if (count < shape.least || count > shape.most) command.Fail("número de palabras incorrecto");
}

void Check(const Command& command) {
  const auto shape = Commands().find(command.Verb());
  if (shape == Commands().end()) command.Fail("orden desconocida «" + command.Verb() + "»");
  RequireCount(command, shape->second, command.Count());
  if (command.Verb() == "fails") Check(command.Inner(0));
  if (command.Verb() == "expect") {
    const auto expectation = Expectations().find(command.Argument(0));
    const bool known = expectation != Expectations().end();
    RequireCount(command, known ? expectation->second : Shape{1, 1}, command.Count() - 1);
  }
  RequireKnownWords(command);
}

bool IsSqlVerb(std::string_view verb) { return verb == "sql" || verb == "other"; }

std::string QuotedWord(std::string_view text, std::size_t& at) {
  std::string word;
  for (++at; at < text.size() && text[at] != '"'; ++at) {
    if (text[at] != '\\' || at + 1 >= text.size()) {
      word += text[at];
      continue;
    }
    ++at;
    if (text[at] == 'n') {
      word += kLineBreak;
    } else {
      if (text[at] != '"' && text[at] != '\\') word += '\\';
      word += text[at];
    }
  }
  if (at >= text.size()) throw ScriptError("comillas sin cerrar");
  ++at;
  return word;
}

void ReadInto(std::istream& text, const std::filesystem::path& path, int depth,
              std::vector<Command>& commands);

void ReadFileInto(const std::filesystem::path& path, int depth, std::vector<Command>& commands) {
  constexpr int kDeepest = 20;
  std::ifstream file(path);
  if (!file || std::filesystem::is_directory(path)) {
    throw ScriptError("No se puede leer «" + path.string() + "»");
  }
  if (depth > kDeepest) throw ScriptError("«" + path.string() + "» se incluye a sí mismo");
  ReadInto(file, path, depth, commands);
}

void ReadInto(std::istream& text, const std::filesystem::path& path, int depth,
              std::vector<Command>& commands) {
  std::string line;
  for (int number = 1; std::getline(text, line); ++number) {
    const std::size_t start = line.find_first_not_of(" \t\r");
    if (start == std::string::npos || line[start] == '#') continue;
    Command command = ReadCommand(line, path.string(), number);
    Check(command);
    if (command.Verb() == "include") {
      const auto included = path.parent_path() / command.Argument(0);
      if (!std::filesystem::is_regular_file(included)) command.Fail("no se puede leer");
      ReadFileInto(included, depth + 1, commands);
    } else {
      commands.push_back(std::move(command));
    }
  }
}

}  // namespace

const std::string& Command::Argument(std::size_t index) const { return words.at(index + 1).text; }

std::string Command::Rest(std::size_t argument) const {
  return argument + 1 < words.size() ? text.substr(words[argument + 1].begin) : std::string();
}

std::string Command::TextFrom(std::size_t argument) const {
  return Count() == argument + 1 ? Argument(argument) : Rest(argument);
}

Command Command::Inner(std::size_t argument) const { return ReadCommand(Rest(argument), file, line); }

void Command::Fail(const std::string& what) const {
  throw ScriptError(file + ":" + std::to_string(line) + ": " + what + ": " + text);
}

Command ReadCommand(std::string_view line, const std::string& file, int number) {
  const std::size_t start = line.find_first_not_of(" \t\r");
  const std::size_t end = line.find_last_not_of(" \t\r");
  Command command{file, number, std::string(line.substr(start, end + 1 - start)), {}};
  const std::string_view text = command.text;
  for (std::size_t at = 0; at < text.size();) {
    if (text[at] == ' ' || text[at] == '\t') {
      ++at;
      continue;
    }
    Word word{"", at};
    // SQL behind its verb is taken as written, quotes and all.
    const bool raw = !command.words.empty() && IsSqlVerb(command.words[0].text);
    if (text[at] == '"' && !raw) {
      try {
        word.text = QuotedWord(text, at);
      } catch (const ScriptError& error) {
        command.Fail(error.what());
      }
    } else {
      while (at < text.size() && text[at] != ' ' && text[at] != '\t') word.text += text[at++];
    }
    command.words.push_back(std::move(word));
  }
  return command;
}

std::vector<Command> ReadScript(const std::string& path) {
  std::vector<Command> commands;
  ReadFileInto(path, 0, commands);
  return commands;
}

std::vector<Command> ReadScript(std::istream& text, const std::string& name) {
  std::vector<Command> commands;
  ReadInto(text, name, 0, commands);
  return commands;
}

}  // namespace tpv::scenario
