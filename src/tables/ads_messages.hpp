#pragma once

// The table layer's numbered message catalogue (codes 10 to 400, each in French, Dutch and
// English) and the message boxes built from it and from engine failures.

#include <cstdint>
#include <string>
#include <string_view>

#include "engine/errors.hpp"
#include "session/session_user.hpp"

namespace fnrk::tables {

// The catalogue text of `code` in `language`; empty for a code the catalogue does not hold.
std::string CatalogueText(std::int32_t code, session::MessageLanguage language);
// The same in the process's message language.
std::string CatalogueText(std::int32_t code);
// The one of three texts that `language` reads.
const char* InLanguage(session::MessageLanguage language, const char* french, const char* dutch,
                       const char* english);

// The lines that describe an engine failure: "Code error ADS: " + status, "Description error: "
// + text and, when a file is named, "File: " + file, separated by line breaks.
std::string EngineFailureText(engine::Status status, std::string_view description,
                              std::string_view file);

// Shows `text` as an error box titled "Fennrick error".
void ShowErrorBox(const std::string& text);

}  // namespace fnrk::tables
