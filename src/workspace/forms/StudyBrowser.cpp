#include "workspace/forms/StudyBrowser.h"

#include <QHeaderView>
#include <QVBoxLayout>

#include "core/Paths.h"
#include "core/RunRecords.h"
#include "core/Text.h"
#include "core/forms/Accessible.h"
#include "core/forms/Guarded.h"
#include "core/forms/Named.h"
#include "core/forms/Theme.h"
#include "core/modMain.h"
#include "workspace/forms/DialogParts.h"

namespace vantor {
namespace {

constexpr int StudyRole = Qt::UserRole;

/// A part of a splitter for a control under its heading; without margins of its own.
QWidget* AddPanel(QSplitter* splitter) {
    auto* panel = new QWidget;
    (new QVBoxLayout(panel))->setContentsMargins(0, 0, 0, 0);
    splitter->addWidget(panel);
    return panel;
}

void Fill(QWidget* panel, QLabel* heading, QWidget* control) {
    panel->layout()->addWidget(heading);
    panel->layout()->addWidget(control);
}

}  // namespace

StudyBrowser::StudyBrowser(QWidget* parent, AppContext& context)
    : QSplitter(Qt::Horizontal, parent),
      MissingGroupText(QStringLiteral("The folder of this Study Group does not exist.")),
      context_(context) {
    setObjectName(QStringLiteral("splitGroups"));
    setChildrenCollapsible(false);
    BuildGroups(AddPanel(this));
    auto* lists = Named<QSplitter>(this, "splitStudies");
    lists->setOrientation(Qt::Vertical);
    lists->setChildrenCollapsible(false);
    BuildStudies(AddPanel(lists));
    BuildRuns(AddPanel(lists));
    setSizes({240, 600});
    lists->setSizes({300, 200});
    for (QSplitter* splitter : {static_cast<QSplitter*>(this), lists}) splitter->setHandleWidth(8);
    ListGroup();
}

void StudyBrowser::BuildGroups(QWidget* panel) {
    treStudyGroups_ = Named<FolderTree>(panel, "treStudyGroups");
    Fill(panel, LabelFor(treStudyGroups_, QStringLiteral("Study &Groups")), treStudyGroups_);
    treStudyGroups_->OnChosen = [this](const std::string& folder) {
        Guarded(context_.Messages, [&] {
            group_ = folder;
            ListGroup();
            if (OnGroupChosen) OnGroupChosen();
        });
    };
    treStudyGroups_->SetRoot(context_.Files, context_.State.Paths.StudyGroupRootPath);
}

void StudyBrowser::BuildStudies(QWidget* panel) {
    vaStudies_ = Named<Table>(panel, "vaStudies");
    vaStudies_->horizontalHeader()->setDefaultSectionSize(64);
    vaStudies_->SetColumns({QStringLiteral("Name"), QStringLiteral("Date"), QStringLiteral("Runs"),
                            QStringLiteral("Avg. Control Delay (sec)"), QStringLiteral("LOS")});
    vaStudies_->setSelectionMode(QAbstractItemView::SingleSelection);
    lblStudies_ = LabelFor(vaStudies_, QStringLiteral("S&tudies"), "lblStudies");
    Fill(panel, lblStudies_, vaStudies_);
    Connect(vaStudies_, &QTableWidget::itemSelectionChanged, this, context_.Messages, [this] {
        ShowRuns();
        if (OnStudyChosen) OnStudyChosen();
    });
    Connect(vaStudies_, &QTableWidget::cellDoubleClicked, this, context_.Messages, [this] {
        if (OnStudyOpened) OnStudyOpened();
    });
}

void StudyBrowser::BuildRuns(QWidget* panel) {
    vaStudyRuns_ = Named<Table>(panel, "vaStudyRuns");
    vaStudyRuns_->SetColumns({QStringLiteral("Run"), QStringLiteral("File")});
    vaStudyRuns_->setSelectionMode(QAbstractItemView::SingleSelection);
    Fill(panel, LabelFor(vaStudyRuns_, QStringLiteral("&Runs of the Study")), vaStudyRuns_);
}

void StudyBrowser::ShowGroup(const std::string& folder) {
    const bool isInTree = !folder.empty() && treStudyGroups_->SelectFolder(folder);
    if (!isInTree) treStudyGroups_->setCurrentItem(nullptr);
    group_ = isInTree ? treStudyGroups_->SelectedFolder() : AsFolder(folder);
    ListGroup();
}

void StudyBrowser::ListGroup() {
    QString emptyText = QStringLiteral("There are no studies in this Study Group.");
    std::vector<ListedStudy> studies;
    try {
        context_.Work.Run("Reading the studies of the Study Group",
                          [&studies, group = group_](FileSystem& files, const Progress& progress) {
                              studies = ListStudies(files, group, progress);
                          });
    } catch (const RunTimeError& error) {
        emptyText = ToQt(error.Message());
    }
    vaStudies_->BeginFilling();
    studies_ = std::move(studies);
    if (std::ranges::any_of(studies_, &ListedStudy::IsMissing)) context_.DesktopServices.Beep();
    if (group_.empty())
        emptyText = QStringLiteral("Choose a Study Group.");
    else if (!FolderExists(context_.Files, group_))
        emptyText = MissingGroupText;
    lblStudies_->setText(group_.empty() ? QStringLiteral("S&tudies")
                                        : QStringLiteral("S&tudies in Study Group: %1")
                                              .arg(ToQt(LastComponent(group_)).replace('&', QStringLiteral("&&"))));
    for (const ListedStudy& study : studies_) AddStudyRow(study);
    EndFilling(*vaStudies_, emptyText);
    ShowRuns();
    if (OnStudyChosen) OnStudyChosen();
}

void StudyBrowser::AddStudyRow(const ListedStudy& study) {
    const int row = vaStudies_->AddRow();
    vaStudies_->SetText(row, 0, ToQt(study.Name));
    vaStudies_->item(row, 0)->setData(StudyRole, static_cast<int>(&study - studies_.data()));
    if (!study.Problem.empty()) {
        vaStudies_->item(row, 0)->setIcon(LineIcon(QStringLiteral("missing")));
        vaStudies_->SetText(row, 1, QStringLiteral("Damaged"));
        for (int column : {0, 1})
            SetCellNote(*vaStudies_->item(row, column), ToQt("This study cannot be opened.\n" + study.Problem));
        return;
    }
    const StudyRecord& header = study.Header;
    const bool isGraded = !Trim(header.StudyLOSGrade).empty();
    vaStudies_->SetSorted(row, 1, ToQt(ShortDate(header.StudyDate)), header.StudyDate.Days);
    vaStudies_->SetNumber(row, 2, header.RunCount, QString::number(header.RunCount));
    vaStudies_->SetNumber(row, 3, header.StudyAvgControlDelay,
                          isGraded ? QString::number(header.StudyAvgControlDelay) : QString());
    vaStudies_->SetText(row, 4, ToQt(Trim(header.StudyLOSGrade)));
}

void StudyBrowser::ShowRuns() {
    const ListedStudy* study = Study();
    QString emptyText = QStringLiteral("This study has no runs.");
    vaStudyRuns_->BeginFilling();
    if (study == nullptr)
        emptyText = QStringLiteral("Choose a study to see its runs.");
    else if (!study->Problem.empty())
        emptyText = ToQt("This study cannot be opened.\n" + study->Problem);
    else
        for (const std::string& name : study->RunNames) AddRunRow(name);
    EndFilling(*vaStudyRuns_, emptyText);
}

void StudyBrowser::AddRunRow(const std::string& name) {
    const int row = vaStudyRuns_->AddRow();
    const bool isThere = IsSafeName(name) && FileExists(context_.Files, group_ + name + RunExtension);
    vaStudyRuns_->SetText(row, 0, ToQt(name));
    vaStudyRuns_->SetText(row, 1, isThere ? QString() : QStringLiteral("Missing in this Study Group"));
    if (!isThere) vaStudyRuns_->item(row, 0)->setIcon(LineIcon(QStringLiteral("missing")));
}

void StudyBrowser::SelectStudy(const std::string& name) {
    for (int row = 0; row < vaStudies_->rowCount(); ++row)
        if (EqualIgnoringCase(FromQt(vaStudies_->Text(row, 0)), name)) vaStudies_->selectRow(row);
}

void StudyBrowser::FocusStudies() {
    if (studies_.empty())
        treStudyGroups_->setFocus();
    else
        vaStudies_->setFocus();
}

const ListedStudy* StudyBrowser::Study() const {
    const std::vector<int> rows = vaStudies_->SelectedRows();
    if (rows.empty()) return nullptr;
    const int index = vaStudies_->item(rows.front(), 0)->data(StudyRole).toInt();
    return &studies_[static_cast<std::size_t>(index)];
}

}  // namespace vantor
