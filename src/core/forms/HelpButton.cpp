#include "core/forms/HelpButton.h"

#include "core/forms/Guarded.h"
#include "core/forms/Named.h"
#include "core/modMain.h"

namespace vantor {

QPushButton* HelpButton(QWidget& window, AppContext& context, HelpTopic topic) {
    auto* help = Named<QPushButton>(&window, "cmdHelp", QStringLiteral("Help"));
    help->setShortcut(QKeySequence::HelpContents);
    help->setAutoDefault(false);
    Connect(help, &QPushButton::clicked, &window, context.Messages,
            [&context, topic] { ShowHelp(context.DesktopServices, context.Files, topic); });
    return help;
}

}  // namespace vantor
