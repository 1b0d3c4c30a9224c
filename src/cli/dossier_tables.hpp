#pragma once

// A company dossier opened for a command on the process's table-access object: the folder is
// named by the company's short name and holds its tables under that prefix
// ("SOC1/SOC1_param.dbf"), unless another short name is given. The parameter table is opened;
// other tables open when asked for.

#include <filesystem>
#include <string>

#include "tables/ads_class.hpp"

namespace fnrk::cli {

// A folder that is missing or holds no parameter table is a CommandFailure.
tables::AdsClass& OpenDossierTables(const std::filesystem::path& folder,
                                    const std::string& shortName = {});

}  // namespace fnrk::cli
