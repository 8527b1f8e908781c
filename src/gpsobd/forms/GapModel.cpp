#include "gpsobd/forms/GapModel.h"

#include <array>
#include <limits>
#include <numeric>

#include "core/forms/Named.h"
#include "gpsobd/ReviewColumns.h"
#include "gpsobd/forms/SortByKey.h"

namespace vantor {

QString GapFillText(GapFill fill) {
    switch (fill) {
        case GapFill::Standing: return QStringLiteral("as standing");
        case GapFill::Position: return QStringLiteral("by position");
        case GapFill::Speed: break;
    }
    return QStringLiteral("by the speeds beside it");
}

void GapModel::SetGaps(std::vector<LogGap> gaps) {
    beginResetModel();
    gaps_ = std::move(gaps);
    Arrange();
    endResetModel();
}

int GapModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int GapModel::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : ColumnCount; }

QString GapModel::TextOf(const LogGap& gap, int column) const {
    const auto length = [&](double feet) { return QString::number(units_.LengthOfFeet(feet), 'f', 0); };
    switch (column) {
        case Run: return QString::number(gap.RunNumber);
        case From: return ToQt(ClockText(DateOfSeconds(gap.From)));
        case To: return ToQt(ClockText(DateOfSeconds(gap.To)));
        case Seconds: return QString::number(gap.Seconds());
        case ByPosition: return gap.FeetByPosition ? length(*gap.FeetByPosition) : QString();
        case BySpeeds: return length(gap.FeetBySpeed);
        default: return GapFillText(gap.Filled);
    }
}

QVariant GapModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) return {};
    const LogGap& gap = GapIn(index.row());
    const int column = index.column();
    if (role == Qt::DisplayRole) return TextOf(gap, column);
    if (role == Qt::TextAlignmentRole) return headerData(column, Qt::Horizontal, role);
    if (role == Qt::ToolTipRole && (column == From || column == To))
        return ToQt(ShortDate(DateOfSeconds(column == From ? gap.From : gap.To)));
    return {};
}

QVariant GapModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation == Qt::Vertical) return {};
    const bool isText = section == From || section == To || section == Filled;
    if (role == Qt::TextAlignmentRole) return static_cast<int>((isText ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter);
    if (role != Qt::DisplayRole) return {};
    static constexpr std::array<const char*, ColumnCount> heads = {"Run #",      "From", "To", "Seconds", "By position (%1)",
                                                                   "By speeds (%1)", "Filled"};
    const QString head = QLatin1String(heads.at(static_cast<std::size_t>(section)));
    return head.contains(QLatin1String("%1")) ? head.arg(QLatin1String(units_.LengthLabel())) : head;
}

void GapModel::sort(int column, Qt::SortOrder order) {
    emit layoutAboutToBeChanged({}, VerticalSortHint);
    const QModelIndexList before = persistentIndexList();
    std::vector<int> gapsBefore;
    for (const QModelIndex& cell : before) gapsBefore.push_back(rows_[static_cast<std::size_t>(cell.row())]);
    sortColumn_ = column;
    sortOrder_ = order;
    Arrange();
    std::vector<int> placeOf(rows_.size() + 1);
    for (std::size_t row = 0; row < rows_.size(); ++row) placeOf[static_cast<std::size_t>(rows_[row])] = static_cast<int>(row);
    QModelIndexList after;
    for (qsizetype i = 0; i < before.size(); ++i)
        after += index(placeOf[static_cast<std::size_t>(gapsBefore[static_cast<std::size_t>(i)])], before[i].column());
    changePersistentIndexList(before, after);
    emit layoutChanged({}, VerticalSortHint);
}

void GapModel::Arrange() {
    rows_.resize(gaps_.size());
    std::iota(rows_.begin(), rows_.end(), 1);
    if (sortColumn_ < 0) return;
    SortByKey(rows_, sortOrder_, [&](int row) {
        const LogGap& gap = gaps_[static_cast<std::size_t>(row - 1)];
        switch (sortColumn_) {
            case Run: return static_cast<double>(gap.RunNumber);
            case From: return static_cast<double>(gap.From);
            case To: return static_cast<double>(gap.To);
            case Seconds: return static_cast<double>(gap.Seconds());
            case ByPosition: return gap.FeetByPosition.value_or(-std::numeric_limits<double>::infinity());
            case BySpeeds: return gap.FeetBySpeed;
            default: return static_cast<double>(gap.Filled);
        }
    });
}

}  // namespace vantor
