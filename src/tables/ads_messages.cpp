#include "tables/ads_messages.hpp"

#include "platform/messages.hpp"

namespace fnrk::tables {
namespace {

// A text of the catalogue, under one code or two (a few messages are kept under two numbers).
struct CatalogueRow {
    std::int32_t code;
    std::int32_t otherCode;  // 0: none
    const char* french;
    const char* dutch;
    const char* english;
};

// Word for word, faults included: callers compare and users know these texts.
constexpr CatalogueRow kCatalogue[] = {
    {10, 0, "Impossible d'ajouter la référence!", "Referentie kan niet toegevoegd worden !",
     "Impossible to add reference !"},
    {20, 0, "Le fichier est bloqué par un autre utilisateur.",
     "Het bestand is geblokkeerd door een andere gebruiker", "The file is blocked by another user"},
    {30, 60, "Erreur réseau", "Netwerkfout", "Network error"},
    {40, 0, "Impossible de mettre à jour la référence !", "Referentie kan niet bijgewerkt worden !",
     "Impossible to update the reference !"},
    {50, 0, "Elle est bloquée par un autre utilisateur.", "Geblokkeerd door een andere gebruiker",
     "It is blocked by another user."},
    {70, 0, "Un autre utilisateur est connecté dans ce dossier",
     "Er is een andere gebruiker geconnecteerd in dit dossier",
     "Another user is connected to this dossier"},
    {80, 110, "Impossible d'entrer dans cette option", "Geen toegang tot deze optie",
     "Impossible to access this option "},
    {90, 120, "Attention", "Opgelet", "Caution"},
    {100, 0, "Impossible d'ouvrir exclusivement le fichier paramètre (",
     "Het instellingenbestand kan niet exclusief geopend worden ( ",
     "Impossible to open exclusively the parameter file ("},
    {130, 140, "Fichier des utilisateurs (", "Gebruikersbestand (", "user file ("},
    {150, 0, "Veuillez indiquer le répertoire", "Gelieve de directory aan te geven",
     "Please show directory"},
    {160, 0, "Users.dbf (Fichier utilisateurs)", "Users.dbf (Gebruikersbestand)",
     "Users.dbf (User file)"},
    {170, 0, "Trouver le chemin", "Bestandenpad zoeken", "Find path"},
    {180, 330, "Impossible d'ouvrir le fichier des utilisateurs (",
     "Het gebruikersbestand kan niet geopend worden (", "Impossible to open the user file ("},
    {190, 200, "Le fichier des utilisateurs (", "Het gebruikersbestand (", "The user file  ("},
    {210, 0, "Erreur durant l'opération de Pack", "Fout tijdens uitvoeren van Pack",
     "Error during Pack process"},
    {220, 0, "Erreur durant l'opération de réencryptage",
     "Fout tijdens uitvoeren van hercryptering", "Error during re-encryption process"},
    {230, 0, "Introduire le mot de passe", "Een wachtwoord inbrengen", "Enter password"},
    {240, 0, "Dossier encrypté", "Versleuteld dossier", "Encrypted dossier"},
    {250, 0, "Entrez la clé de décryptage du dossier", "Geef het wachtwoord in ",
     "Enter deciphering key of dossier"},
    {260, 0, "Failed to connect to local server", "Failed to connect to local server",
     "Failed to connect to local server"},
    {270, 310, ") introuvable !", ") onvindbaar !", ") could not be found !"},
    {280, 0, "Désirez-vous utiliser le fichier utilisateur local ?",
     "Wenst u het lokale gebruikersbestand te gebruiken ?",
     "Do you want to use the local user file ?"},
    {290, 0, ") est illisible !", ") is onleesbaar !", ") is unreadable !"},
    {300, 0, "le fichier des utilisateurs (", "het gebruikersbestand (", "The user file  ("},
    {320, 0, "Veuillez indiquer le répertoire", "Gelieve de directory aan te duiden",
     "Please show directory"},
    {340, 0, "Le fichier des utilisateurs (", "Het gebruikersbestand (", "The user file ("},
    {350, 0, ") est illisible ou correspond à un autre programme Fennrick !",
     ") is onleesbaar of behoort tot een ander Fennrick programma !",
     ") is unreadable or corresponds to another Fennrick software !"},
    {360, 0, "Le dossier est bloqué en écriture ! Impossible de réaliser l'opération",
     "Dossier met schrijfvergrendeling ! De bewerking kan niet verder uitgevoerd worden",
     "The dossier is blocked in entry mode ! Operation cannot be processed."},
    {370, 0,
     "Echec de la connection en mode Client/Serveur !\r\nSouhaitez-vous vous connecter en mode "
     "serveur local ?",
     "De connectie in modus Client/server faalt!\r\nWenst u te verbinden in lokale server modus ? ",
     "Connection failed in mode Client/Server !\r\nDo you want to connect in mode local server ?"},
    {380, 0,
     "-Attention, accéder à un dossier qui se trouve sur une unité réseau\r\n avec le serveur "
     "local ralentit les performances.",
     "Opgelet, de verbinding met een dossier dat zich op een netwerkeenheid bevindt\r\n met een "
     "lokale server vermindert de performanties",
     "- Caution, accessing to a dossier on a network unit\r\n with the local slows down "
     "performances."},
    {390, 0, "Une erreur est survenue lors de la mise à jour du fichier de données.",
     "Er is een fout opgetreden tijdens het updaten van het gegevensbestand.",
     "An error has occurred during the data file updating."},
    {400, 0, "Le fichier de données n'a pas pu être mis à jour car il est en cours d'utilisaton.",
     "Het gegevensbestand werd niet geüpdatet omdat het in gebruik is.",
     "The data file has not been updated because it is in use."},
};

}  // namespace

std::string CatalogueText(std::int32_t code, session::MessageLanguage language) {
    for (const CatalogueRow& row : kCatalogue) {
        if (row.code == code || (row.otherCode != 0 && row.otherCode == code)) {
            return InLanguage(language, row.french, row.dutch, row.english);
        }
    }
    return {};
}

const char* InLanguage(session::MessageLanguage language, const char* french, const char* dutch,
                       const char* english) {
    switch (language) {
        case session::MessageLanguage::Dutch:
            return dutch;
        case session::MessageLanguage::English:
            return english;
        case session::MessageLanguage::French:
            break;
    }
    return french;
}

std::string CatalogueText(std::int32_t code) {
    return CatalogueText(code, session::CurrentMessageLanguage());
}

std::string EngineFailureText(engine::Status status, std::string_view description,
                              std::string_view file) {
    std::string text = "Code error ADS: " + std::to_string(status) + "\r\n" +
                       "Description error: " + std::string(description);
    if (!file.empty()) text += "\r\nFile: " + std::string(file);
    return text;
}

void ShowErrorBox(const std::string& text) {
    platform::ShowMessage(text, platform::message_style::kCritical, platform::kErrorTitle);
}

}  // namespace fnrk::tables
