#include "einvoice/ubl_sections.hpp"

#include "platform/text.hpp"

namespace fnrk::einvoice {

void AddTaxCategory(XmlElement parent, std::string_view elementName,
                    const TaxCategoryValues& values, const NumberWriter& numbers) {
    XmlElement tax = parent.Add(elementName);
    XmlElement id = tax.Add("cbc:ID", values.id);
    if (!values.idScheme.empty()) id.Attribute("schemeID", values.idScheme);
    tax.AddIfNotEmpty("cbc:Name", values.name);
    if (values.id != "O") tax.Add("cbc:Percent", numbers.Amount(values.rate));
    tax.AddIfNotEmpty("cbc:TaxExemptionReasonCode", values.exemptionReasonCode);
    tax.AddIfNotEmpty("cbc:TaxExemptionReason", values.exemptionReason);
    tax.Add("cac:TaxScheme").Add("cbc:ID", "VAT");
}

void AddPayeeAccount(XmlElement means, std::string_view iban, std::string_view bic,
                     std::string_view schemeAttribute, bool withEmptyBic) {
    XmlElement account = means.Add("cac:PayeeFinancialAccount");
    account.Add("cbc:ID", iban).Attribute(schemeAttribute, "IBAN");
    if (!withEmptyBic && platform::Trim(bic).empty()) return;
    account.Add("cac:FinancialInstitutionBranch")
        .Add("cac:FinancialInstitution")
        .Add("cbc:ID", bic)
        .Attribute(schemeAttribute, "BIC");
}

}  // namespace fnrk::einvoice
