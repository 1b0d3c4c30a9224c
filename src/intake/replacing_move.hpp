#pragma once

// Moving a file over another without ever losing either.

#include <string_view>

namespace fnrk::intake {

// Moves `source` to `target` (native paths), replacing a file already at `target`; the target's
// folder must exist. The old target is first set aside under a temporary name and only removed
// once the move succeeded; when the move fails it is put back and `source` stays where it was.
// Across file systems the file is copied, then removed from its place. False when it failed.
bool ReplacingMove(std::string_view source, std::string_view target);

}  // namespace fnrk::intake
