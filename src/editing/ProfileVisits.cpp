#include "editing/ProfileVisits.h"

#include "analysis/RunFacts.h"
#include "core/CurrentRun.h"
#include "core/StudyFile.h"
#include "core/Text.h"

namespace vantor {

ProfileVisits::ProfileVisits(ApplicationState& state, const ProfileVisit& visit, Sink onChanged)
    : state_(state), visit_(visit), onChanged_(std::move(onChanged)), run_(visit.Run) {
    if (run_ < 1) throw RunTimeError(ErrorNumber::SubscriptOutOfRange);
    entry_ = At(run_).Told;
}

ProfileVisits::Visited& ProfileVisits::At(int run) {
    const auto found = visited_.find(run);
    if (found != visited_.end()) return found->second;
    const StudyRunEntry& entry = state_.CurrentStudy.Entries[run];
    return visited_[run] = {entry, entry, entry};
}

bool ProfileVisits::IsOnlyLookedAt() const {
    const StudyRunEntry& before = visited_.at(run_).Before;
    return !Trim(before.LOSGrade).empty() && HasSameBoundaries(before, entry_);
}

void ProfileVisits::Tell() {
    Visited& visited = At(run_);
    const StudyRunEntry& result = IsOnlyLookedAt() ? visited.Before : entry_;
    if (result == visited.Told) return;
    visited.Told = result;
    if (onChanged_) onChanged_(run_, result);
}

void ProfileVisits::BeginAnew() {
    At(run_).Before = entry_;
    Tell();
}

void ProfileVisits::Leave(bool isDone) {
    if (isDone) return BeginAnew();
    if (IsOnlyLookedAt()) entry_ = At(run_).Before;
    Tell();
}

bool ProfileVisits::HasRun(int direction) const {
    const int next = run_ + direction;
    return visit_.GoesOn && next >= 1 && next <= state_.CurrentStudy.Record.RunCount;
}

std::vector<NamedText> ProfileVisits::GoOn(int direction, const FileSystem& files) {
    std::vector<NamedText> passed;
    for (int run = run_ + direction; run >= 1 && run <= state_.CurrentStudy.Record.RunCount; run += direction) {
        const std::string name = RunFileName(state_.CurrentStudy.Entries[run]);
        const RunReading reading = ReadCurrentRun(state_, files, name);
        if (!reading) {
            passed.push_back({name, FactsOf(reading, state_.CurrentStudy.Entries[run], state_.Settings).Problem});
            continue;
        }
        run_ = run;
        entry_ = At(run).Told;
        const auto named = names_.find(run);
        if (named != names_.end()) state_.CurrentRun.Header.RunName = named->second;
        break;
    }
    return passed;
}

Study ProfileVisits::ChangedStudy() const {
    Study study = state_.CurrentStudy;
    for (const auto& [run, visited] : visited_) study.Entries[run] = visited.Told;
    return study;
}

void ProfileVisits::Take(int run, const StudyRunEntry& entry) {
    Visited& visited = At(run);
    visited.Before = entry;
    if (run == run_) entry_ = entry;
    if (visited.Told == entry) return;
    visited.Told = entry;
    if (onChanged_) onChanged_(run, entry);
}

ProfileChanges ProfileVisits::Changes() const {
    ProfileChanges changes;
    changes.LastRun = run_;
    changes.Names = names_;
    changes.Names.erase(run_);
    for (const auto& [run, visited] : visited_)
        if (visited.Told != visited.Opened) changes.Entries[run] = visited.Told;
    return changes;
}

}  // namespace vantor
