// fennrick ini get FILE SECTION KEY [--size N] / fennrick ini set FILE SECTION KEY VALUE

#include <iostream>
#include <memory>
#include <string>

#include "cli/command_registry.hpp"
#include "platform/ini_file.hpp"

namespace fnrk::cli {
namespace {

struct IniOptions {
    std::string file;
    std::string section;
    std::string key;
    std::string value;
    std::size_t size = 255;
};

void AddLocation(CLI::App& command, IniOptions& options) {
    command.add_option("FILE", options.file, "configuration file")->required();
    command.add_option("SECTION", options.section, "section name")->required();
    command.add_option("KEY", options.key, "key name")->required();
}

void SetUpIniCommands(CLI::App& app) {
    auto* ini = app.add_subcommand("ini", "read and write configuration (INI) files");
    ini->require_subcommand(1);
    auto options = std::make_shared<IniOptions>();

    auto* get = ini->add_subcommand("get", "print a value as a read with a buffer of N returns it");
    AddLocation(*get, *options);
    get->add_option("--size", options->size, "buffer size in characters (default 255)")
        ->check(CLI::NonNegativeNumber);
    get->callback([options] {
        std::cout << platform::GetPrivateProfileString(options->section, options->key, "",
                                                       options->size, options->file)
                  << "\n";
    });

    auto* set = ini->add_subcommand("set", "write a value (the file is created when missing)");
    AddLocation(*set, *options);
    set->add_option("VALUE", options->value, "the value")->required();
    set->callback([options] {
        if (!platform::WritePrivateProfileString(options->section, options->key, options->value,
                                                 options->file)) {
            throw CommandFailure("cannot write [" + options->section + "] " + options->key +
                                 " to " + options->file);
        }
    });
}

const CommandRegistration kIniCommands("ini", SetUpIniCommands);

}  // namespace
}  // namespace fnrk::cli
