#include "platform/QtDesktop.h"

#include <QApplication>
#include <QClipboard>
#include <QDesktopServices>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QImage>
#include <QPrintDialog>
#include <QPrinter>
#include <QProcess>
#include <QSettings>
#include <QStandardPaths>
#include <QUrl>
#include <algorithm>

#include "core/Paths.h"
#include "core/RunTimeError.h"
#include "core/forms/Named.h"
#include "platform/HelpWindow.h"
#include "platform/QtDocumentWriter.h"

namespace vantor {
namespace {

#if defined(Q_OS_WIN)

QStringList TextViewerCommand(const QString& file) { return {QStringLiteral("notepad.exe"), file}; }

#elif defined(Q_OS_MACOS)

QStringList TextViewerCommand(const QString& file) { return {QStringLiteral("open"), QStringLiteral("-t"), file}; }

#else

/// The desktop's application for plain text, by its desktop entry: asked for the file itself, the desktop would look at
/// the contents, and an empty file is no text to it. Empty where there is none that opens a window.
QStringList TextViewerCommand(const QString& file) {
    constexpr int PatienceInMilliseconds = 1000;
    QProcess query;
    query.start(QStringLiteral("xdg-mime"),
                {QStringLiteral("query"), QStringLiteral("default"), QStringLiteral("text/plain")});
    if (!query.waitForFinished(PatienceInMilliseconds)) return {};
    const QString name = QString::fromUtf8(query.readAllStandardOutput()).trimmed();
    const QString path = QStandardPaths::locate(QStandardPaths::ApplicationsLocation, name);
    if (name.isEmpty() || path.isEmpty()) return {};
    QSettings entry(path, QSettings::IniFormat);
    entry.beginGroup(QStringLiteral("Desktop Entry"));
    if (entry.value(QStringLiteral("Terminal")).toBool()) return {};
    QStringList command;
    for (const QString& word : QProcess::splitCommand(entry.value(QStringLiteral("Exec")).toString()))
        if (!word.startsWith(QLatin1Char('%'))) command.append(word);
    if (!command.isEmpty()) command.append(file);
    return command;
}

#endif

}  // namespace

void StartProgramAgain(const std::vector<std::string>& arguments) {
    QStringList words;
    for (const std::string& argument : arguments) words.append(ToQt(argument));
    QProcess::startDetached(QCoreApplication::applicationFilePath(), words);
}

QtDesktop::QtDesktop() = default;
QtDesktop::~QtDesktop() = default;

void QtDesktop::Beep() { QApplication::beep(); }

void QtDesktop::OpenWebPage(const std::string& address) {
    if (!QDesktopServices::openUrl(QUrl(ToQt(address))))
        throw RunTimeError(ErrorNumber::FileNotFound, address + "\nThe desktop has no web browser.");
}

void QtDesktop::ViewText(const std::string& path) {
    QStringList command = TextViewerCommand(ToQt(path));
    if (!command.isEmpty() && QProcess::startDetached(command.takeFirst(), command)) return;
    if (QDesktopServices::openUrl(QUrl::fromLocalFile(ToQt(path)))) return;
    throw RunTimeError(ErrorNumber::FileNotFound, path + "\nThe desktop has no viewer for text files.");
}

void QtDesktop::OpenHelp(const std::string& helpFile, int context) {
    if (!help_ || help_->File() != ToQt(helpFile)) help_ = std::make_unique<HelpWindow>(ToQt(helpFile));
    help_->ShowTopic(context);
}

std::string QtDesktop::DocumentsFolder() const {
    return FromQt(QDir::toNativeSeparators(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation)));
}

std::string QtDesktop::ChooseFolder(const std::string& start) {
    return FromQt(QFileDialog::getExistingDirectory(QApplication::activeWindow(), {}, ToQt(start)));
}

std::string QtDesktop::ChooseFileToSave(const std::string& start, const std::string& title,
                                        const std::vector<FileKind>& kinds) {
    QFileDialog dialog(QApplication::activeWindow(), ToQt(title));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    QStringList filters;
    for (const FileKind& kind : kinds)
        filters += QStringLiteral("%1 (*%2)").arg(ToQt(kind.Description), ToQt(kind.Extension));
    dialog.setNameFilters(filters);
    // With the suffix in the dialog, its question about replacing a file is about the file that is written.
    const auto useSuffix = [&](const QString& filter) {
        dialog.setDefaultSuffix(ToQt(kinds.at(static_cast<std::size_t>(filters.indexOf(filter))).Extension));
    };
    const auto proposed =
        std::ranges::find_if(kinds, [&](const FileKind& kind) { return HasExtension(start, kind.Extension); });
    const QString filter = filters.at(proposed == kinds.end() ? 0 : proposed - kinds.begin());
    dialog.selectNameFilter(filter);
    useSuffix(filter);
    QObject::connect(&dialog, &QFileDialog::filterSelected, &dialog, [&](const QString& chosen) {
        const QFileInfo named(dialog.selectedFiles().value(0));
        useSuffix(chosen);
        dialog.selectFile(named.completeBaseName() + QLatin1Char('.') + dialog.defaultSuffix());
    });
    const QFileInfo proposal(ToQt(start));
    dialog.setDirectory(proposal.path());
    dialog.selectFile(proposal.fileName());
    return dialog.exec() == QDialog::Accepted ? FromQt(dialog.selectedFiles().constFirst()) : std::string();
}

namespace {

QString FilterOf(const std::string& description, const std::vector<std::string>& extensions) {
    QStringList patterns;
    for (const std::string& extension : extensions) {
        const QString suffix = ToQt(extension);
        // Dialogs that tell letters of different case apart list files of older disks in capitals, too.
        patterns << QLatin1Char('*') + suffix << QLatin1Char('*') + suffix.toUpper();
    }
    return QStringLiteral("%1 (%2)").arg(ToQt(description), patterns.join(QLatin1Char(' ')));
}

}  // namespace

std::string QtDesktop::ChooseFileToOpen(const std::string& start, const std::string& title,
                                        const std::string& description, const std::vector<std::string>& extensions) {
    return FromQt(QDir::toNativeSeparators(QFileDialog::getOpenFileName(
        QApplication::activeWindow(), ToQt(title), ToQt(start), FilterOf(description, extensions))));
}

std::vector<std::string> QtDesktop::ChooseFilesToOpen(const std::string& start, const std::string& title,
                                                      const std::string& description,
                                                      const std::vector<std::string>& extensions) {
    const QString filters = FilterOf(description, extensions) + QStringLiteral(";;All files (*)");
    std::vector<std::string> paths;
    for (const QString& path :
         QFileDialog::getOpenFileNames(QApplication::activeWindow(), ToQt(title), ToQt(start), filters))
        paths.push_back(FromQt(QDir::toNativeSeparators(path)));
    return paths;
}

void QtDesktop::CopyText(const std::string& text) { QApplication::clipboard()->setText(ToQt(text)); }

void QtDesktop::CopyPicture(const std::vector<std::byte>& png) {
    QApplication::clipboard()->setImage(
        QImage::fromData(reinterpret_cast<const uchar*>(png.data()), static_cast<int>(png.size()), "PNG"));
}

bool QtDesktop::Print(const PagedDocument& document) {
    QPrinter printer(QPrinter::HighResolution);
    printer.setDocName(ToQt(document.Title));
    printer.setCreator(QStringLiteral("Vantor"));
    printer.setFullPage(true);
    printer.setPageLayout(PageLayoutOf(document.Page));
    QPrintDialog dialog(&printer, QApplication::activeWindow());
    dialog.setMinMax(1, static_cast<int>(document.Pages.size()));
    if (dialog.exec() != QDialog::Accepted) return false;
    PagedDocument chosen = document;
    if (printer.printRange() == QPrinter::PageRange) {
        const auto first = document.Pages.begin() + (std::max(printer.fromPage(), 1) - 1);
        const auto last =
            document.Pages.begin() + std::min<std::ptrdiff_t>(printer.toPage(), std::ssize(document.Pages));
        chosen.Pages.assign(first, std::max(first, last));
    }
    QPainter painter;
    if (!painter.begin(&printer)) throw RunTimeError(ErrorNumber::PrinterError, FromQt(printer.printerName()));
    DrawPages(painter, printer, chosen);
    if (!painter.end() || printer.printerState() == QPrinter::Error)
        throw RunTimeError(ErrorNumber::PrinterError, FromQt(printer.printerName()));
    return true;
}

}  // namespace vantor
