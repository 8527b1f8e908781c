#include "workspace/forms/RunListModel.h"

#include <QGuiApplication>
#include <array>

#include "core/Numeric.h"
#include "core/Text.h"
#include "core/forms/Named.h"
#include "core/forms/Theme.h"
#include "core/modMain.h"

namespace vantor {
namespace {

/// Rows without a date or a figure stand before all others.
constexpr double BeforeAll = -1e300;

struct ColumnOfList {
    const char* Head;  ///< "%1" stands for the unit of lengths, "%2" for that of speeds
    std::string (*Text)(const RunListRow& row, const Units& units);
    double (*Key)(const RunListRow& row) = nullptr;  ///< what a number or a date sorts by
    Qt::AlignmentFlag Alignment = Qt::AlignRight;
};

std::string StatusText(const RunListRow& row) {
    const std::string word = StateWord(row.State);
    return row.Warnings.empty() ? word : word + ": " + Joined(row.Warnings, "; ");
}

template <std::string RunListRow::*Member>
std::string TextOf(const RunListRow& row, const Units&) {
    return row.*Member;
}

template <std::string RunListRow::*Member>
double NumberOf(const RunListRow& row) {
    const std::string& text = row.*Member;
    return text.empty() ? BeforeAll : Val(text);
}

template <std::int32_t StudyRunEntry::*Feet>
std::string BoundaryText(const RunListRow& row, const Units& units) {
    const std::int32_t feet = row.Entry.*Feet;
    return feet == 0 ? std::string() : std::to_string(units.WholeLength(feet));
}

template <std::int32_t StudyRunEntry::*Feet>
double BoundaryKey(const RunListRow& row) {
    return row.Entry.*Feet;
}

std::optional<PartBetween> PartOf(const RunListRow& row) { return BetweenBoundaries(row.Entry, row.Facts); }

std::optional<double> MeanSpeedOf(const RunListRow& row) {
    const auto part = PartOf(row);
    return part ? part->Speed() : std::nullopt;
}

/// In the order of RunListModel::Column.
constexpr std::array<ColumnOfList, RunListModel::ColumnCount> Columns = {{
    {"Run Name", TextOf<&RunListRow::RunName>, nullptr, Qt::AlignLeft},
    {"Date", TextOf<&RunListRow::RunDate>,
     [](const RunListRow& row) { return DayOfText(row.RunDate).value_or(vantor::Date{BeforeAll}).Days; },
     Qt::AlignLeft},
    {"Time", TextOf<&RunListRow::RunTime>, nullptr, Qt::AlignLeft},
    {"Type", TextOf<&RunListRow::RunType>, nullptr, Qt::AlignLeft},
    {"Control\nDelay (s)", TextOf<&RunListRow::ControlDelay>, NumberOf<&RunListRow::ControlDelay>},
    {"LOS\nGrade", TextOf<&RunListRow::LOSGrade>, nullptr, Qt::AlignHCenter},
    {"Stop\nDelay (s)", TextOf<&RunListRow::StopDelay>, NumberOf<&RunListRow::StopDelay>},
    {"Status", [](const RunListRow& row, const Units&) { return StatusText(row); }, nullptr, Qt::AlignLeft},
    {"Start\n(%1)", BoundaryText<&StudyRunEntry::CDStartDist>, BoundaryKey<&StudyRunEntry::CDStartDist>},
    {"End\n(%1)", BoundaryText<&StudyRunEntry::CDEndDist>, BoundaryKey<&StudyRunEntry::CDEndDist>},
    {"Travel\nTime (s)",
     [](const RunListRow& row, const Units&) {
         const auto part = PartOf(row);
         return part ? std::to_string(part->Seconds) : std::string();
     },
     [](const RunListRow& row) {
         const auto part = PartOf(row);
         return part ? part->Seconds : BeforeAll;
     }},
    {"Mean\nSpeed (%2)",
     [](const RunListRow& row, const Units& units) {
         const auto mph = MeanSpeedOf(row);
         return mph ? OneDecimal(units.SpeedOfMph(*mph)) : std::string();
     },
     [](const RunListRow& row) { return MeanSpeedOf(row).value_or(BeforeAll); }},
    {"Stops",
     [](const RunListRow& row, const Units&) {
         return PartOf(row) ? std::to_string(row.Facts.Found.Stops) : std::string();
     },
     [](const RunListRow& row) { return PartOf(row) ? row.Facts.Found.Stops : BeforeAll; }},
    {"Before/\nAfter",
     [](const RunListRow& row, const Units&) {
         return row.Facts.IsRun() ? BeforeAfterText(row.Facts.Before) : std::string();
     },
     nullptr, Qt::AlignLeft},
    {"Period", [](const RunListRow& row, const Units&) { return row.Entry.Period; }, nullptr, Qt::AlignLeft},
    {"Warnings", [](const RunListRow& row, const Units&) { return Joined(row.Warnings, "; "); }, nullptr,
     Qt::AlignLeft},
    {"Set Aside", [](const RunListRow& row, const Units&) { return row.Entry.SetAside; }, nullptr, Qt::AlignLeft},
}};

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

/// The word and what it means, then what is wrong with the run, a line each.
QString TipOf(const RunListRow& row) {
    QString tip =
        QStringLiteral("%1. %2").arg(QLatin1String(StateWord(row.State)), QLatin1String(SignOf(row.State).Tip));
    if (!row.Facts.Problem.empty()) tip += QStringLiteral("\n") + ToQt(row.Facts.Problem);
    for (const std::string& warning : row.Warnings) tip += QStringLiteral("\nWarning: ") + ToQt(warning);
    return tip;
}

}  // namespace

void RunListModel::SetRows(std::vector<RunListRow> rows, const Units& units) {
    beginResetModel();
    rows_ = std::move(rows);
    units_ = units;
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
        case Qt::DisplayRole: return ToQt(column.Text(row, units_));
        case Qt::TextAlignmentRole: return static_cast<int>(column.Alignment | Qt::AlignVCenter);
        case Qt::BackgroundRole: return sign.Colours(QGuiApplication::palette()).Background;
        case Qt::ForegroundRole: return sign.Colours(QGuiApplication::palette()).Text;
        case Qt::DecorationRole:
            if (index.column() == Status && !row.Warnings.empty()) return LineIcon(QStringLiteral("missing"));
            return index.column() == Name ? LineIcon(QLatin1String(sign.Icon)) : QVariant();
        case Qt::ToolTipRole: return TipOf(row);
        case Qt::AccessibleTextRole:
            if (index.column() == Status || column.Text(row, units_).empty()) return ToQt(StatusText(row));
            return QStringLiteral("%1, %2").arg(ToQt(column.Text(row, units_)).trimmed(), ToQt(StatusText(row)));
        case SortRole: return column.Key == nullptr ? QVariant(ToQt(column.Text(row, units_))) : column.Key(row);
        default: return {};
    }
}

int RunListModel::WidestRow(int column, const QFontMetrics& font) const {
    std::array<int, 256> widths;  // of the letters of Latin-1; each is measured once
    widths.fill(-1);
    const auto widthOf = [&](QChar letter) {
        if (letter.unicode() >= widths.size()) return font.horizontalAdvance(letter);
        int& width = widths[letter.unicode()];
        if (width < 0) width = font.horizontalAdvance(letter);
        return width;
    };
    const auto& textOf = Columns.at(static_cast<std::size_t>(column)).Text;
    std::string last;
    int widestRow = rows_.empty() ? -1 : 0;
    int widest = 0;
    for (std::size_t row = 0; row < rows_.size(); ++row) {
        const std::string text = textOf(rows_[row], units_);
        if (text == last) continue;
        int width = 0;
        for (const QChar letter : ToQt(text)) width += widthOf(letter);
        last = text;
        if (width <= widest) continue;
        widest = width;
        widestRow = static_cast<int>(row);
    }
    return widestRow;
}

/// Rows are dragged to between others.
Qt::ItemFlags RunListModel::flags(const QModelIndex& index) const {
    return index.isValid() ? QAbstractTableModel::flags(index) | Qt::ItemIsDragEnabled : Qt::ItemIsDropEnabled;
}

QVariant RunListModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal) return QAbstractTableModel::headerData(section, orientation, role);
    const ColumnOfList& column = Columns.at(static_cast<std::size_t>(section));
    if (role == Qt::DisplayRole)
        return QString::fromLatin1(column.Head)
            .replace(QLatin1String("%1"), QLatin1String(units_.LengthLabel()))
            .replace(QLatin1String("%2"), QLatin1String(units_.SpeedLabel()));
    if (role == Qt::TextAlignmentRole) return static_cast<int>(column.Alignment | Qt::AlignVCenter);
    return {};
}

}  // namespace vantor
