#pragma once

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QTableView>
#include <QTest>
#include <QTreeWidget>
#include <QWidget>
#include <string>
#include <vector>

#include "core/forms/Named.h"

/// What a user does in a window and reads in it. Controls are named by their object names, rows and columns count from
/// 0, and text is UTF-8.
namespace vantor {

/// The control of that name; fails the test where the window has none.
template <class Control>
Control& Find(QWidget& window, const char* name) {
    auto* control = window.findChild<Control*>(QLatin1String(name));
    if (control == nullptr) throw std::runtime_error(std::string("no control ") + name);
    return *control;
}

inline void Click(QWidget& window, const char* name) {
    auto& button = Find<QAbstractButton>(window, name);
    EXPECT_TRUE(button.isEnabled()) << name << " is disabled";
    QTest::mouseClick(&button, Qt::LeftButton);
}

inline void Type(QWidget& window, const char* name, const QString& text) {
    auto& field = Find<QLineEdit>(window, name);
    field.setFocus();
    field.selectAll();
    QTest::keyClicks(&field, text);
}

/// The text of a label, field, list or button, without the mark of an access key.
inline std::string TextOf(QWidget& window, const char* name) {
    auto& control = Find<QWidget>(window, name);
    if (const auto* label = qobject_cast<QLabel*>(&control)) return FromQt(WithoutAccessKey(label->text()));
    if (const auto* field = qobject_cast<QLineEdit*>(&control)) return FromQt(field->text());
    if (const auto* list = qobject_cast<QComboBox*>(&control)) return FromQt(list->currentText());
    if (const auto* button = qobject_cast<QAbstractButton*>(&control)) return FromQt(WithoutAccessKey(button->text()));
    throw std::runtime_error(std::string("no text in ") + name);
}

/// The choices of a list.
inline std::vector<std::string> ItemsOf(QWidget& window, const char* name) {
    const auto& list = Find<QComboBox>(window, name);
    std::vector<std::string> items;
    for (int i = 0; i < list.count(); ++i) items.push_back(FromQt(list.itemText(i)));
    return items;
}

/// Chooses an item of a list as its user does; fails the test where the list has none of that text.
inline void Choose(QWidget& window, const char* name, const char* text) {
    auto& list = Find<QComboBox>(window, name);
    const int item = list.findText(QLatin1String(text));
    if (item < 0) throw std::runtime_error(std::string("no item ") + text + " in " + name);
    list.setCurrentIndex(item);
    emit list.activated(item);
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

/// The rows of a table, the texts of each parted by "|".
inline std::vector<std::string> Rows(QWidget& window, const char* name) {
    auto& table = Find<QTableView>(window, name);
    std::vector<std::string> rows;
    for (int row = 0; row < table.model()->rowCount(); ++row) {
        QStringList texts;
        for (const std::string& text : Row(window, name, row)) texts += ToQt(text);
        rows.push_back(FromQt(texts.join(QLatin1Char('|'))));
    }
    return rows;
}

/// Clicks a cell of a table: with a key held down, or the second time at once.
inline void ClickCell(QTableView& table, int row, int column, Qt::KeyboardModifiers keys = {}, bool isDouble = false) {
    const QPoint place = table.visualRect(table.model()->index(row, column)).center();
    QTest::mouseClick(table.viewport(), Qt::LeftButton, keys, place);
    if (isDouble) QTest::mouseDClick(table.viewport(), Qt::LeftButton, keys, place);
}
inline void ClickRow(QWidget& window, const char* name, int row, Qt::KeyboardModifiers keys = {}) {
    ClickCell(Find<QTableView>(window, name), row, 0, keys);
}
inline void DoubleClickRow(QWidget& window, const char* name, int row) {
    ClickCell(Find<QTableView>(window, name), row, 0, {}, true);
}

/// Clicks the head of a column, as to sort by it.
inline void ClickHead(QTableView& table, int column) {
    QHeaderView* head = table.horizontalHeader();
    QTest::mouseClick(head->viewport(), Qt::LeftButton, {},
                      {head->sectionViewportPosition(column) + 10, head->height() / 2});
}

/// Clicks the folder of that name in a tree; fails the test where there is none or more than one.
inline void ClickFolder(QWidget& window, const char* name, const char* folder) {
    auto& tree = Find<QTreeWidget>(window, name);
    const auto items = tree.findItems(QLatin1String(folder), Qt::MatchExactly | Qt::MatchRecursive);
    if (items.size() != 1) throw std::runtime_error(std::string("no single folder ") + folder);
    QTest::mouseClick(tree.viewport(), Qt::LeftButton, {}, tree.visualItemRect(items.front()).center());
}

}  // namespace vantor
