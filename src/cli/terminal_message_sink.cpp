// The command line's messages to the user: asked on the terminal when there is one, otherwise
// written to standard error with the safe answer.

#include <unistd.h>

#include <iostream>
#include <string>

#include "platform/messages.hpp"
#include "platform/text.hpp"

namespace fnrk::cli {
namespace {

using platform::MessageAnswer;
using platform::MessageStyle;

class TerminalMessageSink : public platform::MessageSink {
  public:
    MessageAnswer Show(const std::string& title, const std::string& text,
                       MessageStyle style) override {
        if (::isatty(STDIN_FILENO) == 0 || ::isatty(STDERR_FILENO) == 0) {
            return log_.Show(title, text, style);
        }
        const auto buttons = platform::ButtonsOf(style);
        const MessageAnswer fallback = platform::DefaultAnswerOf(style);
        std::cerr << title << ": " << text << "\n";
        if (buttons.size() == 1) return buttons.front();
        for (;;) {
            for (const MessageAnswer button : buttons) {
                std::cerr << "[" << platform::AnswerCaption(button) << "] ";
            }
            std::cerr << "(Enter: " << platform::AnswerCaption(fallback) << ")? " << std::flush;
            std::string line;
            if (!std::getline(std::cin, line)) return platform::SafeAnswerOf(style);
            line = platform::Trim(line);
            if (line.empty()) return fallback;
            for (const MessageAnswer button : buttons) {
                const std::string caption = platform::AnswerCaption(button);
                if (platform::EqualsNoCase(line, caption) ||
                    platform::EqualsNoCase(line, caption.substr(0, 1))) {
                    return button;
                }
            }
        }
    }

  private:
    platform::LoggingMessageSink log_{std::cerr};
};

TerminalMessageSink& TerminalSink() {
    static TerminalMessageSink sink;
    return sink;
}

const bool kTerminalSinkInstalled = (platform::SetMessageSink(&TerminalSink()), true);

}  // namespace
}  // namespace fnrk::cli
