#include "core/forms/FileDrops.h"

#include <QDropEvent>
#include <QMimeData>
#include <QTimer>
#include <QUrl>

#include "core/forms/Named.h"

namespace vantor {
namespace {

std::vector<std::string> FilesOf(const QMimeData& data) {
    std::vector<std::string> paths;
    for (const QUrl& url : data.urls())
        if (url.isLocalFile()) paths.push_back(FromQt(url.toLocalFile()));
    return paths;
}

}  // namespace

FileDrops::FileDrops(QWidget& window, Sink sink) : QObject(&window), sink_(std::move(sink)) {
    window.setAcceptDrops(true);
    window.installEventFilter(this);
    // A field or list that takes drops of its own is asked instead of the window.
    for (auto* child : window.findChildren<QWidget*>())
        if (child->acceptDrops()) child->installEventFilter(this);
}

bool FileDrops::eventFilter(QObject*, QEvent* event) {
    if (event->type() != QEvent::DragEnter && event->type() != QEvent::DragMove && event->type() != QEvent::Drop)
        return false;
    auto* drop = static_cast<QDropEvent*>(event);
    const std::vector<std::string> paths = FilesOf(*drop->mimeData());
    if (paths.empty()) return false;
    drop->setDropAction(Qt::CopyAction);
    drop->accept();
    // Where the files come from waits for the end of the drop.
    if (event->type() == QEvent::Drop) QTimer::singleShot(0, this, [this, paths] { sink_(paths); });
    return true;
}

}  // namespace vantor
