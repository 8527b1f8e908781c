#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "core/ApplicationState.h"
#include "core/ports/FileSystem.h"
#include "editing/NodeEditing.h"

namespace vantor {

inline constexpr std::size_t NotesWidth = 128;

/// What is typed and chosen about a run, beside its nodes.
struct RunDetailTexts {
    std::string Name;
    std::string RunDate;      ///< "mm/dd/yy"
    std::string RunTime;      ///< "hh:mm"
    std::string CalConstant;  ///< feet per 1000 pulses
    bool IsPrimary = false;
    bool IsBefore = false;
    std::string Notes;
    IndexedArray<std::string, 1, KeySlots> ButtonLabel;  ///< of the keys that were used

    bool operator==(const RunDetailTexts&) const = default;
};
RunDetailTexts DetailsOf(const RunHeader& header);

/// One of these that is shown as a text: how it is shown and how it is taken.
struct RunDetailField {
    const char* Control;
    std::string RunDetailTexts::*Text;
    std::string (*ToText)(const RunHeader& header);
    /// False for a text that is none of this value; the header stays then.
    bool (*FromText)(const std::string& text, RunHeader& header);
    const char* MustHold;  ///< what the text must be, for a message
};
/// In the order of the screen, which is the order the texts are taken in. A text that is as it was shown is not taken:
/// a start time has seconds that are not shown.
std::span<const RunDetailField> RunDetailFields();

/// A text as a file keeps it: cut at `width` characters, "?" for what Windows-1252 does not have.
std::string StoredText(const std::string& text, std::size_t width);

/// The header of the run file at `path`, of either version. Nothing when it is missing or no run file.
std::optional<RunHeader> ReadHeaderOfRunFile(const FileSystem& files, const std::string& path);

/// Why nothing was stored, or what became of the run.
struct DetailsSaved {
    std::optional<Refusal> Refused;
    std::string Warning;  ///< what the user must be told although it was stored; empty for nothing
};

/// A working copy of the current run, edited node by node. Nothing reaches the current run, its file or the study
/// before Save. Rows count from 0; a refusal leaves everything as it was.
class RunDetails {
public:
    RunDetails(const RunRecord& saved, vantor::Units units);

    const RunRecord& Run() const { return run_; }
    const NodeRows& Rows() const { return rows_; }
    vantor::Units Units() const { return units_; }
    /// True when a Save would store something else than the run was loaded with.
    bool HasChanges(const RunDetailTexts& texts) const;

    void SetNodeName(int row, const std::string& name);
    /// Of an inserted row, as it was typed.
    void SetTypedDistance(int row, const std::string& text);
    /// Measures the run anew with a typed calibration. Nothing for a text that is none.
    void Calibrate(const std::string& calConstant);

    void Reverse() { ReverseNames(rows_); }
    std::optional<Refusal> Insert(int active) { return InsertRow(rows_, active); }
    std::optional<Refusal> Delete(int active);
    /// Takes over the names of another run's nodes by position; where that has none, the rows keep theirs. Returns how
    /// many it has.
    int TakeNames(const RunHeader& other);

    // The trims take over the texts and place the inserted nodes first. Without a node they refuse with a beep.
    /// Removes the samples up to the first node, which becomes the start of the run.
    std::optional<Refusal> TrimStart(const RunDetailTexts& texts);
    /// Removes the samples behind the last node, which becomes the end of the run.
    std::optional<Refusal> TrimEnd(const RunDetailTexts& texts);

    /// Stores the run under its name and as the study's run `entry` (0: none of the study's), as SaveRun does with its
    /// guarantee. Where samples or calibration were changed and the run keeps its name, its file so far stays as a
    /// numbered backup.
    DetailsSaved Save(ApplicationState& state, FileSystem& files, int entry, const RunDetailTexts& texts);

    bool operator==(const RunDetails&) const = default;

private:
    /// The working copy with the texts taken and the inserted nodes placed.
    std::optional<Refusal> Complete(const RunDetailTexts& texts, RunRecord& edited) const;
    void Continue(RunRecord edited);

    RunRecord saved_;
    RunRecord run_;
    NodeRows rows_;
    std::int32_t samplesCut_ = 0;  ///< from the front of the saved run
    vantor::Units units_;
};

}  // namespace vantor
