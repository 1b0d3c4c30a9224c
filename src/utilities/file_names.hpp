#pragma once

// Folder and file-name helpers the applications call before writing documents.

#include <string>
#include <string_view>

namespace fnrk::utilities {

// A reminder letter's file name made of a customer's name or reference: every character that a
// Windows file name cannot hold (\ / : * ? " < > | and control characters) becomes "_", and
// trailing blanks and dots, which Windows drops, are removed. The rest, accents included, is kept.
std::string ReplaceCharactersReminderFileName(std::string_view name);

// Makes sure the folder exists, creating missing parents; true when it exists afterwards.
// Windows-form paths go through the drive map. A file in the way gives false.
bool CreateFolderRecursive(std::string_view path);

// Dots per inch of the screen the forms are drawn on; 96, the Windows default, where there is no
// screen (a service, a terminal).
int getScreenDPI();

}  // namespace fnrk::utilities
