#include "core/ports/MessageBoxes.h"

namespace vantor {

void MessageBoxes::WarnOfEach(const std::vector<NamedText>& texts, const std::function<bool()>& goesOn) {
    for (auto text = texts.begin(); text != texts.end(); ++text) {
        Prompt prompt{text->Text, MessageButtons::Ok, MessageIcon::Warning};
        if (text + 1 != texts.end()) prompt.Tick = "Not for the other " + std::to_string(texts.end() - text - 1);
        for (auto other = text + 1; other != texts.end(); ++other) prompt.Details += other->Name + "\n";
        if (Ask(prompt) == MessageAnswer::OkForAll || !goesOn()) return;
    }
}

}  // namespace vantor
