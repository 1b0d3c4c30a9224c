#pragma once

// The session options of `fennrick run` and `fennrick call`, applied to a façade the way a
// calling application hands over its session: configuration file, users folder, language and
// user, then the company's folder with its parameter table open.

#include <CLI/CLI.hpp>
#include <string>

#include "facade/fnrk_routines.hpp"

namespace fnrk::cli {

struct FacadeSessionOptions {
    std::string ini;
    std::string dossier;
    std::string users;
    std::string user;
    std::string language;
};

void AddFacadeSessionOptions(CLI::App& command, FacadeSessionOptions& options);
// CommandFailure when the dossier cannot be opened.
void StartFacadeSession(facade::FnrkRoutines& routines, const FacadeSessionOptions& options);

}  // namespace fnrk::cli
