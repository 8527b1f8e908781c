#include "platform/HelpBook.h"

#include <QFileInfo>
#include <QHelpLink>
#include <QTextDocument>
#include <vector>

#include "core/RunTimeError.h"
#include "core/forms/Named.h"

namespace vantor {
HelpBook::HelpBook(const QString& file) : engine_(folder_.filePath(QStringLiteral("help.qhc"))) {
    const QFileInfo info(file);
    if (!info.isFile())
        throw RunTimeError(ErrorNumber::FileNotFound,
                           FromQt(file) + "\nThe help file is missing. Install the program again.");
    engine_.setReadOnly(false);
    if (!engine_.setupData() || !engine_.registerDocumentation(info.absoluteFilePath()) || !PageOf(0).isValid())
        throw RunTimeError(ErrorNumber::DeviceIoError,
                           FromQt(file) + "\nThe help file cannot be read. Install the program again.");
    engine_.setupData();
    pages_ = engine_.files(QHelpEngineCore::namespaceName(file), QString(), QStringLiteral("html"));
}

QUrl HelpBook::PageOf(int context) const {
    const QList<QHelpLink> links = engine_.documentsForIdentifier(QString::number(context));
    return links.isEmpty() ? QUrl() : links.constFirst().url;
}

const PageSearch& HelpBook::Search() {
    if (search_) return *search_;
    std::vector<PageSearch::Page> pages;
    for (const QUrl& page : pages_) {
        QTextDocument document;
        document.setHtml(QString::fromUtf8(Data(page)));
        const QString title = document.metaInformation(QTextDocument::DocumentTitle);
        pages.push_back({FromQt(page.toString()), FromQt(title), FromQt(document.toPlainText())});
    }
    return search_.emplace(pages);
}

}  // namespace vantor
