// The card-statement tables of CARO: CCD (card to account), CCDKEY (merchant to account or
// supplier) and CCDDETAIL (the card transaction behind a booked document line), with their
// upkeep. Answers come back in the last argument; an update the table refused fails the member.

#include "facade/intake_member_support.hpp"
#include "intake/caro_mappings.hpp"

namespace fnrk::facade {
namespace {

using namespace args;
using intake::CaroMappings;
using intake_members::AddAnswering;
using intake_members::AddChecked;
using intake_members::DocumentLine;
using intake_members::DocumentLineOf;
using intake_members::kDocumentLineArgs;
using intake_members::OnCompany;

constexpr const char* kNotWritten = "the mapping could not be written";

using Upkeep = bool (CaroMappings::*)();

// `work(mappings, args)` on the current company's card tables.
template <typename Work>
auto WithMappings(Work work) {
    return OnCompany<CaroMappings>(std::move(work));
}

// A member answering whether the table work `upkeep` succeeded.
void AddUpkeep(MemberTable& table, const std::string& name, Upkeep upkeep) {
    AddAnswering(table, name, {}, kBoolean,
                 WithMappings([upkeep](CaroMappings& m, CallArgs&) { return (m.*upkeep)(); }));
}

void AddCardMembers(MemberTable& table) {
    AddUpkeep(table, "CAROCreateMapping", &CaroMappings::CreateMapping);
    AddUpkeep(table, "CAROCreateIndexMapping", &CaroMappings::CreateIndexMapping);
    AddUpkeep(table, "CAROOpenMapping", &CaroMappings::OpenMapping);
    AddUpkeep(table, "CAROFlushAndUnlockMapping", &CaroMappings::FlushAndUnlockMapping);
    AddUpkeep(table, "CAROPackCloseMapping", &CaroMappings::PackCloseMapping);
    AddAnswering(
        table, "CAROGetMapping", {kString}, kString,
        WithMappings([](CaroMappings& m, CallArgs& a) { return m.GetMapping(a.String(1)); }));
    // cardId, cardNumber, GlAccount.
    AddChecked(table, "CAROUpdateMapping", {kString, kString, kString}, kNotWritten,
               WithMappings([](CaroMappings& m, CallArgs& a) {
                   return m.UpdateMapping(a.String(1), a.String(2), a.String(3));
               }));
    // ByRef cardId, cardNumber, GlAccount, recno, answer: the current card, then the next.
    AddAnswering(table, "CAROReadMapping",
                 {ByRef(kString), ByRef(kString), ByRef(kString), ByRef(kLong)}, kBoolean,
                 WithMappings([](CaroMappings& m, CallArgs& a) {
                     std::string cardId;
                     std::string cardNumber;
                     std::string glAccount;
                     std::int32_t recno = 0;
                     const bool read = m.ReadMapping(cardId, cardNumber, glAccount, recno);
                     a.Ref(1) = Variant(cardId);
                     a.Ref(2) = Variant(cardNumber);
                     a.Ref(3) = Variant(glAccount);
                     a.Ref(4) = Variant(recno);
                     return read;
                 }));
    AddAnswering(
        table, "CARODeleteMapping", {kString}, kBoolean,
        WithMappings([](CaroMappings& m, CallArgs& a) { return m.DeleteMapping(a.String(1)); }));
}

// typeDest: 1 an account, 2 a supplier.
void AddKeyMembers(MemberTable& table) {
    AddUpkeep(table, "CAROCreateKeyMapping", &CaroMappings::CreateKeyMapping);
    AddUpkeep(table, "CAROCreateIndexKeyMapping", &CaroMappings::CreateIndexKeyMapping);
    AddUpkeep(table, "CAROOpenKeyMapping", &CaroMappings::OpenKeyMapping);
    AddUpkeep(table, "CAROFlushAndUnlockKeyMapping", &CaroMappings::FlushAndUnlockKeyMapping);
    AddUpkeep(table, "CAROPackCloseKeyMapping", &CaroMappings::PackCloseKeyMapping);
    // merchant, ByRef typeDest, ByRef destination, ByRef found.
    AddAnswering(table, "CAROGetKeyMapping", {kString, ByRef(kInteger), ByRef(kString)}, kBoolean,
                 WithMappings([](CaroMappings& m, CallArgs& a) {
                     std::int16_t typeDest = 0;
                     std::string destination;
                     const bool found = m.GetKeyMapping(a.String(1), typeDest, destination);
                     a.Ref(2) = Variant(typeDest);
                     a.Ref(3) = Variant(destination);
                     return found;
                 }));
    // merchant, typeDest, destination.
    AddChecked(table, "CAROUpdateKeyMapping", {kString, kInteger, kString},
               "the mapping could not be written (typeDest is 1 for an account, 2 for a "
               "supplier)",
               WithMappings([](CaroMappings& m, CallArgs& a) {
                   return m.UpdateKeyMapping(a.String(1), a.Integer(2), a.String(3));
               }));
    // ByRef merchant, typeDest, destination, recno, answer.
    AddAnswering(table, "CAROReadKeyMapping",
                 {ByRef(kString), ByRef(kInteger), ByRef(kString), ByRef(kLong)}, kBoolean,
                 WithMappings([](CaroMappings& m, CallArgs& a) {
                     std::string merchant;
                     std::int16_t typeDest = 0;
                     std::string destination;
                     std::int32_t recno = 0;
                     const bool read = m.ReadKeyMapping(merchant, typeDest, destination, recno);
                     a.Ref(1) = Variant(merchant);
                     a.Ref(2) = Variant(typeDest);
                     a.Ref(3) = Variant(destination);
                     a.Ref(4) = Variant(recno);
                     return read;
                 }));
    AddAnswering(
        table, "CARODeleteKeyMapping", {kString}, kBoolean,
        WithMappings([](CaroMappings& m, CallArgs& a) { return m.DeleteKeyMapping(a.String(1)); }));
}

// The document line (DbkCode, DocNumber, docOrder, Bookyear, Period) first.
void AddDetailMembers(MemberTable& table) {
    AddAnswering(table, "CAROGetInfoCCDDETAIL", kDocumentLineArgs, kString,
                 WithMappings([](CaroMappings& m, CallArgs& a) {
                     const DocumentLine l = DocumentLineOf(a);
                     return m.GetInfoCCDDETAIL(l.DbkCode, l.DocNumber, l.docOrder, l.Bookyear,
                                               l.Period);
                 }));
    AddAnswering(table, "CAROGetPrettyInfoCCDDETAIL", kDocumentLineArgs, kString,
                 WithMappings([](CaroMappings& m, CallArgs& a) {
                     const DocumentLine l = DocumentLineOf(a);
                     return m.GetPrettyInfoCCDDETAIL(l.DbkCode, l.DocNumber, l.docOrder, l.Bookyear,
                                                     l.Period);
                 }));
    AddAnswering(table, "CAROGetComment", kDocumentLineArgs, kString,
                 WithMappings([](CaroMappings& m, CallArgs& a) {
                     const DocumentLine l = DocumentLineOf(a);
                     return m.GetComment(l.DbkCode, l.DocNumber, l.docOrder, l.Bookyear, l.Period);
                 }));
    // paraminfo after the line: the layout CAROGetInfoCCDDETAIL answers.
    AddAnswering(table, "CAROUpdateCCDDETAIL", Concat(kDocumentLineArgs, {kString}), kBoolean,
                 WithMappings([](CaroMappings& m, CallArgs& a) {
                     const DocumentLine l = DocumentLineOf(a);
                     return m.UpdateCCDDETAIL(l.DbkCode, l.DocNumber, l.docOrder, l.Bookyear,
                                              l.Period, a.String(6));
                 }));
    AddAnswering(table, "CARODeleteCCDDETAIL", kDocumentLineArgs, kBoolean,
                 WithMappings([](CaroMappings& m, CallArgs& a) {
                     const DocumentLine l = DocumentLineOf(a);
                     return m.DeleteCCDDETAIL(l.DbkCode, l.DocNumber, l.docOrder, l.Bookyear,
                                              l.Period);
                 }));
    AddUpkeep(table, "CAROPackCloseCCDDETAIL", &CaroMappings::PackCloseCCDDETAIL);
    AddUpkeep(table, "CAROCreateIndexCCDDETAIL", &CaroMappings::CreateIndexCCDDETAIL);
}

}  // namespace

void AddCardMappingMembers(MemberTable& table) {
    AddCardMembers(table);
    AddKeyMembers(table);
    AddDetailMembers(table);
}

}  // namespace fnrk::facade
