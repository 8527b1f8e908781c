#include "corridor/CorridorStudies.h"

#include <algorithm>
#include <map>
#include <nlohmann/json.hpp>
#include <set>
#include <tuple>

#include "analysis/StudyEdits.h"
#include "core/Paths.h"
#include "core/RunTimeError.h"
#include "core/StudyFile.h"
#include "core/Text.h"
#include "core/modMain.h"

namespace vantor {
namespace {

constexpr const char* CorridorMember = "corridor";

/// Whether a study was made of this corridor before, so that a new one takes its place.
bool IsMadeOf(const Study& study, const Corridor& corridor) {
    const auto facts = nlohmann::json::parse(study.OtherFacts, nullptr, false);
    return facts.is_object() && facts.value(CorridorMember, nlohmann::json()) == corridor.Name;
}

/// The names of studies in the folders that they are made in.
class StudyNames {
public:
    StudyNames(const Corridor& corridor, const FileSystem& files) : corridor_(corridor), files_(files) {}

    std::string NameFor(const std::string& folder, const std::string& wanted) {
        std::string name = Cut(wanted, {});
        for (int number = 2; !Take(folder, name); ++number) name = Cut(wanted, " " + std::to_string(number));
        return name;
    }

private:
    static std::string Cut(const std::string& wanted, const std::string& end) {
        const std::string all = wanted + end;
        if (Characters(all) <= StudyNameWidth) return all;
        const std::string number = end.empty() ? " 1" : end;
        return std::string(TrimRight(FirstCharacters(wanted, StudyNameWidth - number.size()))) + number;
    }
    static std::size_t Characters(const std::string& text) {
        return static_cast<std::size_t>(
            std::ranges::count_if(text, [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0) != 0x80; }));
    }

    bool Take(const std::string& folder, const std::string& name) {
        if (taken_.contains(FoldCase(folder + name))) return false;
        if (FileExists(files_, folder + name + StudyExtension)) {
            const auto there = LoadStudy(files_, folder, name);
            if (!there || !IsMadeOf(*there, corridor_)) return false;
        }
        taken_.insert(FoldCase(folder + name));
        return true;
    }

    const Corridor& corridor_;
    const FileSystem& files_;
    std::set<std::string> taken_;
};

struct StudyKey {
    Way Along = Way::Forward;
    std::string Period;
    std::string Folder;

    bool operator<(const StudyKey& other) const {
        return std::tie(Along, Period, Folder) < std::tie(other.Along, other.Period, other.Folder);
    }
};

StudyRunEntry EntryOf(const MatchedRun& run, const CorridorRun& as, std::size_t node, const AppSettings& settings) {
    StudyRunEntry entry = run.Delays.at(node).Row.Entry;
    if (HasBothBoundaries(entry)) {
        PlotState plot = PlacedBoundaries(run.Read->Run, entry);
        ComputeEntry(run.Read->Run, settings, plot, entry);
    }
    entry.Period = run.Period;
    entry.SetAside = as.SetAside;
    return entry;
}

int DirectionItem(const std::string& name) {
    const auto found = std::ranges::find(DirectionItems, name);
    return found == DirectionItems.end() ? -1 : static_cast<int>(found - DirectionItems.begin());
}

Study StudyAt(const Corridor& corridor, std::size_t node, const StudyKey& key,
              const std::vector<const MatchedRun*>& runs, Date today, const AppSettings& settings) {
    Study study;
    study.Record.StudyDate = today;
    study.Record.CritLane = -1;
    study.Record.Direction = static_cast<std::int16_t>(DirectionItem(corridor.Of(key.Along).Name));
    study.Record.StreetName = FirstCharacters(corridor.Name, 40);
    study.Record.StudyNotes = FirstCharacters("Corridor " + corridor.Name + ", " + corridor.Nodes[node].Name, 128);
    study.Options = corridor.Options;
    study.OtherFacts = nlohmann::json{{CorridorMember, corridor.Name}}.dump();
    std::vector<RunListRow> rows;
    for (const MatchedRun* run : runs) {
        const CorridorRun& as = corridor.Runs[run->Index];
        AppendRun(study, as.Name);
        study.Entries[study.Record.RunCount] = EntryOf(*run, as, node, settings);
        rows.push_back(run->Delays.at(node).Row);
    }
    ResultLabels labels;
    ComputeStudyResults(study, rows, labels);
    return study;
}

}  // namespace

std::vector<StudyOfNode> StudiesOf(const Corridor& corridor, const std::vector<MatchedRun>& runs,
                                   const FileSystem& files, const std::string& groupRoot, Date today,
                                   const AppSettings& settings) {
    std::map<StudyKey, std::vector<const MatchedRun*>> parts;
    for (const MatchedRun& run : runs) {
        const CorridorRun& as = corridor.Runs[run.Index];
        if (run.IsThere() && as.SetAside.empty())
            parts[{run.Match.Along, run.Period, FolderOf(as, groupRoot)}].push_back(&run);
    }
    StudyNames names(corridor, files);
    std::vector<StudyOfNode> studies;
    for (const auto& [key, members] : parts)
        for (std::size_t passed = 0; passed < corridor.Nodes.size(); ++passed) {
            const std::size_t node = NodeAlong(corridor, key.Along, passed);
            const auto passes = [node](const MatchedRun* run) { return run->Match.Nodes[node].IsKnown(); };
            if (std::ranges::none_of(members, passes)) continue;
            const std::string end = " " + corridor.Of(key.Along).Name + (key.Period.empty() ? "" : " " + key.Period);
            StudyOfNode& study = studies.emplace_back();
            study.Folder = key.Folder;
            study.Name = names.NameFor(key.Folder, WithSafeCharacters(corridor.Nodes[node].Name + end));
            study.Node = node;
            study.Along = key.Along;
            study.Period = key.Period;
            study.Contents = StudyAt(corridor, node, key, members, today, settings);
            study.Contents.Record.StudyName = study.Name;
        }
    return studies;
}

bool WriteStudies(FileSystem& files, std::vector<StudyOfNode>& studies, const Progress& progress) {
    for (std::size_t i = 0; i < studies.size(); ++i) {
        if (!progress(i, studies.size())) return false;
        StudyOfNode& study = studies[i];
        WriteStudyFile(files, study.Contents, study.Folder, study.Name, Replacing::AnyFile);
    }
    return true;
}

}  // namespace vantor
