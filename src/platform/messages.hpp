#pragma once

// Messages to the user, with the styles and answers of the classic modal message box. Where the
// message goes is the process-wide current sink: by default it is written to the log and the safe
// answer is given; the command line asks on its terminal; tests record and choose the answer.

#include <cstdint>
#include <deque>
#include <ostream>
#include <string>
#include <vector>

namespace fnrk::platform {

// A style is the sum of one button set, one icon and one default button, as the message box
// takes it: 309 = 256 + 48 + 5 is Retry/Cancel, exclamation, second button default.
using MessageStyle = std::int32_t;

namespace message_style {
inline constexpr MessageStyle kOkOnly = 0;
inline constexpr MessageStyle kOkCancel = 1;
inline constexpr MessageStyle kAbortRetryIgnore = 2;
inline constexpr MessageStyle kYesNoCancel = 3;
inline constexpr MessageStyle kYesNo = 4;
inline constexpr MessageStyle kRetryCancel = 5;
inline constexpr MessageStyle kCritical = 16;
inline constexpr MessageStyle kQuestion = 32;
inline constexpr MessageStyle kExclamation = 48;
inline constexpr MessageStyle kInformation = 64;
inline constexpr MessageStyle kDefaultButton1 = 0;
inline constexpr MessageStyle kDefaultButton2 = 256;
inline constexpr MessageStyle kDefaultButton3 = 512;
}  // namespace message_style

enum class MessageAnswer : std::int32_t {
    Ok = 1,
    Cancel = 2,
    Abort = 3,
    Retry = 4,
    Ignore = 5,
    Yes = 6,
    No = 7,
};

inline constexpr const char* kErrorTitle = "Fennrick error";
inline constexpr const char* kProductTitle = "FennRick";

// The buttons of a style, in the order they are shown.
std::vector<MessageAnswer> ButtonsOf(MessageStyle style);
// The icon part of a style (0, 16, 32, 48 or 64).
MessageStyle IconOf(MessageStyle style);
// The answer of the default button (the first button when the style names one past the last).
MessageAnswer DefaultAnswerOf(MessageStyle style);
// The answer that leaves things as they are: Cancel, No, Abort, or Ok for a lone OK.
MessageAnswer SafeAnswerOf(MessageStyle style);
// The button's caption: "OK", "Cancel", "Abort", "Retry", "Ignore", "Yes", "No".
const char* AnswerCaption(MessageAnswer answer);

class MessageSink {
  public:
    virtual ~MessageSink() = default;
    virtual MessageAnswer Show(const std::string& title, const std::string& text,
                               MessageStyle style) = 0;
};

// Writes each message as one line ("title: text") to a stream and gives the safe answer.
class LoggingMessageSink : public MessageSink {
  public:
    explicit LoggingMessageSink(std::ostream& log);
    MessageAnswer Show(const std::string& title, const std::string& text,
                       MessageStyle style) override;

  private:
    std::ostream& log_;
};

// Keeps every message shown; answers from a queue, then with the safe answer.
class RecordingMessageSink : public MessageSink {
  public:
    struct Shown {
        std::string title;
        std::string text;
        MessageStyle style = 0;
        MessageAnswer answer = MessageAnswer::Ok;
    };

    void QueueAnswer(MessageAnswer answer) { answers_.push_back(answer); }
    const std::vector<Shown>& shown() const { return shown_; }

    MessageAnswer Show(const std::string& title, const std::string& text,
                       MessageStyle style) override;

  private:
    std::deque<MessageAnswer> answers_;
    std::vector<Shown> shown_;
};

// The current sink (the logging one on standard error until another is set).
MessageSink& CurrentMessageSink();
// Makes `sink` current and returns the one it replaces; nullptr restores the default. The caller
// keeps the sink alive while it is current.
MessageSink* SetMessageSink(MessageSink* sink);

// Shows a message through the current sink.
MessageAnswer ShowMessage(const std::string& text, MessageStyle style = message_style::kOkOnly,
                          const std::string& title = kProductTitle);

}  // namespace fnrk::platform
