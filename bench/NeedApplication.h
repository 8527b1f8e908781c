#pragma once

#include <QApplication>

namespace vantor {

/// Painting needs an application; one that another benchmark made lives until the process ends.
inline void NeedApplication() {
    if (!QCoreApplication::startingUp()) return;
    static int argumentCount = 1;
    static char name[] = "bench";
    static char* arguments[] = {name, nullptr};
    qputenv("QT_QPA_PLATFORM", "offscreen");
    new QApplication(argumentCount, arguments);
}

}  // namespace vantor
