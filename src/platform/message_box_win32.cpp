#include <windows.h>

#include <iostream>

#include "platform/message_box.hpp"
#include "platform/utf8.hpp"

namespace fnrk::platform {

MessageAnswer MessageBoxSink::Show(const std::string& title, const std::string& text,
                                   MessageStyle style) {
    // The styles and the answers are the message box's own numbers (IDOK = 1 ... IDNO = 7).
    const int answer = MessageBoxW(nullptr, Utf8ToUtf16(text).c_str(), Utf8ToUtf16(title).c_str(),
                                   static_cast<UINT>(style) | MB_TASKMODAL | MB_SETFOREGROUND);
    for (const MessageAnswer button : ButtonsOf(style)) {
        if (static_cast<int>(button) == answer) return button;
    }
    static LoggingMessageSink log(std::cerr);
    return log.Show(title, text, style);
}

MessageBoxSink& MessageBoxes() {
    static MessageBoxSink sink;
    return sink;
}

}  // namespace fnrk::platform
