#include "support/run_command.hpp"

namespace fnrk::testing {

CommandResult RunFennrick(const std::vector<std::string>& args, const std::string& input) {
    std::vector<std::string> argv{FNRK_CLI_BINARY};
    argv.insert(argv.end(), args.begin(), args.end());
    return RunCommand(argv, input);
}

}  // namespace fnrk::testing
