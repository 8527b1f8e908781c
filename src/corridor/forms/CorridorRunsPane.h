#pragma once

#include <QToolButton>
#include <QWidget>
#include <functional>
#include <string>
#include <vector>

#include "core/forms/LongList.h"
#include "corridor/forms/CorridorDocument.h"

class QMenu;

namespace vantor {

/// The runs of a corridor as a list, and what can be said of several of them at once.
class CorridorRunsPane : public QWidget {
public:
    CorridorRunsPane(CorridorDocument& document, QWidget* parent);

    /// Takes run files in; those that are refused are told.
    void Take(const std::vector<std::string>& paths);
    void AskForFiles();
    /// Of all runs of a Study Group.
    void TakeGroup(const std::string& group);

private:
    void SetColumns();
    void ShowRuns();
    void ShowSelected();
    void FillMenu(QMenu& menu);
    void FillReasons(QMenu& menu);
    void FillPeriods(QMenu& menu);
    QAction* AddAction(QMenu& menu, const QString& caption, std::function<void()> act);
    void AskForReason();
    /// Changes the selected runs; `text` is followed by their number.
    void ChangeRuns(const QString& text, const std::function<void(CorridorRun&)>& change);
    void Remove();
    QString RemarksOf(int row) const;

    CorridorDocument& document_;
    LongList* vaRuns_ = nullptr;
    QToolButton* btnRun_ = nullptr;
    bool isFilling_ = false;
};

}  // namespace vantor
