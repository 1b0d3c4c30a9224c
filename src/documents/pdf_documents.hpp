#pragma once

// PDF duplicates and merging. Both write their result beside the target first and rename it into
// place when complete: a failure leaves no target file (and an existing target untouched).
// A file that is not a sound PDF is refused with a message naming it; damaged cross-reference
// tables are not silently repaired, so that a duplicate never differs from what was sent.

#include <string>
#include <vector>

namespace fnrk::documents {

// A copy of `source` with the duplicate stamp over every page, in the session's message
// language: "DUPLICATA" (French), "DUPLICAAT" (Dutch), "DUPLICATE" (English). False with
// `errorMessage` set when the source cannot be read or the target cannot be written.
bool CreateDuplicata(const std::string& source, const std::string& target,
                     std::string& errorMessage);

// The pages of `sources`, in the order given, into one new file `target`. At least one source;
// the target may not be one of the sources.
bool MergePDFFile(const std::vector<std::string>& sources, const std::string& target,
                  std::string& errorMessage);

// The stamp word of the session's message language.
std::string DuplicateStampText();

}  // namespace fnrk::documents
