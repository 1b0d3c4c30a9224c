#pragma once

// Windows only: messages in the system's modal message box, as the desktop applications show
// theirs. Where no box can be shown (a service, a machine without a desktop) the message goes to
// the log and the safe answer is given, as the default sink does.

#include "platform/messages.hpp"

namespace fnrk::platform {

class MessageBoxSink : public MessageSink {
  public:
    MessageAnswer Show(const std::string& title, const std::string& text,
                       MessageStyle style) override;
};

// The one sink of the process.
MessageBoxSink& MessageBoxes();

}  // namespace fnrk::platform
