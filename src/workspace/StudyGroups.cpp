#include "workspace/StudyGroups.h"

#include <algorithm>
#include <set>
#include <span>

#include "core/Paths.h"
#include "core/RunFile.h"
#include "core/StudyFile.h"
#include "core/Text.h"
#include "core/Windows1252.h"
#include "core/modMain.h"

namespace vantor {
namespace {

std::string ProblemOf(const RunTimeError& error) { return std::string(error.what()) + "\n" + error.Place(); }

void ReadListedStudy(const FileSystem& files, const std::string& group, ListedStudy& study) {
    try {
        if (auto read = ReadStudyRunNames(files, group, study.Name)) {
            study.Header = std::move(read->Header);
            study.RunNames = std::move(read->RunNames);
        } else {
            study.IsMissing = true;
            study.Problem = "The file is missing.";
        }
    } catch (const RunTimeError& error) {
        study.Problem = ProblemOf(error);
    }
}

/// The header of a version 1 run that can be used; throws for any other.
RunHeader ReadUsableVer1Header(const FileSystem& files, const std::string& group, const std::string& name) {
    const std::string path = group + name + Ver1RunExtension;
    if (files.Open(path)->Size() < Ver1RunHeaderSize)
        throw RunTimeError(ErrorNumber::InputPastEndOfFile, path + "\nThe file is too short for a run. It is damaged.");
    return ReadVer1Run(files, group, name).Header;
}

RunHeader ReadUsableHeader(const FileSystem& files, const std::string& group, const std::string& name) {
    RunReading reading = ReadRun(files, group, name, RunPart::Header);
    if (!reading) throw RunTimeError(*reading.Fault);
    return std::move(reading.Run.Header);
}

void ReadListedRun(const FileSystem& files, const std::string& group, ListedRun& run) {
    try {
        run.Header =
            run.IsVer1 ? ReadUsableVer1Header(files, group, run.Name) : ReadUsableHeader(files, group, run.Name);
    } catch (const RunTimeError& error) {
        run.Problem = ProblemOf(error);
    }
}

}  // namespace

bool IsSameFolder(std::string_view left, std::string_view right) {
    return EqualIgnoringCase(AsFolder(left), AsFolder(right));
}

bool IsCurrentStudy(const ApplicationState& state, std::string_view group, std::string_view name) {
    return state.StudyUnchanged && IsSameFolder(state.Paths.LastStudyGroupPath, group) &&
           state.Paths.LastStudyName == name;
}

std::vector<ListedStudy> ListStudies(const FileSystem& files, const std::string& group, const Progress& progress) {
    std::vector<ListedStudy> studies;
    for (const FileInfo& info : FilesWithExtension(files, group, StudyExtension))
        studies.emplace_back().Name = BaseName(info.Name);
    for (std::size_t i = 0; i < studies.size(); ++i) {
        if (progress(i, studies.size()))
            ReadListedStudy(files, group, studies[i]);
        else
            studies[i].Problem = ListingStoppedText;
    }
    return studies;
}

std::vector<ListedRun> ListRuns(const FileSystem& files, const std::string& group, const Progress& progress) {
    std::vector<ListedRun> runs;
    std::set<std::string> known;
    for (const bool isVer1 : {false, true}) {
        for (const FileInfo& info : FilesWithExtension(files, group, isVer1 ? Ver1RunExtension : RunExtension)) {
            const std::string name = BaseName(info.Name);
            if (!known.insert(FoldCase(name)).second) continue;
            ListedRun& run = runs.emplace_back();
            run.Name = run.Header.RunName = name;
            run.IsVer1 = isVer1;
        }
    }
    for (std::size_t i = 0; i < runs.size(); ++i) {
        ListedRun& run = runs[i];
        run.Problem = progress(i, runs.size()) ? NameProblem(run.Name, RunNameWidth) : ListingStoppedText;
        if (run.Problem.empty()) ReadListedRun(files, group, run);
    }
    std::ranges::stable_sort(runs, {}, [](const ListedRun& run) { return FoldCase(run.Name); });
    return runs;
}

RunsElsewhere CompareRuns(const FileSystem& files, const Study& study, const std::string& from, const std::string& to,
                          const Progress& progress) {
    RunsElsewhere runs;
    const auto count = static_cast<std::uint64_t>(study.Record.RunCount);
    for (int i = 1; i <= study.Record.RunCount && progress(static_cast<std::uint64_t>(i - 1), count); ++i) {
        const std::string name = RunFileName(study.Entries[i]);
        if (!IsSafeName(name) || !FileExists(files, from + name + RunExtension)) continue;
        if (!FileExists(files, to + name + RunExtension))
            runs.Missing.push_back(name);
        else if (ReadWholeFile(files, from + name + RunExtension) != ReadWholeFile(files, to + name + RunExtension))
            runs.Different.push_back(name);
    }
    return runs;
}

bool CopyRuns(FileSystem& files, const std::vector<std::string>& names, const std::string& from, const std::string& to,
              const Progress& progress) {
    constexpr double Read = 0.5;
    const auto batch = files.BeginWrites();
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (!progress.Part(0, Read)(i, names.size())) return false;
        const std::string file = names[i] + RunExtension;
        batch->Add(to + file, ReadWholeFile(files, from + file), Expected::Nothing());
    }
    return batch->Commit(progress.Part(Read, 1));
}

}  // namespace vantor
