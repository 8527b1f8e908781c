#include "gpsobd/forms/GapList.h"

#include <QHBoxLayout>
#include <QVBoxLayout>
#include <algorithm>
#include <array>
#include <limits>
#include <set>
#include <tuple>

#include "core/Numeric.h"
#include "core/forms/Guarded.h"
#include "core/forms/Named.h"
#include "gpsobd/ReviewColumns.h"

namespace vantor {
namespace {

struct FillButton {
    GapFill Fill;
    const char* Name;
    const char* Caption;
};
constexpr std::array FillButtons = {FillButton{GapFill::Standing, "btnFillStanding", "As Sta&nding"},
                                    FillButton{GapFill::Position, "btnFillPosition", "By &Position"},
                                    FillButton{GapFill::Speed, "btnFillSpeed", "&By the Speeds Beside It"}};

auto PlaceOf(const LogGap& gap) { return std::tuple(gap.RunNumber, gap.From, gap.To); }

}  // namespace

QString GapFillText(GapFill fill) {
    switch (fill) {
        case GapFill::Standing: return QStringLiteral("as standing");
        case GapFill::Position: return QStringLiteral("by position");
        case GapFill::Speed: break;
    }
    return QStringLiteral("by the speeds beside it");
}

GapList::GapList(QWidget* parent, MessageBoxes& messages, LongWork& work, const Units& units) : QWidget(parent) {
    setObjectName(QStringLiteral("fraGaps"));
    vaGaps_ = Named<LongList>(this, "vaGaps");
    vaGaps_->setAccessibleName(QStringLiteral("Gaps"));
    vaGaps_->SetColumns(Columns(units));
    vaGaps_->SetNotes([this](int row, int column) {
        const LogGap& gap = At(row);
        return column == 1 || column == 2 ? ToQt(ShortDate(DateOfSeconds(column == 1 ? gap.From : gap.To))) : QString();
    });
    vaGaps_->SortIn(work);
    lblGaps_ = LabelFor(vaGaps_, QStringLiteral("&Gaps"));

    auto* head = new QHBoxLayout;
    head->addWidget(lblGaps_, 1);
    head->addWidget(Named<QLabel>(this, "lblFill", QStringLiteral("Fill the selected gaps")));
    for (std::size_t i = 0; i < fills_.size(); ++i) {
        const FillButton& button = FillButtons.at(i);
        fills_.at(i) = Named<QPushButton>(this, button.Name, QLatin1String(button.Caption));
        fills_.at(i)->setAutoDefault(false);
        Connect(fills_.at(i), &QPushButton::clicked, this, messages,
                [this, &button] { OnFill(Selected(), button.Fill); });
        head->addWidget(fills_.at(i));
    }
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addLayout(head);
    column->addWidget(vaGaps_, 1);
    hide();

    Connect(vaGaps_->selectionModel(), &QItemSelectionModel::selectionChanged, this, messages, [this] {
        if (isFilling_) return;
        ShowChoice();
        if (const std::vector<LogGap> selected = Selected(); !selected.empty()) OnChosen(selected.front());
    });
}

std::vector<LongList::Column> GapList::Columns(const Units& units) const {
    const auto time = [this](auto member) {
        return [=, this](int row) { return ToQt(ClockText(DateOfSeconds(At(row).*member))); };
    };
    const auto key = [this](auto keyOf) { return [=, this](int row) { return double(keyOf(At(row))); }; };
    const auto length = [units](double feet) { return ToQt(FixedDecimals(units.LengthOfFeet(feet), 0)); };
    const QLatin1String unit(units.LengthLabel());
    return {
        {QStringLiteral("Run #"), [this](int row) { return QString::number(At(row).RunNumber); },
         key([](const LogGap& gap) { return gap.RunNumber; }), true},
        {QStringLiteral("From"), time(&LogGap::From), key([](const LogGap& gap) { return gap.From; })},
        {QStringLiteral("To"), time(&LogGap::To), key([](const LogGap& gap) { return gap.To; })},
        {QStringLiteral("Seconds"), [this](int row) { return QString::number(At(row).Seconds()); },
         key([](const LogGap& gap) { return gap.Seconds(); }), true},
        {QStringLiteral("By position (%1)").arg(unit),
         [this, length](int row) { return At(row).FeetByPosition ? length(*At(row).FeetByPosition) : QString(); },
         key([](const LogGap& gap) { return gap.FeetByPosition.value_or(-std::numeric_limits<double>::infinity()); }),
         true},
        {QStringLiteral("By speeds (%1)").arg(unit), [this, length](int row) { return length(At(row).FeetBySpeed); },
         key([](const LogGap& gap) { return gap.FeetBySpeed; }), true},
        {QStringLiteral("Filled"), [this](int row) { return GapFillText(At(row).Filled); },
         key([](const LogGap& gap) { return static_cast<int>(gap.Filled); })},
    };
}

void GapList::Show(std::vector<LogGap> gaps) {
    if (gaps == gaps_) return;
    const std::vector<LogGap> selected = Selected();
    isFilling_ = true;
    vaGaps_->Show(0);
    gaps_ = std::move(gaps);
    vaGaps_->Show(static_cast<int>(gaps_.size()));
    SelectAgain(selected);
    isFilling_ = false;
    QString note = ToQt(GapNote(gaps_));
    if (!note.isEmpty()) note.replace(0, 1, QStringLiteral("&G"));
    lblGaps_->setText(note);
    setVisible(!gaps_.empty());
    ShowChoice();
}

void GapList::SelectAgain(const std::vector<LogGap>& selected) {
    std::set<decltype(PlaceOf({}))> places;
    for (const LogGap& gap : selected) places.insert(PlaceOf(gap));
    std::vector<int> rows;
    for (std::size_t i = 0; i < gaps_.size() && !places.empty(); ++i)
        if (places.contains(PlaceOf(gaps_[i]))) rows.push_back(static_cast<int>(i));
    if (!rows.empty()) vaGaps_->SelectRows(rows);
}

void GapList::ShowChoice() {
    const std::vector<LogGap> selected = Selected();
    for (std::size_t i = 0; i < fills_.size(); ++i)
        fills_.at(i)->setEnabled(
            std::ranges::any_of(selected, [&](const LogGap& gap) { return CanBeFilled(gap, FillButtons.at(i).Fill); }));
}

std::vector<LogGap> GapList::Selected() const {
    std::vector<LogGap> selected;
    for (const int row : vaGaps_->SelectedRows()) selected.push_back(At(row));
    return selected;
}

}  // namespace vantor
