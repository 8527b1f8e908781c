#include "analysis/forms/frmContDelayVsAvg.h"

#include <gmock/gmock.h>

#include <QHelpEvent>
#include <QToolTip>

#include "core/StudyFile.h"
#include "core/forms/Named.h"
#include "fakes/Clicks.h"
#include "fakes/FakePorts.h"
#include "fakes/ThrowsError.h"

namespace vantor {
namespace {

class frmContDelayVsAvgTest : public testing::Test {
protected:
    frmContDelayVsAvg& Open(const std::vector<std::int32_t>& delays) {
        Study& study = Program.State.CurrentStudy;
        study = {};
        study.Record.StudyName = "AM/Peak";
        for (const std::int32_t delay : delays) {
            AppendRun(study, "NB <" + std::to_string(study.Record.RunCount + 1) + ">");
            study.Entries[study.Record.RunCount].ControlDelay = delay;
        }
        Program.State.Paths.LastStudyGroupPath = "/start/Study Groups/Main St/";
        Form = std::make_unique<frmContDelayVsAvg>(Program.Context);
        Form->show();
        return *Form;
    }

    DelayChartPlot& Plot() { return Find<DelayChartPlot>(*Form, "picDelayChart"); }
    std::string ReadOut() { return FromQt(Find<QLabel>(*Form, "lblReadOut").text()); }

    /// The first place of that colour on the plot, from its left.
    QPoint PlaceOf(QColor colour) {
        const QImage image = Plot().grab().toImage();
        for (int x = 0; x < image.width(); ++x)
            for (int y = 0; y < image.height(); ++y)
                if (image.pixelColor(x, y) == colour) return {x, y};
        ADD_FAILURE() << "nothing is " << colour.name().toStdString();
        return {};
    }

    TestProgram Program;
    std::unique_ptr<frmContDelayVsAvg> Form;
};

TEST_F(frmContDelayVsAvgTest, KeysAndMouseReadRunsOut) {
    EXPECT_EQ(Open({20, 4, -6}).windowTitle(), "Control Delays & Running Avg. for Current Study");
    EXPECT_EQ(Find<QLabel>(*Form, "lblLegendAvg").text(), "Running Avg. of Control Delay");
    EXPECT_EQ(Find<QLabel>(*Form, "lblLegendData").text(), "Control Delay Values");
    EXPECT_EQ(ReadOut(), "The arrow keys step through the runs; or point at a run.");

    const auto press = [this](Qt::Key key) {
        QTest::keyClick(&Plot(), key);
        return ReadOut();
    };
    const std::string first = "Run 1, NB <1>: control delay 20 s (not counted), running average 20.0 s";
    EXPECT_EQ(press(Qt::Key_Right), first);
    EXPECT_EQ(press(Qt::Key_Right), "Run 2, NB <2>: control delay 4 s (not counted), running average 12.0 s");
    EXPECT_EQ(press(Qt::Key_End), "Run 3, NB <3>: control delay -6 s (not counted), running average 6.0 s");
    EXPECT_EQ(press(Qt::Key_Right), ReadOut()) << "there is no further run";
    EXPECT_EQ(press(Qt::Key_Home), first);
    EXPECT_EQ(press(Qt::Key_Left), first);
    EXPECT_TRUE(Plot().accessibleDescription().contains(ToQt(first)));

    QTest::mouseClick(&Plot(), Qt::LeftButton, {}, PlaceOf(QColor(0x00, 0x80, 0xC0)));
    EXPECT_EQ(ReadOut(), "Run 3, NB <3>: control delay -6 s (not counted), running average 6.0 s")
        << "the only average's point";
    const QPoint red = PlaceOf(Qt::red);
    QTest::mouseClick(&Plot(), Qt::LeftButton, {}, red);
    EXPECT_EQ(ReadOut(), first);
    QHelpEvent hover(QEvent::ToolTip, red, Plot().mapToGlobal(red));
    QApplication::sendEvent(&Plot(), &hover);
    EXPECT_TRUE(QToolTip::text().contains("NB &lt;1&gt;\nControl delay: 20 s (not counted)\nRunning average: 20.0 s"))
        << QToolTip::text().toStdString();
    QTest::keyClick(Form.get(), Qt::Key_Return);
    EXPECT_FALSE(Form->isVisible()) << "Exit is the default button";
}

TEST_F(frmContDelayVsAvgTest, CopiesAndSavesTheChart) {
    Open({20, 4});
    Click(*Form, "BtnCopyValues");
    EXPECT_EQ(Program.DesktopServices.Copied,
              "Run\tRun Name\tControl Delay (s)\tRunning Avg. (s)\tStatus\n1\tNB <1>\t20\t20.0\tNot counted\n"
              "2\tNB <2>\t4\t12.0\tNot counted\n");
    Click(*Form, "BtnCopyPicture");
    const std::vector<std::byte> png = {std::byte{0x89}, std::byte{'P'}};
    EXPECT_EQ(Program.DesktopServices.CopiedPicture, png);
    EXPECT_EQ(Program.Documents.Format, PictureFormat::Png);

    const auto files = Program.Files.AllFiles();
    Click(*Form, "BtnSave");
    EXPECT_EQ(Program.DesktopServices.AskedFrom, "/start/Study Groups/Main St/AM_Peak Control Delay.png");
    EXPECT_EQ(Program.DesktopServices.KindsOffered, "*.png*.svg*.pdf");
    EXPECT_EQ(Program.Files.AllFiles(), files) << "the user named no file";

    Program.DesktopServices.FileToSave = "/start/chart.jpg";
    Program.Messages.Expect("/start/chart.jpg\nName a file that ends in .png, .svg or .pdf.");
    Click(*Form, "BtnSave");
    Program.DesktopServices.FileToSave = "/start/chart.SVG";
    Program.Files.FailChangeAfter(0, ErrorNumber::DiskFull);
    Program.Messages.Expect("Run-time error '61':\nDisk full\n\n/start/chart.SVG");
    Click(*Form, "BtnSave");
    EXPECT_EQ(Program.Files.AllFiles(), files);
    Click(*Form, "BtnSave");
    EXPECT_EQ(Program.Documents.Format, PictureFormat::Svg);
    EXPECT_EQ(Program.Files.Bytes("/start/chart.SVG"), png);
}

TEST_F(frmContDelayVsAvgTest, SaysWhatItCannotShow) {
    Open({});
    EXPECT_EQ(ReadOut(), "Add runs to the study to see their control delays.");
    for (const char* button : {"BtnCopyPicture", "BtnCopyValues", "BtnSave"})
        EXPECT_FALSE(Find<QAbstractButton>(*Form, button).isEnabled());
    for (const Qt::Key key : {Qt::Key_Left, Qt::Key_Right, Qt::Key_Home, Qt::Key_End}) QTest::keyClick(&Plot(), key);
    Click(*Form, "btnExit");
    EXPECT_FALSE(Form->isVisible());

    EXPECT_ERROR(Overflow, Open({32768}));
    // So far below the baseline that it has no place in 16 bits: the plot says so and works on.
    Open({-32000});
    Plot().grab();
    QTest::mouseClick(&Plot(), Qt::LeftButton);
    QTest::keyClick(&Plot(), Qt::Key_Right);
    EXPECT_EQ(ReadOut(), "Run 1, NB <1>: control delay -32000 s (not counted), running average -32000.0 s");
    Program.Messages.Expect("Run-time error '6':\nOverflow");
    Click(*Form, "BtnCopyPicture");
}

}  // namespace
}  // namespace vantor
