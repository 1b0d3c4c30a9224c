// Windows: the message box answers with one of its buttons; without a desktop to show it on (the
// test machine's Wine), the safe answer, never the failure code of the box.

#include <windows.h>

#include <atomic>
#include <thread>

#include <gtest/gtest.h>

#include "platform/message_box.hpp"

namespace fnrk::platform {
namespace {

TEST(MessageBoxSinkTest, AnswersWithOneOfItsButtons) {
    // Where the box shows, another thread presses Retry in it.
    std::atomic<bool> done{false};
    std::thread presser([&done] {
        while (!done) {
            if (HWND box = FindWindowW(nullptr, L"Fennrick box test")) {
                PostMessageW(box, WM_COMMAND, IDRETRY, 0);
                return;
            }
            Sleep(20);
        }
    });
    const MessageAnswer answer = MessageBoxes().Show(
        "Fennrick box test", "The record is locked by another user.",
        message_style::kRetryCancel + message_style::kExclamation + message_style::kDefaultButton2);
    done = true;
    presser.join();
    EXPECT_TRUE(answer == MessageAnswer::Retry || answer == MessageAnswer::Cancel)
        << static_cast<int>(answer);
}

}  // namespace
}  // namespace fnrk::platform
