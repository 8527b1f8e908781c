#include "platform/HelpBook.h"

#include <QFileInfo>
#include <QHelpLink>
#include <QTextDocument>
#include <algorithm>

#include "core/RunTimeError.h"
#include "core/forms/Named.h"

namespace vantor {
namespace {

bool HoldsAll(const QString& text, const QStringList& words) {
    return std::ranges::all_of(words, [&](const QString& word) { return text.contains(word, Qt::CaseInsensitive); });
}

}  // namespace

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

QList<HelpBook::Finding> HelpBook::Search(const QString& words) const {
    const QStringList wanted = words.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    if (wanted.isEmpty()) return {};
    const QString phrase = wanted.join(QLatin1Char(' '));
    struct Ranked {
        Finding Found;
        int Rank;
    };
    QList<Ranked> ranked;
    for (const QUrl& page : pages_) {
        QTextDocument document;
        document.setHtml(QString::fromUtf8(Data(page)));
        const QString text = document.toPlainText();
        if (!HoldsAll(text, wanted)) continue;
        const QString title = document.metaInformation(QTextDocument::DocumentTitle);
        constexpr int TitleWeight = 1000;
        const auto times = static_cast<int>(text.count(phrase, Qt::CaseInsensitive));
        ranked.append({{title, page}, times + (HoldsAll(title, wanted) ? TitleWeight : 0)});
    }
    std::ranges::sort(ranked, [](const Ranked& one, const Ranked& other) {
        if (one.Rank != other.Rank) return one.Rank > other.Rank;
        return one.Found.Title.localeAwareCompare(other.Found.Title) < 0;
    });
    QList<Finding> findings;
    for (const Ranked& page : ranked) findings.append(page.Found);
    return findings;
}

}  // namespace vantor
