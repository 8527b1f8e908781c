#pragma once

#include <QHelpEngine>
#include <QList>
#include <QTemporaryDir>
#include <QUrl>
#include <optional>

#include "platform/PageSearch.h"

namespace vantor {

/// The manual: a compressed help collection. It is read through a collection file of its own, which lies in a
/// temporary folder for as long as the book is open.
class HelpBook {
public:
    /// Error 53 when the file is missing, 57 when it is no help file or damaged.
    explicit HelpBook(const QString& file);

    /// For the views of its contents and its index.
    QHelpEngine& Engine() { return engine_; }
    QUrl StartPage() const { return PageOf(0); }
    /// The page of a context number; not valid where no page has it.
    QUrl PageOf(int context) const;
    /// The pages, in no order.
    const QList<QUrl>& Pages() const { return pages_; }
    /// A page or a file that it uses; empty where there is none.
    QByteArray Data(const QUrl& address) const { return engine_.fileData(address); }

    /// The pages by their words; the addresses of what it finds are URLs.
    const PageSearch& Search();

private:
    QTemporaryDir folder_;
    QHelpEngine engine_;
    QList<QUrl> pages_;
    std::optional<PageSearch> search_;  // made when it is asked for first
};

}  // namespace vantor
