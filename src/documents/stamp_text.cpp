#include "documents/pdf_documents.hpp"
#include "session/session_user.hpp"

namespace fnrk::documents {

std::string DuplicateStampText() {
    switch (session::CurrentMessageLanguage()) {
        case session::MessageLanguage::Dutch:
            return "DUPLICAAT";
        case session::MessageLanguage::English:
            return "DUPLICATE";
        case session::MessageLanguage::French:
            break;
    }
    return "DUPLICATA";
}

}  // namespace fnrk::documents
