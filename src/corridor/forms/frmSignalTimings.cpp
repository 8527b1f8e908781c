#include "corridor/forms/frmSignalTimings.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QShortcut>
#include <QSignalBlocker>
#include <QVBoxLayout>
#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <utility>

#include "core/Date.h"
#include "core/Numeric.h"
#include "core/forms/Guarded.h"
#include "core/forms/HelpButton.h"
#include "core/forms/Named.h"
#include "core/forms/WindowLayout.h"
#include "corridor/CorridorRules.h"
#include "corridor/forms/ChoiceDelegate.h"

namespace vantor {
namespace {

constexpr int UsualColumn = 80;
constexpr int Digits = 15;  // of a number of seconds
constexpr double SecondsOfDay = 24 * 3600;
constexpr std::array<const char*, 6> Heads = {
    "Way", "Condition", "Period", "Cycle\n(s)", "Green from\n(s or h:m:s)", "Green for\n(s)"};

QString NumberText(double seconds) { return ToQt(SignificantDigits(seconds, Digits)); }

/// Seconds, or a time of day as seconds after midnight.
std::optional<double> SecondsOfText(const std::string& text) {
    if (text.find(':') == std::string::npos) return NumberOfText(text);
    const auto clock = ClockOfText(text);
    return clock ? std::optional<double>(Round32(clock->Days * SecondsOfDay)) : std::nullopt;
}

/// Of the corridor and of its runs, and those that the timings name.
std::vector<std::string> PeriodNames(const Corridor& corridor, const CorridorNode& node) {
    std::vector<std::string> names;
    const auto add = [&](const std::string& name) {
        if (!name.empty() && std::ranges::find(names, name) == names.end()) names.push_back(name);
    };
    for (const CorridorPeriod& period : corridor.Periods) add(period.Name);
    for (const CorridorRun& run : corridor.Runs) add(run.Period);
    for (const SignalTiming& timing : node.Timings) add(timing.Period);
    return names;
}

}  // namespace

frmSignalTimings::frmSignalTimings(AppContext& context, const Corridor& corridor, std::size_t node, QWidget* parent)
    : QDialog(parent),
      context_(context),
      corridor_(corridor),
      node_(node),
      periods_(PeriodNames(corridor, corridor.Nodes[node])) {
    setObjectName(QStringLiteral("frmSignalTimings"));
    setWindowTitle(QStringLiteral("Timing of ") + ToQt(corridor.Nodes[node].Name));
    BuildTable();
    auto* clock = Named<WrappedLabel>(this, "lblClock");
    clock->setText(
        QStringLiteral("Seconds are counted from midnight, by the clock of the runs. Green may begin at any such "
                       "second or at a time, 07:00:12: what is above the cycle counts from its beginning."));
    lblProblem_ = Named<WrappedLabel>(this, "lblProblem");
    auto* column = new QVBoxLayout(this);
    column->addWidget(LabelFor(vaTimings_, QStringLiteral("&Timings, one a line; a run takes the one that says most")));
    column->addWidget(vaTimings_, 1);
    column->addWidget(clock);
    column->addWidget(lblProblem_);
    column->addLayout(BuildFoot());
    atFirst_ = Texts();
    ShowProblem();
    resize(600, 320);
    RememberLayout(*this, context.Memory);
}

void frmSignalTimings::BuildTable() {
    vaTimings_ = Named<Table>(this, "vaTimings");
    QStringList heads;
    for (const char* head : Heads) heads += QString::fromLatin1(head);
    vaTimings_->SetColumns(heads);
    vaTimings_->SetEmptyText(QStringLiteral("No timing yet: Add begins one"));
    vaTimings_->setSelectionMode(QAbstractItemView::SingleSelection);
    vaTimings_->setSelectionBehavior(QAbstractItemView::SelectItems);
    vaTimings_->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed |
                                QAbstractItemView::AnyKeyPressed);
    vaTimings_->horizontalHeader()->setSectionsClickable(false);
    vaTimings_->horizontalHeader()->setDefaultSectionSize(UsualColumn);
    for (const Column column : {Cycle, GreenStart, Green})
        vaTimings_->horizontalHeaderItem(column)->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
    const QStringList ways{QStringLiteral("Both"), ToQt(corridor_.Of(Way::Forward).Name),
                           ToQt(corridor_.Of(Way::Back).Name)};
    const QStringList conditions{QStringLiteral("Both"), QStringLiteral("Before"), QStringLiteral("After")};
    QStringList periods{QStringLiteral("Any")};
    for (const std::string& name : periods_) periods += ToQt(name);
    vaTimings_->setItemDelegateForColumn(Of, new ChoiceDelegate(QStringLiteral("Way"), ways, vaTimings_));
    vaTimings_->setItemDelegateForColumn(Condition,
                                         new ChoiceDelegate(QStringLiteral("Condition"), conditions, vaTimings_));
    vaTimings_->setItemDelegateForColumn(Period, new ChoiceDelegate(QStringLiteral("Period"), periods, vaTimings_));
    vaTimings_->BeginFilling();
    for (const SignalTiming& timing : corridor_.Nodes[node_].Timings) AddLine(timing);
    vaTimings_->EndFilling();
    vaTimings_->setSortingEnabled(false);
    if (vaTimings_->rowCount() > 0) vaTimings_->setCurrentCell(0, Cycle);
    Connect(vaTimings_, &QTableWidget::itemChanged, this, context_.Messages, [this] { ShowProblem(); });
    const auto onKey = [&](Qt::Key key, void (frmSignalTimings::*act)()) {
        auto* shortcut = new QShortcut(key, vaTimings_, nullptr, nullptr, Qt::WidgetShortcut);
        Connect(shortcut, &QShortcut::activated, this, context_.Messages, [this, act] { (this->*act)(); });
    };
    onKey(Qt::Key_Insert, &frmSignalTimings::Add);
    onKey(Qt::Key_Delete, &frmSignalTimings::Remove);
}

QLayout* frmSignalTimings::BuildFoot() {
    auto* row = new QHBoxLayout;
    row->addWidget(HelpButton(*this, context_, HelpTopic::Corridor));
    const auto add = [&](const char* name, const QString& caption, const QString& tip, auto act) {
        auto* button = Named<QPushButton>(this, name, caption);
        button->setToolTip(tip);
        Connect(button, &QPushButton::clicked, this, context_.Messages, act);
        row->addWidget(button);
        return button;
    };
    add("btnAdd", QStringLiteral("&Add"), QStringLiteral("A line like the chosen one (Ins)"), [this] { Add(); });
    btnDelete_ = add("btnDelete", QStringLiteral("&Delete"), QStringLiteral("Take the chosen line out (Del)"),
                     [this] { Remove(); });
    row->addStretch();
    btnOk_ = add("btnOK", QStringLiteral("OK"), {}, [this] { accept(); });
    btnOk_->setDefault(true);
    add("btnCancel", QStringLiteral("Cancel"), {}, [this] { QDialog::reject(); });
    return row;
}

void frmSignalTimings::AddLine(const SignalTiming& timing) {
    const QSignalBlocker silence(vaTimings_);  // it is told of as a whole
    const int row = vaTimings_->AddRow();
    const auto add = [&](Column column, int chosen, const QString& text) {
        vaTimings_->SetText(row, column, text);
        vaTimings_->item(row, column)->setData(ChoiceRole, chosen);
    };
    const QString both = QStringLiteral("Both");
    add(Of, timing.Of ? 1 + static_cast<int>(*timing.Of) : 0, timing.Of ? ToQt(corridor_.Of(*timing.Of).Name) : both);
    const bool isBefore = timing.IsBefore.value_or(false);
    add(Condition,
        !timing.IsBefore ? 0
        : isBefore       ? 1
                         : 2,
        !timing.IsBefore ? both
        : isBefore       ? QStringLiteral("Before")
                         : QStringLiteral("After"));
    const auto period = std::ranges::find(periods_, timing.Period);
    const bool isNamed = period != periods_.end();
    add(Period, isNamed ? 1 + static_cast<int>(period - periods_.begin()) : 0,
        isNamed ? ToQt(timing.Period) : QStringLiteral("Any"));
    const bool isBlank = timing.CycleSeconds == 0;
    for (const auto& [column, seconds] :
         {std::pair(Cycle, timing.CycleSeconds), std::pair(GreenStart, timing.GreenStartSeconds),
          std::pair(Green, timing.GreenSeconds)}) {
        vaTimings_->SetNumber(row, column, seconds, isBlank ? QString() : NumberText(seconds));
        vaTimings_->item(row, column)->setData(ChoiceRole, seconds);
    }
}

double frmSignalTimings::SecondsIn(int row, Column column) const {
    const double stored = vaTimings_->item(row, column)->data(ChoiceRole).toDouble();
    const QString text = vaTimings_->Text(row, column);
    // A number that reads as what is there is not typed.
    return text == NumberText(stored) ? stored : SecondsOfText(FromQt(text)).value_or(0);
}

SignalTiming frmSignalTimings::TimingIn(int row) const {
    const auto chosen = [&](Column column) { return vaTimings_->item(row, column)->data(ChoiceRole).toInt(); };
    SignalTiming timing;
    if (chosen(Of) > 0) timing.Of = static_cast<Way>(chosen(Of) - 1);
    if (chosen(Condition) > 0) timing.IsBefore = chosen(Condition) == 1;
    if (chosen(Period) > 0) timing.Period = periods_[static_cast<std::size_t>(chosen(Period) - 1)];
    timing.CycleSeconds = SecondsIn(row, Cycle);
    timing.GreenSeconds = SecondsIn(row, Green);
    timing.GreenStartSeconds = SecondsIn(row, GreenStart);
    if (timing.CycleSeconds > 0 && timing.GreenStartSeconds >= timing.CycleSeconds)
        timing.GreenStartSeconds = std::fmod(timing.GreenStartSeconds, timing.CycleSeconds);
    return timing;
}

Corridor frmSignalTimings::Choice() const {
    Corridor set = corridor_;
    auto& timings = set.Nodes[node_].Timings;
    timings.clear();
    for (int row = 0; row < vaTimings_->rowCount(); ++row) timings.push_back(TimingIn(row));
    return set;
}

void frmSignalTimings::Add() {
    const int current = vaTimings_->currentRow();
    AddLine(current < 0 ? SignalTiming() : TimingIn(current));
    vaTimings_->setCurrentCell(vaTimings_->rowCount() - 1, current < 0 ? Cycle : Of);
    vaTimings_->setFocus();
    ShowProblem();
}

void frmSignalTimings::Remove() {
    if (vaTimings_->currentRow() >= 0) vaTimings_->removeRow(vaTimings_->currentRow());
    ShowProblem();
}

std::vector<QString> frmSignalTimings::Texts() const {
    std::vector<QString> texts;
    for (int row = 0; row < vaTimings_->rowCount(); ++row)
        for (int column = 0; column < Columns; ++column) texts.push_back(vaTimings_->Text(row, column));
    return texts;
}

std::string frmSignalTimings::Problem() const {
    static constexpr std::array<const char*, 3> Missing = {"cycle", "second at which green begins",
                                                           "length of its green"};
    for (int row = 0; row < vaTimings_->rowCount(); ++row) {
        for (const Column column : {Cycle, GreenStart, Green}) {
            const std::string text = FromQt(vaTimings_->Text(row, column).trimmed());
            const std::string line = "line " + std::to_string(row + 1);
            if (text.empty())
                return "The " + std::string(Missing[static_cast<std::size_t>(column - Cycle)]) + " is missing in " +
                       line + ". Type its seconds.";
            const bool mayBeClock = column == GreenStart || text.find(':') == std::string::npos;
            if (!mayBeClock || !SecondsOfText(text))
                return "\"" + text + "\" in " + line + " is no number of seconds. Type it as 90 or 42.5" +
                       (column == GreenStart ? ", or the time as 07:00:12." : ".");
        }
    }
    return ProblemOf(Choice());
}

std::string frmSignalTimings::Remark() const {
    const auto isAlike = [&](int one, int other) {
        const SignalTiming a = TimingIn(one);
        const SignalTiming b = TimingIn(other);
        return a.Of == b.Of && a.IsBefore == b.IsBefore && a.Period == b.Period;
    };
    for (int row = 1; row < vaTimings_->rowCount(); ++row)
        for (int above = 0; above < row; ++above)
            if (isAlike(above, row))
                return "Line " + std::to_string(row + 1) + " never holds: line " + std::to_string(above + 1) +
                       " is for the same runs.";
    return {};
}

void frmSignalTimings::ShowProblem() {
    if (btnOk_ == nullptr) return;
    const std::string problem = Problem();
    const std::string text = problem.empty() ? Remark() : problem;
    lblProblem_->setText(ToQt(text));
    lblProblem_->setVisible(!text.empty());
    btnOk_->setEnabled(problem.empty());
    btnDelete_->setEnabled(vaTimings_->rowCount() > 0);
}

void frmSignalTimings::reject() {
    if (Texts() == atFirst_) return QDialog::reject();
    Guarded(context_.Messages, [this] {
        const std::string problem = Problem();
        const std::string changed = "The timing of " + corridor_.Nodes[node_].Name + " has been changed.\n";
        if (!problem.empty()) {
            if (context_.Messages.ConfirmLoss(changed + problem + "\n\nDo you want to leave it as it was?"))
                QDialog::reject();
            return;
        }
        const MessageAnswer answer = context_.Messages.AskToSave(changed + "Do you want to keep it?");
        if (answer == MessageAnswer::Yes) accept();
        if (answer == MessageAnswer::No) QDialog::reject();
    });
}

}  // namespace vantor
