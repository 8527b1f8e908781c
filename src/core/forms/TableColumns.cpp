#include "core/forms/TableColumns.h"

#include <QHeaderView>
#include <QHelpEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>

#include "core/forms/Named.h"

namespace vantor {
namespace {

/// A tool tip takes what looks like it for rich text.
QString Plain(const QString& text) { return Qt::mightBeRichText(text) ? text.toHtmlEscaped() : text; }

}  // namespace

void LookLikeAList(QTableView& table) {
    table.setSelectionBehavior(QAbstractItemView::SelectRows);
    table.setEditTriggers(QAbstractItemView::NoEditTriggers);
    table.setShowGrid(false);
    table.setWordWrap(false);
    table.setTabKeyNavigation(false);
    table.verticalHeader()->hide();
    table.verticalHeader()->setDefaultSectionSize(table.fontMetrics().height() + 8);
    // All rows have that height: none is asked for its own.
    table.verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    table.horizontalHeader()->setHighlightSections(false);
    table.horizontalHeader()->setStretchLastSection(true);
    table.horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);
    table.horizontalHeader()->setSortIndicatorClearable(true);
    table.setSortingEnabled(true);
}

void PaintEmptyText(QTableView& table, const QString& text) {
    if (text.isEmpty() || table.model() == nullptr || table.model()->rowCount() > 0) return;
    QPainter painter(table.viewport());
    painter.setPen(table.palette().color(QPalette::PlaceholderText));
    painter.drawText(table.viewport()->rect().adjusted(16, 16, -16, -16), Qt::AlignCenter | Qt::TextWordWrap, text);
}

TableColumns::TableColumns(QTableView& table) : QObject(&table), table_(table) {
    QHeaderView* header = table.horizontalHeader();
    header->viewport()->installEventFilter(this);
    table.viewport()->installEventFilter(this);
    connect(header, &QHeaderView::sectionResized, this, [this](int column) { NoteResize(column); });
    // The table fits a column whose edge is clicked twice.
    connect(header, &QHeaderView::sectionHandleDoubleClicked, this, [this](int column) { dragged_.erase(column); });
}

void TableColumns::NoteResize(int column) {
    const QHeaderView* header = table_.horizontalHeader();
    const bool isFiller = header->sectionResizeMode(column) != QHeaderView::Interactive ||
                          (header->stretchLastSection() && header->visualIndex(column) == header->count() - 1);
    if (isPressed_ && !isFiller) dragged_.insert(column);
}

void TableColumns::WidenTo(int column, int width) {
    if (!IsDragged(column) && table_.columnWidth(column) < width) table_.setColumnWidth(column, width);
}

void TableColumns::MakeOptional(int column, bool isShownAtFirst) {
    optional_.insert(column);
    table_.setColumnHidden(column, !isShownAtFirst);
    QHeaderView* header = table_.horizontalHeader();
    if (header->contextMenuPolicy() == Qt::CustomContextMenu) return;
    header->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(header, &QHeaderView::customContextMenuRequested, this, [this, header](const QPoint& place) {
        auto* menu = new QMenu(&table_);
        menu->setAttribute(Qt::WA_DeleteOnClose);
        FillMenu(*menu);
        menu->popup(header->mapToGlobal(place));
    });
}

void TableColumns::FillMenu(QMenu& menu) {
    for (const int column : optional_) {
        const QString head = table_.model()->headerData(column, Qt::Horizontal).toString();
        QAction* action = menu.addAction(QString(head).replace(QLatin1Char('\n'), QLatin1Char(' ')));
        action->setCheckable(true);
        action->setChecked(!table_.isColumnHidden(column));
        connect(action, &QAction::toggled, this, [this, column](bool isShown) {
            table_.setColumnHidden(column, !isShown);
            if (OnShown) OnShown();
        });
    }
}

std::string TableColumns::State() const {
    const QHeaderView* header = table_.horizontalHeader();
    const bool isSorted = header->isSortIndicatorShown() && header->sortIndicatorSection() >= 0;
    QStringList parts{QStringLiteral("sort:%1:%2")
                          .arg(isSorted ? header->sortIndicatorSection() : -1)
                          .arg(static_cast<int>(header->sortIndicatorOrder()))};
    for (const int column : dragged_)
        parts += QStringLiteral("width:%1:%2").arg(column).arg(table_.columnWidth(column));
    for (const int column : optional_)
        parts += QStringLiteral("shown:%1:%2").arg(column).arg(table_.isColumnHidden(column) ? 0 : 1);
    return FromQt(parts.join(QLatin1Char(' ')));
}

void TableColumns::Restore(const std::string& state) {
    constexpr int MostWidth = 10000;
    QHeaderView* header = table_.horizontalHeader();
    for (const QString& part : ToQt(state).split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        const QStringList fields = part.split(QLatin1Char(':'));
        if (fields.size() != 3) continue;
        const int column = fields[1].toInt();
        const int value = fields[2].toInt();
        if (column >= header->count()) continue;
        if (fields[0] == QLatin1String("sort") && header->isSortIndicatorShown()) {
            header->setSortIndicator(column, value == 0 ? Qt::AscendingOrder : Qt::DescendingOrder);
        } else if (fields[0] == QLatin1String("width") && column >= 0 && value > 0 && value < MostWidth) {
            table_.setColumnWidth(column, value);
            dragged_.insert(column);
        } else if (fields[0] == QLatin1String("shown") && optional_.contains(column)) {
            table_.setColumnHidden(column, value == 0);
        }
    }
}

bool TableColumns::eventFilter(QObject* watched, QEvent* event) {
    // Other events still come when only the widget is left of the table.
    if (event->type() != QEvent::MouseButtonPress && event->type() != QEvent::MouseButtonRelease &&
        event->type() != QEvent::ToolTip)
        return false;
    const bool isHead = watched == table_.horizontalHeader()->viewport();
    if (isHead && event->type() == QEvent::MouseButtonPress) isPressed_ = true;
    if (isHead && event->type() == QEvent::MouseButtonRelease) isPressed_ = false;
    if (event->type() != QEvent::ToolTip) return false;
    const auto* help = static_cast<QHelpEvent*>(event);
    return isHead ? ShowWholeHead(help->pos().x(), help->globalPos()) : ShowWholeText(help->pos(), help->globalPos());
}

bool TableColumns::ShowWholeText(const QPoint& place, const QPoint& globalPlace) {
    const QModelIndex index = table_.indexAt(place);
    const QString text = index.data(Qt::DisplayRole).toString();
    const QRect cell = table_.visualRect(index);
    const bool isCut = table_.sizeHintForIndex(index).width() > cell.width() ||
                       cell.right() > table_.viewport()->width() || cell.left() < 0;
    if (!index.isValid() || text.isEmpty() || !isCut) return false;
    const QString note = index.data(Qt::ToolTipRole).toString();
    const QString tip = note.isEmpty() || note.contains(text) ? note : text + QStringLiteral("\n\n") + note;
    QToolTip::showText(globalPlace, Plain(tip.isEmpty() ? text : tip), table_.viewport());
    return true;
}

bool TableColumns::ShowWholeHead(int x, const QPoint& globalPlace) {
    QHeaderView* header = table_.horizontalHeader();
    const int column = header->logicalIndexAt(x);
    if (column < 0 || header->sectionSizeHint(column) <= header->sectionSize(column)) return false;
    const QAbstractItemModel& model = *table_.model();
    const QString note = model.headerData(column, Qt::Horizontal, Qt::ToolTipRole).toString();
    const QString head = model.headerData(column, Qt::Horizontal).toString();
    QToolTip::showText(globalPlace, Plain(note.isEmpty() ? head : head + QStringLiteral("\n\n") + note), header);
    return true;
}

}  // namespace vantor
