#include "cli/declaration_json.hpp"

#include <algorithm>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "cli/command_registry.hpp"
#include "declarations/moss_writer.hpp"
#include "declarations/oss_writer.hpp"

namespace fnrk::cli {
namespace {

using nlohmann::json;
namespace decl = fnrk::declarations;

using Keys = std::vector<std::string_view>;

// One JSON object of the description and where it sits, so that every complaint names it.
class Member {
  public:
    Member(const json& value, std::string path, const Keys& keys)
        : value_(value), path_(std::move(path)) {
        if (!value_.is_object())
            throw Fail(path_.empty() ? "the description" : path_, "must be an object");
        for (const auto& [key, ignored] : value_.items())
            if (std::ranges::find(keys, key) == keys.end()) throw Fail(Path(key), "is not known");
    }

    // A text member; numbers are taken as written. Empty when absent and not required.
    std::string Text(std::string_view key, bool required = true) const {
        const std::string name(key);
        if (!value_.contains(name)) {
            if (required) throw Fail(Path(key), "is missing");
            return "";
        }
        const json& item = value_.at(name);
        if (item.is_string()) return item.get<std::string>();
        if (item.is_number()) return item.dump();
        throw Fail(Path(key), "must be a text or a number");
    }

    std::string TextOr(std::string_view key, std::string fallback) const {
        return value_.contains(std::string(key)) ? Text(key) : fallback;
    }

    bool Flag(std::string_view key) const {
        const std::string name(key);
        if (!value_.contains(name)) return false;
        if (!value_.at(name).is_boolean()) throw Fail(Path(key), "must be true or false");
        return value_.at(name).get<bool>();
    }

    bool Has(std::string_view key) const { return value_.contains(std::string(key)); }

    Member Object(std::string_view key, const Keys& keys) const {
        const std::string name(key);
        if (!value_.contains(name)) throw Fail(Path(key), "is missing");
        return Member(value_.at(name), Path(key), keys);
    }

    // The items of an array member (none when absent), each checked as an object.
    std::vector<Member> Items(std::string_view key, const Keys& keys) const {
        std::vector<Member> items;
        const std::string name(key);
        if (!value_.contains(name)) return items;
        const json& array = value_.at(name);
        if (!array.is_array()) throw Fail(Path(key), "must be an array");
        for (std::size_t i = 0; i < array.size(); ++i)
            items.emplace_back(array[i], Path(key) + "[" + std::to_string(i) + "]", keys);
        return items;
    }

  private:
    std::string Path(std::string_view key) const {
        return path_.empty() ? std::string(key) : path_ + "." + std::string(key);
    }

    static CommandFailure Fail(const std::string& where, const std::string& what) {
        return CommandFailure(where + " " + what);
    }

    const json& value_;
    std::string path_;
};

// The representative's record, as the description gives its fields.
class RepresentativeMember : public decl::RepresentativeSource {
  public:
    explicit RepresentativeMember(const Member& member) {
        for (auto field : kFields) fields_.emplace(field, member.Text(field, false));
    }

    std::string FieldText(std::string_view field) const override {
        auto found = fields_.find(field);
        return found == fields_.end() ? std::string() : found->second;
    }

    inline static const Keys kFields = {
        decl::kRepresentativeVatField,    decl::kRepresentativeNameField,
        decl::kRepresentativeStreetField, decl::kRepresentativePostCodeField,
        decl::kRepresentativeCityField,   decl::kRepresentativeCountryField,
        decl::kRepresentativeEmailField};

  private:
    std::map<std::string, std::string, std::less<>> fields_;
};

const Keys kConsignmentKeys = {"declarationCount", "groupVatNumber", "sequenceNumber",
                               "trader",           "year",           "quarter",
                               "representative",   "memberStates"};
const Keys kEstablishmentKeys = {"country", "vatNumber"};

decl::DeclarationHeader ReadHeader(const Member& consignment) {
    const Member trader = consignment.Object("trader", {"country", "vatNumber"});
    return {.declarationCount = consignment.TextOr("declarationCount", "1"),
            .groupVatNumber = consignment.Text("groupVatNumber", false),
            .sequenceNumber = consignment.TextOr("sequenceNumber", "1"),
            .traderCountry = trader.Text("country"),
            .traderVatNumber = trader.Text("vatNumber"),
            .year = consignment.Text("year"),
            .quarter = consignment.Text("quarter")};
}

decl::FixedEstablishment ReadEstablishment(const Member& row) {
    if (!row.Has("fixedEstablishment")) return {};
    const Member establishment = row.Object("fixedEstablishment", kEstablishmentKeys);
    return {establishment.Text("country"), establishment.Text("vatNumber")};
}

std::string Position(std::size_t index) {
    return std::to_string(index + 1);
}

decl::MemberStateInfo ReadMemberState(const Member& state, std::size_t index) {
    return {state.TextOr("sequenceNumber", Position(index)), state.Text("country")};
}

// The header with the representative block when the description has one.
template <typename Plain, typename WithRepresentative>
void WriteHeader(const Member& consignment, decl::DeclarationDocument& document, Plain plain,
                 WithRepresentative withRepresentative) {
    const decl::DeclarationHeader header = ReadHeader(consignment);
    if (consignment.Has("representative")) {
        const RepresentativeMember representative(
            consignment.Object("representative", RepresentativeMember::kFields));
        withRepresentative(document, header, representative);
    } else {
        plain(document, header);
    }
}

}  // namespace

void WriteOssConsignment(const json& description, decl::DeclarationDocument& document) {
    const Member consignment(description, "", kConsignmentKeys);
    const auto states =
        consignment.Items("memberStates", {"sequenceNumber", "country", "rows", "corrections"});
    WriteHeader(consignment, document, decl::OssXmlHeader, decl::OssXmlHeaderCheckRepresentative);
    // A quarter without supplies is declared nil.
    if (states.empty()) decl::OssXmlNil(document);
    for (std::size_t s = 0; s < states.size(); ++s) {
        decl::OssXmlHeaderInfo(document, ReadMemberState(states[s], s));
        const auto rows =
            states[s].Items("rows", {"sequenceNumber", "goods", "fixedEstablishment", "rateType",
                                     "rate", "vatAmount", "taxableAmount", "currency"});
        for (std::size_t r = 0; r < rows.size(); ++r) {
            decl::OssXmlRow(document,
                            {.sequenceNumber = rows[r].TextOr("sequenceNumber", Position(r)),
                             .goods = rows[r].Flag("goods"),
                             .establishment = ReadEstablishment(rows[r]),
                             .rateType = rows[r].Text("rateType"),
                             .rate = rows[r].Text("rate"),
                             .vatAmount = rows[r].Text("vatAmount"),
                             .taxableAmount = rows[r].Text("taxableAmount"),
                             .currency = rows[r].Text("currency")});
        }
        for (const Member& correction :
             states[s].Items("corrections", {"year", "quarter", "vatAmount", "currency"})) {
            decl::OssXmlRowCorrection(document,
                                      {correction.Text("year"), correction.Text("quarter"),
                                       correction.Text("vatAmount"), correction.Text("currency")});
        }
    }
}

void WriteMossConsignment(const json& description, decl::DeclarationDocument& document) {
    const Member consignment(description, "", kConsignmentKeys);
    const auto states =
        consignment.Items("memberStates", {"sequenceNumber", "country", "rows", "totals"});
    WriteHeader(consignment, document, decl::MossXmlHeader, decl::MossXmlHeaderCheckRepresentative);
    for (std::size_t s = 0; s < states.size(); ++s) {
        decl::MossXmlHeaderInfo(document, ReadMemberState(states[s], s));
        const auto rows =
            states[s].Items("rows", {"sequenceNumber", "fixedEstablishment", "rateType", "rate",
                                     "vatAmount", "taxableAmount", "grossAmount", "currency"});
        for (std::size_t r = 0; r < rows.size(); ++r) {
            decl::MossXmlRow(document,
                             {.sequenceNumber = rows[r].TextOr("sequenceNumber", Position(r)),
                              .establishment = ReadEstablishment(rows[r]),
                              .rateType = rows[r].Text("rateType"),
                              .rate = rows[r].Text("rate"),
                              .vatAmount = rows[r].Text("vatAmount"),
                              .taxableAmount = rows[r].Text("taxableAmount"),
                              .grossAmount = rows[r].Text("grossAmount"),
                              .currency = rows[r].Text("currency")});
        }
        const Member totals =
            states[s].Object("totals", {"taxableAmount", "vatAmount", "grossAmount", "currency"});
        decl::MossXmlFooterInfo(document, {totals.Text("taxableAmount"), totals.Text("vatAmount"),
                                           totals.Text("grossAmount"), totals.Text("currency")});
    }
}

}  // namespace fnrk::cli
