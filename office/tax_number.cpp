#include "office/tax_number.h"

#include <algorithm>

#include "base/text.h"

namespace tpv::office {

namespace {

bool IsOneOf(char c, std::string_view letters) { return letters.find(c) != std::string_view::npos; }

char PersonLetter(std::string_view digits) {
  int number = 0;
  for (const char c : digits) number = number * 10 + (c - '0');
  return "TRWAGMYFPDXBNJZSQVHLCKE"[number % 23];
}

bool IsPerson(const std::string& number) {
  std::string digits = number.substr(0, 8);
  constexpr std::string_view kForeigners = "XYZ";
  if (IsOneOf(digits[0], kForeigners)) {
    digits[0] = static_cast<char>('0' + kForeigners.find(digits[0]));
  } else if (IsOneOf(digits[0], "KLM")) {
    digits.erase(0, 1);
  }
  return std::all_of(digits.begin(), digits.end(), IsDigit) && number[8] == PersonLetter(digits);
}

bool IsCompany(const std::string& number) {
  if (!IsOneOf(number[0], "ABCDEFGHJNPQRSUVW")) return false;
  int sum = 0;
  for (std::size_t i = 1; i <= 7; ++i) {
    if (!IsDigit(number[i])) return false;
    const int digit = number[i] - '0';
    sum += i % 2 == 0 ? digit : digit * 2 / 10 + digit * 2 % 10;
  }
  const int control = (10 - sum % 10) % 10;
  const bool as_digit = number[8] == '0' + control;
  const bool as_letter = number[8] == "JABCDEFGHI"[control];
  if (IsOneOf(number[0], "ABEH")) return as_digit;
  if (IsOneOf(number[0], "NPQRSW")) return as_letter;
  return as_digit || as_letter;
}

}  // namespace

std::optional<std::string> TaxNumber(std::string_view text) {
  std::string number;
  for (const char c : text) {
    if (!IsOneOf(c, " .-")) number += c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
  }
  if (number.size() != 9 || !(IsPerson(number) || IsCompany(number))) return std::nullopt;
  return number;
}

std::string TaxNumberFault(std::string_view text) {
  if (Trim(text).empty()) return "falta";
  if (TaxNumber(text)) return {};
  return "no es un NIF (12345678Z), un NIE (X1234567L) ni un CIF (A12345674): la letra o la cifra de control no corresponde";
}

}  // namespace tpv::office
