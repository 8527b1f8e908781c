#include "analysis/forms/frmReportPreview.h"

#include <gmock/gmock.h>

#include "analysis/ReportStudies.h"
#include "core/forms/Named.h"
#include "fakes/Clicks.h"
#include "fakes/FakePorts.h"

namespace vantor {
namespace {

class frmReportPreviewTest : public testing::Test {
protected:
    frmReportPreviewTest() {
        Program.State.Paths.LastStudyGroupPath = "/start/Study Groups/NB/";
        Program.Files.CreateFolder("/start/Study Groups/NB");
        Program.State.CurrentStudy = PutReportedStudy(Program.Files, "/start/Study Groups/NB/", 3);
    }

    frmReportPreview& Open() {
        Form = std::make_unique<frmReportPreview>(Program.Context);
        Form->show();
        QApplication::processEvents();
        return *Form;
    }
    ReportPagesView& View() { return Find<ReportPagesView>(*Form, "picReport"); }
    void Press(QWidget& widget, Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::keyClick(&widget, key, modifiers);
    }
    std::string PageText() {
        return FromQt(Find<QSpinBox>(*Form, "txtPage").text() + " " + Find<QLabel>(*Form, "lblPages").text());
    }

    TestProgram Program;
    std::unique_ptr<frmReportPreview> Form;
};

TEST_F(frmReportPreviewTest, GoesThroughThePagesByKeysAndButtons) {
    EXPECT_EQ(Open().windowTitle(), "Print Report");
    EXPECT_EQ(PageText(), "1 of 4");
    EXPECT_FALSE(Find<QAbstractButton>(*Form, "cmdPrevious").isEnabled());
    Press(View(), Qt::Key_PageDown);
    EXPECT_EQ(PageText(), "2 of 4");
    Click(*Form, "cmdNext");
    EXPECT_EQ(PageText(), "3 of 4");
    // Keys that the control with the focus has no use for reach the pages, too.
    Press(Find<QCheckBox>(*Form, "chkReport(0)"), Qt::Key_End);
    EXPECT_EQ(PageText(), "4 of 4");
    EXPECT_FALSE(Find<QAbstractButton>(*Form, "cmdNext").isEnabled());
    Press(View(), Qt::Key_PageUp);
    EXPECT_EQ(PageText(), "3 of 4");
    Type(*Form, "qt_spinbox_lineedit", "2");
    Press(Find<QSpinBox>(*Form, "txtPage"), Qt::Key_Return);
    EXPECT_EQ(View().CurrentPage(), 2);
    EXPECT_TRUE(Program.DesktopServices.Printed.Pages.empty()) << "Enter printed";
    Press(View(), Qt::Key_Home);
    EXPECT_EQ(PageText(), "1 of 4");
    Press(*Form, Qt::Key_Escape);
    EXPECT_FALSE(Form->isVisible());
}

TEST_F(frmReportPreviewTest, ZoomsByStepsOfTheList) {
    Open();
    auto& zoom = Find<QComboBox>(*Form, "cmbZoom");
    EXPECT_EQ(zoom.currentText(), "Fit Width");
    zoom.setCurrentText("100 %");
    EXPECT_NEAR(View().ShownPercent(), 100, 1e-9);
    QWheelEvent wheel({50, 50}, View().viewport()->mapToGlobal(QPointF(50, 50)), {}, {0, 120}, Qt::NoButton,
                      Qt::ControlModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(View().viewport(), &wheel);
    EXPECT_EQ(zoom.currentText(), "125 %");
    Press(View(), Qt::Key_Minus, Qt::ControlModifier);
    Press(View(), Qt::Key_Minus, Qt::ControlModifier);
    EXPECT_EQ(zoom.currentText(), "75 %");
    Click(*Form, "cmdZoomIn");
    EXPECT_EQ(zoom.currentText(), "100 %");
    zoom.setCurrentText("25 %");
    Click(*Form, "cmdZoomOut");
    EXPECT_EQ(zoom.currentText(), "25 %");
    zoom.setCurrentText("Fit Page");
    Click(*Form, "cmdZoomIn");
    EXPECT_GT(View().ShownPercent(), 25);
    EXPECT_TRUE(zoom.currentText().endsWith('%'));
}

TEST_F(frmReportPreviewTest, PrintsAndSavesWhatIsChosen) {
    Open();
    Click(*Form, "chkReport(0)");
    Click(*Form, "chkReport(2)");
    Find<QComboBox>(*Form, "cmbPaper").setCurrentText("A4");
    Find<QComboBox>(*Form, "cmbOrientation").setCurrentText("Landscape");
    Click(*Form, "BtnPrint");
    EXPECT_EQ(Program.DesktopServices.Printed.Pages.size(), 2u);
    EXPECT_EQ(Program.DesktopServices.Printed.Page.Width, 842);

    const auto files = Program.Files.AllFiles();
    Click(*Form, "BtnSavePdf");
    EXPECT_EQ(Program.DesktopServices.AskedFrom, "/start/Study Groups/NB/AM Peak.pdf");
    EXPECT_EQ(Program.Files.AllFiles(), files) << "the user named no file";
    Program.DesktopServices.FileToSave = "/start/out.pdf";
    Program.Files.FailChangeAfter(0, ErrorNumber::PermissionDenied);
    Program.Messages.Expect("Run-time error '70':\nPermission denied\n\n/start/out.pdf");
    Click(*Form, "BtnSavePdf");
    EXPECT_EQ(Program.Files.AllFiles(), files);
    EXPECT_TRUE(Form->isVisible());
    Click(*Form, "BtnSavePdf");
    EXPECT_TRUE(Program.Files.Bytes("/start/out.pdf"));
    EXPECT_EQ(Program.Documents.Pages.size(), 2u);

    // The choice is there again the next time.
    Open();
    EXPECT_EQ(PageText(), "1 of 2");
    EXPECT_FALSE(Find<QCheckBox>(*Form, "chkReport(2)").isChecked());
    EXPECT_EQ(Find<QComboBox>(*Form, "cmbOrientation").currentText(), "Landscape");
    Click(*Form, "chkReport(1)");
    Click(*Form, "chkReport(3)");
    EXPECT_FALSE(Find<QAbstractButton>(*Form, "BtnPrint").isEnabled());
    EXPECT_EQ(View().accessibleDescription(), "Choose one or more reports on the left.");
}

TEST_F(frmReportPreviewTest, StaysWhenPrintingFails) {
    struct JammedPrinter : FakeDesktop {
        bool Print(const PagedDocument&) override { throw RunTimeError(ErrorNumber::PrinterError, "Paper jam"); }
    } printer;
    TestProgram& p = Program;
    AppContext context{p.State,  p.Files,  p.Messages, p.OtherScreens, printer,  p.Time,      p.End,
                       p.Memory, p.Serial, p.Device,   p.Databases,    p.Sheets, p.Documents, p.Work};
    frmReportPreview form(context);
    form.show();
    Program.Messages.Expect("Run-time error '482':\nPrinter error\n\nPaper jam");
    Click(form, "BtnPrint");
    EXPECT_TRUE(form.isVisible());
}

TEST_F(frmReportPreviewTest, SaysWhatIsMissing) {
    Program.Files.Delete("/start/Study Groups/NB/NB-2.rd2");
    Open();
    EXPECT_EQ(FromQt(Find<QLabel>(*Form, "lblProblems").text()),
              "Not all runs can be printed:\nMissing Run File: NB-2");
    Program.State.CurrentStudy = {};
    Open();
    EXPECT_NE(View().accessibleDescription().indexOf("This study has no runs."), -1);
    EXPECT_FALSE(Find<QAbstractButton>(*Form, "BtnPrint").isEnabled());
    EXPECT_FALSE(Find<QAbstractButton>(*Form, "BtnSavePdf").isEnabled());
}

}  // namespace
}  // namespace vantor
