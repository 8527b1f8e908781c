#include "editing/RunFileTexts.h"

#include <optional>
#include <vector>

#include "core/Numeric.h"
#include "core/Text.h"
#include "core/modMain.h"

namespace vantor {
namespace {

std::string ShownName(const RunHeader& header, int node) {
    const std::string_view name = TrimRight(header.SectionName[node]);
    if (!name.empty()) return std::string(name);
    if (node == 0) return "[Start]";
    return node == header.NumberOfSections ? "[End]" : "";
}

/// What a reader of texts found; type mismatch (error 13) where it found nothing.
Date Found(const std::optional<Date>& date) {
    if (!date) throw RunTimeError(ErrorNumber::TypeMismatch);
    return *date;
}

std::int16_t DurationOfText(const std::string& text) {
    const std::int16_t duration = To16(IntegerOfText(text));
    if (duration < 0) throw RunTimeError(ErrorNumber::SubscriptOutOfRange);
    return duration;
}

template <auto Number>
std::string NumberText(const RunHeader& header) {
    return std::to_string(header.*Number);
}
template <std::int16_t RunHeader::*Number>
void TakeNumber(const std::string& text, RunHeader& header) {
    header.*Number = To16(IntegerOfText(text));
}
template <std::string RunHeader::*Text>
std::string PlainText(const RunHeader& header) {
    return std::string(TrimRight(header.*Text));
}
template <std::string RunHeader::*Text, std::size_t Width>
void TakeText(const std::string& text, RunHeader& header) {
    header.*Text = FirstCharacters(text, Width);
}
/// A flag with its opposite beside it.
template <std::int16_t RunHeader::*Flag, std::int16_t RunHeader::*Opposite>
void TakeFlag(bool isSet, RunHeader& header) {
    header.*Flag = isSet ? -1 : 0;
    header.*Opposite = isSet ? 0 : -1;
}

constexpr const char* NumberMust = "Enter a whole number from -32768 to 32767.";

constexpr RunTextField Fields[] = {
    {"RunName", "Run&Name", nullptr, &RunFileTexts::RunName, PlainText<&RunHeader::RunName>,
     TakeText<&RunHeader::RunName, RunNameWidth>, ""},
    {"RunDate", "Run&Date", "mm/dd/yy", &RunFileTexts::RunDate,
     [](const RunHeader& header) { return ShortDate(header.RunDate); },
     [](const std::string& text, RunHeader& header) { header.RunDate = Found(DayOfText(text)); },
     "Enter a date as mm/dd/yy."},
    {"RunTime", "Run&Time", "hh:mm", &RunFileTexts::RunTime,
     [](const RunHeader& header) { return ShortTime(header.RunTime); },
     [](const std::string& text, RunHeader& header) { header.RunTime = Found(ClockOfText(text)); },
     "Enter a time as hh:mm."},
    {"CountNumber", "&CountNumber", "", &RunFileTexts::CountNumber, NumberText<&RunHeader::CountNumber>,
     TakeNumber<&RunHeader::CountNumber>, NumberMust},
    {"RunNumber", "&RunNumber", "", &RunFileTexts::RunNumber, NumberText<&RunHeader::RunNumber>,
     TakeNumber<&RunHeader::RunNumber>, NumberMust},
    {"SiteCode", "S&iteCode", nullptr, &RunFileTexts::SiteCode, PlainText<&RunHeader::SiteCode>,
     TakeText<&RunHeader::SiteCode, RunTextWidth>, ""},
    {"CalConstant", "C&alConstant", "ft per 1000 pulses", &RunFileTexts::CalConstant,
     NumberText<&RunHeader::CalConstant>,
     [](const std::string& text, RunHeader& header) { header.CalConstant = Round16(Val(text)); },
     "Enter a number from -32768 to 32767."},
    {"BeforeOrAfter", "&BeforeOrAfter", "Before or After", &RunFileTexts::BeforeOrAfter,
     [](const RunHeader& header) { return BeforeAfterText(header.Before); },
     [](const std::string& text, RunHeader& header) {
         TakeFlag<&RunHeader::Before, &RunHeader::After>(text == "Before", header);
     },
     ""},
    {"RunType", "RunT&ype", "Primary or Secondary", &RunFileTexts::RunType,
     [](const RunHeader& header) { return RunTypeText(header.HeaderWord1); },
     [](const std::string& text, RunHeader& header) {
         TakeFlag<&RunHeader::HeaderWord1, &RunHeader::HeaderWord2>(text == "Primary", header);
     },
     ""},
    {"Length", "&Length", "ft", &RunFileTexts::Length, NumberText<&RunHeader::RunLength>,
     [](const std::string& text, RunHeader& header) { header.RunLength = IntegerOfText(text); },
     "Enter a whole number from -2147483648 to 2147483647."},
    {"Duration", "D&uration", "s, at most 32767", &RunFileTexts::Duration, NumberText<&RunHeader::Duration>,
     [](const std::string& text, RunHeader& header) { header.Duration = DurationOfText(text); },
     "A run has 0 to 32767 samples, one a second."},
    {"NumberOfSections", "Nu&mberOfSections", "", &RunFileTexts::NumberOfSections,
     NumberText<&RunHeader::NumberOfSections>, TakeNumber<&RunHeader::NumberOfSections>, NumberMust},
};

void TakeField(const RunTextField& field, const std::string& text, RunHeader& header) {
    try {
        field.FromText(text, header);
    } catch (const RunTimeError& error) {
        throw RunTimeError(error.Number(),
                           std::string(field.Name) + ": \"" + text + "\"\n" + field.MustHold + " Nothing was stored.");
    }
}

/// A start time is stored as it is shown, as it always was: without its seconds.
bool IsShortened(const RunTextField& field, const RunHeader& header) {
    return field.Text == &RunFileTexts::RunTime && IsValidDate(header.RunTime);
}

/// The names of nodes that were only shown and are now stored.
std::string NamesTaken(const RunHeader& stored, const RunHeader& edited) {
    std::vector<std::string> taken;
    for (int node = 0; node < ShownNodes; ++node)
        if (TrimRight(stored.SectionName[node]).empty() && edited.SectionName[node] == ShownName(stored, node) &&
            !edited.SectionName[node].empty())
            taken.push_back("\"" + edited.SectionName[node] + "\"");
    return Joined(taken, ", ");
}

std::string NoteOnChange(std::string_view name, const RunHeader& stored, const RunHeader& edited) {
    if (name == "SectionName") return NamesTaken(stored, edited);
    for (const RunTextField& field : Fields) {
        if (name != field.Name) continue;
        const std::string before = field.ToText(stored);
        const std::string after = field.ToText(edited);
        if (before == after) return name == "RunTime" ? "without its seconds" : "";
        return before.empty() || after.empty() ? "" : before + " to " + after;
    }
    return {};
}

}  // namespace

std::span<const RunTextField> RunTextFields() { return Fields; }

RunFileTexts TextsOf(const RunHeader& header) {
    RunFileTexts texts;
    for (const RunTextField& field : Fields) texts.*field.Text = field.ToText(header);
    for (int key = 1; key <= ShownKeys; ++key)
        if (header.ButtonWord[key] != 0) texts.ButtonLabel[key] = TrimRight(header.ButtonLabel[key]);
    for (int node = 0; node < ShownNodes; ++node) {
        texts.SectionName[node] = ShownName(header, node);
        texts.SectionDist[node] = std::to_string(header.SectionDist[node]);
    }
    texts.Notes = TrimRight(header.Notes);
    return texts;
}

RunRecord WithTexts(const RunRecord& run, const RunFileTexts& texts) {
    RunRecord edited = run;
    RunHeader& header = edited.Header;
    const RunFileTexts shown = TextsOf(header);
    for (const RunTextField& field : Fields)
        if (texts.*field.Text != shown.*field.Text || IsShortened(field, header))
            TakeField(field, texts.*field.Text, header);
    for (int key = 1; key <= ShownKeys; ++key)
        if (texts.ButtonLabel[key] != shown.ButtonLabel[key])
            header.ButtonLabel[key] = FirstCharacters(texts.ButtonLabel[key], RunTextWidth);
    for (int node = 0; node < ShownNodes; ++node)
        if (texts.SectionName[node] != TrimRight(header.SectionName[node]))
            header.SectionName[node] = FirstCharacters(texts.SectionName[node], RunTextWidth);
    if (texts.Notes != shown.Notes) header.Notes = FirstCharacters(texts.Notes, RunNotesWidth);

    if (header.Duration < 0) throw RunTimeError(ErrorNumber::SubscriptOutOfRange);
    header.SampleCount = header.Duration;
    edited.SampleValues.ResizeTo(header.SampleCount);
    edited.RunSamples.ResizeTo(header.SampleCount);
    return edited;
}

std::vector<std::string> ChangesOf(const RunHeader& stored, const RunHeader& edited) {
    std::vector<std::string> changes;
    const auto compare = [&](const auto& field) {
        if (stored.*field.Pointer == edited.*field.Pointer) return;
        const std::string note = NoteOnChange(field.Name, stored, edited);
        changes.push_back(field.Name + (note.empty() ? note : " (" + note + ")"));
    };
    std::apply([&](const auto&... field) { (compare(field), ...); }, RunHeaderFields);
    return changes;
}

}  // namespace vantor
