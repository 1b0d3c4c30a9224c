#pragma once

// The combined login and password text of an external login of type "FENNRICKID":
//
//     Login=<login>,Pwd=<password>
//
// Inside the login and the password, "\" , "," and "=" are written "\\", "\," and "\=", so any
// value (commas, equal signs, backslashes included) comes back exactly. Reading is forgiving
// about what the writer never produces: "Login" and "Pwd" in any case, and the password running
// to the end of the text even where a "," or "=" there is not escaped. The login ends at the
// first unescaped ",". Other types hold a plain value: it passes unchanged.

#include <string>
#include <string_view>

namespace fnrk::users {

inline constexpr std::string_view kFennrickIdType = "FENNRICKID";

// The text stored for `type`: the combined text for "FENNRICKID" (type compared trimmed, any
// case), else `login` unchanged.
std::string GetPasswordInString(std::string_view type, std::string_view login,
                                std::string_view password);

// Reads a stored text back. For "FENNRICKID": false, with both outputs empty, when the text
// is not a combined text. For other types: the text is the login, the password is empty.
bool ReadPasswordInString(std::string_view type, std::string_view text, std::string& login,
                          std::string& password);

}  // namespace fnrk::users
