#include "platform/messages.hpp"

#include <sstream>

#include <gtest/gtest.h>

namespace fnrk::platform {
namespace {

using A = MessageAnswer;
namespace style = message_style;

TEST(Messages, StylesSplitIntoButtonsIconAndDefault) {
    const MessageStyle retryCancel = 309;  // 256 + 48 + 5
    EXPECT_EQ(retryCancel, style::kDefaultButton2 + style::kExclamation + style::kRetryCancel);
    EXPECT_EQ(ButtonsOf(retryCancel), (std::vector<A>{A::Retry, A::Cancel}));
    EXPECT_EQ(IconOf(retryCancel), style::kExclamation);
    EXPECT_EQ(DefaultAnswerOf(retryCancel), A::Cancel);
    EXPECT_EQ(DefaultAnswerOf(style::kRetryCancel), A::Retry);
    EXPECT_EQ(ButtonsOf(style::kYesNoCancel + style::kQuestion),
              (std::vector<A>{A::Yes, A::No, A::Cancel}));
    EXPECT_EQ(DefaultAnswerOf(style::kYesNoCancel + style::kDefaultButton3), A::Cancel);
    EXPECT_EQ(DefaultAnswerOf(style::kOkOnly + style::kDefaultButton3), A::Ok);  // past the last
    EXPECT_EQ(ButtonsOf(style::kCritical), std::vector<A>{A::Ok});
    EXPECT_EQ(IconOf(style::kCritical + style::kYesNo), style::kCritical);
}

TEST(Messages, SafeAnswersNeverConfirm) {
    EXPECT_EQ(SafeAnswerOf(309), A::Cancel);
    EXPECT_EQ(SafeAnswerOf(style::kYesNo + style::kDefaultButton1), A::No);
    EXPECT_EQ(SafeAnswerOf(style::kAbortRetryIgnore), A::Abort);
    EXPECT_EQ(SafeAnswerOf(style::kOkCancel), A::Cancel);
    EXPECT_EQ(SafeAnswerOf(style::kInformation), A::Ok);
}

TEST(Messages, LoggingSinkWritesALineAndAnswersSafely) {
    std::ostringstream log;
    LoggingMessageSink sink(log);
    EXPECT_EQ(sink.Show(kErrorTitle, "Field not found (NAME)", 309), A::Cancel);
    EXPECT_EQ(log.str(), "Fennrick error: Field not found (NAME) [Cancel]\n");
}

TEST(Messages, CurrentSinkCanBeReplacedAndRestored) {
    RecordingMessageSink recorder;
    recorder.QueueAnswer(A::Retry);
    MessageSink* previous = SetMessageSink(&recorder);
    ASSERT_NE(previous, nullptr);

    EXPECT_EQ(ShowMessage("locked", 309, kErrorTitle), A::Retry);  // from the queue
    EXPECT_EQ(ShowMessage("again", 309, kErrorTitle), A::Cancel);  // queue empty: safe answer
    EXPECT_EQ(ShowMessage("hello"), A::Ok);
    ASSERT_EQ(recorder.shown().size(), 3u);
    EXPECT_EQ(recorder.shown()[0].title, "Fennrick error");
    EXPECT_EQ(recorder.shown()[0].text, "locked");
    EXPECT_EQ(recorder.shown()[0].style, 309);
    EXPECT_EQ(recorder.shown()[1].answer, A::Cancel);
    EXPECT_EQ(recorder.shown()[2].title, "FennRick");

    EXPECT_EQ(SetMessageSink(previous), &recorder);
    EXPECT_EQ(&CurrentMessageSink(), previous);
    ShowMessage("not recorded");
    EXPECT_EQ(recorder.shown().size(), 3u);
}

}  // namespace
}  // namespace fnrk::platform
