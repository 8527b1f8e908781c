#pragma once

#include <QHeaderView>
#include <string>
#include <vector>

#include "core/forms/Named.h"
#include "core/forms/Table.h"
#include "fakes/Clicks.h"

namespace vantor {

/// Clicks a cell of a table, as with the control key held down for a further row.
inline void ClickRow(QWidget& window, const char* name, int row, Qt::KeyboardModifiers keys = {}) {
    auto& table = Find<Table>(window, name);
    QTest::mouseClick(table.viewport(), Qt::LeftButton, keys, table.visualItemRect(table.item(row, 0)).center());
}

/// The texts of a column from top to bottom.
inline std::vector<std::string> Column(QWidget& window, const char* name, int column) {
    auto& table = Find<Table>(window, name);
    std::vector<std::string> texts;
    for (int row = 0; row < table.rowCount(); ++row) texts.push_back(FromQt(table.Text(row, column)));
    return texts;
}

/// The texts of a row from left to right.
inline std::vector<std::string> Row(QWidget& window, const char* name, int row) {
    auto& table = Find<Table>(window, name);
    std::vector<std::string> texts;
    for (int column = 0; column < table.columnCount(); ++column) texts.push_back(FromQt(table.Text(row, column)));
    return texts;
}

inline std::vector<std::string> Heads(QWidget& window, const char* name) {
    auto& table = Find<Table>(window, name);
    std::vector<std::string> texts;
    for (int column = 0; column < table.columnCount(); ++column)
        texts.push_back(FromQt(table.horizontalHeaderItem(column)->text()));
    return texts;
}

}  // namespace vantor
