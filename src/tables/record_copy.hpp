#pragma once

// Copies records between two open tables that different implementations hold (the engine's
// files, a SQL backend), field by field through the operation set: the fields of the target
// that the source has under the same name and type get its values.

#include "engine/operations.hpp"

namespace fnrk::tables {

// Appends every record visible in `source` (its filter respected, from the top) to `target`.
engine::Status CopyRecordsAcross(engine::Operations& from, engine::Handle source,
                                 engine::Operations& to, engine::Handle target);

}  // namespace fnrk::tables
