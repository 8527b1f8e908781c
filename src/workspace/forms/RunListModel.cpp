#include "workspace/forms/RunListModel.h"

#include <QGuiApplication>
#include <array>

#include "core/Numeric.h"
#include "core/Text.h"
#include "core/forms/Named.h"
#include "core/forms/Theme.h"

namespace vantor {
namespace {

struct ColumnOfList {
    const char* Head;
    std::string RunListRow::*Text;
    Qt::AlignmentFlag Alignment = Qt::AlignLeft;

    bool IsNumber() const { return Alignment == Qt::AlignRight; }
};
/// In the order of RunListModel::Column; the status is made of several.
constexpr std::array<ColumnOfList, RunListModel::ColumnCount> Columns = {
    {{"Run Name", &RunListRow::RunName},
     {"Date", &RunListRow::RunDate},
     {"Time", &RunListRow::RunTime},
     {"Type", &RunListRow::RunType},
     {"Control\nDelay (s)", &RunListRow::ControlDelay, Qt::AlignRight},
     {"LOS\nGrade", &RunListRow::LOSGrade, Qt::AlignHCenter},
     {"Stop\nDelay (s)", &RunListRow::StopDelay, Qt::AlignRight},
     {"Status", nullptr}}};

struct StateSign {
    const char* Tip;
    const char* Icon;
    ColourPair (*Colours)(const QPalette&);
};

const StateSign& SignOf(RunState state) {
    static constexpr StateSign counted = {"Both boundaries are set: the run counts in the study's figures.", "counted",
                                          GreenPair};
    static constexpr StateSign notCounted = {"A boundary is missing: set both on the speed profile to count the run.",
                                             "not-counted", RedPair};
    static constexpr StateSign notThere = {"The run has no figures and does not count.", "missing", AmberPair};
    if (state == RunState::Counted) return counted;
    return state == RunState::NotCounted ? notCounted : notThere;
}

QString StatusText(const RunListRow& row) {
    const QString word = QString::fromLatin1(StateWord(row.State));
    return row.Warnings.empty() ? word : word + QStringLiteral(": ") + ToQt(Joined(row.Warnings, "; "));
}

/// The word and what it means, then what is wrong with the run, a line each.
QString TipOf(const RunListRow& row) {
    QString tip =
        QStringLiteral("%1. %2").arg(QLatin1String(StateWord(row.State)), QLatin1String(SignOf(row.State).Tip));
    if (!row.Facts.Problem.empty()) tip += QStringLiteral("\n") + ToQt(row.Facts.Problem);
    for (const std::string& warning : row.Warnings) tip += QStringLiteral("\nWarning: ") + ToQt(warning);
    return tip;
}

QString TextOf(const RunListRow& row, const ColumnOfList& column) {
    return column.Text == nullptr ? StatusText(row) : ToQt(row.*column.Text);
}

QVariant SortKey(const RunListRow& row, int column) {
    const ColumnOfList& shown = Columns[static_cast<std::size_t>(column)];
    // Rows without a date or a figure stand before all others.
    constexpr double beforeAll = -1e300;
    if (column == RunListModel::Date) return DayOfText(row.RunDate).value_or(vantor::Date{beforeAll}).Days;
    if (!shown.IsNumber()) return TextOf(row, shown);
    const std::string& text = row.*shown.Text;
    return text.empty() ? beforeAll : Val(text);
}

}  // namespace

void RunListModel::SetRows(std::vector<RunListRow> rows) {
    beginResetModel();
    rows_ = std::move(rows);
    endResetModel();
}

int RunListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int RunListModel::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : ColumnCount; }

QVariant RunListModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) return {};
    const RunListRow& row = rows_.at(static_cast<std::size_t>(index.row()));
    const ColumnOfList& column = Columns.at(static_cast<std::size_t>(index.column()));
    const StateSign& sign = SignOf(row.State);
    switch (role) {
        case Qt::DisplayRole: return TextOf(row, column);
        case Qt::TextAlignmentRole: return static_cast<int>(column.Alignment | Qt::AlignVCenter);
        case Qt::BackgroundRole: return sign.Colours(QGuiApplication::palette()).Background;
        case Qt::ForegroundRole: return sign.Colours(QGuiApplication::palette()).Text;
        case Qt::DecorationRole:
            if (index.column() == Status && !row.Warnings.empty()) return LineIcon(QStringLiteral("missing"));
            return index.column() == Name ? LineIcon(QLatin1String(sign.Icon)) : QVariant();
        case Qt::ToolTipRole: return TipOf(row);
        case Qt::AccessibleTextRole:
            if (column.Text == nullptr || (row.*column.Text).empty()) return StatusText(row);
            return QStringLiteral("%1, %2").arg(TextOf(row, column).trimmed(), StatusText(row));
        case SortRole: return SortKey(row, index.column());
        default: return {};
    }
}

QVariant RunListModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal) return QAbstractTableModel::headerData(section, orientation, role);
    const ColumnOfList& column = Columns.at(static_cast<std::size_t>(section));
    if (role == Qt::DisplayRole) return QString::fromLatin1(column.Head);
    if (role == Qt::TextAlignmentRole) return static_cast<int>(column.Alignment | Qt::AlignVCenter);
    return {};
}

}  // namespace vantor
