#include "workspace/forms/DialogParts.h"

#include "core/forms/Guarded.h"
#include "core/forms/HelpButton.h"
#include "core/forms/Named.h"

namespace vantor {

QHBoxLayout* DialogFoot(QDialog& dialog, AppContext& context, HelpTopic topic,
                        std::initializer_list<QPushButton*> actions, const QString& wayOut, const char* wayOutName) {
    auto* cancel = Named<QPushButton>(&dialog, wayOutName, wayOut);
    Connect(cancel, &QPushButton::clicked, &dialog, context.Messages, [&dialog] { dialog.reject(); });

    auto* row = new QHBoxLayout;
    row->addWidget(HelpButton(dialog, context, topic));
    row->addStretch();
    for (QPushButton* action : actions) row->addWidget(action);
    row->addWidget(cancel);
    return row;
}

void EndFilling(Table& table, const QString& emptyText) {
    table.EndFilling();
    table.SetEmptyText(emptyText);
}

}  // namespace vantor
