#include "analysis/StudyResults.h"

#include <algorithm>
#include <atomic>
#include <optional>
#include <unordered_map>

#include "core/Counted.h"
#include "core/Numeric.h"
#include "core/StudyFile.h"
#include "core/Text.h"
#include "core/TwoThreads.h"
#include "core/modMain.h"

namespace vantor {
namespace {

/// The rounded mean of a figure over the counted rows that `takes` accepts; nothing when there is none.
template <class Figure, class Takes>
std::optional<std::int32_t> AverageOf(const std::vector<RunListRow>& rows, Figure figure, Takes takes) {
    std::int32_t sum = 0;
    std::int32_t count = 0;
    for (const RunListRow& row : rows) {
        if (row.State != RunState::Counted || !takes(row)) continue;
        sum = Add32(sum, figure(row));
        ++count;
    }
    if (count == 0) return std::nullopt;
    return Round32(static_cast<double>(sum) / count);
}

// The averages are made from the texts that are shown.
std::int32_t ShownControlDelay(const RunListRow& row) { return IntegerOfText(Trim(row.ControlDelay)); }
std::int32_t ShownStopDelay(const RunListRow& row) { return IntegerOfText(Trim(row.StopDelay)); }

bool TakesAll(const RunListRow&) { return true; }
bool HasNoWarning(const RunListRow& row) { return row.Warnings.empty(); }

RunState StateOf(const StudyRunEntry& entry, RunOutcome outcome) {
    switch (outcome) {
        case RunOutcome::Missing: return RunState::Missing;
        case RunOutcome::Unreadable: return RunState::Unreadable;
        case RunOutcome::Damaged: return RunState::Damaged;
        case RunOutcome::Run: break;
    }
    return HasBothBoundaries(entry) ? RunState::Counted : RunState::NotCounted;
}

StopDelayBasis BasisOf(const StudyRunEntry& entry, const AppSettings& settings) {
    if (!entry.StopDelayThreshold) return StopDelayBasis::Unknown;
    return *entry.StopDelayThreshold == settings.StopSpeedThreshold ? StopDelayBasis::Present : StopDelayBasis::Other;
}

RunFacts NotReadFacts() {
    RunFacts facts;
    facts.Outcome = RunOutcome::Unreadable;
    facts.Problem = "The reading of the runs was stopped. View > Study Statistics reads them again.";
    return facts;
}

/// What rows tell of runs, by entry. What was no run may be one by now, or was not read because the user stopped.
class KnownFacts {
public:
    explicit KnownFacts(std::vector<RunListRow> rows) : rows_(std::move(rows)) {
        for (std::size_t i = 0; i < rows_.size(); ++i)
            if (rows_[i].Facts.IsRun()) byName_.emplace(RunFileName(rows_[i].Entry), i);
    }
    /// Each is given once.
    std::optional<RunFacts> Take(const StudyRunEntry& entry) {
        const auto found = byName_.find(RunFileName(entry));
        if (found == byName_.end() || !HasSameBoundaries(rows_[found->second].Entry, entry)) return std::nullopt;
        RunFacts facts = std::move(rows_[found->second].Facts);
        byName_.erase(found);
        return facts;
    }

private:
    std::vector<RunListRow> rows_;
    std::unordered_map<std::string, std::size_t> byName_;
};

/// Makes the rows of a study's runs, of which it reads those whose facts are not known; of many runs on two threads.
class RowMaker {
public:
    RowMaker(const Study& study, const FileSystem& files, const std::string& folder, const AppSettings& settings)
        : study_(study), files_(files), folder_(folder), settings_(settings) {}

    /// `known` by place, from 0.
    std::vector<RunListRow> Make(std::vector<std::optional<RunFacts>> known, const Progress& progress) {
        std::vector<RunListRow> rows(known.size());
        OnTwoThreads(
            rows.size(), [&] { Fill(rows, known, [&](std::size_t place) { return progress(place, rows.size()); }); },
            [&] { Fill(rows, known, [](std::size_t) { return true; }); });
        return rows;
    }

private:
    /// Each thread takes the next run that none has taken.
    template <class GoesOn>
    void Fill(std::vector<RunListRow>& rows, std::vector<std::optional<RunFacts>>& known, GoesOn goesOn) {
        for (std::size_t place = next_++; place < rows.size(); place = next_++) {
            const StudyRunEntry& entry = study_.Entries[static_cast<int>(place) + 1];
            auto& facts = known[place];
            if (!facts && !goesOn(place)) isStopped_ = true;
            if (!facts) facts = isStopped_ ? NotReadFacts() : ReadRunFacts(files_, folder_, entry, settings_);
            rows[place] = MakeRunListRow(entry, std::move(*facts), settings_);
        }
    }

    const Study& study_;
    const FileSystem& files_;
    const std::string& folder_;
    const AppSettings& settings_;
    std::atomic<std::size_t> next_{0};
    std::atomic<bool> isStopped_{false};
};

}  // namespace

const char* StateWord(RunState state) {
    switch (state) {
        case RunState::Counted: return "Counted";
        case RunState::NotCounted: return "Not counted";
        case RunState::Missing: return "Missing";
        case RunState::Unreadable: return "Unreadable";
        case RunState::Damaged: return "Damaged";
    }
    return "";
}

RunListRow MakeRunListRow(const StudyRunEntry& entry, RunFacts runFacts, const AppSettings& settings) {
    RunListRow row;
    row.Facts = std::move(runFacts);
    row.Entry = entry;
    const RunFacts& facts = row.Facts;
    row.RunName = std::string(Trim(entry.EntryRunName)) + " ";
    row.State = StateOf(entry, facts.Outcome);
    if (!facts.IsRun()) return row;
    row.RunDate = ShortDate(facts.RunDate);
    row.RunTime = ShortTime(facts.RunTime);
    row.RunType = RunTypeText(facts.RunTypeFlag);
    row.ControlDelay = Trim(Str(entry.ControlDelay));
    row.LOSGrade = TrimRight(entry.LOSGrade);
    row.StopDelay = Str(entry.StopDelay);
    row.Warnings = RunWarnings(entry, facts);
    row.Basis = BasisOf(entry, settings);
    return row;
}

std::vector<RunListRow> MakeRunListRows(const Study& study, const FileSystem& files, const std::string& folder,
                                        const AppSettings& settings, const Progress& progress,
                                        std::vector<RunListRow> known) {
    std::vector<std::optional<RunFacts>> facts(static_cast<std::size_t>(study.Record.RunCount));
    KnownFacts before(std::move(known));
    for (int i = 1; i <= study.Record.RunCount; ++i)
        facts[static_cast<std::size_t>(i) - 1] = before.Take(study.Entries[i]);
    return RowMaker(study, files, folder, settings).Make(std::move(facts), progress);
}

RunList ReadRunList(LongWork& work, const Study& study, const std::string& folder, const AppSettings& settings,
                    std::vector<RunListRow> known) {
    RunList list;
    auto read = [&rows = list.Rows, study, folder, settings, known = std::move(known)](
                    FileSystem& files, const Progress& progress) mutable {
        rows = MakeRunListRows(study, files, folder, settings, progress, std::move(known));
    };
    list.IsWhole = work.Run("Reading the runs of the study", std::move(read));
    return list;
}

std::string AverageWithoutWarned(const std::vector<RunListRow>& rows) {
    const auto isCounted = [](const RunListRow& row) { return row.State == RunState::Counted; };
    const auto counted = std::ranges::count_if(rows, isCounted);
    const auto warned =
        std::ranges::count_if(rows, [&](const RunListRow& row) { return isCounted(row) && !HasNoWarning(row); });
    if (warned == 0) return {};
    if (warned == counted) return "all counted runs have warnings";
    const auto average = AverageOf(rows, ShownControlDelay, HasNoWarning);
    return std::to_string(warned) + " of " + Counted(counted, "run") + (warned == 1 ? " has" : " have") +
           " warnings; without them: " + std::to_string(*average);
}

std::string ConditionsOfAverage(const std::vector<RunListRow>& rows) {
    std::string text = AverageWithoutWarned(rows);
    const auto count = std::ranges::count_if(rows, [](const RunListRow& row) { return !IsThere(row.State); });
    if (count == 0) return text;
    const std::string notThere =
        std::to_string(count) + " of " + Counted(rows.size(), "run") +
        (count == 1 ? " cannot be read and does not count" : " cannot be read and do not count");
    return text.empty() ? notThere : notThere + "\n" + text;
}

std::string OtherThresholds(const std::vector<RunListRow>& rows) {
    const auto counted = [&](StopDelayBasis basis) {
        return std::ranges::count_if(
            rows, [&](const RunListRow& row) { return row.State == RunState::Counted && row.Basis == basis; });
    };
    std::string text;
    if (const auto other = counted(StopDelayBasis::Other); other != 0)
        text = Counted(other, "run") + " computed with another threshold";
    if (const auto unknown = counted(StopDelayBasis::Unknown); unknown != 0)
        text += (text.empty() ? "" : "; ") + Counted(unknown, "run") + ": threshold not known";
    return text;
}

std::optional<std::int32_t> AverageStopDelayNow(const std::vector<RunListRow>& rows) {
    return AverageOf(
        rows, [](const RunListRow& row) { return row.Facts.Found.StopDelay; }, TakesAll);
}

void ComputeStudyResults(Study& study, const std::vector<RunListRow>& rows, ResultLabels& labels) {
    const auto controlDelay = AverageOf(rows, ShownControlDelay, TakesAll);
    if (controlDelay) {
        labels.AvgControlDelay = Str(*controlDelay);
        study.Record.StudyAvgControlDelay = static_cast<float>(*controlDelay);
        SetRunLOSGrade(study, *controlDelay, 0);
        study.Record.StudyLOSGrade = study.Entries[0].LOSGrade;
        labels.LOSGrade = study.Record.StudyLOSGrade;
    }
    const auto stopDelay = AverageOf(rows, ShownStopDelay, TakesAll);
    if (!stopDelay) return;
    labels.AvgStopDelay = Str(*stopDelay);
    if (*stopDelay == 0) return;
    // The ratio is made from the rounded average as it is shown, not from the sum.
    labels.Ratio = FormatRatio(static_cast<double>(IntegerOfText(*labels.AvgControlDelay)) / *stopDelay);
}

}  // namespace vantor
