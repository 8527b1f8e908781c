#include "counter/forms/frmUploadRunList.h"

#include <gmock/gmock.h>

#include <QLabel>

#include "TableClicks.h"
#include "core/RunFile.h"
#include "fakes/FakePorts.h"
#include "fakes/PutFiles.h"

namespace vantor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string Groups = "/start/Study Groups/";

TEST(frmUploadRunList, ListsTheRunsOfTheGroup) {
    TestProgram program;
    program.Files.CreateFolder(Groups + "Main St");
    RunRecord run;
    run.Header.RunDate = DateOf(2008, 3, 11);
    run.Header.RunTime = TimeOf(6, 53);
    run.Header.HeaderWord1 = -1;
    run.Header.RunLength = 5280;
    run.Header.Duration = 95;
    run.Header.NumberOfSections = 7;
    run.Header.Notes = "Dry";
    PutRunFile(program.Files, run, Groups + "Main St/", "Main-NB-001");
    program.Files.PutText(Groups + "Main St/Morning.ld2", "no run");
    program.Files.PutText(Groups + "Main St/odd..name.rd2", "");

    frmUploadRunList form(program.Context, "Main St");
    form.show();
    EXPECT_EQ(form.windowTitle(), "Runs in Selected Study Group");
    EXPECT_EQ(Find<QLabel>(form, "lblStudyGroup").text(), "List of runs in Study Group: Main St");
    EXPECT_THAT(Heads(form, "vaShowRuns"), ElementsAre("Name", "Date", "Time", "Type", "Length (ft)", "Duration (s)",
                                                       "# of Sections", "Before/After", "Notes"));
    EXPECT_THAT(Row(form, "vaShowRuns", 0),
                ElementsAre("Main-NB-001", "03/11/08", "06:53", "Primary", "5280", "95", "7", "After", "Dry"));
    // A run that no name of the program reaches is listed all the same.
    EXPECT_THAT(Column(form, "vaShowRuns", 0), ElementsAre("Main-NB-001", "odd..name"));
    EXPECT_FALSE(Find<QTableView>(form, "vaShowRuns").model()->index(1, 0).data(Qt::ToolTipRole).toString().isEmpty());
    Click(form, "cmdHelp");
    EXPECT_THAT(program.DesktopServices.Opened, ElementsAre("/program/VANTOR.HLP#42"));
    Click(form, "BtnUploadOk");
    EXPECT_FALSE(form.isVisible());
}

TEST(frmUploadRunList, ShowsMetresAndAnEmptyGroup) {
    TestProgram program;
    program.State.Settings.MetricUnits = -1;
    RunRecord run;
    run.Header.RunLength = 5280;
    program.Files.CreateFolder(Groups + "A");
    PutRunFile(program.Files, run, Groups + "A/", "X");
    frmUploadRunList form(program.Context, "A");
    EXPECT_EQ(Row(form, "vaShowRuns", 0)[4], "1609 m");
    EXPECT_THAT(Column(*std::make_unique<frmUploadRunList>(program.Context, "B"), "vaShowRuns", 0), IsEmpty());
}

}  // namespace
}  // namespace vantor
