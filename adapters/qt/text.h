// Texts and places in them between the model (UTF-8, counted in characters) and
// Qt (UTF-16).
#pragma once

#include <QString>
#include <cstddef>
#include <string>
#include <string_view>

namespace tpv::qt {

inline QString Text(std::string_view utf8) {
  return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}
inline std::string Utf8(const QString& text) { return text.toStdString(); }

// A position in UTF-16 units as a count of characters, and back.
inline std::size_t Characters(const QString& text, qsizetype units) {
  return static_cast<std::size_t>(text.left(units).toUcs4().size());
}
inline int Units(const QString& text, std::size_t characters) {
  int units = 0;
  for (; characters > 0 && units < text.size(); --characters) {
    units += text.at(units).isHighSurrogate() ? 2 : 1;
  }
  return units;
}

}  // namespace tpv::qt
