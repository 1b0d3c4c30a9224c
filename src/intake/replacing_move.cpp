#include "intake/replacing_move.hpp"

#include "platform/file_system.hpp"

namespace fnrk::intake {

namespace {

// A move, or a copy and a removal where a rename cannot cross file systems. A copy that fails
// half way is removed again.
bool MoveOrCopy(std::string_view source, std::string_view target) {
    if (platform::MoveFile(source, target)) return true;
    if (!platform::FileExists(source) || platform::FileExists(target)) return false;
    if (!platform::CopyFile(source, target, false)) {
        platform::DeleteFile(target);
        return false;
    }
    if (platform::DeleteFile(source)) return true;
    platform::DeleteFile(target);
    return false;
}

}  // namespace

bool ReplacingMove(std::string_view source, std::string_view target) {
    if (!platform::FileExists(source)) return false;
    std::string setAside;
    if (platform::FileExists(target)) {
        setAside = std::string(target) + "." + platform::GetTempName();
        if (!platform::MoveFile(target, setAside)) return false;
    }
    if (MoveOrCopy(source, target)) {
        if (!setAside.empty()) platform::DeleteFile(setAside);
        return true;
    }
    if (!setAside.empty()) platform::MoveFile(setAside, target);
    return false;
}

}  // namespace fnrk::intake
