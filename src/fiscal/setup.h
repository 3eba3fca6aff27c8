// Whether a shop makes invoice records, for whom and as whom: parameters of the store.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "base/variant.h"
#include "fiscal/moment.h"
#include "fiscal/record.h"

namespace tpv {
class Connection;
class Digest;
struct Context;
}  // namespace tpv

namespace tpv::fiscal {

// Where records are made: a store, its parameters by name (null for one that it has not)
// and what fingerprints them (null in a build that cannot).
struct Desk {
  Connection& connection;
  std::function<Variant(std::string_view)> parameter;
  const Digest* digest = nullptr;
};
Desk DeskOf(Context& context);
// Without a till's program around the store.
Desk DeskOf(Connection& connection, const Digest* digest);

struct Setup {
  Mode mode = Mode::Off;
  Zone zone = Zone::Madrid;
  std::string issuer;       // Par_Doc
  std::string issuer_name;  // Par_Nombre
  Producer producer;
};

// One question to the store when it is off, and none that no screen asks.
Mode ModeOf(const Desk& desk);
Setup ReadSetup(const Desk& desk);

// What a shop lacks to make records, in Spanish, a line each; none when it is complete.
std::vector<std::string> MissingOf(const Desk& desk);

// A tax number of this country by its form: nine letters and digits.
bool IsTaxNumber(std::string_view text);
// A number of a document that the agency takes.
bool IsDocumentNumber(std::string_view text);

// The program's own settings, and how they are told and read: "zona" and so on.
struct SettingName {
  std::string_view word;       // on the command line
  std::string_view parameter;  // of the store
  std::string_view meaning;    // "la zona horaria: madrid o canarias"
};
const std::vector<SettingName>& SettingNames();

// In a transaction of its own. `missing` is what the machine lacks. Throws DatabaseError
// that says what is missing, or why not.
void TurnOn(const Desk& desk, Mode mode, std::vector<std::string> missing);
void TurnOff(const Desk& desk);

}  // namespace tpv::fiscal
