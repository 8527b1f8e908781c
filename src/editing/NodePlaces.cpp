#include "editing/NodePlaces.h"

#include <algorithm>

#include "analysis/DelayStatistics.h"
#include "core/Backup.h"
#include "core/RunDecoding.h"
#include "core/RunFile.h"
#include "core/StudyFile.h"
#include "core/Text.h"
#include "editing/NodeEditing.h"

namespace vantor {
namespace {

int NodesOf(const RunRecord& run) {
    return static_cast<int>(std::ranges::count_if(run.SampleValues, [](std::int16_t value) { return HasNode(value); }));
}

/// Sets the nodes of one run, place by place.
class Placer {
public:
    Placer(const RunRecord& run, Units units) : units_(units), distances_(RunningDistances(run)) {
        placed_.Run = run;
        const int end = NodesOf(run) + 1;
        if (end < MostNamedNodes) endName_ = run.Header.SectionName[end];
        for (std::int32_t sample = 1; sample <= run.SampleValues.LastIndex(); ++sample) ClearNode(placed_.Run, sample);
        for (std::int32_t sample = 1; sample <= run.RunSamples.LastIndex(); ++sample)
            hasPositions_ = hasPositions_ || PositionOf(run.RunSamples[sample]).has_value();
    }

    void Place(const NodePlace& place) {
        const bool byPosition = place.At && hasPositions_;
        const auto sample = byPosition ? SampleNear(place) : SampleAfter(place);
        if (!sample) return;
        std::int16_t& value = placed_.Run.SampleValues[*sample];
        value = static_cast<std::int16_t>(value | NodeFlag);
        last_ = *sample;
        ++(byPosition ? placed_.ByPosition : placed_.ByDistance);
        names_.push_back(place.Name);
    }

    PlacedNodes Done() {
        DecodeEditedRun(placed_.Run);
        RunHeader& header = placed_.Run.Header;
        names_.push_back(endName_);
        for (int node = 1; node < MostNamedNodes; ++node) {
            const auto index = static_cast<std::size_t>(node - 1);
            header.SectionName[node] = index < names_.size() ? names_[index] : std::string();
        }
        return std::move(placed_);
    }

private:
    std::optional<std::int32_t> Misses(const NodePlace& place, const std::string& why) {
        placed_.OutOfReach.push_back((place.Name.empty() ? units_.LengthText(place.Feet) : place.Name) + ": " + why);
        return std::nullopt;
    }

    std::optional<std::int32_t> SampleAfter(const NodePlace& place) {
        const auto sample = FindNodeSample(placed_.Run, place.Feet, NodeSearch::Nearest);
        if (!sample || *sample == distances_.LastIndex()) return Misses(place, "beyond the run");
        if (*sample <= last_) return Misses(place, "no second of its own");
        return sample;
    }

    std::optional<std::int32_t> SampleNear(const NodePlace& place) {
        std::int32_t nearest = 0;
        double feetAway = 0;
        for (std::int32_t sample = last_ + 1; sample < distances_.LastIndex(); ++sample) {
            const auto position = PositionOf(placed_.Run.RunSamples[sample]);
            if (!position) continue;
            const double feet = FeetBetween(*position, *place.At);
            if (nearest != 0 && feet >= feetAway) continue;
            nearest = sample;
            feetAway = feet;
        }
        // A node at which the vehicle stands is passed when it goes on.
        while (nearest != 0 && nearest + 1 < distances_.LastIndex() && distances_[nearest + 1] == distances_[nearest])
            ++nearest;
        if (nearest == 0) return Misses(place, "no position behind the node before it");
        if (feetAway > MostFeetAway) return Misses(place, "passed " + units_.LengthText(feetAway) + " away");
        return nearest;
    }

    Units units_;
    OneBased<std::int32_t> distances_;
    PlacedNodes placed_;
    bool hasPositions_ = false;
    std::int32_t last_ = 0;
    std::vector<std::string> names_;
    std::string endName_;
};

bool HasSameNodes(const RunRecord& left, const RunRecord& right) {
    return left.SampleValues == right.SampleValues && left.Header.SectionName == right.Header.SectionName;
}

/// Why a run that was read is not to be written; empty when it is.
std::string ProblemOf(const RunReading& reading, const std::string& name) {
    if (reading.Outcome == RunOutcome::Missing) return MissingRunText(name);
    if (!reading) return reading.Fault->Message();
    // Its missing samples would be written as standing still.
    return reading.IsCut() ? CutText(reading.SamplesInFile, reading.Run.Header.SampleCount) : std::string();
}

}  // namespace

std::vector<NodePlace> PlacesOf(const RunRecord& run) {
    std::vector<NodePlace> places;
    const NodeRows rows = RowsOf(run);
    // The first and the last row are the run's start and end.
    for (auto row = rows.begin() + 1; row + 1 < rows.end(); ++row) {
        const bool hasEvent = row->Sample <= run.RunSamples.LastIndex();
        places.push_back({static_cast<double>(row->Feet), row->Name,
                          hasEvent ? PositionOf(run.RunSamples[row->Sample]) : std::nullopt});
    }
    return places;
}

PlacedNodes PlaceNodesAt(const RunRecord& run, const std::vector<NodePlace>& places, Units units) {
    Placer placer(run, units);
    for (const NodePlace& place : places) placer.Place(place);
    return placer.Done();
}

std::vector<NodesPreview> PreviewNodes(const Study& study, const std::vector<NodePlace>& places,
                                       const FileSystem& files, const std::string& folder, Units units,
                                       const Progress& progress) {
    std::vector<NodesPreview> previews;
    for (int run = 1; run <= study.Record.RunCount; ++run) {
        if (!progress(previews.size(), static_cast<std::uint64_t>(study.Record.RunCount))) return {};
        NodesPreview& preview = previews.emplace_back();
        preview.Run = run;
        preview.Name = RunFileName(study.Entries[run]);
        const RunReading reading = ReadRun(files, folder, preview.Name, RunPart::Whole);
        preview.Problem = ProblemOf(reading, preview.Name);
        if (!preview.Problem.empty()) continue;
        PlacedNodes placed = PlaceNodesAt(reading.Run, places, units);
        preview.Now = NodesOf(reading.Run);
        preview.Then = NodesOf(placed.Run);
        preview.ByPosition = placed.ByPosition;
        preview.OutOfReach = std::move(placed.OutOfReach);
        preview.IsSame = HasSameNodes(reading.Run, placed.Run);
    }
    return previews;
}

int SetNodesOfRuns(FileSystem& files, const std::string& folder, const std::vector<std::string>& runNames,
                   const std::vector<NodePlace>& places, Units units, const Progress& progress) {
    const auto lock = files.Lock(folder);
    const auto batch = files.BeginWrites();
    int written = 0;
    for (std::size_t i = 0; i < runNames.size(); ++i) {
        if (!progress.PartOf(0, 2)(i, runNames.size())) return 0;
        const std::string path = folder + runNames[i] + RunExtension;
        const RunReading reading = ReadRun(files, folder, runNames[i], RunPart::Whole);
        if (!reading) throw RunTimeError(*reading.Fault);
        if (const std::string problem = ProblemOf(reading, runNames[i]); !problem.empty())
            throw RunTimeError(ErrorNumber::PathFileAccessError, path + "\nThe run is " + problem + ".");
        PlacedNodes placed = PlaceNodesAt(reading.Run, places, units);
        if (HasSameNodes(reading.Run, placed.Run)) continue;
        const KeptFile kept = AddBackup(*batch, files, path);
        AddRunFile(*batch, placed.Run, folder, runNames[i], kept.Original);
        ++written;
    }
    return written > 0 && batch->Commit(progress.PartOf(1, 2)) ? written : 0;
}

}  // namespace vantor
