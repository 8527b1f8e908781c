#pragma once

#include <functional>
#include <string>
#include <vector>

namespace vantor {

enum class MessageButtons { Ok, YesNo, YesNoCancel, RetryCancel };
enum class MessageIcon { None, Information, Question, Warning, Critical };
/// OkForAll: Ok, and the same for the others that the tick tells of.
enum class MessageAnswer { Ok, Yes, No, Retry, Cancel, OkForAll };

struct Prompt {
    std::string Text;  ///< lines separated by "\n"
    MessageButtons Buttons = MessageButtons::Ok;
    MessageIcon Icon = MessageIcon::Information;
    std::string Title = "Vantor";
    std::string Tick{};     ///< beside an Ok that can be OkForAll: "Not for the other 3"; empty for none
    std::string Details{};  ///< shown on demand; empty for none
    /// What the buttons say in place of their usual words, in the order of their names: Yes, No, Cancel. None: those.
    std::vector<std::string> Captions = {};
    /// Yes loses something: Enter, too, answers with the harmless button.
    bool LosesSomething = false;
};

/// A text about one of several things.
struct NamedText {
    std::string Name;
    std::string Text;
};

/// Modal message boxes. Esc answers with the harmless button: Ok, No or Cancel.
class MessageBoxes {
public:
    virtual ~MessageBoxes() = default;
    virtual MessageAnswer Ask(const Prompt& prompt) = 0;

    void Tell(const std::string& text, MessageIcon icon = MessageIcon::Information) {
        Ask({text, MessageButtons::Ok, icon});
    }
    bool Confirm(const std::string& question) {
        return Ask({question, MessageButtons::YesNo, MessageIcon::Question}) == MessageAnswer::Yes;
    }
    /// The same where Yes loses something.
    bool ConfirmLoss(const std::string& question) {
        return Ask({.Text = question,
                    .Buttons = MessageButtons::YesNo,
                    .Icon = MessageIcon::Warning,
                    .LosesSomething = true}) == MessageAnswer::Yes;
    }
    /// One warning after another, until the user has enough of them or, asked after each, `goesOn` says no.
    void WarnOfEach(const std::vector<NamedText>& texts, const std::function<bool()>& goesOn);
    /// Whether to save what was changed before a screen is left: Yes, No, or Cancel to stay.
    MessageAnswer AskToSave(const std::string& question) {
        return Ask({question, MessageButtons::YesNoCancel, MessageIcon::Question});
    }
};

}  // namespace vantor
