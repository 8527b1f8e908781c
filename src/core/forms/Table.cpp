#include "core/forms/Table.h"

#include <QHeaderView>
#include <algorithm>

#include "core/Numeric.h"
#include "core/Settings.h"
#include "core/Text.h"
#include "core/forms/Named.h"
#include "core/modMain.h"

namespace vantor {
namespace {

constexpr int SortRole = Qt::UserRole + 100;

/// Pixels beside a head's text, for its margins and the arrow of the sorted column.
constexpr int SortArrowRoom = 32;
constexpr int HeadMargins = 14;

/// Sorts by the key where there is one, else by the text.
class SortedItem : public QTableWidgetItem {
public:
    using QTableWidgetItem::QTableWidgetItem;
    bool operator<(const QTableWidgetItem& other) const override {
        const QVariant mine = data(SortRole);
        const QVariant theirs = other.data(SortRole);
        if (mine.isValid() && theirs.isValid()) return mine.toDouble() < theirs.toDouble();
        return QString::localeAwareCompare(text(), other.text()) < 0;
    }
};

/// What stands in an empty table's place is heard, too.
void SayWhetherEmpty(QTableWidget& table, const QString& emptyText) {
    table.setAccessibleDescription(table.rowCount() == 0 ? emptyText : QString());
}

constexpr const char* SectionsHead = "# of Sections";

}  // namespace

Table::Table(QWidget* parent) : QTableWidget(parent) {
    LookLikeAList(*this);
    setAlternatingRowColors(true);
    horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    columns_ = new TableColumns(*this);
}

void Table::SetColumns(const QStringList& heads) {
    setColumnCount(static_cast<int>(heads.size()));
    setHorizontalHeaderLabels(heads);
    for (int column = 0; column < columnCount(); ++column)
        if (const QString note = NoteOnHead(heads[column]); !note.isEmpty())
            horizontalHeaderItem(column)->setToolTip(note);
}

void Table::SetEmptyText(const QString& text) {
    emptyText_ = text;
    SayWhetherEmpty(*this, emptyText_);
    viewport()->update();
}

int Table::AddRow() {
    const int row = rowCount();
    insertRow(row);
    return row;
}

void Table::SetText(int row, int column, const QString& text) { setItem(row, column, new SortedItem(text)); }

void Table::SetNumber(int row, int column, double value, const QString& text) {
    SetSorted(row, column, text, value);
    item(row, column)->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
    horizontalHeaderItem(column)->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
}

void Table::SetSorted(int row, int column, const QString& text, double key) {
    auto* item = new SortedItem(text);
    item->setData(SortRole, key);
    setItem(row, column, item);
}

std::vector<int> Table::SelectedRows() const {
    std::vector<int> rows;
    for (const QModelIndex& index : selectionModel()->selectedRows()) rows.push_back(index.row());
    std::sort(rows.begin(), rows.end());
    return rows;
}

QString Table::Text(int row, int column) const {
    const QTableWidgetItem* cell = item(row, column);
    return cell == nullptr ? QString() : cell->text();
}

void Table::BeginFilling() {
    setSortingEnabled(false);
    setRowCount(0);
}

void Table::EndFilling() {
    setSortingEnabled(true);
    SayWhetherEmpty(*this, emptyText_);
    const int count = columnCount() - (horizontalHeader()->stretchLastSection() ? 1 : 0);
    const int room = horizontalHeader()->sectionsClickable() ? SortArrowRoom : HeadMargins;
    for (int column = 0; column < count; ++column) {
        const QString head = horizontalHeaderItem(column)->text();
        const int headWidth = horizontalHeader()->fontMetrics().size(0, head).width() + room;
        const int needed = std::max(sizeHintForColumn(column) + 4, headWidth);
        columns_->WidenTo(column, needed);
    }
}

void Table::paintEvent(QPaintEvent* event) {
    QTableWidget::paintEvent(event);
    PaintEmptyText(*this, emptyText_);
}

QString NoteOnHead(const QString& head) {
    if (head == QLatin1String(SectionsHead))
        return QStringLiteral("The nodes of the run, its start and its end among them: one more than its sections.");
    if (head == QLatin1String("Section"))
        return QStringLiteral(
            "From one node to the next. The # of Sections in lists of runs is one more: it counts the nodes, with "
            "start "
            "and end.");
    return {};
}

QStringList RunColumns(const Units& units) {
    return {QStringLiteral("Name"),
            QStringLiteral("Date"),
            QStringLiteral("Time"),
            QStringLiteral("Type"),
            QStringLiteral("Length ") + ToQt(units.LengthTitle()),
            QStringLiteral("Duration (s)"),
            QString::fromLatin1(SectionsHead),
            QStringLiteral("Before/After"),
            QStringLiteral("Notes")};
}

void SetRunRow(Table& table, int row, const RunHeader& header, const Units& units) {
    table.SetText(row, 0, ToQt(Trim(header.RunName)));
    table.SetSorted(row, 1, ToQt(ShortDate(header.RunDate)), header.RunDate.Days);
    table.SetSorted(row, 2, ToQt(ShortTime(header.RunTime)), header.RunTime.Days);
    table.SetText(row, 3, ToQt(RunTypeText(header.HeaderWord1)));
    table.SetNumber(row, 4, header.RunLength, ToQt(units.LengthCell(header.RunLength)));
    table.SetNumber(row, 5, header.Duration, QString::number(header.Duration));
    table.SetNumber(row, 6, header.NumberOfSections, QString::number(header.NumberOfSections));
    table.SetText(row, 7, ToQt(BeforeAfterText(header.Before)));
    table.SetText(row, 8, ToQt(TrimRight(header.Notes)));
}

}  // namespace vantor
