#pragma once

#include "fakes/FormScene.h"
#include "workspace/MainStreet.h"
#include "workspace/forms/frmMain.h"

namespace vantor {

inline constexpr const char* AsksAboutChanges =
    "One or more study parameters have changed.\n     Do you want to save the study?";

inline std::string AsksToSave(const std::string& name) {
    return "Do you want to save study: " + name + "\n in Study Group: Main Street ?";
}

/// A program whose settings were saved before, without the start-up screen, and its main window.
struct MainWindow : MainStreet<FormScene<frmMain>> {
    MainWindow() { State.Settings.UseStartUpScreen = 0; }

    void Start(const std::string& studyPath = {}) {
        SaveSettings(State, Files);
        State.MainFormLoaded = false;
        Open().Start(studyPath);
    }
    /// Starts with the study "AM".
    void StartWith(const std::vector<RunOfStudy>& runs) {
        PutStudy("AM", runs);
        State.Paths.LastStudyName = "AM";
        Start();
    }

    /// Chooses a menu entry or presses a button.
    void Do(const char* command) {
        auto* action = Window->findChild<QAction*>(QLatin1String(command));
        if (action == nullptr) return Press(command);
        EXPECT_TRUE(action->isEnabled()) << command;
        action->trigger();
    }
    void PressKey(Qt::Key key) {
        List().setFocus();
        QTest::keyClick(&List(), key);
    }
    QTableView& List() { return Get<QTableView>("vaRunList"); }
    Names RunsShown() { return Column(*Window, "vaRunList", 0); }
    Study& Current() { return State.CurrentStudy; }
};

}  // namespace vantor
