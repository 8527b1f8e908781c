#pragma once

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "core/RunFile.h"
#include "core/StudyFile.h"
#include "fakes/FakePorts.h"
#include "fakes/PutFiles.h"

namespace vantor {

using testing::AllOf, testing::Each, testing::ElementsAre, testing::SizeIs, testing::EndsWith, testing::HasSubstr,
    testing::IsEmpty, testing::StartsWith;
using Names = std::vector<std::string>;
inline constexpr auto Yes = MessageAnswer::Yes;
inline constexpr auto No = MessageAnswer::No;
inline constexpr auto Cancel = MessageAnswer::Cancel;

inline const std::string Root = "/start/Study Groups/";
inline const std::string Group = Root + "Main Street/";
inline const std::string OakElm = Root + "Oak & Elm Ave/";

/// A run of a study and its figures; a run without a boundary has the end boundary 0.
struct RunOfStudy {
    std::string Name;
    std::int32_t ControlDelay = 0;
    std::int32_t StopDelay = 0;
    std::int32_t EndDist = 7600;
};

inline Study StudyOf(const std::string& name, const std::vector<RunOfStudy>& runs) {
    Study study;
    study.Record.StudyName = name;
    study.Record.StudyDate = DateOf(2008, 3, 14);
    study.Record.Direction = 1;
    study.Record.CritLane = -1;
    for (const RunOfStudy& run : runs) {
        AppendRun(study, run.Name);
        StudyRunEntry& entry = study.Entries[study.Record.RunCount];
        entry.CDStartDist = 300;
        entry.CDEndDist = run.EndDist;
        entry.IdealSpeedCalc = 30;
        entry.ControlDelay = run.ControlDelay;
        entry.LOSGrade = "B";
        entry.StopDelay = run.StopDelay;
    }
    return study;
}
/// Asks about changes of a study of a Study Group; `rest` tells when they were kept.
inline std::string AsksToRestore(const std::string& rest, const std::string& study = "AM",
                                 const std::string& group = "Main Street") {
    return "Study \"" + study + "\" in Study Group: " + group + "\nwas not closed properly" + rest +
           "\n\nDo you want to restore the changes?\nNo deletes them, Cancel leaves them for another time.";
}
inline const std::string AtEleven = ". Its changes were kept on 03/14/08 at 11:05.";
inline const Date ElevenFive{DateOf(2008, 3, 14).Days + TimeOf(11, 5).Days};

/// The path of the last study, without its extension.
inline std::string LastStudyOf(const ApplicationState& state) {
    return state.Paths.LastStudyGroupPath + state.Paths.LastStudyName;
}
inline Names RunsOf(const Study& study) { return {study.RunNames.begin(), study.RunNames.end()}; }

/// A program, or the scene of one of its screens, with the Study Groups "Main Street", the current one, where the runs
/// R1 to R4 lie, and "Oak & Elm Ave".
template <class Program>
struct MainStreet : Program {
    using Program::Files, Program::State;

    MainStreet() {
        for (const std::string& folder : {Group, OakElm}) Files.CreateFolder(folder);
        State.Paths.LastStudyGroupPath = Group;
        for (const char* name : {"R1", "R2", "R3", "R4"}) PutRun(Group, name);
    }

    /// A run of 200 s at 44 ft a second.
    void PutRun(const std::string& group, const std::string& name, const std::string& notes = "") {
        RunRecord run = RunOfValues(std::vector<int>(200, 44));
        run.Header.RunDate = DateOf(2008, 3, 11);
        run.Header.RunTime = TimeOf(7, 5);
        run.Header.HeaderWord1 = run.Header.Before = -1;
        run.Header.RunLength = 5280;
        run.Header.Notes = notes;
        PutRunFile(Files, run, group, name);
    }
    void PutStudy(const std::string& name, const std::vector<RunOfStudy>& runs, const std::string& group = Group) {
        Study study = StudyOf(name, runs);
        PutStudyFile(Files, study, group, name);
    }
    bool HasFile(const std::string& path) const { return Files.Bytes(path).has_value(); }
    /// The study as it lies on the disk.
    Study Saved(const std::string& name, const std::string& group = Group) const {
        return LoadStudy(Files, group, name).value();
    }
};

}  // namespace vantor
