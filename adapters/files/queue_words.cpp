#include "adapters/files/queue_words.h"

namespace tpv {

namespace {

struct Meaning {
  std::string_view part;  // of what it said
  const char* words;
};

constexpr Meaning kReasons[] = {
    {"media-empty", "no tiene papel"},
    {"media-needed", "no tiene papel"},
    {"media-jam", "tiene un atasco de papel"},
    {"cover-open", "tiene la tapa abierta"},
    {"door-open", "tiene la tapa abierta"},
    {"offline", "está apagada o desconectada"},
    {"paused", "está parada"},
};
constexpr std::string_view kStopped = "5";

constexpr Meaning kRefusals[] = {
    {"not accepting", "no admite documentos"},
    {"does not exist", "ya no existe"},
    {"Unauthorized", "no deja imprimir a este usuario"},
    {"Forbidden", "no deja imprimir a este usuario"},
    {"not allowed", "no deja imprimir a este usuario"},
    {"Unsupported document", "no entiende este tipo de documento"},
    {"Quota", "no admite más documentos"},
    {"Too many", "no admite más documentos"},
    {"not responding", "no responde"},
    {"nable to connect", "no responde"},
};

template <typename Meanings>
std::string WordsFor(std::string_view said, const Meanings& meanings) {
  for (const Meaning& meaning : meanings) {
    if (said.find(meaning.part) != std::string_view::npos) return meaning.words;
  }
  return {};
}

}  // namespace

std::string TroubleIn(std::string_view state, std::string_view reasons) {
  std::string words = WordsFor(reasons, kReasons);
  return words.empty() && state == kStopped ? "está parada" : words;
}

std::string RefusalIn(const std::string& queue, std::string_view said) {
  const std::string words = WordsFor(said, kRefusals);
  return "La cola «" + queue + "» " + (words.empty() ? "no acepta el documento" : words);
}

}  // namespace tpv
