#include "editing/RunDetails.h"

#include <algorithm>
#include <limits>
#include <span>

#include "analysis/CutRun.h"
#include "analysis/DelayStatistics.h"
#include "core/Numeric.h"
#include "core/Paths.h"
#include "core/RunDecoding.h"
#include "core/RunFile.h"
#include "core/StudyFile.h"
#include "core/Text.h"
#include "core/Windows1252.h"
#include "core/modMain.h"
#include "editing/SaveRun.h"

namespace vantor {
namespace {

bool TakeCalConstant(const std::string& text, RunHeader& header) {
    const auto feet = CountOfText(text, std::numeric_limits<std::int16_t>::max());
    if (feet) header.CalConstant = To16(*feet);
    return feet.has_value();
}

template <Date RunHeader::*Moment>
bool TakeMoment(const std::optional<Date>& date, RunHeader& header) {
    if (date) header.*Moment = *date;
    return date.has_value();
}

constexpr RunDetailField Fields[] = {
    {"RunDetailsName", &RunDetailTexts::Name, [](const RunHeader& header) { return std::string(Trim(header.RunName)); },
     [](const std::string& text, RunHeader& header) {
         header.RunName = Trim(text);
         return true;
     },
     ""},
    {"RunDetailsDate", &RunDetailTexts::RunDate, [](const RunHeader& header) { return ShortDate(header.RunDate); },
     [](const std::string& text, RunHeader& header) {
         return TakeMoment<&RunHeader::RunDate>(DayOfText(text), header);
     },
     "The date must be a day in the form mm/dd/yy, for example 03/14/08."},
    {"RunDetailsTime", &RunDetailTexts::RunTime, [](const RunHeader& header) { return ShortTime(header.RunTime); },
     [](const std::string& text, RunHeader& header) {
         return TakeMoment<&RunHeader::RunTime>(ClockOfText(text), header);
     },
     "The time must be a time of day in the form hh:mm, for example 07:45."},
    {"RunDetailsCalConst", &RunDetailTexts::CalConstant,
     [](const RunHeader& header) { return std::to_string(header.CalConstant); }, TakeCalConstant,
     "The calibration constant must be a whole number from 0 to 32767 (feet per 1000 pulses)."},
    {"RunDetailsNotes", &RunDetailTexts::Notes,
     [](const RunHeader& header) { return std::string(TrimRight(header.Notes)); },
     [](const std::string& text, RunHeader& header) {
         header.Notes = StoredText(text, NotesWidth);
         return true;
     },
     ""},
};

std::optional<Refusal> TakeTexts(RunHeader& header, const RunDetailTexts& texts) {
    const RunDetailTexts shown = DetailsOf(header);
    for (const RunDetailField& field : Fields)
        if (texts.*field.Text != shown.*field.Text && !field.FromText(texts.*field.Text, header))
            return Refusal{field.MustHold, field.Control};
    header.HeaderWord1 = texts.IsPrimary ? -1 : 0;
    header.HeaderWord2 = texts.IsPrimary ? 0 : -1;
    header.Before = texts.IsBefore ? -1 : 0;
    header.After = texts.IsBefore ? 0 : -1;
    for (int key = 1; key <= KeySlots; ++key)
        if (texts.ButtonLabel[key] != shown.ButtonLabel[key])
            header.ButtonLabel[key] = StoredText(texts.ButtonLabel[key], NodeNameWidth);
    return std::nullopt;
}

bool IsNode(std::int16_t sampleValue) { return HasNode(sampleValue); }

bool MovesAlike(const RunRecord& left, const RunRecord& right) {
    return left.SampleValues == right.SampleValues && left.Header.CalConstant == right.Header.CalConstant;
}

}  // namespace

std::span<const RunDetailField> RunDetailFields() { return Fields; }

RunDetailTexts DetailsOf(const RunHeader& header) {
    RunDetailTexts texts;
    for (const RunDetailField& field : Fields) texts.*field.Text = field.ToText(header);
    texts.IsPrimary = header.HeaderWord1 != 0;
    texts.IsBefore = header.Before != 0;
    for (int key = 1; key <= KeySlots; ++key)
        if (header.ButtonWord[key] != 0) texts.ButtonLabel[key] = TrimRight(header.ButtonLabel[key]);
    return texts;
}

std::string StoredText(const std::string& text, std::size_t width) {
    const std::string stored = Windows1252FromUtf8(text).substr(0, width);
    return std::string(TrimRight(Utf8FromWindows1252(std::as_bytes(std::span(stored)))));
}

std::optional<RunHeader> ReadHeaderOfRunFile(const FileSystem& files, const std::string& path) {
    const std::string folder = FolderOf(path);
    const std::string name = BaseName(path);
    if (HasExtension(path, RunExtension)) {
        RunReading reading = ReadRun(files, path, RunPart::Header);
        if (reading) return std::move(reading.Run.Header);
        if (reading.Outcome == RunOutcome::Missing) return std::nullopt;
        throw RunTimeError(*reading.Fault);
    }
    if (HasExtension(path, Ver1RunExtension) && FileExists(files, path)) return ReadVer1Run(files, folder, name).Header;
    return std::nullopt;
}

RunDetails::RunDetails(const RunRecord& saved, vantor::Units units)
    : saved_(saved), run_(saved), rows_(RowsOf(saved)), units_(units) {}

bool RunDetails::HasChanges(const RunDetailTexts& texts) const {
    return texts != DetailsOf(saved_.Header) || !MovesAlike(run_, saved_) || rows_ != RowsOf(saved_);
}

void RunDetails::SetNodeName(int row, const std::string& name) {
    rows_.at(static_cast<std::size_t>(row)).Name = StoredText(name, NodeNameWidth);
}

void RunDetails::SetTypedDistance(int row, const std::string& text) {
    rows_.at(static_cast<std::size_t>(row)).TypedDistance = text;
}

void RunDetails::Calibrate(const std::string& calConstant) {
    const std::int16_t before = run_.Header.CalConstant;
    if (!TakeCalConstant(calConstant, run_.Header) || run_.Header.CalConstant == before) return;
    DecodeEditedRun(run_);
    MeasureRows(run_, rows_);
}

std::optional<Refusal> RunDetails::Delete(int active) {
    auto refusal = DeleteRow(run_, rows_, active);
    if (!refusal) DecodeEditedRun(run_);
    return refusal;
}

int RunDetails::TakeNames(const RunHeader& other) {
    // A header counts its nodes no farther than their decoding goes, but may have names for more.
    const int known = other.NumberOfSections < DecodedSections ? other.NumberOfSections : MostNamedNodes;
    int names = 0;
    for (int node = 0; node < known; ++node) {
        const std::string_view name = TrimRight(other.SectionName[node]);
        if (name.empty()) continue;
        ++names;
        if (node < static_cast<int>(rows_.size())) rows_[static_cast<std::size_t>(node)].Name = name;
    }
    return names;
}

std::optional<Refusal> RunDetails::Complete(const RunDetailTexts& texts, RunRecord& edited) const {
    edited = run_;
    if (auto refusal = TakeTexts(edited.Header, texts)) return refusal;
    if (auto refusal = PlaceNodes(edited, rows_, units_)) return refusal;
    if (edited.SampleValues != saved_.SampleValues)
        for (int node = static_cast<int>(rows_.size()); node < MostNamedNodes; ++node)
            edited.Header.SectionName[node].clear();
    if (!MovesAlike(edited, saved_)) DecodeEditedRun(edited);
    return std::nullopt;
}

void RunDetails::Continue(RunRecord edited) {
    run_ = std::move(edited);
    rows_ = RowsOf(run_);
}

std::optional<Refusal> RunDetails::TrimStart(const RunDetailTexts& texts) {
    if (rows_.size() <= 2) return Refusal{};
    RunRecord edited;
    if (auto refusal = Complete(texts, edited)) return refusal;
    const auto& values = edited.SampleValues;
    const auto node = std::find_if(values.begin(), values.end(), IsNode);
    const auto first = static_cast<std::int32_t>(node - values.begin()) + 1;
    if (first >= values.LastIndex()) return Refusal{};
    Continue(CutRun(edited, first + 1, values.LastIndex()));
    samplesCut_ += first;
    return std::nullopt;
}

std::optional<Refusal> RunDetails::TrimEnd(const RunDetailTexts& texts) {
    if (rows_.size() <= 2) return Refusal{};
    RunRecord edited;
    if (auto refusal = Complete(texts, edited)) return refusal;
    std::int32_t last = edited.SampleValues.LastIndex();
    while (!HasNode(edited.SampleValues[last])) --last;
    edited = CutRun(edited, 1, last);
    ClearNode(edited, last);
    DecodeEditedRun(edited);
    Continue(std::move(edited));
    return std::nullopt;
}

DetailsSaved RunDetails::Save(ApplicationState& state, FileSystem& files, int entry, const RunDetailTexts& texts) {
    const std::string name(Trim(texts.Name));
    const bool keepsName = name == Trim(saved_.Header.RunName);
    if (!keepsName) {
        const std::string problem = RunNameProblem(state, files, name);
        if (!problem.empty()) return {Refusal{problem, "RunDetailsName"}, {}};
    }
    RunRecord edited;
    if (auto refusal = Complete(texts, edited)) return {refusal, {}};
    RunSave save;
    save.Entry = entry;
    save.KeepsBackup = keepsName && !MovesAlike(edited, saved_);
    if (samplesCut_ > 0) save.FeetCutFromStart = RunningDistances(saved_)[samplesCut_];
    RunSaved saved = SaveRun(state, files, std::move(edited), save);
    *this = RunDetails(state.CurrentRun, units_);
    return {std::nullopt, std::move(saved.Warning)};
}

}  // namespace vantor
