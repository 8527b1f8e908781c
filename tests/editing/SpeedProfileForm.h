#pragma once

#include <QTest>
#include <optional>

#include "Profiles.h"
#include "core/StudyFile.h"
#include "editing/forms/frmPlotRunSpeedProfileHoriz.h"
#include "fakes/Clicks.h"
#include "fakes/FakePorts.h"

namespace vantor {

inline const std::string Group = "/start/Study Groups/Main/";
inline const std::string EarlyClose = "Please Click-and-Drag both blue lines on the graph.";

class SpeedProfileFormTest : public testing::Test {
protected:
    SpeedProfileFormTest() {
        Program.Files.CreateFolder(Group);
        Program.State.Paths.LastStudyGroupPath = Group;
        Program.State.CurrentRun = RunWithStop();
        Program.State.CurrentRun.Header.RunName = "Main-1";
        AppendRun(Program.State.CurrentStudy, "Main-1");
        Program.State.StudyUnchanged = true;
    }

    ~SpeedProfileFormTest() override {
        if (Form && Form->isVisible()) Form->hide();
    }

    StudyRunEntry& Entry() { return Program.State.CurrentStudy.Entries[1]; }

    /// Opens the form with a plot area of 1000 by 400 pixels.
    frmPlotRunSpeedProfileHoriz& Open() {
        Form.emplace(Program.Context, 1);
        QWidget& plot = Plot();
        const PlotRectangle area = PlotAreaOf({2000, 1000}, QFontMetricsF(plot.font()));
        plot.setFixedSize(static_cast<int>(area.Left + 1000 + 2000 - area.Right),
                          static_cast<int>(area.Top + 400 + 1000 - area.Baseline));
        Form->show();
        QCoreApplication::processEvents();
        Area = PlotAreaOf(plot.size(), QFontMetricsF(plot.font()));
        EXPECT_EQ(Area.Right - Area.Left, 1000);
        EXPECT_EQ(Area.Baseline - Area.Top, 400);
        return *Form;
    }

    QWidget& Plot() { return Find<QWidget>(*Form, "SpeedProfilePlot"); }
    /// A place right of the left edge and above the baseline, in pixels.
    QPoint At(int x, int y = 350) const {
        return {static_cast<int>(Area.Left) + x, static_cast<int>(Area.Baseline) - y};
    }
    void Drag(QPoint from, std::initializer_list<QPoint> way) {
        QTest::mousePress(&Plot(), Qt::LeftButton, {}, from);
        for (const QPoint& place : way) QTest::mouseMove(&Plot(), place);
        QTest::mouseRelease(&Plot(), Qt::LeftButton, {}, *(way.end() - 1));
    }
    /// The run of the tests has 1000 feet a step: 10 feet a pixel. Both boundaries wait at the edges.
    void SetBoundaries() {
        Drag(At(0), {At(90), At(200)});
        Drag(At(1000), {At(800), At(700)});
    }
    QString Text(const char* label) { return Find<QLabel>(*Form, label).text(); }
    QString BoxText(const char* box) { return Find<QLineEdit>(*Form, box).text(); }
    bool IsEnabled(const char* button) { return Find<QPushButton>(*Form, button).isEnabled(); }
    void TypeIdealSpeed(const QString& text) {
        Type(*Form, "txtIdealSpeed", text);
        QTest::keyClick(&Find<QLineEdit>(*Form, "txtIdealSpeed"), Qt::Key_Return);
    }

    TestProgram Program;
    std::optional<frmPlotRunSpeedProfileHoriz> Form;
    PlotRectangle Area;
};

}  // namespace vantor
