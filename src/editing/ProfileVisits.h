#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "analysis/StudyEdits.h"
#include "core/ApplicationState.h"
#include "core/Choices.h"
#include "core/ports/FileSystem.h"
#include "core/ports/MessageBoxes.h"

namespace vantor {

/// The runs that a visit to the speed profile comes to, one after the other, and what becomes of their entries. The run
/// in view is the current run of the state. The study in the state is read only: who opened the screen changes it.
class ProfileVisits {
public:
    /// Gets a run's number and its entry after each change, so that what is done outlasts the program's sudden end.
    using Sink = std::function<void(int run, const StudyRunEntry&)>;

    /// Error 9 for a first run that the study does not have.
    ProfileVisits(ApplicationState& state, const ProfileVisit& visit, Sink onChanged);

    int Run() const { return run_; }
    /// The entry of the run in view, a copy to work on.
    StudyRunEntry& Entry() { return entry_; }
    const ProfileVisit& Visit() const { return visit_; }

    /// The figures were computed anew, at the threshold in force now, and nothing else was done.
    bool IsOnlyLookedAt() const;
    /// Tells the entry where it has changed.
    void Tell();
    /// From here on the entry as it is now is the one that fits the run.
    void BeginAnew();
    /// Leaves the run in view. One that was only looked at gets its entry back, unless it is `done` with.
    void Leave(bool isDone);

    /// Whether the study has a run before (-1) or behind (1) the one in view.
    bool HasRun(int direction) const;
    /// Goes on to the next run in that direction that can be read, which is the current one then. Returns why those
    /// between were passed over. Where none can be read all stays.
    std::vector<NamedText> GoOn(int direction, const FileSystem& files);

    /// The study as this visit leaves it.
    Study ChangedStudy() const;
    /// Gives another run its entry.
    void Take(int run, const StudyRunEntry& entry);
    /// A name for the run in view.
    void SetName(const std::string& name) { names_[run_] = name; }
    ProfileChanges Changes() const;

private:
    struct Visited {
        StudyRunEntry Opened;
        /// As it was at first, or when the run was trimmed last: an older one does not fit the run.
        StudyRunEntry Before;
        StudyRunEntry Told;  ///< the last one that the sink got
    };
    Visited& At(int run);

    ApplicationState& state_;
    const ProfileVisit visit_;
    const Sink onChanged_;
    int run_;
    StudyRunEntry entry_;
    std::map<int, Visited> visited_;
    std::map<int, std::string> names_;
};

}  // namespace vantor
