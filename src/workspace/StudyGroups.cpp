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

ListedStudy ReadListedStudy(const FileSystem& files, Desktop& desktop, const std::string& group, std::string name) {
    ListedStudy study;
    study.Name = std::move(name);
    try {
        if (!ReadStudyRunNames(files, desktop, group, study.Name, study.Header, study.RunNames))
            study.Problem = "The file is missing.";
    } catch (const RunTimeError& error) {
        study.Problem = ProblemOf(error);
    }
    return study;
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

ListedRun ReadListedRun(const FileSystem& files, const std::string& group, std::string name, bool isVer1) {
    ListedRun run;
    run.Name = std::move(name);
    run.IsVer1 = isVer1;
    run.Header.RunName = run.Name;
    run.Problem = NameProblem(run.Name, RunNameWidth);
    if (!run.Problem.empty()) return run;
    try {
        run.Header = isVer1 ? ReadUsableVer1Header(files, group, run.Name) : ReadUsableHeader(files, group, run.Name);
    } catch (const RunTimeError& error) {
        run.Problem = ProblemOf(error);
    }
    return run;
}

}  // namespace

bool IsSameFolder(std::string_view left, std::string_view right) {
    return EqualIgnoringCase(AsFolder(left), AsFolder(right));
}

bool IsCurrentStudy(const ApplicationState& state, std::string_view group, std::string_view name) {
    return state.StudyUnchanged && IsSameFolder(state.Paths.LastStudyGroupPath, group) &&
           state.Paths.LastStudyName == name;
}

std::vector<std::string> ListStudyGroups(const FileSystem& files, const std::string& root) {
    std::vector<std::string> groups;
    try {
        for (const FileInfo& info : files.List(root))
            if (info.IsFolder && !info.IsHidden) groups.push_back(AsFolder(AsFolder(root) + info.Name));
    } catch (const RunTimeError&) {
        groups.clear();
    }
    return groups;
}

std::vector<ListedStudy> ListStudies(const FileSystem& files, Desktop& desktop, const std::string& group) {
    std::vector<ListedStudy> studies;
    for (const FileInfo& info : FilesWithExtension(files, group, StudyExtension))
        studies.push_back(ReadListedStudy(files, desktop, group, BaseName(info.Name)));
    return studies;
}

std::vector<ListedRun> ListRuns(const FileSystem& files, const std::string& group) {
    std::vector<ListedRun> runs;
    std::set<std::string> known;
    for (const bool isVer1 : {false, true}) {
        for (const FileInfo& info : FilesWithExtension(files, group, isVer1 ? Ver1RunExtension : RunExtension)) {
            const std::string name = BaseName(info.Name);
            if (known.insert(FoldCase(name)).second) runs.push_back(ReadListedRun(files, group, name, isVer1));
        }
    }
    std::stable_sort(runs.begin(), runs.end(), [](const ListedRun& left, const ListedRun& right) {
        return FoldCase(left.Name) < FoldCase(right.Name);
    });
    return runs;
}

RunsElsewhere CompareRuns(const FileSystem& files, const Study& study, const std::string& from, const std::string& to) {
    RunsElsewhere runs;
    for (int i = 1; i <= study.Record.RunCount; ++i) {
        const std::string name = RunFileName(study.Entries[i]);
        if (!IsSafeName(name) || !FileExists(files, from + name + RunExtension)) continue;
        if (!FileExists(files, to + name + RunExtension))
            runs.Missing.push_back(name);
        else if (ReadWholeFile(files, from + name + RunExtension) != ReadWholeFile(files, to + name + RunExtension))
            runs.Different.push_back(name);
    }
    return runs;
}

void CopyRuns(FileSystem& files, const std::vector<std::string>& names, const std::string& from,
              const std::string& to) {
    const auto batch = files.BeginWrites();
    for (const std::string& name : names)
        batch->Add(to + name + RunExtension, ReadWholeFile(files, from + name + RunExtension), Expected::Nothing());
    batch->Commit();
}

}  // namespace vantor
