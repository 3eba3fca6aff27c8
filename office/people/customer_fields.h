// What a customer's card asks, field by field.
#pragma once

#include <span>

#include "office/forms/form_field.h"

namespace tpv::office::customer {

// Columns of table Cli.
inline constexpr const char* kCode = "CLI_COD";
inline constexpr const char* kTradeName = "CLI_COMER";
inline constexpr const char* kDocument = "cli_doc";
inline constexpr const char* kRegime = "Cli_Reg";
inline constexpr const char* kMethod = "CLI_FCO";
inline constexpr const char* kSeller = "CLI_IdAge";
inline constexpr const char* kAccount = "Cli_Cta";
inline constexpr const char* kBank = "cli_ban";
// Columns of table Dir: his first address.
inline constexpr const char* kStreetType = "DIR_SG";
inline constexpr const char* kPostCode = "DIR_CP";
inline constexpr const char* kProvince = "DIR_PROVINCIA";
inline constexpr const char* kCountry = "DIR_PAIS";

std::span<const FormField> Fields();
bool IsOfAddress(const FormField& field);

}  // namespace tpv::office::customer
