#include "editing/SaveRun.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "analysis/StudyEdits.h"
#include "core/Numeric.h"
#include "core/Paths.h"
#include "core/RunArithmetic.h"
#include "core/RunFile.h"
#include "core/StudyFile.h"
#include "core/Text.h"
#include "core/modMain.h"

namespace vantor {
namespace {

/// Where a boundary comes to lie; 0 stays "not set", so that a boundary at the start is at foot 1.
std::int32_t MovedBoundary(std::int32_t feet, std::int32_t feetCut, std::int32_t oldLength, std::int32_t newLength) {
    const bool wasOnRun = feet <= oldLength;
    const std::int32_t moved = std::max(feet - feetCut, 1);
    return wasOnRun ? std::min(moved, newLength) : moved;
}

/// The run's length as its samples tell it; the header's may have been typed.
std::int32_t LengthOf(const RunRecord& run) {
    std::int64_t pulses = 0;
    for (const std::int16_t value : run.SampleValues) pulses += PulsesOf(value);
    return FeetOfPulses(run.Header.CalConstant, pulses);
}

/// In a run that was cut a boundary must be found again: its figures would mean nothing.
void MoveOntoCutRun(StudyRunEntry& entry, const RunRecord& cut, std::int32_t feetCut) {
    for (std::int32_t* feet : {&entry.CDStartDist, &entry.CDEndDist})
        if (*feet != 0) *feet = std::max(*feet - feetCut, 0);
    FoundBoundaries found;
    if (!cut.SampleValues.IsEmpty()) found = FindBoundaries(cut, {}, entry);
    if (!found.Start) entry.CDStartDist = 0;
    if (!found.End) entry.CDEndDist = 0;
}

void MoveBoundaries(StudyRunEntry& entry, const RunRecord& old, const RunRecord& edited, std::int32_t feetCut) {
    if (edited.Header.SampleCount < old.Header.SampleCount) return MoveOntoCutRun(entry, edited, feetCut);
    for (std::int32_t* feet : {&entry.CDStartDist, &entry.CDEndDist})
        if (*feet != 0) *feet = MovedBoundary(*feet, feetCut, LengthOf(old), LengthOf(edited));
}

bool HasSameMovement(const RunRecord& left, const RunRecord& right) {
    return left.SampleValues == right.SampleValues && left.Header.CalConstant == right.Header.CalConstant;
}

StudyRunEntry EntryAfter(const ApplicationState& state, const RunRecord& edited, const RunSave& save) {
    StudyRunEntry entry = state.CurrentStudy.Entries[save.Entry];
    if (RunFileName(entry) != edited.Header.RunName) entry.EntryRunName = edited.Header.RunName;
    if (HasSameMovement(state.CurrentRun, edited)) return entry;
    if (save.FeetCutFromStart)
        MoveBoundaries(entry, state.CurrentRun, edited, *save.FeetCutFromStart);
    else
        entry.CDStartDist = entry.CDEndDist = 0;
    if (!HasBothBoundaries(entry)) return entry;
    PlotState plot = PlacedBoundaries(edited, entry);
    ComputeEntry(edited, state.Settings, plot, entry);
    return entry;
}

/// What is told of the boundaries that an entry lost; empty for none.
std::string LostBoundaries(const StudyRunEntry& before, const StudyRunEntry& after) {
    const bool lostStart = before.CDStartDist != 0 && after.CDStartDist == 0;
    const bool lostEnd = before.CDEndDist != 0 && after.CDEndDist == 0;
    if (!lostStart && !lostEnd) return {};
    const bool lostBoth = lostStart && lostEnd;
    const std::string which = lostBoth ? "Both boundaries" : lostStart ? "The start boundary" : "The end boundary";
    return which + " of run " + RunFileName(after) + (lostBoth ? " have" : " has") +
           " no place in the samples that are left, so the run does not count any more.\nSet " +
           (lostBoth ? "them" : "it") + " again on the speed profile of the run.";
}

bool HasSamePulses(const RunRecord& earlier, const RunRecord& later, std::int32_t seconds) {
    const std::int32_t both = std::min(earlier.Header.SampleCount - seconds, later.Header.SampleCount);
    for (std::int32_t i = 1; i <= both; ++i)
        if (PulsesOf(earlier.SampleValues[i + seconds]) != PulsesOf(later.SampleValues[i])) return false;
    return both > 0;
}

/// What one run lacks at its front against another; nothing where they do not have the same samples.
std::optional<std::int32_t> FeetCutFromStart(const RunRecord& from, const RunRecord& to) {
    if (from.Header.SampleCount == to.Header.SampleCount) return 0;
    constexpr double SecondsPerDay = 86400;
    const auto startOf = [](const RunHeader& header) {
        return header.RunDate.Days + header.RunTime.Days - std::trunc(header.RunTime.Days);
    };
    const double days = startOf(to.Header) - startOf(from.Header);
    if (!(std::fabs(days) < 1)) return std::nullopt;
    const std::int32_t seconds = Round32(days * SecondsPerDay);
    const RunRecord& earlier = seconds < 0 ? to : from;
    if (!HasSamePulses(earlier, seconds < 0 ? from : to, std::abs(seconds))) return std::nullopt;
    if (seconds == 0) return 0;
    const std::int32_t feet = RunningDistances(earlier)[std::abs(seconds)];
    return seconds < 0 ? -feet : feet;
}

Expected ExpectedFile(const ApplicationState& state, const FileSystem& files, const std::string& folder,
                      const std::string& name) {
    const bool isItsOwn = EqualIgnoringCase(Trim(state.CurrentRun.Header.RunName), name);
    if (!isItsOwn) return Expected::Nothing();
    // A run that came from no file of its own.
    if (!state.CurrentRunStamp) return AsItStands(files, folder + name + RunExtension);
    return Expected::Unchanged(*state.CurrentRunStamp);
}

}  // namespace

RunSaved SaveRun(ApplicationState& state, FileSystem& files, RunRecord edited, const RunSave& save) {
    edited.Header.RunName = Trim(edited.Header.RunName);
    const std::string name = edited.Header.RunName;
    StudyRunEntry entry;
    if (save.Entry != 0) entry = EntryAfter(state, edited, save);

    const std::string folder = StudyGroupFolder(state);
    // Held until the stamp is taken, which would else be that of what came in between.
    const auto lock = files.Lock(folder);
    RunSaved saved;
    const Expected expected = ExpectedFile(state, files, folder, name);
    if (save.KeepsBackup && expected.File)
        saved.Backup = ReplaceRunFile(files, edited, folder, name, expected);
    else
        WriteRunFile(files, edited, folder, name, expected);

    state.CurrentRun = std::move(edited);
    state.CurrentRunStamp = AsItStands(files, folder + name + RunExtension).File;
    if (save.Entry == 0) return saved;
    StudyRunEntry& stored = state.CurrentStudy.Entries[save.Entry];
    if (stored == entry) return saved;
    saved.Warning = LostBoundaries(stored, entry);
    if (stored.EntryRunName != entry.EntryRunName) state.CurrentStudy.RunNames[save.Entry] = name;
    stored = std::move(entry);
    state.StudyUnchanged = false;
    return saved;
}

RunSaved RestoreRun(ApplicationState& state, FileSystem& files, const RunBackup& backup, int entry) {
    RunRecord restored = ReadRunBackup(files, backup);
    const auto cut = FeetCutFromStart(state.CurrentRun, restored);
    return SaveRun(state, files, std::move(restored), {.Entry = entry, .KeepsBackup = true, .FeetCutFromStart = cut});
}

}  // namespace vantor
