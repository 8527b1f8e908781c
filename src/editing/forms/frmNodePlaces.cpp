#include "editing/forms/frmNodePlaces.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QSignalBlocker>
#include <algorithm>

#include "core/CurrentRun.h"
#include "core/Numeric.h"
#include "core/StudyFile.h"
#include "core/Text.h"
#include "core/forms/Guarded.h"
#include "core/forms/Named.h"
#include "core/forms/WindowLayout.h"
#include "core/forms/WrappedLabel.h"
#include "editing/NodeEditing.h"

namespace vantor {
namespace {

enum PlaceColumn { DistanceColumn, NameColumn, PositionColumn };
enum RunColumn { RunNameColumn, NowColumn, ThenColumn, HowColumn, RemarkColumn };
constexpr double MostFeet = 10'000'000;

QString HowOf(const NodesPreview& run) {
    if (run.Then == 0) return {};
    if (run.ByPosition == run.Then) return QStringLiteral("by position");
    return run.ByPosition == 0 ? QStringLiteral("by distance") : QStringLiteral("by both");
}

}  // namespace

frmNodePlaces::frmNodePlaces(AppContext& context, Study study, const RunRecord& from, QWidget* parent)
    : QDialog(parent),
      context_(context),
      study_(std::move(study)),
      units_(UnitsOf(context.State)),
      places_(PlacesOf(from)) {
    setObjectName(QStringLiteral("frmNodePlaces"));
    setWindowTitle(QStringLiteral("Nodes for All Runs"));
    auto* column = new QVBoxLayout(this);
    auto* lblPlaces = Named<WrappedLabel>(
        this, "lblPlaces",
        QStringLiteral("The ticked runs get nodes at these places, and no others; each file so far is kept as a "
                       "numbered backup."));
    column->addWidget(lblPlaces);
    BuildPlaces(*column);
    BuildRuns(*column);
    column->addWidget(buttons_ = new TickButtons(*this, context, *vaRuns_, HelpTopic::SpeedProfile));
    ShowPlaces();
    Preview();
    vaPlaces_->setFocus();
    resize(760, 560);
    RememberLayout(*this, context.Memory);
}

void frmNodePlaces::BuildPlaces(QVBoxLayout& column) {
    vaPlaces_ = Named<QTableWidget>(this, "vaPlaces");
    vaPlaces_->setColumnCount(3);
    vaPlaces_->setHorizontalHeaderLabels(
        {QStringLiteral("Distance ") + ToQt(units_.LengthTitle()), QStringLiteral("Name"), QStringLiteral("Position")});
    vaPlaces_->horizontalHeader()->setSectionResizeMode(NameColumn, QHeaderView::Stretch);
    vaPlaces_->verticalHeader()->hide();
    vaPlaces_->setTabKeyNavigation(false);
    vaPlaces_->setAccessibleName(QStringLiteral("Places"));
    auto* btnAdd = Named<QPushButton>(this, "btnAddPlace", QStringLiteral("A&dd Place"));
    btnRemove_ = Named<QPushButton>(this, "btnRemovePlace", QStringLiteral("&Remove Place"));
    for (QPushButton* button : {btnAdd, btnRemove_}) button->setAutoDefault(false);
    auto* row = new QHBoxLayout;
    auto* buttons = new QVBoxLayout;
    buttons->addWidget(btnAdd);
    buttons->addWidget(btnRemove_);
    buttons->addStretch();
    row->addWidget(vaPlaces_, 1);
    row->addLayout(buttons);
    column.addLayout(row, 2);
    MessageBoxes& messages = context_.Messages;
    Connect(vaPlaces_, &QTableWidget::itemChanged, this, messages,
            [this](const QTableWidgetItem* item) { TakePlace(*item); });
    Connect(btnAdd, &QPushButton::clicked, this, messages, [this] { AddPlace(); });
    Connect(btnRemove_, &QPushButton::clicked, this, messages, [this] { RemovePlace(); });
}

void frmNodePlaces::BuildRuns(QVBoxLayout& column) {
    vaRuns_ = Named<TickList>(this, "vaRuns");
    vaRuns_->setAccessibleName(QStringLiteral("Runs"));
    vaRuns_->SetColumns({QStringLiteral("Run"), QStringLiteral("Nodes now"), QStringLiteral("Nodes then"),
                         QStringLiteral("Set"), QStringLiteral("Remarks")});
    vaRuns_->SetEmptyText(QStringLiteral("The study has no runs."));
    column.addWidget(vaRuns_, 3);
}

void frmNodePlaces::ShowPlaces() {
    const QSignalBlocker blocker(vaPlaces_);
    vaPlaces_->setRowCount(static_cast<int>(places_.size()));
    for (int row = 0; row < vaPlaces_->rowCount(); ++row) {
        const NodePlace& place = places_[static_cast<std::size_t>(row)];
        auto* distance = new QTableWidgetItem(QString::number(units_.WholeLength(place.Feet)));
        distance->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
        vaPlaces_->setItem(row, DistanceColumn, distance);
        vaPlaces_->setItem(row, NameColumn, new QTableWidgetItem(ToQt(place.Name)));
        auto* position = new QTableWidgetItem(
            place.At ? QStringLiteral("%1, %2").arg(place.At->Latitude, 0, 'f', 5).arg(place.At->Longitude, 0, 'f', 5)
                     : QStringLiteral("none"));
        position->setFlags(position->flags() & ~Qt::ItemIsEditable);
        vaPlaces_->setItem(row, PositionColumn, position);
    }
    vaPlaces_->resizeColumnToContents(PositionColumn);
    btnRemove_->setEnabled(!places_.empty());
    vaPlaces_->setAccessibleDescription(
        places_.empty() ? QStringLiteral("The run has no nodes: Add Place makes a place for one") : QString());
}

void frmNodePlaces::TakePlace(const QTableWidgetItem& item) {
    const int row = item.row();
    NodePlace& place = places_[static_cast<std::size_t>(row)];
    if (item.column() == NameColumn) {
        place.Name = FirstCharacters(FromQt(item.text().trimmed()), NodeNameWidth);
    } else {
        const auto typed = NumberOfText(FromQt(item.text()));
        const double feet = typed ? units_.FeetOfLength(*typed) : 0;
        if (!(feet > 0) || feet > MostFeet) {
            ShowPlaces();
            return context_.Messages.Tell(
                "The distance of a place is a number above 0, counted from the start of the run.\nType another one, or "
                "remove the place.",
                MessageIcon::Warning);
        }
        // A typed distance has no position.
        if (units_.WholeLength(feet) != units_.WholeLength(place.Feet)) place = {feet, place.Name, std::nullopt};
    }
    std::ranges::stable_sort(places_, {}, &NodePlace::Feet);
    ShowPlaces();
    Preview();
}

void frmNodePlaces::AddPlace() {
    constexpr double Further = 1000;
    constexpr std::size_t MostPlaces = MostNamedNodes - 2;
    if (places_.size() >= MostPlaces) return context_.DesktopServices.Beep();
    const double last = places_.empty() ? 0 : places_.back().Feet;
    places_.push_back({last + units_.FeetOfLength(units_.Metric ? 300 : Further), {}, std::nullopt});
    ShowPlaces();
    Preview();
    vaPlaces_->setCurrentCell(vaPlaces_->rowCount() - 1, DistanceColumn);
    vaPlaces_->setFocus();
    vaPlaces_->editItem(vaPlaces_->currentItem());
}

void frmNodePlaces::RemovePlace() {
    const int row = vaPlaces_->currentRow();
    if (row < 0) return context_.DesktopServices.Beep();
    places_.erase(places_.begin() + row);
    ShowPlaces();
    vaPlaces_->setCurrentCell(std::min(row, vaPlaces_->rowCount() - 1), DistanceColumn);
    Preview();
}

void frmNodePlaces::Preview() {
    context_.Work.Run("Looking where the runs pass these places",
                      [&previews = previews_, study = study_, places = places_, units = units_,
                       folder = StudyGroupFolder(context_.State)](FileSystem& files, const Progress& progress) {
                          previews = PreviewNodes(study, places, files, folder, units, progress);
                      });
    {
        const QSignalBlocker blocker(vaRuns_);
        vaRuns_->BeginFilling();
        vaRuns_->setRowCount(0);
        for (std::size_t index = 0; index < previews_.size(); ++index) AddRun(index);
        vaRuns_->EndFilling();
    }
    vaRuns_->setCurrentCell(0, RunNameColumn);
    buttons_->ShowCount();
}

void frmNodePlaces::AddRun(std::size_t index) {
    const NodesPreview& run = previews_[index];
    const int row = vaRuns_->AddRow();
    const bool canBe = run.Problem.empty() && !run.IsSame;
    vaRuns_->SetText(row, RunNameColumn, ToQt(run.Name));
    if (run.Problem.empty()) {
        vaRuns_->SetNumber(row, NowColumn, run.Now, QString::number(run.Now));
        vaRuns_->SetNumber(row, ThenColumn, run.Then, QString::number(run.Then));
        vaRuns_->SetText(row, HowColumn, HowOf(run));
    }
    std::vector<std::string> remarks = run.OutOfReach;
    if (run.IsSame && remarks.empty()) remarks.emplace_back("has these nodes already");
    if (canBe && run.Now > 0) remarks.emplace_back("its nodes so far are replaced");
    vaRuns_->SetText(row, RemarkColumn, ToQt(run.Problem.empty() ? Joined(remarks, "; ") : run.Problem).simplified());
    // Nodes that a run has are not taken away unasked.
    vaRuns_->SetTick(row, index, canBe ? std::optional(run.Now == 0 && run.OutOfReach.empty()) : std::nullopt);
}

std::vector<std::string> frmNodePlaces::Ticked() const {
    std::vector<std::string> names;
    for (const std::size_t index : vaRuns_->Ticked()) names.push_back(previews_[index].Name);
    return names;
}

void frmNodePlaces::accept() {
    Guarded(context_.Messages, [this] {
        context_.Work.Run("Setting the nodes of the runs",
                          [&written = written_, names = Ticked(), places = places_, units = units_,
                           folder = StudyGroupFolder(context_.State)](FileSystem& files, const Progress& progress) {
                              written = SetNodesOfRuns(files, folder, names, places, units, progress);
                          });
    });
    // After an error or a stop no run has changed.
    if (written_ > 0) QDialog::accept();
}

int AskForNodePlaces(AppContext& context, QWidget* parent) {
    ApplicationState& state = context.State;
    frmNodePlaces dialog(context, state.CurrentStudy, state.CurrentRun, parent);
    if (dialog.exec() != QDialog::Accepted) return 0;
    const std::string name(Trim(state.CurrentRun.Header.RunName));
    if (RunReading reading = ReadCurrentRun(state, context.Files, name); !reading) throw RunTimeError(*reading.Fault);
    const std::string runs = dialog.Written() == 1 ? "1 run has" : std::to_string(dialog.Written()) + " runs have";
    context.Messages.Tell(runs +
                          " nodes at these places now.\nThe file of each as it was is kept beside it, with .bak "
                          "behind its name; Restore in the run details brings it back.");
    return dialog.Written();
}

}  // namespace vantor
