#pragma once

#include <QWheelEvent>

#include "RunScene.h"
#include "analysis/StudyEdits.h"
#include "editing/forms/frmPlotRunSpeedProfileHoriz.h"
#include "fakes/FormScene.h"
#include "plots/forms/ProfilePicture.h"

namespace vantor {

inline const std::string EarlyClose = "Please Click-and-Drag both blue lines on the graph.";

/// A run of 200 s and 9000 ft, 1000 feet a step of its axis.
class ProfileScene : public RunScene<FormScene<frmPlotRunSpeedProfileHoriz>> {
protected:
    ProfileScene() : RunScene(RunWithStop()) {}

    /// Opens the form with a plot area of 1000 by 400 pixels.
    void OpenPlot() {
        Open(ProfileVisit{.Run = 1, .GoesOn = true, .Selected = Selected},
             [this](int run, const StudyRunEntry& entry) { TakeEntry(State, run, entry); });
        const PlotRectangle area = PlotAreaOf({2000, 1000}, Plot());
        Plot().setFixedSize(static_cast<int>(area.Left + 1000 + 2000 - area.Right),
                            static_cast<int>(area.Top + 400 + 1000 - area.Baseline));
        QCoreApplication::processEvents();
        Area = PlotAreaOf(Plot().size(), Plot());
        EXPECT_EQ(std::pair(Area.Right - Area.Left, Area.Baseline - Area.Top), std::pair(1000.0, 400.0));
    }

    void AddRuns(std::initializer_list<const char*> names) {
        for (const char* name : names) {
            RunRecord run = RunWithStop();
            PutRunFile(Files, run, Group, name);
            AppendRun(State.CurrentStudy, name);
        }
    }
    QWidget& Plot() { return Get<QWidget>("SpeedProfilePlot"); }
    /// A place right of the left edge and above the baseline, in pixels.
    QPoint At(int x, int y = 350) const {
        return {static_cast<int>(Area.Left) + x, static_cast<int>(Area.Baseline) - y};
    }
    void PlotKey(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) { QTest::keyClick(&Plot(), key, modifiers); }
    void Hold(QPoint place) { QTest::mousePress(&Plot(), Qt::LeftButton, {}, place); }
    void MoveTo(QPoint place) { QTest::mouseMove(&Plot(), place); }
    void Release(QPoint place) { QTest::mouseRelease(&Plot(), Qt::LeftButton, {}, place); }
    void Drag(QPoint from, std::initializer_list<QPoint> way) {
        Hold(from);
        for (const QPoint& place : way) MoveTo(place);
        Release(*(way.end() - 1));
    }
    /// Drags both boundaries, which wait at the edges, to 2000 and 7000 ft.
    void DragBoundaries() {
        Drag(At(0), {At(90), At(200)});
        Drag(At(1000), {At(800), At(700)});
    }
    void Wheel(QPoint place, int turn) {
        QWheelEvent wheel(place, Plot().mapToGlobal(place), {}, {0, turn}, QApplication::mouseButtons(), {},
                          Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&Plot(), &wheel);
    }
    void TypeIdealSpeed(const QString& text) {
        TypeInto("txtIdealSpeed", text);
        PressKey(Qt::Key_Return);
    }
    void CloseEarly() { EXPECT_TRUE(Leaves(EarlyClose, MessageAnswer::Cancel)); }
    std::string Scale() { return Text("cmbPlotScaleList") + " " + Text("PlotScale"); }
    std::string Description() { return FromQt(Plot().accessibleDescription()); }

    PlotRectangle Area;
    std::vector<int> Selected;
};

}  // namespace vantor
