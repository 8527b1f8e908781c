#include "analysis/StudyTable.h"

#include <gmock/gmock.h>

#include "core/RunFile.h"
#include "core/StudyFile.h"
#include "fakes/FakePorts.h"
#include "fakes/PutFiles.h"

namespace vantor {
namespace {

using testing::AllOf;
using testing::HasSubstr;

/// Two counted runs, one without its end boundary and one whose file is missing.
class StudyTableTest : public testing::Test {
protected:
    StudyTableTest() {
        Files.CreateFolder("/start/AM Peak");
        Contents.Record.StudyName = "=Main, \"NB\"";
        Contents.Record.StudyDate = DateOf(2008, 3, 14);
        Contents.Record.Direction = 1;
        Contents.Record.CritLane = -1;
        for (const char* name : {"NB-1", "NB-2", "NB-3", "gone"}) AppendRun(Contents, name);
        for (int i = 1; i <= 4; ++i) {
            StudyRunEntry& entry = Contents.Entries[i];
            entry.CDStartDist = 300;
            entry.CDEndDist = i == 3 ? 0 : 7600;
            entry.IdealSpeedCalc = 35;
            entry.ControlDelay = i == 2 ? -4 : 61;
            entry.LOSGrade = "E";
            entry.StopDelay = 19;
        }
        for (const char* name : {"NB-1", "NB-2", "NB-3"}) {
            RunRecord run;
            run.Header.RunDate = DateOf(2008, 3, 11);
            run.Header.RunTime = TimeOf(7, 5);
            run.Header.HeaderWord1 = -1;
            PutRunFile(Files, run, Folder, name);
        }
    }

    OutgoingTable Table(const Units& units = {}) const {
        return StudyTable(Contents, MakeRunListRows(Contents, Files, Folder, {}), Folder, units);
    }

    const std::string Folder = "/start/AM Peak/";
    MemoryFileSystem Files;
    Study Contents;
};

TEST_F(StudyTableTest, TextsAreThoseOfTheRunList) {
    EXPECT_EQ(CsvText(Table().Rows({})),
              "\xEF\xBB\xBFRun Name,Date,Time,Type,Start Boundary (ft),End Boundary (ft),Ideal Speed (mph),User Ideal "
              "Speed (mph),Control Delay (s),LOS Grade,Stop Delay (s),Status,Warnings\r\n"
              "NB-1,03/11/08,07:05,Primary,300,7600,35,0,61,E,19,Counted,start not reached; end not reached\r\n"
              "NB-2,03/11/08,07:05,Primary,300,7600,35,0,-4,E,19,Counted,start not reached; end not reached; negative "
              "control delay\r\n"
              "NB-3,03/11/08,07:05,Primary,300,0,35,0,61,E,19,Not counted,\r\n"
              "gone,,,,,,,,,,,Missing,\"Missing Run File: gone. Copy the file back into the Study Group, or delete the "
              "run from the list.\"\r\n");
    // 1609 m are 5280 ft: 91.4 m, 2316.0 m, 56.3 km/h.
    EXPECT_THAT(CsvText(Table({.Metric = true}).Rows({})),
                AllOf(HasSubstr("Boundary (m),Ideal Speed (kph),User Ideal Speed (kph),"),
                      HasSubstr("Primary,91,2316,56,0,61,E")));
}

TEST_F(StudyTableTest, CellsHaveTheirKindsAndTheStudyItsSheet) {
    const std::vector<Sheet> sheets = Table().Sheets({});
    ASSERT_EQ(sheets.size(), 2U);
    const std::vector<SheetCell> second{"NB-2",
                                        DateOf(2008, 3, 11),
                                        TimeOf(7, 5),
                                        "Primary",
                                        300.,
                                        7600.,
                                        35.,
                                        0.,
                                        -4.,
                                        "E",
                                        19.,
                                        "Counted",
                                        "start not reached; end not reached; negative control delay"};
    EXPECT_EQ(sheets[0].Rows.at(1), second);
    EXPECT_EQ(sheets[0].Columns.at(1).Format, "mm/dd/yy");
    EXPECT_EQ(sheets[0].Columns.at(2).Format, "hh:mm");

    const auto valueOf = [&](const std::string& field) -> SheetCell {
        for (const auto& row : sheets[1].Rows)
            if (row.at(0) == SheetCell(field)) return row.at(1);
        return "no such field";
    };
    EXPECT_EQ(valueOf("Study Name"), SheetCell("=Main, \"NB\""));
    EXPECT_EQ(valueOf("Study Group"), SheetCell("AM Peak"));
    EXPECT_EQ(valueOf("Direction"), SheetCell("SB"));
    EXPECT_EQ(valueOf("Critical Lane"), SheetCell());
    EXPECT_EQ(valueOf("Runs"), SheetCell(4.));
    EXPECT_EQ(valueOf("Runs Counted"), SheetCell(2.));
    EXPECT_EQ(valueOf("Avg. Control Delay (s)"), SheetCell(28.)) << "(61 - 4) / 2 = 28.5, halves to even";
    EXPECT_EQ(valueOf("LOS Grade"), SheetCell("C"));
    EXPECT_EQ(valueOf("Avg. Stop Delay (s)"), SheetCell(19.));
    EXPECT_EQ(valueOf("Ratio of Control to Stop Delay"), SheetCell(1.47)) << "28 / 19";
}

TEST_F(StudyTableTest, AStudyWithoutCountedRunsHasNoAverages) {
    Study empty;
    const std::vector<Sheet> sheets = StudyTable(empty, {}, Folder).Sheets({});
    EXPECT_TRUE(sheets[0].Rows.empty());
    EXPECT_EQ(sheets[1].Rows.at(9).at(1), SheetCell());
}

}  // namespace
}  // namespace vantor
