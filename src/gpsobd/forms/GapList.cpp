#include "gpsobd/forms/GapList.h"

#include <QHBoxLayout>
#include <QVBoxLayout>
#include <algorithm>
#include <array>

#include "core/forms/Guarded.h"
#include "core/forms/Named.h"
#include "gpsobd/ReviewColumns.h"

namespace vantor {
namespace {

struct FillName {
    GapFill Fill;
    const char* Name;
};
constexpr std::array Fills = {FillName{GapFill::Standing, "as standing"}, FillName{GapFill::Position, "by position"},
                              FillName{GapFill::Speed, "by the speeds beside it"}};

int IndexOf(GapFill fill) { return static_cast<int>(std::ranges::find(Fills, fill, &FillName::Fill) - Fills.begin()); }

bool IsSamePlace(const LogGap& left, const LogGap& right) {
    return left.RunNumber == right.RunNumber && left.From == right.From && left.To == right.To;
}

}  // namespace

QString GapFillText(GapFill fill) { return QLatin1String(Fills.at(static_cast<std::size_t>(IndexOf(fill))).Name); }

GapList::GapList(QWidget* parent, MessageBoxes& messages, const Units& units) : QWidget(parent), units_(units) {
    setObjectName(QStringLiteral("fraGaps"));
    vaGaps_ = Named<Table>(this, "vaGaps");
    vaGaps_->setAccessibleName(QStringLiteral("Gaps"));
    const QLatin1String length(units_.LengthLabel());
    vaGaps_->SetColumns({QStringLiteral("Run #"), QStringLiteral("From"), QStringLiteral("To"),
                         QStringLiteral("Seconds"), QStringLiteral("By position (%1)").arg(length),
                         QStringLiteral("By speeds (%1)").arg(length), QStringLiteral("Filled")});
    vaGaps_->setSelectionMode(QAbstractItemView::ExtendedSelection);
    cmbGapFill_ = Named<QComboBox>(this, "cmbGapFill");
    for (const FillName& fill : Fills) cmbGapFill_->addItem(QLatin1String(fill.Name));
    lblGaps_ = LabelFor(vaGaps_, QStringLiteral("&Gaps"));

    auto* head = new QHBoxLayout;
    head->addWidget(lblGaps_, 1);
    head->addWidget(LabelFor(cmbGapFill_, QStringLiteral("F&ill the selected gaps")));
    head->addWidget(cmbGapFill_);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addLayout(head);
    column->addWidget(vaGaps_, 1);
    hide();

    Connect(vaGaps_, &Table::itemSelectionChanged, this, messages, [this] {
        if (isFilling_) return;
        ShowChoice();
        if (const std::vector<LogGap> selected = Selected(); !selected.empty()) OnChosen(selected.front());
    });
    Connect(cmbGapFill_, &QComboBox::activated, this, messages,
            [this](int index) { OnFill(Selected(), Fills.at(static_cast<std::size_t>(index)).Fill); });
}

void GapList::Show(const std::vector<LogGap>& gaps) {
    if (gaps == gaps_) return;
    const std::vector<LogGap> selected = Selected();
    gaps_ = gaps;
    isFilling_ = true;
    Fill();
    vaGaps_->clearSelection();
    for (int row = 0; row < vaGaps_->rowCount(); ++row) {
        const LogGap& gap = gaps_[static_cast<std::size_t>(vaGaps_->item(row, 0)->data(Qt::UserRole + 1).toInt())];
        if (std::ranges::none_of(selected, [&](const LogGap& before) { return IsSamePlace(before, gap); })) continue;
        for (int column = 0; column < vaGaps_->columnCount(); ++column) vaGaps_->item(row, column)->setSelected(true);
    }
    isFilling_ = false;
    QString note = ToQt(GapNote(gaps_));
    if (!note.isEmpty()) note.replace(0, 1, QStringLiteral("&G"));
    lblGaps_->setText(note);
    setVisible(!gaps_.empty());
    ShowChoice();
}

void GapList::Fill() {
    vaGaps_->BeginFilling();
    for (std::size_t i = 0; i < gaps_.size(); ++i) {
        const LogGap& gap = gaps_[i];
        const int row = vaGaps_->AddRow();
        const auto setNumber = [&](int column, double value) {
            vaGaps_->SetNumber(row, column, value, QString::number(value, 'f', 0));
        };
        const auto setTime = [&](int column, std::int64_t second) {
            const Date time = DateOfSeconds(second);
            vaGaps_->SetSorted(row, column, ToQt(ClockText(time)), time.Days);
            vaGaps_->item(row, column)->setToolTip(ToQt(ShortDate(time)));
        };
        setNumber(0, gap.RunNumber);
        vaGaps_->item(row, 0)->setData(Qt::UserRole + 1, static_cast<int>(i));
        setTime(1, gap.From);
        setTime(2, gap.To);
        setNumber(3, static_cast<double>(gap.Seconds()));
        vaGaps_->SetText(row, 4, {});
        if (gap.FeetByPosition) setNumber(4, units_.LengthOfFeet(*gap.FeetByPosition));
        setNumber(5, units_.LengthOfFeet(gap.FeetBySpeed));
        vaGaps_->SetText(row, 6, GapFillText(gap.Filled));
    }
    vaGaps_->EndFilling();
}

void GapList::ShowChoice() {
    const std::vector<LogGap> selected = Selected();
    const auto isFilledAlike = [&](const LogGap& gap) { return gap.Filled == selected.front().Filled; };
    cmbGapFill_->setEnabled(!selected.empty());
    cmbGapFill_->setCurrentIndex(
        !selected.empty() && std::ranges::all_of(selected, isFilledAlike) ? IndexOf(selected.front().Filled) : -1);
}

std::vector<LogGap> GapList::Selected() const {
    std::vector<LogGap> selected;
    for (const int row : vaGaps_->SelectedRows())
        selected.push_back(gaps_[static_cast<std::size_t>(vaGaps_->item(row, 0)->data(Qt::UserRole + 1).toInt())]);
    return selected;
}

}  // namespace vantor
