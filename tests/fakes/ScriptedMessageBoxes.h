#pragma once

#include <deque>
#include <string>
#include <utility>

#include "core/ports/MessageBoxes.h"

namespace vantor {

/// Message boxes that hold an ordered script of exact texts and answers. A prompt that was not expected fails the
/// test, and so does one that was expected and never came.
class ScriptedMessageBoxes : public MessageBoxes {
public:
    ~ScriptedMessageBoxes() override;
    void Expect(const std::string& text, MessageAnswer answer = MessageAnswer::Ok) {
        script_.push_back({text, answer});
    }
    MessageAnswer Ask(const Prompt& prompt) override;
    /// True when every expected prompt came.
    bool IsDone() const { return script_.empty(); }

private:
    std::deque<std::pair<std::string, MessageAnswer>> script_;
};

}  // namespace vantor
