#include "statistics/forms/frmContDelayVsAvg.h"

#include <QHelpEvent>
#include <QToolTip>

#include "core/StudyFile.h"
#include "fakes/FormScene.h"
#include "fakes/ThrowsError.h"

namespace vantor {
namespace {

class frmContDelayVsAvgTest : public FormScene<frmContDelayVsAvg> {
protected:
    void OpenWith(const std::vector<std::int32_t>& delays) {
        State.Paths.LastStudyGroupPath = "/start/Study Groups/Main St/";
        Study& study = State.CurrentStudy = {};
        study.Record.StudyName = "AM/Peak";
        for (const std::int32_t delay : delays) {
            AppendRun(study, "NB <" + std::to_string(study.Record.RunCount + 1) + ">");
            study.Entries[study.Record.RunCount].ControlDelay = delay;
        }
        Open();
    }
    PlotView& Plot() { return Get<PlotView>("picDelayChart"); }
    std::string After(Qt::Key key) {
        PressKey(key);
        return Text("lblReadOut");
    }
    /// The first place of that colour on the plot, from its left.
    QPoint PlaceOf(QColor colour) {
        const QImage image = Plot().grab().toImage();
        for (int x = 0; x < image.width(); ++x)
            for (int y = 0; y < image.height(); ++y)
                if (image.pixelColor(x, y) == colour) return {x, y};
        ADD_FAILURE() << "nothing is " << colour.name().toStdString();
        return {};
    }
};

TEST_F(frmContDelayVsAvgTest, KeysAndMouseReadRunsOut) {
    OpenWith({20, 4, -6});
    const std::string first = "Run 1, NB <1>: control delay 20 s (not counted), running average 20.0 s";
    const std::string last = "Run 3, NB <3>: control delay -6 s (not counted), running average 6.0 s";
    EXPECT_EQ(After(Qt::Key_Right), first);
    EXPECT_EQ(After(Qt::Key_Right), "Run 2, NB <2>: control delay 4 s (not counted), running average 12.0 s");
    for (const Qt::Key key : {Qt::Key_End, Qt::Key_Right}) EXPECT_EQ(After(key), last) << "there is no further run";
    for (const Qt::Key key : {Qt::Key_Home, Qt::Key_Left}) EXPECT_EQ(After(key), first);
    EXPECT_TRUE(Plot().accessibleDescription().contains(ToQt(first)));

    QTest::mouseClick(&Plot(), Qt::LeftButton, {}, PlaceOf(QColor(0x00, 0x80, 0xC0)));
    EXPECT_EQ(Text("lblReadOut"), last) << "the only average's point";
    const QPoint red = PlaceOf(Qt::red);
    QTest::mouseClick(&Plot(), Qt::LeftButton, {}, red);
    EXPECT_EQ(Text("lblReadOut"), first);
    QHelpEvent hover(QEvent::ToolTip, red, Plot().mapToGlobal(red));
    QApplication::sendEvent(&Plot(), &hover);
    EXPECT_TRUE(QToolTip::text().contains("NB &lt;1&gt;\nControl delay: 20 s (not counted)\nRunning average: 20.0 s"))
        << QToolTip::text().toStdString();
    QTest::keyClick(Window.get(), Qt::Key_Return);
    EXPECT_TRUE(Window->isHidden()) << "Exit is the default button";
}

TEST_F(frmContDelayVsAvgTest, CopiesAndSavesTheChart) {
    OpenWith({20, 4});
    Press("BtnCopyValues");
    EXPECT_EQ(DesktopServices.Copied,
              "Run\tRun Name\tControl Delay (s)\tRunning Avg. (s)\tStatus\n1\tNB <1>\t20\t20.0\tNot counted\n"
              "2\tNB <2>\t4\t12.0\tNot counted\n");
    Press("BtnCopyPicture");
    const std::vector<std::byte> picture = BytesOf("\x89P");
    EXPECT_EQ(DesktopServices.CopiedPicture, picture);
    EXPECT_EQ(Documents.Format, PictureFormat::Png);

    const auto files = Files.AllFiles();
    Press("BtnSave");
    EXPECT_EQ(DesktopServices.AskedFrom, "/start/Study Groups/Main St/AM_Peak Control Delay.png");
    EXPECT_EQ(DesktopServices.KindsOffered, "*.png*.svg*.pdf");
    EXPECT_EQ(Files.AllFiles(), files) << "the user named no file";
    DesktopServices.FileToSave = "/start/chart.jpg";
    Messages.Expect("/start/chart.jpg\nName a file that ends in .png, .svg or .pdf.");
    Press("BtnSave");
    EXPECT_EQ(Files.AllFiles(), files);
    DesktopServices.FileToSave = "/start/chart.SVG";
    Press("BtnSave");
    EXPECT_EQ(Documents.Format, PictureFormat::Svg);
    EXPECT_EQ(Files.Bytes("/start/chart.SVG"), picture);
}

TEST_F(frmContDelayVsAvgTest, SaysWhatItCannotShow) {
    OpenWith({});
    for (const Qt::Key key : {Qt::Key_Left, Qt::Key_Right, Qt::Key_Home, Qt::Key_End})
        EXPECT_EQ(After(key), "Add runs to the study to see their control delays.");
    Press("btnExit");
    EXPECT_TRUE(Window->isHidden());

    EXPECT_ERROR(Overflow, OpenWith({32768}));
    // So far below the baseline that it has no place in 16 bits: the plot says so and works on.
    OpenWith({-32000});
    Plot().grab();
    QTest::mouseClick(&Plot(), Qt::LeftButton);
    EXPECT_EQ(After(Qt::Key_Right), "Run 1, NB <1>: control delay -32000 s (not counted), running average -32000.0 s");
    Messages.Expect("Run-time error '6':\nOverflow");
    Press("BtnCopyPicture");
}

}  // namespace
}  // namespace vantor
