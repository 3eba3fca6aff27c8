// A free server that speaks the shop's dialect over PostgreSQL (Babelfish), and what it
// takes otherwise than the server that it stands for. For the adapter's own files.
#pragma once

#include <string>
#include <string_view>

namespace tpv::odbc {

std::string AskVersion();
// Whether that answer is the open server's.
bool IsOpenServer(std::string_view version);

// It does not read a number that touches the next word ("1ORDER BY"): a blank comes in
// between, and never into a text, a name in brackets or a comment.
std::string WithBlanksBehindNumbers(std::string_view sql);

// The engine's own state ("40P01") in an error number that is no message's; "" otherwise.
std::string EngineState(int native);

}  // namespace tpv::odbc
