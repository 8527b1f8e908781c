#include "fakes/ScriptedMessageBoxes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace vantor {
namespace {

/// The answers that a box offers, the safe way out last.
std::vector<MessageAnswer> AnswersOf(const Prompt& prompt) {
    using enum MessageAnswer;
    switch (prompt.Buttons) {
        case MessageButtons::YesNo: return {Yes, No};
        case MessageButtons::YesNoCancel: return {Yes, No, Cancel};
        case MessageButtons::RetryCancel: return {Retry, Cancel};
        case MessageButtons::Ok: break;
    }
    return prompt.Tick.empty() ? std::vector{Ok} : std::vector{OkForAll, Ok};
}

}  // namespace

ScriptedMessageBoxes::~ScriptedMessageBoxes() {
    for (const auto& [text, answer] : script_) ADD_FAILURE() << "This prompt never came: " << text;
}

MessageAnswer ScriptedMessageBoxes::Ask(const Prompt& prompt) {
    if (script_.empty()) {
        ADD_FAILURE() << "A prompt that was not expected: " << prompt.Text;
        return AnswersOf(prompt).back();
    }
    const auto [text, answer] = script_.front();
    script_.pop_front();
    EXPECT_EQ(prompt.Text, text);
    EXPECT_EQ(std::ranges::count(AnswersOf(prompt), answer), 1) << "The answer is no button of: " << prompt.Text;
    return answer;
}

}  // namespace vantor
