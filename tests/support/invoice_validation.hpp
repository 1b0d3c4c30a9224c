#pragma once

#include <filesystem>

#include "support/run_command.hpp"

namespace fnrk::testing {

// The shared validate-invoice tool on a written UBL document: its schema and, with `peppol`, the
// PEPPOL BIS 3 and EN 16931 rules. Exit code 0 when the document passes; each broken rule is a
// line of the output.
CommandResult ValidateInvoice(const std::filesystem::path& file, bool peppol);

}  // namespace fnrk::testing
