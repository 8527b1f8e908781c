#include "core/forms/WindowLayout.h"

#include <QEvent>
#include <QHeaderView>
#include <QSplitter>

#include "core/forms/Named.h"

namespace vantor {
namespace {

std::string Packed(const QByteArray& bytes) { return bytes.toBase64().toStdString(); }
QByteArray Unpacked(const std::string& text) { return QByteArray::fromBase64(QByteArray::fromStdString(text)); }

/// Stores the layout when the window is hidden or closed.
class LayoutKeeper : public QObject {
public:
    LayoutKeeper(QWidget& window, WindowMemory& memory) : QObject(&window), window_(window), memory_(memory) {
        Restore();
        window.installEventFilter(this);
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Hide || event->type() == QEvent::Close) Store();
        return QObject::eventFilter(watched, event);
    }

private:
    std::string KeyOf(const QString& part) const { return FromQt(window_.objectName() + QLatin1Char('/') + part); }

    template <class Part>
    static QString NameOf(const Part* part) {
        return part->objectName().isEmpty() ? part->parentWidget()->objectName() : part->objectName();
    }

    void Restore() {
        const QByteArray geometry = Unpacked(memory_.Recall(KeyOf(QStringLiteral("geometry"))));
        if (!geometry.isEmpty()) window_.restoreGeometry(geometry);
        for (auto* header : window_.findChildren<QHeaderView*>()) {
            const QByteArray state = Unpacked(memory_.Recall(KeyOf(PartName(header))));
            if (!state.isEmpty()) header->restoreState(state);
        }
        for (auto* splitter : window_.findChildren<QSplitter*>()) {
            const QByteArray state = Unpacked(memory_.Recall(KeyOf(NameOf(splitter))));
            if (!state.isEmpty()) splitter->restoreState(state);
        }
    }

    void Store() {
        memory_.Store(KeyOf(QStringLiteral("geometry")), Packed(window_.saveGeometry()));
        for (const auto* header : window_.findChildren<QHeaderView*>())
            memory_.Store(KeyOf(PartName(header)), Packed(header->saveState()));
        for (const auto* splitter : window_.findChildren<QSplitter*>())
            memory_.Store(KeyOf(NameOf(splitter)), Packed(splitter->saveState()));
    }

    static QString PartName(const QHeaderView* header) {
        const QString side =
            header->orientation() == Qt::Horizontal ? QStringLiteral("/columns") : QStringLiteral("/rows");
        return header->parentWidget()->objectName() + side;
    }

    QWidget& window_;
    WindowMemory& memory_;
};

}  // namespace

void RememberLayout(QWidget& window, WindowMemory& memory) { new LayoutKeeper(window, memory); }

}  // namespace vantor
