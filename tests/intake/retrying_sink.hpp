#pragma once

// A user who answers Retry to every question: a workstation that waits out the other's locks.

#include <atomic>

#include "platform/messages.hpp"

namespace fnrk::intake::testing {

class RetryingSink : public platform::MessageSink {
  public:
    platform::MessageAnswer Show(const std::string&, const std::string&,
                                 platform::MessageStyle) override {
        ++questions;
        return platform::MessageAnswer::Retry;
    }
    std::atomic<int> questions = 0;
};

}  // namespace fnrk::intake::testing
