#pragma once

// The operation set of the table engine. The embedded engine (Engine) and the SQL backend
// (FRCDatabase) both offer it, with the same names, arguments and statuses, so that the dispatch
// layer can send any call to either. The operations themselves are listed once, in
// engine/operations.def.
//
// The error contract, for every layer from here up to the façade:
// - An operation answers with its Status; the reason stays for GetLastError. Nothing else
//   reports a failure across an operation: no exception, no message text out-parameter, no
//   sentinel value.
// - Exceptions live inside one unit (a damaged index node, a SQL failure, a bad expression)
//   and are turned into a status where the unit is called: Engine::Guarded, FRCDatabase's
//   Guarded. A corrupt index answers AE_CORRUPT_INDEX, never an exception to the caller.
// - Every Status is [[nodiscard]]. A caller that does not act on one says so with
//   IgnoreStatus and why (a clean-up after a failure that is already the answer, a fixed
//   valid setting); steps that all run whatever the others answered are joined with
//   FirstFailure (engine/errors.hpp).
// - AdsClass is where the table layer meets its users: it shows a failure to the user itself
//   (message box, last-error text) and answers true/false or a status its callers may leave,
//   as the public class it stands for does.
//
// Conventions, carried over from the client engine's C API:
// - every operation returns a Status (0 = success, else an AE_* number of errors.hpp);
// - results come back through the last reference arguments;
// - a text buffer and its length become one std::string (UTF-8; the engine converts to and from
//   the table's Windows-1252); byte buffers (records, binary memos, raw keys) are std::string
//   bytes;
// - arrays of handles become std::vector<Handle>;
// - "object" handles accept a table or an index order, as in the C API (navigation through an
//   index handle follows that index); "table" handles accept a table or a SQL cursor.

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "engine/constants.hpp"
#include "engine/errors.hpp"
#include "engine/mgmt_config.hpp"

namespace fnrk::engine {

// Progress of long operations (index builds, packs, copies): percent done and the id given at
// registration; a non-zero return asks the operation to stop.
using ProgressCallback = std::function<std::uint32_t(std::uint16_t percent, std::uint32_t id)>;

class Operations {
  public:
    virtual ~Operations() = default;

#define FNRK_OPERATION(name, parameters, arguments) \
    [[nodiscard]] virtual Status name parameters = 0;
#include "engine/operations.def"
};

}  // namespace fnrk::engine
