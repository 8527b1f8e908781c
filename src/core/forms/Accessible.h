#pragma once

#include <QAccessible>
#include <QLabel>
#include <QTableWidgetItem>

namespace vantor {

/// What a widget is for assistive technology that paints itself, or only holds others; Qt knows it as a mere area.
void SetAccessibleRole(QWidget& widget, QAccessible::Role role);

/// Names the value that a label shows: it is heard as "caption: value".
void SetValueCaption(QLabel& value, const QString& caption);

/// A tool tip of a cell that is heard, too.
void SetCellNote(QTableWidgetItem& cell, const QString& note);

}  // namespace vantor
