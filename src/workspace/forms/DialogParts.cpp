#include "workspace/forms/DialogParts.h"

#include "core/forms/Guarded.h"
#include "core/forms/Named.h"
#include "core/modMain.h"

namespace vantor {

QHBoxLayout* DialogFoot(QDialog& dialog, AppContext& context, HelpTopic topic,
                        std::initializer_list<QPushButton*> actions, const QString& wayOut, const char* wayOutName) {
    auto* cancel = Named<QPushButton>(&dialog, wayOutName, wayOut);
    auto* help = Named<QPushButton>(&dialog, "cmdHelp", QStringLiteral("Help"));
    help->setShortcut(QKeySequence::HelpContents);
    Connect(cancel, &QPushButton::clicked, &dialog, context.Messages, [&dialog] { dialog.reject(); });
    Connect(help, &QPushButton::clicked, &dialog, context.Messages,
            [&context, topic] { ShowHelp(context.DesktopServices, context.Files, topic); });

    auto* row = new QHBoxLayout;
    row->addWidget(help);
    row->addStretch();
    for (QPushButton* action : actions) row->addWidget(action);
    row->addWidget(cancel);
    return row;
}

void EndFilling(Table& table, const QString& emptyText) {
    table.EndFilling();
    table.SetEmptyText(emptyText);
    table.setAccessibleDescription(table.rowCount() == 0 ? emptyText : QString());
}

}  // namespace vantor
