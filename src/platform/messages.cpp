#include "platform/messages.hpp"

#include <iostream>

namespace fnrk::platform {
namespace {

constexpr MessageStyle kButtonMask = 0x0F;
constexpr MessageStyle kIconMask = 0xF0;
constexpr MessageStyle kDefaultButtonMask = 0xF00;

LoggingMessageSink& DefaultSink() {
    static LoggingMessageSink sink(std::cerr);
    return sink;
}

MessageSink*& CurrentSinkSlot() {
    static MessageSink* current = nullptr;
    return current;
}

}  // namespace

std::vector<MessageAnswer> ButtonsOf(MessageStyle style) {
    using A = MessageAnswer;
    switch (style & kButtonMask) {
        case message_style::kOkCancel:
            return {A::Ok, A::Cancel};
        case message_style::kAbortRetryIgnore:
            return {A::Abort, A::Retry, A::Ignore};
        case message_style::kYesNoCancel:
            return {A::Yes, A::No, A::Cancel};
        case message_style::kYesNo:
            return {A::Yes, A::No};
        case message_style::kRetryCancel:
            return {A::Retry, A::Cancel};
        default:
            return {A::Ok};
    }
}

MessageStyle IconOf(MessageStyle style) {
    return style & kIconMask;
}

MessageAnswer DefaultAnswerOf(MessageStyle style) {
    const std::vector<MessageAnswer> buttons = ButtonsOf(style);
    const auto index = static_cast<std::size_t>((style & kDefaultButtonMask) >> 8);
    return index < buttons.size() ? buttons[index] : buttons.front();
}

MessageAnswer SafeAnswerOf(MessageStyle style) {
    switch (style & kButtonMask) {
        case message_style::kOkCancel:
        case message_style::kYesNoCancel:
        case message_style::kRetryCancel:
            return MessageAnswer::Cancel;
        case message_style::kAbortRetryIgnore:
            return MessageAnswer::Abort;
        case message_style::kYesNo:
            return MessageAnswer::No;
        default:
            return MessageAnswer::Ok;
    }
}

const char* AnswerCaption(MessageAnswer answer) {
    switch (answer) {
        case MessageAnswer::Ok:
            return "OK";
        case MessageAnswer::Cancel:
            return "Cancel";
        case MessageAnswer::Abort:
            return "Abort";
        case MessageAnswer::Retry:
            return "Retry";
        case MessageAnswer::Ignore:
            return "Ignore";
        case MessageAnswer::Yes:
            return "Yes";
        case MessageAnswer::No:
            return "No";
    }
    return "";
}

LoggingMessageSink::LoggingMessageSink(std::ostream& log) : log_(log) {}

MessageAnswer LoggingMessageSink::Show(const std::string& title, const std::string& text,
                                       MessageStyle style) {
    const MessageAnswer answer = SafeAnswerOf(style);
    log_ << title << ": " << text << " [" << AnswerCaption(answer) << "]\n";
    log_.flush();
    return answer;
}

MessageAnswer RecordingMessageSink::Show(const std::string& title, const std::string& text,
                                         MessageStyle style) {
    MessageAnswer answer = SafeAnswerOf(style);
    if (!answers_.empty()) {
        answer = answers_.front();
        answers_.pop_front();
    }
    shown_.push_back({title, text, style, answer});
    return answer;
}

MessageSink& CurrentMessageSink() {
    MessageSink* current = CurrentSinkSlot();
    return current != nullptr ? *current : DefaultSink();
}

MessageSink* SetMessageSink(MessageSink* sink) {
    MessageSink* previous = CurrentSinkSlot();
    CurrentSinkSlot() = sink;
    return previous != nullptr ? previous : &DefaultSink();
}

MessageAnswer ShowMessage(const std::string& text, MessageStyle style, const std::string& title) {
    return CurrentMessageSink().Show(title, text, style);
}

}  // namespace fnrk::platform
