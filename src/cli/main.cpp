#include <exception>
#include <iostream>

#include "cli/command_registry.hpp"

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>

#include <cstdio>
#endif

int main(int argc, char** argv) {
#ifdef _WIN32
    // The same bytes as on Linux: dumps, JSON and lines end in "\n", never "\r\n".
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);
#endif
    CLI::App app{"fennrick: the Fennrick function library on the command line"};
    app.set_version_flag("--version", std::string("fennrick ") + FNRK_VERSION);
    app.require_subcommand(1);
    // Options are "--name" everywhere: on Windows too "/data/x.dbf" is a path, not an option.
    // Before the commands are set up, which take it over.
    app.allow_windows_style_options(false);
    fnrk::cli::SetUpCommands(app);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error);
    } catch (const fnrk::cli::CommandFailure& failure) {
        // A command that has answered on its output fails without a message of its own.
        if (*failure.what() != '\0') std::cerr << "fennrick: " << failure.what() << "\n";
        return failure.exitCode();
    } catch (const std::exception& error) {
        std::cerr << "fennrick: " << error.what() << "\n";
        return 1;
    }
    return 0;
}
