#pragma once

#include <QHeaderView>
#include <QLabel>
#include <QTableView>
#include <memory>

#include "core/forms/Named.h"
#include "fakes/Clicks.h"
#include "workspace/MainStreet.h"
#include "workspace/forms/frmMain.h"

namespace vantor {

using Names = std::vector<std::string>;
inline constexpr auto Yes = MessageAnswer::Yes;
inline constexpr auto No = MessageAnswer::No;
inline constexpr const char* AsksAboutChanges =
    "One or more study parameters have changed.\n     Do you want to save the study?";

/// A program whose settings were saved before, without the start-up screen, and its main window.
struct MainWindow : MainStreet, testing::Test {
    std::unique_ptr<frmMain> Window;

    MainWindow() { State.Settings.UseStartUpScreen = 0; }
    ~MainWindow() override { EXPECT_TRUE(Messages.IsDone()); }

    void Start(const std::string& studyPath = {}) {
        SaveSettings(State, Files);
        Show();
        Window->Start(studyPath);
    }
    void Show() {
        State.MainFormLoaded = false;
        Window = std::make_unique<frmMain>(Context);
        Window->show();
        QApplication::setActiveWindow(Window.get());
    }
    void StartWith(const std::vector<RunOfStudy>& runs) {
        PutStudy("AM", runs);
        State.Paths.LastStudyName = "AM";
        Start();
    }

    void Choose(const char* name) {
        auto& action = Find<QAction>(*Window, name);
        EXPECT_TRUE(action.isEnabled()) << name;
        action.trigger();
    }
    void Press(const char* name) { Click(*Window, name); }
    QTableView& List() { return Find<QTableView>(*Window, "vaRunList"); }
    QString Cell(int row, int column) { return List().model()->index(row, column).data().toString(); }
    QVariant Cell(int row, int column, int role) { return List().model()->index(row, column).data(role); }
    std::string Label(const char* name) { return FromQt(Find<QLabel>(*Window, name).text()); }
    void PressKey(Qt::Key key) {
        List().setFocus();
        QTest::keyClick(&List(), key);
    }
    void DoubleClickRow(int row) {
        const QPoint at = List().visualRect(List().model()->index(row, 0)).center();
        QTest::mouseClick(List().viewport(), Qt::LeftButton, {}, at);
        QTest::mouseDClick(List().viewport(), Qt::LeftButton, {}, at);
    }
    Study& Current() { return State.CurrentStudy; }
};

}  // namespace vantor
