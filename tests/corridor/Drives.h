#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "corridor/CorridorResults.h"
#include "fakes/PutFiles.h"

namespace vantor {

/// Three nodes 1000 ft apart, and drives at 40 ft a second whose observer has marked them.
struct Drives {
    static constexpr int Pace = 40;
    Corridor Street;
    std::vector<MatchedRun> Runs;

    Drives() {
        Street.Name = "Main St";
        for (const char* name : {"Oak", "Elm", "Pine"})
            Street.Nodes.push_back({.Name = name, .DistanceFt = 1000.0 * static_cast<double>(Street.Nodes.size())});
        Street.Of(Way::Forward).IdealSpeedMph = 30;
    }

    /// From 1000 ft before the first node to 1000 ft behind the last; stands so long 200 ft before Elm.
    static std::vector<int> Drive(int standing) {
        std::vector<int> feet(45, Pace);
        feet.insert(feet.end(), static_cast<std::size_t>(standing), 0);
        feet.insert(feet.end(), 55, Pace);
        feet[24] |= NodeFlag;
        feet[static_cast<std::size_t>(49 + standing)] |= NodeFlag;
        feet[static_cast<std::size_t>(74 + standing)] |= NodeFlag;
        return feet;
    }

    /// It begins at seven o'clock on a day of 2008.
    MatchedRun& Add(const std::vector<int>& feet, CorridorRun as = {}) {
        auto read = std::make_shared<RunReading>();
        read->Outcome = RunOutcome::Run;
        read->Run = RunOfValues(feet);
        read->SamplesInFile = read->Run.Header.SampleCount;
        read->Run.Header.RunDate = DateOf(2008, 3, 11);
        read->Run.Header.RunTime = TimeOf(7, 0);
        as.Name = "R" + std::to_string(Runs.size() + 1);
        Street.Runs.push_back(std::move(as));
        MatchedRun run;
        run.Index = Runs.size();
        run.Read = std::move(read);
        return Runs.emplace_back(MatchAgain(std::move(run), Street, nullptr, MphSettings()));
    }
};

}  // namespace vantor
