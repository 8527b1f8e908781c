#pragma once

#include <QDialog>
#include <string>
#include <vector>

#include "core/RunFile.h"
#include "core/StudyFile.h"
#include "core/forms/FolderTree.h"
#include "core/forms/Named.h"
#include "core/forms/Table.h"
#include "fakes/Clicks.h"
#include "fakes/FakePorts.h"
#include "fakes/PutFiles.h"

namespace vantor {

template <class Form>
struct Shown : Form {
    explicit Shown(AppContext& context) : Form(context) { Form::show(); }
    bool IsAccepted() const { return Form::isHidden() && Form::result() == QDialog::Accepted; }
};

/// A program with the Study Groups "Main St" and "Oak & Elm Ave", the first one being the current one.
class StudyGroupTest : public testing::Test {
protected:
    const std::string Root = "/start/Study Groups/";
    const std::string MainSt = Root + "Main St/";
    const std::string OakElm = Root + "Oak & Elm Ave/";

    TestProgram Program;
    ApplicationState& State = Program.State;
    MemoryFileSystem& Files = Program.Files;

    StudyGroupTest() {
        Files.CreateFolder(MainSt);
        Files.CreateFolder(OakElm);
        State.Paths.LastStudyGroupPath = MainSt;
    }

    void PutRun(const std::string& group, const std::string& name, const std::string& notes = "") {
        RunRecord run;
        run.Header.RunDate = DateOf(2008, 3, 11);
        run.Header.RunTime = TimeOf(7, 30);
        run.Header.HeaderWord1 = run.Header.Before = -1;
        run.Header.RunLength = 5280;
        run.Header.Notes = notes;
        PutRunFile(Files, run, group, name);
    }

    static Study StudyOf(const std::string& name, const std::vector<std::string>& runs) {
        Study study;
        study.Record.StudyName = name;
        study.Record.StudyDate = DateOf(2008, 3, 14);
        for (const std::string& run : runs) AppendRun(study, run);
        return study;
    }

    void PutStudy(const std::string& group, Study study) { PutStudyFile(Files, study, group, study.Record.StudyName); }

    static std::vector<std::string> RunsOf(const Study& study) {
        return {study.RunNames.begin(), study.RunNames.end()};
    }

    /// The texts of a table, a line for each row, its columns in the order of the data.
    static std::vector<std::string> Rows(QWidget& form, const char* name) {
        auto& table = Find<Table>(form, name);
        std::vector<std::string> rows;
        for (int row = 0; row < table.rowCount(); ++row) {
            QStringList texts;
            for (int column = 0; column < table.columnCount(); ++column) texts += table.Text(row, column);
            rows.push_back(FromQt(texts.join('|')));
        }
        return rows;
    }

    static std::string EmptyText(QWidget& form, const char* name) {
        return FromQt(Find<Table>(form, name).accessibleDescription());
    }

    static bool IsEnabled(QWidget& form, const char* name) { return Find<QWidget>(form, name).isEnabled(); }

    static void ClickRow(QWidget& form, const char* name, int row, bool isDouble = false) {
        auto& table = Find<Table>(form, name);
        const QPoint point = table.visualItemRect(table.item(row, 0)).center();
        QTest::mouseClick(table.viewport(), Qt::LeftButton, {}, point);
        if (isDouble) QTest::mouseDClick(table.viewport(), Qt::LeftButton, {}, point);
    }

    /// Clicks the second Study Group in the tree.
    static void ClickOakElm(QWidget& form) {
        auto& tree = Find<FolderTree>(form, "treStudyGroups");
        const QTreeWidgetItem* item = tree.topLevelItem(0)->child(1);
        QTest::mouseClick(tree.viewport(), Qt::LeftButton, {}, tree.visualItemRect(item).center());
    }
};

}  // namespace vantor
