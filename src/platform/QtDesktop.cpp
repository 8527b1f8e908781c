#include "platform/QtDesktop.h"

#include <QApplication>
#include <QDesktopServices>
#include <QUrl>

#include "core/forms/Named.h"

namespace vantor {

void QtDesktop::Beep() { QApplication::beep(); }

void QtDesktop::OpenWebPage(const std::string& address) { QDesktopServices::openUrl(QUrl(ToQt(address))); }

void QtDesktop::OpenHelp(const std::string& helpFile, int) {
    QDesktopServices::openUrl(QUrl::fromLocalFile(ToQt(helpFile)));
}

}  // namespace vantor
