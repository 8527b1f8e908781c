#pragma once

#include <string>
#include <vector>

#include "core/RunDecoding.h"
#include "core/RunFile.h"
#include "core/StudyFile.h"
#include "fakes/PutFiles.h"

namespace vantor {

/// One foot a pulse: 60 seconds at 44 feet a second (30 MPH) but for 5 seconds at rest; nodes at 880 and 1540 feet of
/// 2420.
inline RunRecord ReportedRun() {
    RunRecord run;
    run.Header.CalConstant = 1000;
    run.Header.RunDate = DateOf(2008, 3, 14);
    run.Header.RunTime = TimeOf(7, 30);
    run.Header.SampleCount = 60;
    run.RunSamples.ResizeTo(60);
    for (int second = 1; second <= 60; ++second) {
        const int mark = second == 20 || second == 40 ? NodeFlag : 0;
        run.SampleValues.Append(static_cast<std::int16_t>(mark | (second > 30 && second <= 35 ? 0 : 44)));
    }
    DecodeNewRun(run);
    run.Header.SectionName[1] = "Oak";
    return run;
}

/// Puts that run there as often as wanted, "NB-1" and so on, with a study of these runs, all counted: "AM Peak".
inline Study PutReportedStudy(FileSystem& files, const std::string& folder, int runs) {
    Study study;
    study.Record.StudyName = "AM Peak";
    study.Record.StreetName = "Main Street";
    study.Record.Direction = 2;
    study.Record.CritLane = -1;
    study.Record.StudyNotes = "Rain";
    RunRecord run = ReportedRun();
    for (int i = 1; i <= runs; ++i) {
        const std::string name = "NB-" + std::to_string(i);
        PutRunFile(files, run, folder, name);
        AppendRun(study, name);
        StudyRunEntry& entry = study.Entries[i];
        entry.CDStartDist = 300;
        entry.CDEndDist = 2000;
        entry.IdealSpeedCalc = 30;
        entry.ControlDelay = 24;
        entry.StopDelay = 5;
        entry.LOSGrade = "C";
    }
    PutStudyFile(files, study, folder, "AM Peak");
    return study;
}

}  // namespace vantor
