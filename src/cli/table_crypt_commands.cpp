// fennrick table encrypt|decrypt FILE --password-file F: converts a table with its memo file and
// structural index. The password is the first line of F.

#include <filesystem>
#include <memory>
#include <string>

#include "cli/command_registry.hpp"
#include "cli/engine_status.hpp"
#include "cli/password_file.hpp"
#include "engine/constants.hpp"
#include "tables/shared_tables.hpp"

namespace fnrk::cli {
namespace {

using engine::AE_SUCCESS;
using engine::Handle;
using engine::Status;

struct CryptOptions {
    std::string file;
    std::string passwordFile;
};

void Convert(const CryptOptions& options, bool encrypt) {
    const std::string password = ReadPasswordFile(options.passwordFile);
    const std::filesystem::path path = std::filesystem::absolute(options.file);
    engine::Operations& engine = tables::SharedSqlDatabase();
    Handle connection = 0;
    CheckEngineStatus(
        engine, engine.Connect26(path.parent_path().string(), engine::ADS_LOCAL_SERVER, connection),
        "connect");
    Handle table = 0;
    CheckEngineStatus(engine,
                      engine.OpenTable(connection, path.string(), "", engine::ADS_CDX,
                                       engine::ADS_ANSI, engine::ADS_COMPATIBLE_LOCKING,
                                       engine::ADS_IGNORERIGHTS, engine::ADS_EXCLUSIVE, table),
                      "open " + options.file);
    CheckEngineStatus(engine, engine.EnableEncryption(table, password), options.file);
    CheckEngineStatus(engine, encrypt ? engine.EncryptTable(table) : engine.DecryptTable(table),
                      options.file);
    CheckEngineStatus(engine, engine.CloseTable(table), "close " + options.file);
}

void SetUpTableCryptCommands(CLI::App& app) {
    CLI::App* table = app.get_subcommand("table");
    auto options = std::make_shared<CryptOptions>();
    for (const bool encrypt : {true, false}) {
        auto* command =
            table->add_subcommand(encrypt ? "encrypt" : "decrypt",
                                  encrypt ? "encrypt records, memos and index with a password"
                                          : "turn an encrypted table back into a plain one");
        command->add_option("FILE", options->file, "table file (.dbf)")->required();
        command
            ->add_option("--password-file", options->passwordFile,
                         "file whose first line is the password")
            ->required();
        command->callback([options, encrypt] { Convert(*options, encrypt); });
    }
}

const CommandRegistration registration("table_crypt", SetUpTableCryptCommands);

}  // namespace
}  // namespace fnrk::cli
