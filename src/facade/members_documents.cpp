// Hashing, PDF duplicates and merging, and the file-name and folder routines of the
// miscellaneous family.

#include "documents/pdf_documents.hpp"
#include "facade/helper_call.hpp"
#include "utilities/file_names.hpp"
#include "utilities/md5_digest.hpp"

namespace fnrk::facade {

using R = FnrkRoutines;
using namespace args;

void AddDocumentMembers(MemberTable& table) {
    table.Method("ConvertToMD5", {kRegistry, kString}, [](R& r, CallArgs& a) {
        return HelperCall(r, a, [&] { return utilities::ConvertToMD5(a.String(1)); });
    });
    table.Method("ConvertTabOfByteToMD5", {kRegistry, kBytes}, [](R& r, CallArgs& a) {
        return HelperCall(r, a,
                          [&] { return utilities::ConvertTabOfByteToMD5(a.Value(1).ToBytes()); });
    });
    // Source, target; the reason of a failure comes back in the last argument.
    table.Method("CreateDuplicata", {kRegistry, kString, kString, Optional(ByRef(kString))},
                 [](R& r, CallArgs& a) {
                     return HelperCall(r, a, [&] {
                         std::string reason;
                         const bool done =
                             documents::CreateDuplicata(a.String(1), a.String(2), reason);
                         if (a.Count() > 3) a.Ref(3) = Variant(reason);
                         return done;
                     });
                 });
    // The sources (an array or a collection of paths), target; the reason of a failure comes
    // back in the last argument.
    table.Method("MergePDFFile", {kRegistry, kVariant, kString, Optional(ByRef(kString))},
                 [](R& r, CallArgs& a) {
                     return HelperCall(r, a, [&] {
                         std::string reason;
                         const bool done =
                             documents::MergePDFFile(TextsOf(a.Value(1)), a.String(2), reason);
                         if (a.Count() > 3) a.Ref(3) = Variant(reason);
                         return done;
                     });
                 });
    table.Method("ReplaceCharactersReminderFileName", {kRegistry, kString}, [](R& r, CallArgs& a) {
        return HelperCall(
            r, a, [&] { return utilities::ReplaceCharactersReminderFileName(a.String(1)); });
    });
    table.Method("getScreenDPI", {kRegistry}, [](R& r, CallArgs& a) {
        return HelperCall(r, a,
                          [&] { return static_cast<std::int32_t>(utilities::getScreenDPI()); });
    });
    table.Method("CreateFolderRecursive", {kRegistry, kString}, [](R& r, CallArgs& a) {
        return HelperCall(r, a, [&] { return utilities::CreateFolderRecursive(a.String(1)); });
    });
}

}  // namespace fnrk::facade
