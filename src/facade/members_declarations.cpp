// The VAT declaration members: the OSS and MOSS consignments written section by section into a
// document the caller holds (a by-reference argument: left empty, the first header makes a new
// document there), and the boxes of the Luxembourg VAT return.

#include "declarations/lux_vat_layout.hpp"
#include "declarations/moss_writer.hpp"
#include "declarations/oss_writer.hpp"
#include "declarations/table_representative.hpp"
#include "facade/facade_error.hpp"
#include "facade/fnrk_routines.hpp"
#include "facade/member_table.hpp"

namespace fnrk::facade {
namespace {

using R = FnrkRoutines;
using namespace args;
namespace decl = fnrk::declarations;

// The consignment as an object: its one property "xml" is the document's text.
class DeclarationDocumentObject : public VariantObject {
  public:
    std::string_view ClassName() const override { return "DOMDocument"; }
    std::vector<std::string> PropertyNames() const override { return {"xml"}; }
    Variant GetProperty(std::string_view name) const override {
        if (name == "xml") return Variant(document.Serialize());
        ThrowNoProperty(name);
    }

    decl::DeclarationDocument document;
};

// The document of argument 2: the one the caller holds, or a new one when it is empty.
decl::DeclarationDocument& DocumentOf(CallArgs& a) {
    Variant& slot = a.Ref(1);
    if (slot.IsEmpty()) slot = Variant(std::make_shared<DeclarationDocumentObject>());
    auto* holder = dynamic_cast<DeclarationDocumentObject*>(slot.ToObject().get());
    if (holder == nullptr) ThrowTypeMismatch("argument 2 is not a declaration document");
    return holder->document;
}

decl::DeclarationHeader HeaderFrom(const CallArgs& a) {
    return decl::DeclarationHeader{a.String(2), a.String(3), a.String(4), a.String(5),
                                   a.String(6), a.String(7), a.String(8)};
}

const std::vector<ArgSpec> kHeaderArgs = {kRegistry, ByRef(kObject), kString, kString, kString,
                                          kString,   kString,        kString, kString};

template <typename Write>
Variant Section(R& r, CallArgs& a, Write write) {
    r.Wrapped(a.Value(0), [&] { write(DocumentOf(a)); });
    return Variant();
}

using HeaderWriter = void (*)(decl::DeclarationDocument&, const decl::DeclarationHeader&);
using RepresentedHeaderWriter = void (*)(decl::DeclarationDocument&, const decl::DeclarationHeader&,
                                         const decl::RepresentativeSource&);
using InfoWriter = void (*)(decl::DeclarationDocument&, const decl::MemberStateInfo&);

// The header, the header with its representative and the member-state block of a consignment
// ("Oss" or "Moss"). The representative is the current record of the table open under the alias
// given last.
void AddHeaderMembers(MemberTable& table, const std::string& prefix, HeaderWriter header,
                      RepresentedHeaderWriter represented, InfoWriter info) {
    table.Method(prefix + "XmlHeader", kHeaderArgs, [header](R& r, CallArgs& a) {
        return Section(r, a, [&](auto& d) { header(d, HeaderFrom(a)); });
    });
    table.Method(prefix + "XmlHeaderCheckRepresentative", Concat(kHeaderArgs, {kString}),
                 [represented](R& r, CallArgs& a) {
                     return Section(r, a, [&](auto& d) {
                         const decl::TableRepresentative representative(R::Tables(), a.String(9));
                         represented(d, HeaderFrom(a), representative);
                     });
                 });
    table.Method(prefix + "XmlHeaderInfo", {kRegistry, ByRef(kObject), kString, kString},
                 [info](R& r, CallArgs& a) {
                     return Section(r, a, [&](auto& d) { info(d, {a.String(2), a.String(3)}); });
                 });
}

void AddOssMembers(MemberTable& table) {
    AddHeaderMembers(table, "Oss", decl::OssXmlHeader, decl::OssXmlHeaderCheckRepresentative,
                     decl::OssXmlHeaderInfo);
    table.Method("OssXmlNil", {kRegistry, ByRef(kObject)}, [](R& r, CallArgs& a) {
        return Section(r, a, [&](auto& d) { decl::OssXmlNil(d); });
    });
    // Sequence, goods flag, establishment country and VAT number, rate type, rate, VAT amount,
    // taxable amount, currency.
    table.Method("OssXmlRow",
                 {kRegistry, ByRef(kObject), kString, kBoolean, kString, kString, kString, kString,
                  kString, kString, kString},
                 [](R& r, CallArgs& a) {
                     return Section(r, a, [&](auto& d) {
                         decl::OssXmlRow(d, decl::OssRow{a.String(2),
                                                         a.Boolean(3),
                                                         {a.String(4), a.String(5)},
                                                         a.String(6),
                                                         a.String(7),
                                                         a.String(8),
                                                         a.String(9),
                                                         a.String(10)});
                     });
                 });
    table.Method(
        "OssXmlRowCorrection", {kRegistry, ByRef(kObject), kString, kString, kString, kString},
        [](R& r, CallArgs& a) {
            return Section(r, a, [&](auto& d) {
                decl::OssXmlRowCorrection(d, {a.String(2), a.String(3), a.String(4), a.String(5)});
            });
        });
}

void AddMossMembers(MemberTable& table) {
    AddHeaderMembers(table, "Moss", decl::MossXmlHeader, decl::MossXmlHeaderCheckRepresentative,
                     decl::MossXmlHeaderInfo);
    // Sequence, establishment country and VAT number, rate type, rate, VAT, taxable and gross
    // amounts, currency.
    table.Method("MossXmlRow",
                 {kRegistry, ByRef(kObject), kString, kString, kString, kString, kString, kString,
                  kString, kString, kString},
                 [](R& r, CallArgs& a) {
                     return Section(r, a, [&](auto& d) {
                         decl::MossXmlRow(d, decl::MossRow{a.String(2),
                                                           {a.String(3), a.String(4)},
                                                           a.String(5),
                                                           a.String(6),
                                                           a.String(7),
                                                           a.String(8),
                                                           a.String(9),
                                                           a.String(10)});
                     });
                 });
    table.Method(
        "MossXmlFooterInfo", {kRegistry, ByRef(kObject), kString, kString, kString, kString},
        [](R& r, CallArgs& a) {
            return Section(r, a, [&](auto& d) {
                decl::MossXmlFooterInfo(d, {a.String(2), a.String(3), a.String(4), a.String(5)});
            });
        });
}

// One box as an object of named properties, one per field of the box.
std::shared_ptr<PropertyBag> BoxObject(const decl::DeclarationTvaCase& box) {
    auto byte = [](std::uint8_t value) { return Variant(static_cast<std::int16_t>(value)); };
    const std::vector<std::pair<std::string, Variant>> values = {
        {"Number", Variant(box.Number)},
        {"ValueModified", Variant(box.ValueModified)},
        {"ValueOriginal", Variant(box.ValueOriginal)},
        {"XmlNodeNameModified", Variant(box.XmlNodeNameModified)},
        {"XmlNodeNameOfficial", Variant(box.XmlNodeNameOfficial)},
        {"MandatoryOriginal", Variant(box.MandatoryOriginal)},
        {"MandatoryModified", Variant(box.MandatoryModified)},
        {"CaseType", byte(box.CaseType)},
        {"Total", Variant(box.Total)},
        {"Page", byte(box.Page)},
        {"TabOrder", byte(box.TabOrder)},
        {"AddEmptyLineAfter", byte(box.AddEmptyLineAfter)},
        {"FieldVisible", Variant(box.FieldVisible)},
        {"ShowHeaderBefore", Variant(box.ShowHeaderBefore)},
        {"CalcVisible", Variant(box.CalcVisible)},
        {"CalcHeight", Variant(box.CalcHeight)},
        {"CalcWidth", Variant(box.CalcWidth)},
        {"CorrVisible", Variant(box.CorrVisible)},
        {"CorrHeight", Variant(box.CorrHeight)},
        {"CorrWidth", Variant(box.CorrWidth)},
        {"ColumnNumber", byte(box.ColumnNumber)},
        {"Label", Variant(box.Label)}};
    std::vector<std::string> names;
    for (const auto& [name, value] : values) names.push_back(name);
    auto object = std::make_shared<PropertyBag>("DeclarationTvaCase", names);
    for (const auto& [name, value] : values) object->SetProperty(name, value);
    return object;
}

void AddLuxMembers(MemberTable& table) {
    // The boxes of the layout (11 or 12) come back in argument 2 as a collection keyed by number.
    table.Method("LuxXmlCaseInitialise", {kRegistry, ByRef(kObject), kInteger},
                 [](R& r, CallArgs& a) {
                     const std::int16_t layout = a.Integer(2);
                     r.Wrapped(a.Value(0), [&] {
                         decl::VatBoxDictionary boxes;
                         decl::LuxXmlCaseInitialise(boxes, layout);
                         auto collection = std::make_shared<VariantCollection>();
                         for (const auto& [number, box] : boxes) {
                             collection->Add(Variant(BoxObject(box)), number);
                         }
                         a.Ref(1) = Variant(collection);
                     });
                     return Variant();
                 });
}

}  // namespace

void AddDeclarationMembers(MemberTable& table) {
    AddOssMembers(table);
    AddMossMembers(table);
    AddLuxMembers(table);
}

}  // namespace fnrk::facade
