#include "editing/SaveRun.h"

#include <algorithm>

#include "analysis/StudyEdits.h"
#include "core/Paths.h"
#include "core/RunArithmetic.h"
#include "core/RunFile.h"
#include "core/StudyFile.h"
#include "core/Text.h"
#include "core/modMain.h"

namespace vantor {
namespace {

/// Where a boundary comes to lie; 0 stays "not set", so that a boundary at the start is at foot 1.
std::int32_t MovedBoundary(std::int32_t feet, const RunSave& save, std::int32_t oldLength, std::int32_t newLength) {
    const bool wasOnRun = feet <= oldLength;
    const std::int32_t moved = std::max(feet - save.FeetCutFromStart, 1);
    return wasOnRun ? std::min(moved, newLength) : moved;
}

void MoveBoundaries(StudyRunEntry& entry, const RunSave& save, std::int32_t oldLength, std::int32_t newLength) {
    for (std::int32_t* feet : {&entry.CDStartDist, &entry.CDEndDist})
        if (*feet != 0) *feet = MovedBoundary(*feet, save, oldLength, newLength);
}

/// The run's length as its samples tell it; the header's may have been typed.
std::int32_t LengthOf(const RunRecord& run) {
    std::int64_t pulses = 0;
    for (const std::int16_t value : run.SampleValues) pulses += PulsesOf(value);
    return FeetOfPulses(run.Header.CalConstant, pulses);
}

bool HasSameMovement(const RunRecord& left, const RunRecord& right) {
    return left.SampleValues == right.SampleValues && left.Header.CalConstant == right.Header.CalConstant;
}

StudyRunEntry EntryAfter(const ApplicationState& state, const RunRecord& edited, const RunSave& save) {
    StudyRunEntry entry = state.CurrentStudy.Entries[save.Entry];
    if (RunFileName(entry) != edited.Header.RunName) entry.EntryRunName = edited.Header.RunName;
    if (HasSameMovement(state.CurrentRun, edited)) return entry;
    MoveBoundaries(entry, save, LengthOf(state.CurrentRun), LengthOf(edited));
    if (!HasBothBoundaries(entry)) return entry;
    PlotState plot = PlacedBoundaries(edited, entry);
    ComputeEntry(edited, state.Settings, plot, entry);
    return entry;
}

}  // namespace

void SaveRun(ApplicationState& state, FileSystem& files, RunRecord edited, const RunSave& save) {
    edited.Header.RunName = Trim(edited.Header.RunName);
    const std::string name = edited.Header.RunName;
    StudyRunEntry entry;
    if (save.Entry != 0) entry = EntryAfter(state, edited, save);

    const std::string folder = StudyGroupFolder(state);
    const auto batch = files.BeginWrites();
    if (save.KeepsBackup && FileExists(files, folder + name + RunExtension)) AddBackup(*batch, files, folder, name);
    AddRunFile(*batch, edited, folder, name);
    batch->Commit();

    state.CurrentRun = std::move(edited);
    if (save.Entry == 0) return;
    StudyRunEntry& stored = state.CurrentStudy.Entries[save.Entry];
    if (stored == entry) return;
    if (stored.EntryRunName != entry.EntryRunName) state.CurrentStudy.RunNames[save.Entry] = name;
    stored = std::move(entry);
    state.StudyUnchanged = false;
}

}  // namespace vantor
