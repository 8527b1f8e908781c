#pragma once

#include <string>
#include <utility>
#include <vector>

#include "core/RunFile.h"
#include "core/StudyFile.h"
#include "fakes/FakePorts.h"
#include "fakes/PutFiles.h"

namespace vantor {

/// A run of a study and its figures; a run without a boundary has the end boundary 0.
struct RunOfStudy {
    std::string Name;
    std::int32_t ControlDelay = 0;
    std::int32_t StopDelay = 0;
    std::int32_t EndDist = 7600;
};

/// A program with the Study Group "Main Street", where the runs R1 to R4 lie.
struct MainStreet : TestProgram {
    const std::string Group = "/start/Study Groups/Main Street/";

    MainStreet() {
        Files.CreateFolder(Group);
        State.Paths.LastStudyGroupPath = Group;
        for (const char* name : {"R1", "R2", "R3", "R4"}) PutRun(name);
    }

    void PutRun(const std::string& name) {
        RunRecord run;
        run.Header.RunDate = DateOf(2008, 3, 11);
        run.Header.RunTime = TimeOf(7, 5);
        run.Header.HeaderWord1 = -1;
        // 8,800 ft at 44 ft a second.
        run.Header.CalConstant = 1000;
        run.Header.SampleCount = 200;
        run.SampleValues.ResizeTo(200);
        for (std::int16_t& value : run.SampleValues) value = 44;
        run.RunSamples.ResizeTo(200);
        PutRunFile(Files, run, Group, name);
    }

    static StudyRunEntry EntryOf(const RunOfStudy& run) {
        StudyRunEntry entry;
        entry.EntryRunName = run.Name;
        entry.CDStartDist = 300;
        entry.CDEndDist = run.EndDist;
        entry.IdealSpeedCalc = 30;
        entry.ControlDelay = run.ControlDelay;
        entry.LOSGrade = "B";
        entry.StopDelay = run.StopDelay;
        return entry;
    }

    void PutStudy(const std::string& name, const std::vector<RunOfStudy>& runs) {
        Study study;
        study.Record.StudyName = name;
        study.Record.Direction = 1;
        study.Record.CritLane = -1;
        for (const RunOfStudy& run : runs) {
            AppendRun(study, run.Name);
            study.Entries[study.Record.RunCount] = EntryOf(run);
        }
        PutStudyFile(Files, study, Group, name);
    }

    bool HasFile(const std::string& name) const { return Files.Bytes(Group + name).has_value(); }
    /// The study as it lies on the disk.
    Study Saved(const std::string& name) const { return LoadStudy(Files, Group, name).value(); }
};

}  // namespace vantor
