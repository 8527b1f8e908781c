#include "gpsobd/forms/GapList.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QVBoxLayout>
#include <algorithm>
#include <array>
#include <set>
#include <tuple>

#include "core/forms/Guarded.h"
#include "core/forms/Named.h"

namespace vantor {
namespace {

/// Pixels beside a head's text, for its margins and the arrow of the sorted column.
constexpr int SortArrowRoom = 32;

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

GapList::GapList(QWidget* parent, MessageBoxes& messages, const Units& units) : QWidget(parent), model_(units) {
    setObjectName(QStringLiteral("fraGaps"));
    vaGaps_ = Named<QTableView>(this, "vaGaps");
    vaGaps_->setAccessibleName(QStringLiteral("Gaps"));
    vaGaps_->setModel(&model_);
    LookLikeAList(*vaGaps_);
    vaGaps_->setAlternatingRowColors(true);
    vaGaps_->setSelectionMode(QAbstractItemView::ExtendedSelection);
    columns_ = new TableColumns(*vaGaps_);
    lblGaps_ = LabelFor(vaGaps_, QStringLiteral("&Gaps"));

    auto* head = new QHBoxLayout;
    head->addWidget(lblGaps_, 1);
    head->addWidget(Named<QLabel>(this, "lblFill", QStringLiteral("Fill the selected gaps")));
    for (std::size_t i = 0; i < fills_.size(); ++i) {
        const FillButton& button = FillButtons.at(i);
        fills_.at(i) = Named<QPushButton>(this, button.Name, QLatin1String(button.Caption));
        fills_.at(i)->setAutoDefault(false);
        Connect(fills_.at(i), &QPushButton::clicked, this, messages, [this, &button] { OnFill(Selected(), button.Fill); });
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

void GapList::Show(std::vector<LogGap> gaps) {
    if (gaps == model_.Gaps()) return;
    const std::vector<LogGap> selected = Selected();
    isFilling_ = true;
    model_.SetGaps(std::move(gaps));
    SelectAgain(selected);
    isFilling_ = false;
    WidenColumns();
    QString note = ToQt(GapNote(model_.Gaps()));
    if (!note.isEmpty()) note.replace(0, 1, QStringLiteral("&G"));
    lblGaps_->setText(note);
    setVisible(!model_.Gaps().empty());
    ShowChoice();
}

void GapList::SelectAgain(const std::vector<LogGap>& selected) {
    std::set<decltype(PlaceOf({}))> places;
    for (const LogGap& gap : selected) places.insert(PlaceOf(gap));
    const auto isSelected = [&](int row) { return places.contains(PlaceOf(model_.GapIn(row))); };
    QItemSelection rows;
    const int count = places.empty() ? 0 : model_.rowCount();
    for (int first = 0; first < count; ++first) {
        if (!isSelected(first)) continue;
        int last = first;
        while (last + 1 < count && isSelected(last + 1)) ++last;
        rows.select(model_.index(first, 0), model_.index(last, model_.columnCount() - 1));
        first = last;
    }
    if (rows.isEmpty()) return;
    vaGaps_->selectionModel()->setCurrentIndex(rows.first().topLeft(), QItemSelectionModel::NoUpdate);
    vaGaps_->selectionModel()->select(rows, QItemSelectionModel::ClearAndSelect);
}

void GapList::WidenColumns() {
    for (int column = 0; column + 1 < model_.columnCount(); ++column) {
        const QString head = model_.headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
        const int headWidth = fontMetrics().horizontalAdvance(head) + SortArrowRoom;
        columns_->WidenTo(column, std::max(vaGaps_->sizeHintForIndex(model_.index(0, column)).width() + 4, headWidth));
    }
}

void GapList::ShowChoice() {
    const std::vector<LogGap> selected = Selected();
    for (std::size_t i = 0; i < fills_.size(); ++i)
        fills_.at(i)->setEnabled(std::ranges::any_of(
            selected, [&](const LogGap& gap) { return CanBeFilled(gap, FillButtons.at(i).Fill); }));
}

std::vector<LogGap> GapList::Selected() const {
    std::vector<int> rows;
    for (const QModelIndex& cell : vaGaps_->selectionModel()->selectedRows()) rows.push_back(cell.row());
    std::ranges::sort(rows);
    std::vector<LogGap> selected;
    for (const int row : rows) selected.push_back(model_.GapIn(row));
    return selected;
}

}  // namespace vantor
