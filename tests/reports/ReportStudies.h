#pragma once

#include <string>
#include <vector>

#include "core/RunDecoding.h"
#include "fakes/PutFiles.h"

namespace vantor {

/// One foot a pulse: 60 seconds at 44 feet a second (30 MPH) but for 5 seconds at rest; nodes at 880 and 1540 feet of
/// 2420.
inline RunRecord ReportedRun() {
    std::vector<int> values(60, 44);
    std::fill_n(values.begin() + 30, 5, 0);
    for (const std::size_t node : {19, 39}) values[node] |= NodeFlag;
    RunRecord run = RunOfValues(values);
    run.Header.RunDate = DateOf(2008, 3, 14);
    run.Header.RunTime = TimeOf(7, 30);
    DecodeNewRun(run);
    run.Header.SectionName[1] = "Oak";
    return run;
}

/// Puts that run there as often as wanted, "NB-1" and so on, with a study of these runs, all counted: "AM Peak".
inline Study PutReportedStudy(FileSystem& files, const std::string& folder, int runs) {
    Study study;
    study.Record = {.StudyName = "AM Peak", .StudyNotes = "Rain", .StreetName = "Main Street", .Direction = 2};
    study.Record.CritLane = -1;
    RunRecord run = ReportedRun();
    for (int i = 1; i <= runs; ++i) {
        const std::string name = "NB-" + std::to_string(i);
        PutRunFile(files, run, folder, name);
        AppendRun(study, name);
        study.Entries[i] = {name, 300, 2000, 30, 0, 24, "C", 5};
    }
    PutStudyFile(files, study, folder, "AM Peak");
    return study;
}

}  // namespace vantor
