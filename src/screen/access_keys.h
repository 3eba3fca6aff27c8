// A letter to press with Alt for everything that can be clicked or typed into, also
// where a caption marks none.
#pragma once

#include <string>
#include <string_view>

#include "platform/ui/form.h"

namespace tpv::ui {

// Gives each control without a mark in its caption the first letter of it that no
// other control of the form has; buttons choose before fields. Fields that come too late
// share a letter with other fields, or get a sign that stands behind their captions.
void GiveAccessKeys(Form& form);

// The folded letter that the caption itself marks; 0 for none.
char32_t MarkedLetter(std::string_view caption);

// The caption with its letter marked by "&", behind it in brackets where it has none.
std::string MarkedCaption(const Control& control);

}  // namespace tpv::ui
