#include "support/invoice_validation.hpp"

#include "support/temp_dir.hpp"

namespace fnrk::testing {

CommandResult ValidateInvoice(const std::filesystem::path& file, bool peppol) {
    std::vector<std::string> command = {(SharedDir() / "tools" / "validate-invoice").string()};
    if (peppol) command.push_back("--peppol");
    command.push_back(LinuxPath(file));
    return RunCommand(command);
}

}  // namespace fnrk::testing
