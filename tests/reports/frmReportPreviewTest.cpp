#include "reports/forms/frmReportPreview.h"

#include <gmock/gmock.h>

#include "core/StudyFile.h"
#include "corridor/CorridorVerify.h"
#include "fakes/FormScene.h"
#include "reports/ReportStudies.h"

namespace vantor {
namespace {

class frmReportPreviewTest : public FormScene<frmReportPreview> {
protected:
    frmReportPreviewTest() {
        State.Paths.LastStudyGroupPath = Folder;
        Files.CreateFolder(Folder);
        State.CurrentStudy = PutReportedStudy(Files, Folder, 3);
    }
    ReportPagesView& View() { return Get<ReportPagesView>("picReport"); }
    std::string PageText() { return FromQt(Get<QSpinBox>("txtPage").text()) + " " + Text("lblPages"); }
    /// The page shown after a key that is pressed in a control.
    std::string PageAfter(Qt::Key key, const char* control = "picReport") {
        QTest::keyClick(&Get<QWidget>(control), key);
        return PageText();
    }

    const std::string Folder = "/start/Study Groups/NB/";
};

TEST_F(frmReportPreviewTest, GoesThroughThePagesByKeysAndButtons) {
    Open();
    PressKey(Qt::Key_PageDown);
    EXPECT_EQ(PageText(), "2 of 8") << "the pages have the focus";
    Press("cmdNext");
    EXPECT_EQ(PageText(), "3 of 8");
    EXPECT_EQ(PageAfter(Qt::Key_End, "chkReport(0)"), "8 of 8") << "a key that the check box has no use for";
    EXPECT_FALSE(IsEnabled("cmdNext"));
    EXPECT_EQ(PageAfter(Qt::Key_PageUp), "7 of 8");
    TypeInto("qt_spinbox_lineedit", "2");
    EXPECT_EQ(PageAfter(Qt::Key_Return, "txtPage"), "2 of 8");
    EXPECT_EQ(View().CurrentPage(), 2);
    EXPECT_TRUE(DesktopServices.Printed.Pages.empty()) << "Enter printed";
    EXPECT_EQ(PageAfter(Qt::Key_Home), "1 of 8");
    EXPECT_FALSE(IsEnabled("cmdPrevious"));
    QTest::keyClick(Window.get(), Qt::Key_Escape);
    EXPECT_TRUE(Window->isHidden());
}

TEST_F(frmReportPreviewTest, ZoomsByStepsOfTheList) {
    Open();
    Pick("cmbZoom", "100 %");
    EXPECT_NEAR(View().ShownPercent(), 100, 1e-9);
    QWheelEvent wheel({50, 50}, View().viewport()->mapToGlobal(QPointF(50, 50)), {}, {0, 120}, Qt::NoButton,
                      Qt::ControlModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(View().viewport(), &wheel);
    EXPECT_EQ(Text("cmbZoom"), "125 %");
    for (int i = 0; i < 2; ++i) QTest::keyClick(&View(), Qt::Key_Minus, Qt::ControlModifier);
    EXPECT_EQ(Text("cmbZoom"), "75 %");
    Press("cmdZoomIn");
    EXPECT_EQ(Text("cmbZoom"), "100 %");
    Pick("cmbZoom", "25 %");
    Press("cmdZoomOut");
    EXPECT_EQ(Text("cmbZoom"), "25 %");
    Pick("cmbZoom", "Fit Page");
    Press("cmdZoomIn");
    EXPECT_GT(View().ShownPercent(), 25);
    EXPECT_TRUE(Text("cmbZoom").ends_with("%"));
}

TEST_F(frmReportPreviewTest, PrintsAndSavesWhatIsChosen) {
    Open();
    for (const int report : {0, 2, 3, 5, 6, 7, 8}) Press(("chkReport(" + std::to_string(report) + ")").c_str());
    Press("chkLeaveOutHeadings");
    Pick("cmbPaper", "A4");
    Pick("cmbOrientation", "Landscape");
    DesktopServices.PrinterFault = "Paper jam";
    Messages.Expect("Run-time error '482':\nPrinter error\n\nPaper jam");
    Press("BtnPrint");
    DesktopServices.PrinterFault.clear();
    Press("BtnPrint");
    EXPECT_EQ(DesktopServices.Printed.Pages.size(), 2u);
    EXPECT_EQ(DesktopServices.Printed.Page.Width, 842);

    const auto files = Files.AllFiles();
    Press("BtnSavePdf");
    EXPECT_EQ(DesktopServices.AskedFrom, Folder + "AM Peak.pdf");
    EXPECT_EQ(Files.AllFiles(), files) << "the user named no file";
    DesktopServices.FileToSave = "/start/out.pdf";
    Press("BtnSavePdf");
    EXPECT_TRUE(Files.Bytes("/start/out.pdf"));
    EXPECT_EQ(Documents.Pages.size(), 2u);

    // The choice is there again the next time.
    Open();
    EXPECT_EQ(PageText(), "1 of 2");
    EXPECT_FALSE(IsChecked("chkReport(2)"));
    EXPECT_TRUE(IsChecked("chkLeaveOutHeadings"));
    EXPECT_EQ(Text("cmbOrientation"), "Landscape");
    for (const char* report : {"chkReport(1)", "chkReport(4)"}) Press(report);
    EXPECT_FALSE(IsEnabled("BtnPrint"));
    EXPECT_EQ(View().accessibleDescription(), "Choose one or more reports on the left.");
}

TEST_F(frmReportPreviewTest, AStudyWithoutRunsHasNoReport) {
    State.CurrentStudy = {};
    Open();
    EXPECT_TRUE(View().accessibleDescription().contains("This study has no runs."));
}

TEST_F(frmReportPreviewTest, SavesTheReportOnACorridorWithItsFigures) {
    auto corridor = std::make_shared<ReportedCorridor>();
    corridor->Root = "/start/Study Groups/";
    corridor->Of.Name = "Main St";
    corridor->Of.Nodes = {{.Name = "Oak"}, {.Name = "Elm", .DistanceFt = 900}};
    corridor->Of.Runs = {{.Group = "NB", .Name = RunFileName(State.CurrentStudy.Entries[1])},
                         {.Group = "NB", .Name = "gone"}};
    corridor->Runs = ReadCorridorRuns(corridor->Of, Files, corridor->Root, State.Settings).Runs;
    Open(corridor);
    EXPECT_EQ(Text("chkReport(0)"), "Delays and Travel Times");
    EXPECT_THAT(Text("lblProblems"), testing::HasSubstr("gone"));
    EXPECT_EQ(PageText(), "1 of 6") << "neither before with after nor a map";
    for (const int part : {1, 3, 5, 7}) Press(("chkReport(" + std::to_string(part) + ")").c_str());
    DesktopServices.FileToSave = "/start/out.pdf";
    Press("BtnSavePdf");
    EXPECT_EQ(DesktopServices.AskedFrom, "/start/Study Groups/Main St.pdf");
    EXPECT_EQ(Documents.Pages.size(), 2u);
    EXPECT_TRUE(Files.Bytes("/start/out.pdf"));
    std::vector<std::string> texts;
    for (const auto& text : Documents.Pages.back().Texts) texts.push_back(text.Shown);
    EXPECT_THAT(texts, testing::Contains(testing::HasSubstr("out.figures.json")));
    const FiguresFile figures = LoadFigures(Files, "/start/out.figures.json");
    EXPECT_FALSE(VerifyFigures(figures, Files, corridor->Root).Difference);

    // What is chosen of a corridor is not what is chosen of a study.
    Open();
    EXPECT_TRUE(IsChecked("chkReport(1)"));
    Open(corridor);
    EXPECT_FALSE(IsChecked("chkReport(1)"));
    Open(std::make_shared<ReportedCorridor>());
    EXPECT_TRUE(View().accessibleDescription().contains("This corridor has no runs."));
}

}  // namespace
}  // namespace vantor
