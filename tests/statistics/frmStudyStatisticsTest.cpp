#include "statistics/forms/frmStudyStatistics.h"

#include <gmock/gmock.h>

#include "fakes/FormScene.h"
#include "fakes/PutFiles.h"

namespace vantor {
namespace {

using testing::Contains, testing::ElementsAre, testing::HasSubstr, testing::StartsWith;

class frmStudyStatisticsTest : public FormScene<frmStudyStatistics> {
protected:
    frmStudyStatisticsTest() {
        State.Settings.SpeedFactor = static_cast<float>(3600.0 / 5280.0);
        State.Paths.LastStudyGroupPath = "/start/Study Groups/Main St/";
        Files.CreateFolder(State.Paths.LastStudyGroupPath);
        State.CurrentStudy.Record.StudyName = "AM";
    }
    /// Runs "R1" and so on that take so many seconds with a node in the middle, the first `before` of them Before.
    void Put(const std::vector<int>& seconds, int before, const char* notes = "") {
        for (const int count : seconds) {
            const int number = State.CurrentStudy.Record.RunCount + 1;
            std::vector<int> feet(static_cast<std::size_t>(count), 30);
            feet[feet.size() / 2] |= NodeFlag;
            RunRecord run = RunOfValues(feet);
            run.Header.RunTime = TimeOf(7, number);
            run.Header.Notes = notes;
            run.Header.Before = number <= before ? -1 : 0;
            run.Header.After = number <= before ? 0 : -1;
            PutRunFile(Files, run, State.Paths.LastStudyGroupPath, "R" + std::to_string(number));
            AppendRun(State.CurrentStudy, "R" + std::to_string(number));
        }
    }
    /// The plots' chosen items and the row of the list.
    std::string Selected() {
        const auto rows = Get<LongList>("vaRuns").SelectedRows();
        return std::to_string(Get<PlotView>("picTimeSpace").ChosenItem()) +
               std::to_string(Get<PlotView>("picOverlay").ChosenItem()) +
               (rows.empty() ? "-" : CellText(Get<QTableView>("vaRuns"), rows.front(), 0));
    }
};

TEST_F(frmStudyStatisticsTest, ARunIsSelectedInAllTabs) {
    Put({60, 62, 64, 50, 52, 54}, 3);
    Open(2);
    EXPECT_EQ(Selected(), "22R2");
    Get<QTabWidget>("tabStatistics").setCurrentIndex(2);
    Get<PlotView>("picTimeSpace").setFocus();
    PressKey(Qt::Key_End);
    EXPECT_EQ(Selected(), "66R6");
    ClickRow(*Window, "vaRuns", 3);
    EXPECT_EQ(Selected(), "44R4");
    Pick("cmbGroup", "Before");
    EXPECT_EQ(Selected(), "00-");
    Pick("cmbGroup", "After");
    EXPECT_EQ(Selected(), "11R4") << "what is hidden for a while stays selected";
    PressKey(Qt::Key_Escape);
    EXPECT_EQ(Window->Outcome().LastRun, 4);
}

TEST_F(frmStudyStatisticsTest, BeforeAndAfterStandBesideEachOther) {
    Put({60, 62, 64, 50, 52, 54}, 3);
    Open(0);
    EXPECT_THAT(Rows(*Window, "vaSummary"), Contains(StartsWith("Travel time (s)|57.0 ± 6.0|62.0 ± 5.0|52.0 ± 5.0|")));
    EXPECT_THAT(Text("lblRestsOn"), HasSubstr("; before: few runs; after: few runs"));
    EXPECT_THAT(Text("lblSentences"), HasSubstr("Travel time fell by 10.0 s (16.1 %)"));
    EXPECT_EQ(Rows(*Window, "vaComparedSections").size(), 2U);
    Pick("cmbGroup", "Before");
    EXPECT_THAT(Rows(*Window, "vaSummary"), Contains(StartsWith("Travel time (s)|62.0 ± 5.0|")));
    EXPECT_THAT(Text("lblSentences"), HasSubstr("Choose all runs"));
    EXPECT_FALSE(Get<QWidget>("vaCompared").isVisibleTo(Window.get()));
}

TEST_F(frmStudyStatisticsTest, DirectionsAreOfferedAndChoicesKept) {
    Put({60, 62}, 0);
    Open(0);
    EXPECT_FALSE(Get<QWidget>("cmbDirection").isVisibleTo(Window.get())) << "nothing to choose between";
    Put({64, 66}, 0, "Direction NB");
    Open(0);
    Pick("cmbDirection", "NB");
    EXPECT_EQ(Rows(*Window, "vaRuns").size(), 2U);
    Pick("cmbClock", "of the day");
    Get<QCheckBox>("chkSingleRuns").click();
    Open(0);
    EXPECT_EQ(Get<QComboBox>("cmbClock").currentIndex(), 1);
    EXPECT_FALSE(Get<QCheckBox>("chkSingleRuns").isChecked());
    Get<QTableWidget>("vaSummary").setCurrentCell(1, 0);
    EXPECT_EQ(Text("lblSummaryRow"),
              "Travel time (s)\nAll: interval 58.9 to 67.1 s; 4 runs, 1 day, 07:01 to 07:04; 95 %; few runs");
}

TEST_F(frmStudyStatisticsTest, OptionsAreForTheCallerToTake) {
    Put({60, 62, 64}, 0);
    Open(0);
    OtherScreens.OnShow["frmStatisticsOptions"] = [] { return true; };
    OtherScreens.Options.Options.Stops = {25, 30};
    OtherScreens.Options.Options.Error = {PermittedError::Kind::Absolute, 4};
    Press("BtnOptions");
    // 30 ft a second are 20.5 mph: with these speeds the vehicles stand all the time.
    EXPECT_THAT(Rows(*Window, "vaSummary"), Contains(StartsWith("Stopped time (s)|62.0 ± 5.0|")));
    EXPECT_EQ(Window->Outcome().Choices, OtherScreens.Options);
    EXPECT_EQ(State.CurrentStudy.Options, StatisticsOptions());
    EXPECT_EQ(Get<QDoubleSpinBox>("numDifference").value(), 4);

    // sd 2 s: five runs show (2.306 + 0.889) 2 √(2/5) = 4.04 s, six (2.228 + 0.879) 2 √(2/6) = 3.59 s.
    EXPECT_THAT(Text("lblDifference"), StartsWith("takes 6 runs before and 6 after with"));
    OtherScreens.Options.Options.Stops = {5, 10};
    Work.AsksBeforeStop = 1;
    Press("BtnOptions");
    EXPECT_EQ(Window->Outcome().Choices.Options.Stops, (StopSpeeds{25, 30})) << "the figures are still made with these";
}

TEST_F(frmStudyStatisticsTest, CopiesAndSavesTheTabInView) {
    Put({60, 62}, 0);
    Open(0);
    Get<QTabWidget>("tabStatistics").setCurrentIndex(2);
    Press("BtnCopy");
    EXPECT_EQ(
        DesktopServices.Copied,
        "Node\tMean distance (ft)\tMean time (s)\tR1 (s)\tR2 (s)\n[Start]\t0\t0.0\t0\t0\n"
        "Node 1\t945\t31.5\t31\t32\n[End]\t1830\t61.0\t60\t62\nRests on\t2 runs, 1 day, 07:01 to 07:02; few runs\n");
    DesktopServices.FileToSave = "/start/t.csv";
    Press("BtnSaveCsv");
    EXPECT_EQ(DesktopServices.AskedFrom, "/start/Study Groups/Main St/AM time-space.csv");
    const auto bytes = Files.Bytes("/start/t.csv").value();
    EXPECT_THAT(std::string(reinterpret_cast<const char*>(bytes.data()), bytes.size()),
                HasSubstr("\r\nNode 1,945,31.5,31,32\r\n"));
}

TEST_F(frmStudyStatisticsTest, SaysWhatIsMissing) {
    Open(0);
    EXPECT_EQ(Text("lblWarnings"), "The study has no runs. Add runs to see their statistics.");
    EXPECT_FALSE(IsEnabled("BtnCopy"));
    Put({60}, 0);
    AppendRun(State.CurrentStudy, "Gone");
    Open(0);
    EXPECT_THAT(Text("lblWarnings"), HasSubstr("There is one run"));
    EXPECT_THAT(Text("lblWarnings"), HasSubstr("1 run left out: Missing Run File: Gone"));
    EXPECT_THAT(Rows(*Window, "vaSummary"), Contains(StartsWith("Control delay (s)|–|")));
    EXPECT_THAT(Text("lblSentences"), HasSubstr("All runs were driven after the change"));
    Work.AsksBeforeStop = 0;
    Window = std::make_unique<frmStudyStatistics>(Context, 0);
    Window->show();
    EXPECT_TRUE(Closes()) << "figures of a part of the runs";
}

}  // namespace
}  // namespace vantor
