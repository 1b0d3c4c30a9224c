#pragma once

// One Archive slot of the dispatch: a SQL backend serving the dossiers of one folder.

#include <memory>
#include <string>

#include "backend/sql_backend.hpp"

namespace fnrk::tables {

struct ArchiveBackend {
    std::string Path;           // the folder it serves, always with one trailing separator
    engine::Handle handle = 0;  // its connection handle once connected
    std::string TempPath;
    std::unique_ptr<backend::SqlBackend> FRDataBase;
};

// The folder with exactly one trailing separator ("a" -> "a/", "a//" -> "a/").
std::string ArchiveFolder(std::string folder);

}  // namespace fnrk::tables
