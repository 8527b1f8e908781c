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

std::int16_t Integer16OfText(const std::string& text) { return To16(IntegerOfText(text)); }

std::int16_t DurationOfText(const std::string& text) {
    const std::int16_t duration = Integer16OfText(text);
    if (duration < 0) throw RunTimeError(ErrorNumber::SubscriptOutOfRange);
    return duration;
}

/// Takes the texts that differ from those that were shown.
class TextTaker {
public:
    TextTaker(RunHeader& header, const RunFileTexts& texts) : header_(header), shown_(TextsOf(header)), texts_(texts) {}

    /// `must` says what the text must be, for the message.
    template <class Convert, class Value>
    void Take(const char* name, std::string RunFileTexts::*field, Convert convert, Value& value, const char* must) {
        const std::string& text = texts_.*field;
        if (text == shown_.*field) return;
        try {
            value = convert(text);
        } catch (const RunTimeError& error) {
            throw RunTimeError(error.Number(),
                               std::string(name) + ": \"" + text + "\"\n" + must + " Nothing was stored.");
        }
    }

    void Take16(const char* name, std::string RunFileTexts::*field, std::int16_t& value) {
        Take(name, field, Integer16OfText, value, "Enter a whole number from -32768 to 32767.");
    }

    void TakeText(std::string RunFileTexts::*field, std::size_t width, std::string& value) {
        if (texts_.*field != shown_.*field) value = FirstCharacters(texts_.*field, width);
    }

    /// A flag with its opposite beside it.
    void TakeFlag(std::string RunFileTexts::*field, const char* setText, std::int16_t& flag, std::int16_t& opposite) {
        if (texts_.*field == shown_.*field) return;
        const bool isSet = texts_.*field == setText;
        flag = isSet ? -1 : 0;
        opposite = isSet ? 0 : -1;
    }

    void TakeLabelsAndNames() {
        for (int key = 1; key <= ShownKeys; ++key)
            if (texts_.ButtonLabel[key] != shown_.ButtonLabel[key])
                header_.ButtonLabel[key] = FirstCharacters(texts_.ButtonLabel[key], RunTextWidth);
        for (int node = 0; node < ShownNodes; ++node)
            if (texts_.SectionName[node] != TrimRight(header_.SectionName[node]))
                header_.SectionName[node] = FirstCharacters(texts_.SectionName[node], RunTextWidth);
    }

private:
    RunHeader& header_;
    const RunFileTexts shown_;
    const RunFileTexts& texts_;
};

}  // namespace

RunFileTexts TextsOf(const RunHeader& header) {
    RunFileTexts texts;
    texts.RunName = TrimRight(header.RunName);
    texts.RunDate = ShortDate(header.RunDate);
    texts.RunTime = ShortTime(header.RunTime);
    texts.CountNumber = std::to_string(header.CountNumber);
    texts.RunNumber = std::to_string(header.RunNumber);
    texts.SiteCode = TrimRight(header.SiteCode);
    texts.CalConstant = std::to_string(header.CalConstant);
    texts.BeforeOrAfter = BeforeAfterText(header.Before);
    texts.RunType = RunTypeText(header.HeaderWord1);
    texts.Length = std::to_string(header.RunLength);
    texts.Duration = std::to_string(header.Duration);
    texts.NumberOfSections = std::to_string(header.NumberOfSections);
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
    TextTaker taker(header, texts);
    taker.TakeText(&RunFileTexts::RunName, RunNameWidth, header.RunName);
    taker.Take("RunDate", &RunFileTexts::RunDate, [](const std::string& text) { return Found(DayOfText(text)); }, header.RunDate, "Enter a date as mm/dd/yy.");
    taker.Take("RunTime", &RunFileTexts::RunTime, [](const std::string& text) { return Found(ClockOfText(text)); }, header.RunTime, "Enter a time as hh:mm.");
    taker.Take16("CountNumber", &RunFileTexts::CountNumber, header.CountNumber);
    taker.Take16("RunNumber", &RunFileTexts::RunNumber, header.RunNumber);
    taker.TakeText(&RunFileTexts::SiteCode, RunTextWidth, header.SiteCode);
    taker.Take(
        "CalConstant", &RunFileTexts::CalConstant, [](const std::string& text) { return Round16(Val(text)); },
        header.CalConstant, "Enter a number from -32768 to 32767.");
    taker.TakeFlag(&RunFileTexts::BeforeOrAfter, "Before", header.Before, header.After);
    taker.TakeFlag(&RunFileTexts::RunType, "Primary", header.HeaderWord1, header.HeaderWord2);
    taker.Take("Length", &RunFileTexts::Length, IntegerOfText, header.RunLength,
               "Enter a whole number from -2147483648 to 2147483647.");
    taker.Take("Duration", &RunFileTexts::Duration, DurationOfText, header.Duration,
               "A run has 0 to 32767 samples, one a second.");
    taker.Take16("NumberOfSections", &RunFileTexts::NumberOfSections, header.NumberOfSections);
    taker.TakeLabelsAndNames();
    taker.TakeText(&RunFileTexts::Notes, RunNotesWidth, header.Notes);

    if (header.Duration < 0) throw RunTimeError(ErrorNumber::SubscriptOutOfRange);
    header.SampleCount = header.Duration;
    edited.SampleValues.ResizeTo(header.SampleCount);
    edited.RunSamples.ResizeTo(header.SampleCount);
    return edited;
}

std::vector<std::string> DifferingFields(const RunHeader& left, const RunHeader& right) {
    std::vector<std::string> names;
    const auto compare = [&](const auto& field) {
        if (left.*field.Pointer != right.*field.Pointer) names.emplace_back(field.Name);
    };
    std::apply([&](const auto&... field) { (compare(field), ...); }, RunHeaderFields);
    return names;
}

}  // namespace vantor
