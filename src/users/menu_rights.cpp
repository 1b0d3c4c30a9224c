#include "users/menu_rights.hpp"

#include <array>
#include <cctype>

#include "platform/text.hpp"

namespace fnrk::users {

namespace {

struct MenuCode {
    std::string_view code;
    std::size_t position;  // 0: recognised, never restricted
};

// In the order they are tested.
constexpr std::array<MenuCode, 44> kMenuCodes = {{
    {"MNUPRINT", 4},           {"MNURESTORE", 9},
    {"MNUIMPORT", 14},         {"MNUEXPORT", 14},
    {"MNUCOMPTEGEN", 0},       {"MNUCOMPTECLI", 0},
    {"MNUCOMPTEFOU", 0},       {"MNUTESTCPT", 13},
    {"MNUREINDEX", 8},         {"MNUREORGBIC", 10},
    {"MNUBACKUP", 15},         {"MNUWINOFFICE", 28},
    {"MNUPARAM", 7},           {"DOCUMENT", 16},
    {"MNUDOCVIEW", 16},        {"MNUINTERNETMAILBOX", 17},
    {"MNUCLOTPER", 11},        {"MNUOUVERTURE", 11},
    {"MNUUPDATEFENNRICK", 12}, {"MNUVIREMENTFOUR", 6},
    {"RAPPELSCLIENTS", 5},     {"MNUIMPUTVEN", 3},
    {"MNUIMPUTACH", 3},        {"MNUIMPUTFIN", 3},
    {"MNUIMPUTOD", 3},         {"MNUPROTECT", 18},
    {"MNUCODJOU", 29},         {"MNUCPTTITRE", 30},
    {"MNUCATGEN", 31},         {"MNUTABLECATCLI", 32},
    {"MNUTABLECATFOU", 33},    {"MNUFACTURATION", 23},
    {"MNUINVOICEDESIGN", 19},  {"MNUTABLECATART", 34},
    {"MNUARTICLES", 20},       {"POPFACREF", 20},
    {"POPFACENCODAGE", 21},    {"POPFACCONSULT", 22},
    {"POPFACPRINT", 22},       {"MNUANALYTIC", 24},
    {"MNUCOMPTEANA", 25},      {"MNUODANALYTIC", 26},
    {"MNUUTILANALYTIC", 27},   {"MNURECIPCODA", 35},
}};

}  // namespace

std::size_t MenuCodePosition(std::string_view menuCode) {
    const std::string code = platform::UpperCase(menuCode);
    for (const MenuCode& entry : kMenuCodes) {
        if (entry.code == code) return entry.position;
    }
    return 0;
}

bool IsAdministratorRights(std::string_view rights) {
    return rights.starts_with('1');
}

bool IsMenuCodeGranted(std::string_view rights, std::string_view menuCode) {
    if (IsAdministratorRights(rights)) return true;
    const std::size_t position = MenuCodePosition(menuCode);
    return position == 0 || position > rights.size() || rights[position - 1] != '1';
}

std::string_view LevelOfRights(std::string_view rights) {
    static constexpr std::string_view kDigits = "0123456789";
    if (rights.empty() || !std::isdigit(static_cast<unsigned char>(rights.front()))) return "0";
    return kDigits.substr(static_cast<std::size_t>(rights.front() - '0'), 1);
}

}  // namespace fnrk::users
