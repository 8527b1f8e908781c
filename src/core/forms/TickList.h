#pragma once

#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <optional>
#include <vector>

#include "core/AppContext.h"
#include "core/HelpTopics.h"
#include "core/forms/Table.h"

namespace vantor {

/// A table whose rows stand for things of a list, each with a tick before its first text.
class TickList : public Table {
public:
    explicit TickList(QWidget* parent) : Table(parent) {}

    /// What the row stands for, and its tick; nothing for one that cannot be ticked.
    void SetTick(int row, std::size_t index, std::optional<bool> isTicked);
    void TickAll(bool areTicked);
    /// What is ticked, in the order of the list.
    std::vector<std::size_t> Ticked() const;
};

/// The buttons below such a list: Help, Tick All, Tick None, how many are ticked, OK and Cancel. OK accepts the dialog
/// and needs a tick.
class TickButtons : public QWidget {
public:
    TickButtons(QDialog& dialog, AppContext& context, TickList& list, HelpTopic topic);

    /// To be called when the list was filled.
    void ShowCount();

private:
    TickList& list_;
    QLabel* lblCount_;
    QPushButton* btnOk_;
};

}  // namespace vantor
