// A scenario's text as commands.
#pragma once

#include <iosfwd>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace tpv::scenario {

// The script itself is wrong: an unknown command, a missing word, a bad number.
class ScriptError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

struct Word {
  std::string text;
  std::size_t begin = 0;  // where it starts in the line
};

struct Command {
  std::string file;
  int line = 0;
  std::string text;  // the whole line, blanks at the ends aside
  std::vector<Word> words;

  const std::string& Verb() const { return words.front().text; }
  const std::string& Argument(std::size_t index) const;  // 0 is the first behind the verb
  std::size_t Count() const { return words.size() - 1; }
  // The line as written from an argument on.
  std::string Rest(std::size_t argument) const;
  // The last argument as a text: one word, quoted or not, or several as written.
  std::string TextFrom(std::size_t argument) const;
  // The command that the arguments from here on make.
  Command Inner(std::size_t argument) const;
  [[noreturn]] void Fail(const std::string& what) const;
};

Command ReadCommand(std::string_view line, const std::string& file, int number);

// Reads a file and what it includes. Every command is known and has its words.
std::vector<Command> ReadScript(const std::string& path);
// The same of a text; what it includes is named from the current folder.
std::vector<Command> ReadScript(std::istream& text, const std::string& name);

}  // namespace tpv::scenario
