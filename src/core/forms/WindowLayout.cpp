#include "core/forms/WindowLayout.h"

#include <QApplication>
#include <QEvent>
#include <QMainWindow>
#include <QScreen>
#include <QSplitter>
#include <QStyle>
#include <QVBoxLayout>
#include <QWindow>

#include "core/forms/Named.h"
#include "core/forms/TableColumns.h"

namespace vantor {
namespace {

std::string Packed(const QByteArray& bytes) { return bytes.toBase64().toStdString(); }
QByteArray Unpacked(const std::string& text) { return QByteArray::fromBase64(QByteArray::fromStdString(text)); }

/// Fits a window to its screen when it is about to be shown, and again when its frame is known.
class ScreenFitter : public QObject {
public:
    explicit ScreenFitter(QWidget& window) : QObject(&window), window_(window) {
        ScrollWhatDoesNotFit();
        window.installEventFilter(this);
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        const bool isFirst = event->type() == QEvent::Show && !event->spontaneous();
        // The window may have got another screen, and fonts; a layout that is moved must not be shown yet.
        if (event->type() == QEvent::Polish) ScrollWhatDoesNotFit();
        if (isFirst || (event->type() == QEvent::WindowActivate && !knowsFrame_)) Fit();
        return QObject::eventFilter(watched, event);
    }

private:
    QScreen* ScreenOfWindow() const {
        const QWidget* parent = window_.parentWidget();
        QScreen* under = window_.testAttribute(Qt::WA_Moved) || parent == nullptr
                             ? QGuiApplication::screenAt(window_.geometry().center())
                             : parent->screen();
        return under != nullptr ? under : window_.screen();
    }

    static QMargins MarginsOf(const QWidget& window) {
        return window.windowHandle() == nullptr ? QMargins() : window.windowHandle()->frameMargins();
    }

    /// The frame of this window or, before it has one, of another one; the style's guess for the very first.
    QMargins Frame() {
        QMargins frame = MarginsOf(window_);
        knowsFrame_ = !frame.isNull();
        for (const QWidget* other : QApplication::topLevelWidgets())
            if (frame.isNull() && other->isVisible()) frame = MarginsOf(*other);
        constexpr int Border = 4;
        const int title = window_.style()->pixelMetric(QStyle::PM_TitleBarHeight);
        return frame.isNull() ? QMargins(Border, title + Border, Border, Border) : frame;
    }

    /// Where the window may lie without its frame.
    QRect Room() { return ScreenOfWindow()->availableGeometry().marginsRemoved(Frame()); }

    void Fit() {
        if (window_.isMaximized() || window_.isFullScreen()) return;
        const QRect room = Room();
        const QSize size = window_.size().boundedTo(room.size());
        if (size != window_.size()) window_.resize(size);
        if (!window_.testAttribute(Qt::WA_Moved)) return;  // it is placed by its dialog or by the window manager
        const QRect place(window_.geometry().topLeft(), size);
        const QPoint inside(std::clamp(place.left(), room.left(), room.right() + 1 - size.width()),
                            std::clamp(place.top(), room.top(), room.bottom() + 1 - size.height()));
        if (inside != place.topLeft()) window_.setGeometry(QRect(inside, size));
    }

    void ScrollWhatDoesNotFit() {
        // What has changed since the layouts were measured.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
        const QSize least = window_.minimumSizeHint();
        const QSize room = Room().size();
        if (scrolls_ || (least.width() <= room.width() && least.height() <= room.height())) return;
        scrolls_ = true;
        // Where the keys go is lost when its page moves into the scroll area.
        QWidget* const focus = window_.focusWidget();
        const QSize wanted = window_.testAttribute(Qt::WA_Resized) ? window_.size() : window_.sizeHint();
        if (auto* main = qobject_cast<QMainWindow*>(&window_)) {
            if (QWidget* page = main->takeCentralWidget()) main->setCentralWidget(ScrollAreaFor(page, main));
        } else if (window_.layout() != nullptr) {
            auto* page = new QWidget;
            page->setLayout(window_.layout());
            auto* column = new QVBoxLayout(&window_);
            column->setContentsMargins(0, 0, 0, 0);
            column->addWidget(ScrollAreaFor(page, &window_));
        }
        window_.resize(wanted.boundedTo(room));
        if (focus != nullptr) focus->setFocus();
    }

    QWidget& window_;
    bool knowsFrame_ = false;
    bool scrolls_ = false;
};

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

    static QString NameOf(const QSplitter* splitter) {
        return splitter->objectName().isEmpty() ? splitter->parentWidget()->objectName() : splitter->objectName();
    }

    /// The sizes are those of all its parts: none is hidden.
    static bool IsWhole(const QSplitter& splitter) {
        for (int i = 0; i < splitter.count(); ++i)
            if (splitter.widget(i)->isHidden()) return false;
        return true;
    }

    std::vector<TableColumns*> Tables() const {
        std::vector<TableColumns*> tables;
        for (QObject* part : window_.findChildren<QObject*>())
            if (auto* columns = dynamic_cast<TableColumns*>(part)) tables.push_back(columns);
        return tables;
    }

    std::string KeyOf(const TableColumns& table) const { return KeyOf(table.TableName() + QStringLiteral("/dragged")); }

    void Restore() {
        const QByteArray geometry = Unpacked(memory_.Recall(KeyOf(QStringLiteral("geometry"))));
        if (!geometry.isEmpty()) window_.restoreGeometry(geometry);
        for (TableColumns* table : Tables()) table->Restore(memory_.Recall(KeyOf(*table)));
        for (auto* splitter : window_.findChildren<QSplitter*>()) {
            const QByteArray state = Unpacked(memory_.Recall(KeyOf(NameOf(splitter))));
            if (!state.isEmpty()) splitter->restoreState(state);
        }
    }

    void Store() {
        memory_.Store(KeyOf(QStringLiteral("geometry")), Packed(window_.saveGeometry()));
        for (const TableColumns* table : Tables()) memory_.Store(KeyOf(*table), table->State());
        for (const auto* splitter : window_.findChildren<QSplitter*>())
            if (IsWhole(*splitter)) memory_.Store(KeyOf(NameOf(splitter)), Packed(splitter->saveState()));
    }

    QWidget& window_;
    WindowMemory& memory_;
};

}  // namespace

void FitToScreen(QWidget& window) { new ScreenFitter(window); }

void RememberLayout(QWidget& window, WindowMemory& memory) {
    new LayoutKeeper(window, memory);
    FitToScreen(window);
}

QScrollArea* ScrollAreaFor(QWidget* page, QWidget* parent) {
    auto* area = new QScrollArea(parent);
    area->setObjectName(QStringLiteral("scrPage"));
    area->setFrameShape(QFrame::NoFrame);
    area->setWidgetResizable(true);
    area->setWidget(page);
    page->setAutoFillBackground(false);
    area->viewport()->setAutoFillBackground(false);
    area->setFocusPolicy(Qt::NoFocus);
    QObject::connect(qApp, &QApplication::focusChanged, area, [area, page](QWidget*, QWidget* now) {
        if (now != nullptr && page->isAncestorOf(now)) area->ensureWidgetVisible(now);
    });
    return area;
}

}  // namespace vantor
