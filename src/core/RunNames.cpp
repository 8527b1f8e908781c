#include "core/RunNames.h"

#include "core/Numeric.h"
#include "core/Text.h"

namespace vantor {

std::string RunNameOf(const RunNameTemplate& parts) {
    return std::string(Trim(parts.BaseName)) + "-" + parts.Direction + "-" + parts.RunNumber;
}

std::string NextRunNumber(const std::string& runNumber) {
    const std::string digits = "000" + std::to_string(Add32(Round32(Val(runNumber)), 1));
    return digits.substr(digits.size() - 3);
}

void TakeNumberOf(TakenNumbers& taken, const RunNameTemplate& parts, const std::string& name) {
    constexpr std::size_t Digits = 3;
    // Told by its length, nearly every name: there may be a hundred thousand.
    const std::size_t stem = Trim(parts.BaseName).size() + parts.Direction.size() + 2;
    if (name.size() != stem + Digits) return;
    const auto number = CountOfText(name.substr(stem), 999);
    if (number && EqualIgnoringCase(name.substr(0, stem), RunNameOf(parts).substr(0, stem)))
        taken.set(static_cast<std::size_t>(*number));
}

std::string FreeRunNumber(const TakenNumbers& taken, std::size_t count) {
    std::size_t free = 0;
    for (std::size_t number = 1; number < taken.size(); ++number) {
        free = taken.test(number) ? 0 : free + 1;
        if (free < count) continue;
        const std::string digits = "00" + std::to_string(number + 1 - count);
        return digits.substr(digits.size() - 3);
    }
    return {};
}

}  // namespace vantor
