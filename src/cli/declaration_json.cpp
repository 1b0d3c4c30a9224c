#include "cli/declaration_json.hpp"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cli/json_fields.hpp"
#include "declarations/moss_writer.hpp"
#include "declarations/oss_writer.hpp"

namespace fnrk::cli {
namespace {

using nlohmann::json;
namespace decl = fnrk::declarations;

// The representative's record, as the description gives its fields.
class RepresentativeMember : public decl::RepresentativeSource {
  public:
    explicit RepresentativeMember(JsonFields fields) {
        for (std::string_view field :
             {decl::kRepresentativeVatField, decl::kRepresentativeNameField,
              decl::kRepresentativeStreetField, decl::kRepresentativePostCodeField,
              decl::kRepresentativeCityField, decl::kRepresentativeCountryField,
              decl::kRepresentativeEmailField})
            fields_.emplace(field, fields.Text(std::string(field)));
        fields.RejectUnknown();
    }

    std::string FieldText(std::string_view field) const override {
        auto found = fields_.find(field);
        return found == fields_.end() ? std::string() : found->second;
    }

  private:
    std::map<std::string, std::string, std::less<>> fields_;
};

std::string TextOr(JsonFields& fields, const std::string& key, std::string fallback) {
    std::string text = fields.Text(key);
    return text.empty() ? fallback : text;
}

// What the consignment's own members say; read whole before anything is written.
struct Consignment {
    decl::DeclarationHeader header;
    std::optional<RepresentativeMember> representative;
    std::vector<JsonFields> memberStates;
};

Consignment ReadConsignment(const json& description) {
    JsonFields fields(description, "");
    Consignment consignment;
    JsonFields trader(*fields.Object("trader", true), fields.PathOf("trader"));
    consignment.header = {.declarationCount = TextOr(fields, "declarationCount", "1"),
                          .groupVatNumber = fields.Text("groupVatNumber"),
                          .sequenceNumber = TextOr(fields, "sequenceNumber", "1"),
                          .traderCountry = trader.Text("country", true),
                          .traderVatNumber = trader.Text("vatNumber", true),
                          .year = fields.Text("year", true),
                          .quarter = fields.Text("quarter", true)};
    trader.RejectUnknown();
    if (const json* representative = fields.Object("representative"))
        consignment.representative.emplace(
            JsonFields(*representative, fields.PathOf("representative")));
    if (const json* states = fields.Array("memberStates"))
        for (std::size_t i = 0; i < states->size(); ++i)
            consignment.memberStates.emplace_back((*states)[i], fields.PathOf("memberStates", i));
    fields.RejectUnknown();
    return consignment;
}

template <typename Plain, typename WithRepresentative>
void WriteHeader(const Consignment& consignment, decl::DeclarationDocument& document, Plain plain,
                 WithRepresentative withRepresentative) {
    if (consignment.representative)
        withRepresentative(document, consignment.header, *consignment.representative);
    else
        plain(document, consignment.header);
}

std::string Position(std::size_t index) {
    return std::to_string(index + 1);
}

decl::MemberStateInfo ReadMemberState(JsonFields& state, std::size_t index) {
    return {TextOr(state, "sequenceNumber", Position(index)), state.Text("country", true)};
}

decl::FixedEstablishment ReadEstablishment(JsonFields& row) {
    const json* value = row.Object("fixedEstablishment");
    if (value == nullptr) return {};
    JsonFields establishment(*value, row.PathOf("fixedEstablishment"));
    decl::FixedEstablishment result{establishment.Text("country", true),
                                    establishment.Text("vatNumber", true)};
    establishment.RejectUnknown();
    return result;
}

// Each item of an array member of `parent`, as fields.
std::vector<JsonFields> Items(JsonFields& parent, const std::string& key) {
    std::vector<JsonFields> items;
    if (const json* array = parent.Array(key))
        for (std::size_t i = 0; i < array->size(); ++i)
            items.emplace_back((*array)[i], parent.PathOf(key, i));
    return items;
}

decl::OssRow ReadOssRow(JsonFields& row, std::size_t index) {
    decl::OssRow result{.sequenceNumber = TextOr(row, "sequenceNumber", Position(index)),
                        .goods = row.Flag("goods"),
                        .establishment = ReadEstablishment(row),
                        .rateType = row.Text("rateType", true),
                        .rate = row.Text("rate", true),
                        .vatAmount = row.Text("vatAmount", true),
                        .taxableAmount = row.Text("taxableAmount", true),
                        .currency = row.Text("currency", true)};
    row.RejectUnknown();
    return result;
}

decl::OssCorrection ReadCorrection(JsonFields& correction) {
    decl::OssCorrection result{correction.Text("year", true), correction.Text("quarter", true),
                               correction.Text("vatAmount", true),
                               correction.Text("currency", true)};
    correction.RejectUnknown();
    return result;
}

decl::MossRow ReadMossRow(JsonFields& row, std::size_t index) {
    decl::MossRow result{.sequenceNumber = TextOr(row, "sequenceNumber", Position(index)),
                         .establishment = ReadEstablishment(row),
                         .rateType = row.Text("rateType", true),
                         .rate = row.Text("rate", true),
                         .vatAmount = row.Text("vatAmount", true),
                         .taxableAmount = row.Text("taxableAmount", true),
                         .grossAmount = row.Text("grossAmount", true),
                         .currency = row.Text("currency", true)};
    row.RejectUnknown();
    return result;
}

decl::MossTotals ReadMossTotals(JsonFields& state) {
    JsonFields totals(*state.Object("totals", true), state.PathOf("totals"));
    decl::MossTotals result{totals.Text("taxableAmount", true), totals.Text("vatAmount", true),
                            totals.Text("grossAmount", true), totals.Text("currency", true)};
    totals.RejectUnknown();
    return result;
}

}  // namespace

void WriteOssConsignment(const json& description, decl::DeclarationDocument& document) {
    Consignment consignment = ReadConsignment(description);
    WriteHeader(consignment, document, decl::OssXmlHeader, decl::OssXmlHeaderCheckRepresentative);
    // A quarter without supplies is declared nil.
    if (consignment.memberStates.empty()) decl::OssXmlNil(document);
    for (std::size_t s = 0; s < consignment.memberStates.size(); ++s) {
        JsonFields& state = consignment.memberStates[s];
        decl::OssXmlHeaderInfo(document, ReadMemberState(state, s));
        auto rows = Items(state, "rows");
        for (std::size_t r = 0; r < rows.size(); ++r)
            decl::OssXmlRow(document, ReadOssRow(rows[r], r));
        for (JsonFields& correction : Items(state, "corrections"))
            decl::OssXmlRowCorrection(document, ReadCorrection(correction));
        state.RejectUnknown();
    }
}

void WriteMossConsignment(const json& description, decl::DeclarationDocument& document) {
    Consignment consignment = ReadConsignment(description);
    WriteHeader(consignment, document, decl::MossXmlHeader, decl::MossXmlHeaderCheckRepresentative);
    for (std::size_t s = 0; s < consignment.memberStates.size(); ++s) {
        JsonFields& state = consignment.memberStates[s];
        decl::MossXmlHeaderInfo(document, ReadMemberState(state, s));
        auto rows = Items(state, "rows");
        for (std::size_t r = 0; r < rows.size(); ++r)
            decl::MossXmlRow(document, ReadMossRow(rows[r], r));
        decl::MossXmlFooterInfo(document, ReadMossTotals(state));
        state.RejectUnknown();
    }
}

}  // namespace fnrk::cli
