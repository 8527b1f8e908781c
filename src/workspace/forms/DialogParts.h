#pragma once

#include <QDialog>
#include <QHBoxLayout>
#include <QPushButton>
#include <initializer_list>

#include "core/AppContext.h"
#include "core/HelpTopics.h"
#include "core/forms/Table.h"

namespace vantor {

/// The buttons at the foot of a dialog: Help (F1) on the left, the dialog's own `actions` and the way out (Esc) on the
/// right. Help and the way out work already. Call when all other controls exist, so that the tab order ends here.
QHBoxLayout* DialogFoot(QDialog& dialog, AppContext& context, HelpTopic topic,
                        std::initializer_list<QPushButton*> actions, const QString& wayOut = QStringLiteral("Cancel"),
                        const char* wayOutName = "BtnCancel");

/// Ends the filling of a table. What stands in an empty one's place is told to assistive technology, too.
void EndFilling(Table& table, const QString& emptyText);

}  // namespace vantor
