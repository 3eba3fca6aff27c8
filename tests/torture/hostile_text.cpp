#include "tests/torture/hostile_text.h"

#include <fstream>
#include <string_view>

#include "base/text.h"

namespace tpv::torture {

namespace {

std::string Unescaped(std::string_view line) {
  std::string text;
  for (std::size_t at = 0; at < line.size(); ++at) {
    if (line[at] != '\\' || at + 1 == line.size()) {
      text += line[at];
    } else if (line[++at] == 'x') {
      text += static_cast<char>(std::stoi(std::string(line.substr(at + 1, 2)), nullptr, 16));
      at += 2;
    } else if (line[at] == '*') {  // \*N:text repeats
      const std::size_t colon = line.find(':', at);
      const int count = std::stoi(std::string(line.substr(at + 1, colon - at - 1)));
      const std::string piece = Unescaped(line.substr(colon + 1));
      for (int i = 0; i < count; ++i) text += piece;
      return text;
    } else {
      text += line[at];
    }
  }
  return text;
}

}  // namespace

std::vector<std::string> HostileTexts() {
  std::vector<std::string> texts;
  std::ifstream file(TPV_TEST_FOLDER "/torture/hostile_text.txt");
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with("##")) continue;
    for (const std::string& text : Split(line, "¦")) texts.push_back(Unescaped(text));
  }
  return texts;
}

}  // namespace tpv::torture
