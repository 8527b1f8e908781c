#include "workspace/forms/frmRunSelect.h"

#include <QHeaderView>
#include <QVBoxLayout>
#include <algorithm>

#include "core/Paths.h"
#include "core/RunFile.h"
#include "core/StudyFile.h"
#include "core/forms/Accessible.h"
#include "core/forms/Guarded.h"
#include "core/forms/Named.h"
#include "core/forms/Theme.h"
#include "core/forms/WindowLayout.h"
#include "workspace/StudyWorkspace.h"
#include "workspace/forms/DialogParts.h"

namespace vantor {
namespace {

constexpr int RunRole = Qt::UserRole;

}  // namespace

frmRunSelect::frmRunSelect(AppContext& context)
    : context_(context),
      cmbStudyGroup_(Named<QComboBox>(this, "cmbStudyGroup")),
      vaSelRuns_(Named<Table>(this, "vaSelRuns")),
      BtnAdd_(Named<QPushButton>(this, "BtnAdd", QStringLiteral("&Add"))),
      BtnSelectAll_(Named<QPushButton>(this, "BtnSelectAll", QStringLiteral("Select A&ll"))) {
    setObjectName(QStringLiteral("frmRunSelect"));
    setWindowTitle(QStringLiteral("Add Runs"));
    BtnAdd_->setDefault(true);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(BuildGroupChooser());
    layout->addLayout(BuildRuns(), 1);
    layout->addLayout(DialogFoot(*this, context, HelpTopic::RunSelect, {BtnSelectAll_, BtnAdd_}));
    setTabOrder(BtnSelectAll_, BtnAdd_);

    Connect(cmbStudyGroup_, &QComboBox::currentIndexChanged, this, context.Messages, [this] { ListGroup(); });
    Connect(vaSelRuns_, &QTableWidget::itemSelectionChanged, this, context.Messages,
            [this] { BtnAdd_->setEnabled(!ChosenRuns().empty()); });
    Connect(vaSelRuns_, &QTableWidget::cellDoubleClicked, this, context.Messages, [this] { AddChosen(); });
    Connect(BtnSelectAll_, &QPushButton::clicked, this, context.Messages, [this] {
        vaSelRuns_->selectAll();
        vaSelRuns_->setFocus();
    });
    Connect(BtnAdd_, &QPushButton::clicked, this, context.Messages, [this] { AddChosen(); });
    ListGroup();
    vaSelRuns_->setFocus();
    resize(1040, 540);
    RememberLayout(*this, context.Memory);
}

QLayout* frmRunSelect::BuildGroupChooser() {
    const ApplicationState& state = context_.State;
    const auto add = [this](const std::string& folder) {
        cmbStudyGroup_->addItem(LineIcon(QStringLiteral("study-group")), ToQt(LastComponent(folder)), ToQt(folder));
        cmbStudyGroup_->setItemData(cmbStudyGroup_->count() - 1, ToQt(folder), Qt::ToolTipRole);
    };
    const std::string current = StudyGroupFolder(state);
    for (const std::string& group : ListStudyGroups(context_.Files, state.Paths.StudyGroupRootPath)) {
        add(group);
        if (IsSameFolder(group, current)) cmbStudyGroup_->setCurrentIndex(cmbStudyGroup_->count() - 1);
    }
    if (!current.empty() && !IsSameFolder(Group(), current)) {
        add(current);
        cmbStudyGroup_->setCurrentIndex(cmbStudyGroup_->count() - 1);
    }
    cmbStudyGroup_->setEnabled(state.CurrentStudy.Record.RunCount == 0);
    cmbStudyGroup_->setToolTip(
        cmbStudyGroup_->isEnabled()
            ? QStringLiteral("The Study Group that the runs of this study lie in")
            : QStringLiteral("All runs of a study lie in one Study Group, and this study has runs already"));

    auto* row = new QHBoxLayout;
    row->addWidget(LabelFor(cmbStudyGroup_, QStringLiteral("Study &Group")));
    row->addWidget(cmbStudyGroup_, 1);
    return row;
}

QLayout* frmRunSelect::BuildRuns() {
    // Columns grow to their texts from here.
    vaSelRuns_->horizontalHeader()->setDefaultSectionSize(48);
    vaSelRuns_->SetColumns(RunColumns(UnitsOf(context_.State)) + QStringList{QStringLiteral("Status")});
    vaSelRuns_->setSelectionMode(QAbstractItemView::ExtendedSelection);
    // The status is read with the name; the notes take the room that is left.
    vaSelRuns_->horizontalHeader()->moveSection(vaSelRuns_->columnCount() - 1, 1);
    auto* column = new QVBoxLayout;
    column->addWidget(LabelFor(vaSelRuns_, QStringLiteral("&Runs in the Study Group")));
    column->addWidget(vaSelRuns_);
    return column;
}

std::string frmRunSelect::Group() const { return FromQt(cmbStudyGroup_->currentData().toString()); }

void frmRunSelect::ListGroup() {
    QString emptyText = QStringLiteral(
        "There are no runs in this Study Group.\nProcess the runs in the temp folder first and move them here.");
    std::vector<ListedRun> runs;
    try {
        context_.Work.Run("Reading the runs of the Study Group",
                          [&runs, group = Group()](FileSystem& files, const Progress& progress) {
                              runs = ListRuns(files, group, progress);
                          });
    } catch (const RunTimeError& error) {
        emptyText = ToQt(error.Message());
    }
    runs_ = std::move(runs);
    inStudy_ = RunsByKey(context_.State.CurrentStudy);
    vaSelRuns_->BeginFilling();
    const Units units = UnitsOf(context_.State);
    for (const ListedRun& run : runs_) AddRow(run, units);
    EndFilling(*vaSelRuns_, emptyText);
    vaSelRuns_->resizeColumnToContents(vaSelRuns_->columnCount() - 1);
    BtnSelectAll_->setEnabled(std::any_of(runs_.begin(), runs_.end(),
                                          [this](const ListedRun& run) { return HindranceOf(run).Word.empty(); }));
    BtnAdd_->setEnabled(false);
}

frmRunSelect::Hindrance frmRunSelect::HindranceOf(const ListedRun& run) const {
    if (inStudy_.contains(RunKey(run.Name))) return {"In study", "This run is in the study already."};
    if (!run.Problem.empty()) return {"Not usable", "This run cannot be added.\n" + run.Problem};
    return {};
}

void frmRunSelect::AddRow(const ListedRun& run, const Units& units) {
    const int row = vaSelRuns_->AddRow();
    const int status = vaSelRuns_->columnCount() - 1;
    const Hindrance hindrance = HindranceOf(run);
    if (run.Problem.empty()) {
        SetRunRow(*vaSelRuns_, row, run.Header, units);
    } else {
        for (int column = 0; column < status; ++column) vaSelRuns_->SetText(row, column, {});
        vaSelRuns_->SetText(row, 0, ToQt(run.Name));
    }
    vaSelRuns_->item(row, 0)->setData(RunRole, static_cast<int>(&run - runs_.data()));
    vaSelRuns_->SetText(row, status, ToQt(hindrance.Word));
    QTableWidgetItem* mark = vaSelRuns_->item(row, status);
    if (!hindrance.Word.empty()) {
        if (!run.Problem.empty()) mark->setIcon(LineIcon(QStringLiteral("missing")));
        for (int column = 0; column <= status; ++column) {
            vaSelRuns_->item(row, column)->setFlags(Qt::NoItemFlags);
            SetCellNote(*vaSelRuns_->item(row, column), ToQt(hindrance.Reason));
        }
    } else if (run.IsVer1) {
        mark->setText(QStringLiteral("Version 1"));
        mark->setIcon(LineIcon(QStringLiteral("refresh")));
        SetCellNote(*mark, QStringLiteral("A version 1 run file. It is converted when the run is added."));
    }
}

std::vector<ListedRun> frmRunSelect::ChosenRuns() const {
    std::vector<ListedRun> chosen;
    for (const int row : vaSelRuns_->SelectedRows())
        chosen.push_back(runs_[static_cast<std::size_t>(vaSelRuns_->item(row, 0)->data(RunRole).toInt())]);
    return chosen;
}

bool frmRunSelect::IsConverted(const std::string& name) {
    const bool asks = context_.State.Settings.AutoConvertVer1 == 0;
    if (asks && !context_.Messages.Confirm("Do you want to convert Ver 1 run file " + name + " to a Ver 2 run file?"))
        return false;
    bool isConverted = false;
    // A run that cannot be converted does not keep the others from being added.
    Guarded(context_.Messages,
            [&] { isConverted = ConvertVer1RunFile(context_.Files, context_.Messages, Group(), name).has_value(); });
    if (asks && isConverted)
        context_.Messages.Tell("Ver 1 run file " + name + " (.rdf) converted to a Ver 2 run file (.rd2).\n" +
                               "The original .rdf file was renamed to an .rdx file.");
    return isConverted;
}

void frmRunSelect::AddChosen() {
    std::vector<std::string> names;
    for (const ListedRun& run : ChosenRuns())
        if (!run.IsVer1 || IsConverted(run.Name)) names.push_back(run.Name);
    if (AddRuns(context_.State, names) == 0) {
        ListGroup();
        return;
    }
    if (cmbStudyGroup_->isEnabled()) context_.State.Paths.LastStudyGroupPath = Group();
    accept();
}

}  // namespace vantor
