#pragma once

// The rights string of a user and the menu codes it restricts.
//
// Character 1 is the user's level; "1" there makes an administrator, who may use everything.
// Every further position stands for one menu function (several codes may share one): "1" at
// that position withdraws it; any other character, or a string too short to reach the
// position, leaves it granted. Codes are compared in upper case.
//
// Besides the positions every installation knows, two were chosen here and are kept stable:
// "MNUREORGBIC" (reorganise) at 10, the free position beside reindex (8) and restore (9), and
// "MNURECIPCODA" (bank-statement reception) at 35, after the last one, so that rights strings
// written before it existed (34 characters at most) grant it.

#include <cstddef>
#include <string_view>

namespace fnrk::users {

// The position of a menu code in the rights string (counted from 1); 0 for a code that is
// never restricted ("MNUCOMPTEGEN", "MNUCOMPTECLI", "MNUCOMPTEFOU" and every unknown code).
std::size_t MenuCodePosition(std::string_view menuCode);

// The rights string makes its holder an administrator.
bool IsAdministratorRights(std::string_view rights);

// A holder of `rights` may use the menu function `menuCode`.
bool IsMenuCodeGranted(std::string_view rights, std::string_view menuCode);

// The level digit's numeric value as text ("0" when the string is empty or starts with
// something else than a digit).
std::string_view LevelOfRights(std::string_view rights);

}  // namespace fnrk::users
