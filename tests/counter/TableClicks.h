#pragma once

#include <QHeaderView>
#include <QTableView>
#include <string>
#include <vector>

#include "core/forms/Named.h"
#include "core/forms/Table.h"
#include "fakes/Clicks.h"

namespace vantor {

/// Clicks a cell of a table, as with the control key held down for a further row.
inline void ClickRow(QWidget& window, const char* name, int row, Qt::KeyboardModifiers keys = {}) {
    auto& table = Find<QTableView>(window, name);
    const QModelIndex cell = table.model()->index(row, 0);
    QTest::mouseClick(table.viewport(), Qt::LeftButton, keys, table.visualRect(cell).center());
}

inline std::string CellText(QTableView& table, int row, int column) {
    return FromQt(table.model()->index(row, column).data().toString());
}

/// The texts of a column from top to bottom.
inline std::vector<std::string> Column(QWidget& window, const char* name, int column) {
    auto& table = Find<QTableView>(window, name);
    std::vector<std::string> texts;
    for (int row = 0; row < table.model()->rowCount(); ++row) texts.push_back(CellText(table, row, column));
    return texts;
}

/// The texts of a row from left to right.
inline std::vector<std::string> Row(QWidget& window, const char* name, int row) {
    auto& table = Find<QTableView>(window, name);
    std::vector<std::string> texts;
    for (int column = 0; column < table.model()->columnCount(); ++column) texts.push_back(CellText(table, row, column));
    return texts;
}

inline std::vector<std::string> Heads(QWidget& window, const char* name) {
    const QAbstractItemModel& model = *Find<QTableView>(window, name).model();
    std::vector<std::string> texts;
    for (int column = 0; column < model.columnCount(); ++column)
        texts.push_back(FromQt(model.headerData(column, Qt::Horizontal).toString()));
    return texts;
}

}  // namespace vantor
