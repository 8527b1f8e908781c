#include "fakes/ScriptedMessageBoxes.h"

#include <gtest/gtest.h>

namespace vantor {
namespace {

bool Offers(MessageButtons buttons, MessageAnswer answer) {
    switch (buttons) {
        case MessageButtons::Ok: return answer == MessageAnswer::Ok;
        case MessageButtons::YesNo: return answer == MessageAnswer::Yes || answer == MessageAnswer::No;
        case MessageButtons::YesNoCancel:
            return answer == MessageAnswer::Yes || answer == MessageAnswer::No || answer == MessageAnswer::Cancel;
        case MessageButtons::RetryCancel: return answer == MessageAnswer::Retry || answer == MessageAnswer::Cancel;
    }
    return false;
}

MessageAnswer SafeWayOut(MessageButtons buttons) {
    return buttons == MessageButtons::Ok
               ? MessageAnswer::Ok
               : (buttons == MessageButtons::YesNo ? MessageAnswer::No : MessageAnswer::Cancel);
}

}  // namespace

ScriptedMessageBoxes::~ScriptedMessageBoxes() {
    for (const Step& step : script_) ADD_FAILURE() << "This prompt never came: " << step.Text;
}

void ScriptedMessageBoxes::Expect(const std::string& text, MessageAnswer answer) { script_.push_back({text, answer}); }

MessageAnswer ScriptedMessageBoxes::Ask(const Prompt& prompt) {
    if (script_.empty()) {
        ADD_FAILURE() << "A prompt that was not expected: " << prompt.Text;
        return SafeWayOut(prompt.Buttons);
    }
    const Step step = script_.front();
    script_.pop_front();
    EXPECT_EQ(prompt.Text, step.Text);
    const bool isTicked = step.Answer == MessageAnswer::OkForAll && !prompt.Tick.empty();
    EXPECT_TRUE(isTicked || Offers(prompt.Buttons, step.Answer)) << "The answer is no button of: " << prompt.Text;
    return step.Answer;
}

}  // namespace vantor
