// The hashing and PDF members, and the one-routine members over files and folders.

#include "documents/pdf_documents.hpp"
#include "facade/wrapped_member.hpp"
#include "utilities/file_names.hpp"
#include "utilities/md5_digest.hpp"

namespace fnrk::facade {
namespace {

using R = FnrkRoutines;
using namespace args;
namespace u = fnrk::utilities;

std::vector<std::string> Paths(const Variant& value) {
    if (value.Type() != VariantType::Array) return {value.ToString()};
    std::vector<std::string> paths;
    for (const Variant& item : value.ToArray()) paths.push_back(item.ToString());
    return paths;
}

// Sets the optional by-reference message argument at `index` when the caller gave one.
void Report(CallArgs& a, std::size_t index, const std::string& message) {
    if (a.Has(index)) a.Ref(index) = Variant(message);
}

}  // namespace

void AddDocumentMembers(MemberTable& table) {
    AddWrapped(table, "ConvertToMD5", {kString},
               [](R&, CallArgs& a) { return u::ConvertToMD5(a.String(1)); });
    AddWrapped(table, "ConvertTabOfByteToMD5", {kBytes},
               [](R&, CallArgs& a) { return u::ConvertTabOfByteToMD5(a.Value(1).ToBytes()); });
    // Source, target, and an optional by-reference argument that receives the error text.
    AddWrapped(table, "CreateDuplicata", {kString, kString, Optional(ByRef(kString))},
               [](R&, CallArgs& a) {
                   std::string error;
                   const bool done = documents::CreateDuplicata(a.String(1), a.String(2), error);
                   Report(a, 3, error);
                   return done;
               });
    // The sources (an array of paths, or one path), the target, the optional error text.
    AddWrapped(table, "MergePDFFile", {kVariant, kString, Optional(ByRef(kString))},
               [](R&, CallArgs& a) {
                   std::string error;
                   const bool done = documents::MergePDFFile(Paths(a.Value(1)), a.String(2), error);
                   Report(a, 3, error);
                   return done;
               });
    AddWrapped(table, "ReplaceCharactersReminderFileName", {kString},
               [](R&, CallArgs& a) { return u::ReplaceCharactersReminderFileName(a.String(1)); });
    AddWrapped(table, "CreateFolderRecursive", {kString},
               [](R&, CallArgs& a) { return u::CreateFolderRecursive(a.String(1)); });
    AddWrapped(table, "getScreenDPI", {},
               [](R&, CallArgs&) { return static_cast<std::int32_t>(u::getScreenDPI()); });
}

}  // namespace fnrk::facade
