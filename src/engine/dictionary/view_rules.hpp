#pragma once

// What a dictionary view may be: a name that is a plain identifier, so that it can never be
// read as SQL, and one query statement. Checked when a view is added and again when a
// dictionary file is read, since the file may have been written by hand.

#include <string>
#include <string_view>

namespace fnrk::engine::dictionary {

// Empty when `name` is a letter or "_" followed by letters, digits and "_" (at most 128);
// otherwise what is wrong with it.
std::string ViewNameProblem(std::string_view name);

// Empty when `sql` is one SELECT (or WITH ... SELECT) statement, a final ";" allowed;
// otherwise what is wrong with it. Quoted texts, quoted names and comments are skipped.
std::string ViewStatementProblem(std::string_view sql);

}  // namespace fnrk::engine::dictionary
