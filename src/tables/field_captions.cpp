// Captions of the fields the library and its callers show most, in the three languages.

#include "platform/text.hpp"
#include "session/session_user.hpp"
#include "tables/ads_class.hpp"
#include "tables/ads_messages.hpp"

namespace fnrk::tables {
namespace {

struct Caption {
    const char* field;
    const char* french;
    const char* dutch;
    const char* english;
};

constexpr Caption kCaptions[] = {
    {"NAME1", "Nom", "Naam", "Name"},
    {"NAME2", "Nom (suite)", "Naam (vervolg)", "Name (continued)"},
    {"ADDRESS1", "Adresse", "Adres", "Address"},
    {"ADDRESS2", "Adresse (suite)", "Adres (vervolg)", "Address (continued)"},
    {"ZIPCODE", "Code postal", "Postcode", "Postal code"},
    {"CITY", "Localité", "Gemeente", "City"},
    {"COUNTRY", "Pays", "Land", "Country"},
    {"LANGUAGE", "Langue", "Taal", "Language"},
    {"PHONE", "Téléphone", "Telefoon", "Phone"},
    {"EMAIL", "E-mail", "E-mail", "E-mail"},
    {"VATNUMBER", "Numéro de TVA", "Btw-nummer", "VAT number"},
    {"VATCODE", "Code TVA", "Btw-code", "VAT code"},
    {"NUMBER", "Numéro", "Nummer", "Number"},
    {"ACCOUNTGL", "Compte général", "Algemene rekening", "General account"},
    {"ACCOUNT", "Compte", "Rekening", "Account"},
    {"CURRENCY", "Devise", "Munt", "Currency"},
    {"BOOKYEAR", "Exercice", "Boekjaar", "Book year"},
    {"PERIOD", "Période", "Periode", "Period"},
    {"DBKCODE", "Journal", "Dagboek", "Journal"},
    {"DOCNUMBER", "Numéro de document", "Documentnummer", "Document number"},
    {"DOCDATE", "Date du document", "Documentdatum", "Document date"},
    {"DUEDATE", "Date d'échéance", "Vervaldatum", "Due date"},
    {"AMOUNT", "Montant", "Bedrag", "Amount"},
    {"AMOUNTEUR", "Montant en EUR", "Bedrag in EUR", "Amount in EUR"},
    {"AMOUNTCUR", "Montant en devise", "Bedrag in munt", "Amount in currency"},
    {"COMMENT", "Commentaire", "Commentaar", "Comment"},
    {"REFERENCE", "Référence", "Referentie", "Reference"},
    {"DESCRIPTION", "Description", "Omschrijving", "Description"},
    {"QUANTITY", "Quantité", "Hoeveelheid", "Quantity"},
    {"PRICE", "Prix", "Prijs", "Price"},
    {"DISCOUNT", "Remise", "Korting", "Discount"},
    {"CODESOC", "Société", "Vennootschap", "Company"},
    {"USERNAME", "Utilisateur", "Gebruiker", "User"},
    {"DATESTAMP", "Date", "Datum", "Date"},
    {"TIMESTAMP", "Heure", "Uur", "Time"},
    {"ACTION", "Action", "Actie", "Action"},
    {"SECRET", "Secret", "Geheim", "Secret"},
    {"IBAN", "IBAN", "IBAN", "IBAN"},
    {"BIC", "BIC", "BIC", "BIC"},
};

}  // namespace

std::string AdsClass::GetFieldDescription(std::string_view field) {
    const std::string name = platform::UpperCase(platform::Trim(field));
    for (const Caption& caption : kCaptions) {
        if (name == caption.field) {
            return InLanguage(session::CurrentMessageLanguage(), caption.french, caption.dutch,
                              caption.english);
        }
    }
    return name;
}

}  // namespace fnrk::tables
