#include "reports/forms/frmCompareStudies.h"

#include <QHBoxLayout>
#include <QVBoxLayout>
#include <algorithm>

#include "core/Counted.h"
#include "core/Paths.h"
#include "core/StudyFile.h"
#include "core/Text.h"
#include "core/forms/Accessible.h"
#include "core/forms/Guarded.h"
#include "core/forms/HelpButton.h"
#include "core/forms/Named.h"
#include "core/forms/WindowLayout.h"
#include "reports/forms/SavePdf.h"
#include "reports/modReports.h"

namespace vantor {

frmCompareStudies::frmCompareStudies(AppContext& context)
    : context_(context), options_(context.State.CurrentStudy.Options) {
    setObjectName(QStringLiteral("frmCompareStudies"));
    setWindowTitle(QStringLiteral("Compare Studies"));
    setWindowFlag(Qt::WindowMaximizeButtonHint);
    picReport_ = Named<ReportPagesView>(this, "picReport");
    SetAccessibleRole(*picReport_, QAccessible::Document);
    picReport_->setAccessibleName(QStringLiteral("Pages of the comparison"));
    auto* middle = new QHBoxLayout;
    middle->addLayout(BuildList());
    middle->addWidget(picReport_, 1);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(middle, 1);
    layout->addLayout(BuildButtons());
    const Study& study = context.State.CurrentStudy;
    const std::string name(Trim(study.Record.StudyName));
    if (study.Record.RunCount > 0)
        Add({StudyGroupFolder(context.State), name.empty() ? "This study" : name, study, false});
    ShowDocument();
    lstStudies_->setFocus();
    resize(1080, 760);
    RememberLayout(*this, context.Memory);
}

QLayout* frmCompareStudies::BuildList() {
    lstStudies_ = Named<QListWidget>(this, "lstStudies");
    lstStudies_->setFixedWidth(240);
    lstStudies_->setWordWrap(true);
    const auto button = [&](const char* name, const char* caption, const char* tip, auto action) {
        auto* made = Named<QPushButton>(this, name, QString::fromLatin1(caption));
        made->setToolTip(QString::fromLatin1(tip));
        made->setAutoDefault(false);
        Connect(made, &QPushButton::clicked, this, context_.Messages, action);
        return made;
    };
    auto* column = new QVBoxLayout;
    column->addWidget(LabelFor(lstStudies_, QStringLiteral("Studies, each &against the first")));
    column->addWidget(lstStudies_, 1);
    column->addWidget(button("btnAddStudy", "Add S&tudy...", "Compare with a study file", [this] { AddStudyFile(); }));
    column->addWidget(button("btnAddGroup", "Add Study &Group...", "Compare with all runs of a Study Group's folder",
                             [this] { AddStudyGroup(); }));
    column->addWidget(
        btnFirst_ = button("btnFirst", "Make &First", "Compare the others with this one", [this] { MakeFirst(); }));
    column->addWidget(btnRemove_ = button("btnRemove", "&Remove",
                                          "Take the study out of the comparison; nothing is "
                                          "deleted",
                                          [this] { Remove(); }));
    Connect(lstStudies_, &QListWidget::currentRowChanged, this, context_.Messages, [this](int row) {
        btnRemove_->setEnabled(row >= 0);
        btnFirst_->setEnabled(row > 0);
    });
    return column;
}

QLayout* frmCompareStudies::BuildButtons() {
    BtnSavePdf_ = Named<QPushButton>(this, "BtnSavePdf", QStringLiteral("&Save as PDF..."));
    BtnPrint_ = Named<QPushButton>(this, "BtnPrint", QStringLiteral("&Print..."));
    auto* close = Named<QPushButton>(this, "BtnClose", QStringLiteral("Close"));
    close->setDefault(true);
    for (QPushButton* button : {BtnSavePdf_, BtnPrint_}) button->setAutoDefault(false);
    Connect(BtnSavePdf_, &QPushButton::clicked, this, context_.Messages, [this] { SaveAsPdf(); });
    Connect(BtnPrint_, &QPushButton::clicked, this, context_.Messages,
            [this] { context_.DesktopServices.Print(document_); });
    Connect(close, &QPushButton::clicked, this, context_.Messages, [this] { reject(); });
    auto* row = new QHBoxLayout;
    row->addWidget(HelpButton(*this, context_, HelpTopic::Statistics));
    row->addStretch();
    for (QPushButton* button : {BtnSavePdf_, BtnPrint_, close}) row->addWidget(button);
    return row;
}

void frmCompareStudies::AddStudyFile() {
    const std::string path = context_.DesktopServices.ChooseFileToOpen(
        context_.State.Paths.StudyGroupRootPath, "Compare with a Study", "Studies", {StudyExtension});
    if (path.empty()) return;
    auto study = OpenStudy(context_.Files, FolderOf(path), BaseName(path));
    if (!study) throw RunTimeError(ErrorNumber::FileNotFound, path);
    Add(std::move(*study));
    ShowDocument();
}

void frmCompareStudies::AddStudyGroup() {
    const std::string chosen = context_.DesktopServices.ChooseFolder(context_.State.Paths.StudyGroupRootPath);
    if (chosen.empty()) return;
    Add(OpenStudyGroup(context_.Files, AsFolder(chosen)));
    ShowDocument();
}

void frmCompareStudies::Add(ComparedStudy study) {
    StudyRuns runs;
    study.Contents.Options = options_;  // one way of counting for all
    const bool isWhole = context_.Work.Run(
        "Reading the runs of " + study.Name,
        [&runs, study, settings = context_.State.Settings](FileSystem& files, const Progress& progress) {
            runs = ReadStudyRuns(study.Contents, files, study.Folder, settings, progress);
        });
    if (!isWhole || !runs.IsWhole) return;
    if (runs.Runs.empty())
        return context_.Messages.Tell("There is no run to compare in\n" + study.Folder, MessageIcon::Warning);
    studies_.push_back(ConditionOf(study, std::move(runs)));
}

void frmCompareStudies::Remove() {
    const int row = lstStudies_->currentRow();
    if (row < 0) return;
    studies_.erase(studies_.begin() + row);
    ShowDocument();
}

void frmCompareStudies::MakeFirst() {
    const int row = lstStudies_->currentRow();
    if (row < 1) return;
    std::rotate(studies_.begin(), studies_.begin() + row, studies_.begin() + row + 1);
    ShowDocument();
}

void frmCompareStudies::ShowDocument() {
    lstStudies_->clear();
    for (const Condition& study : studies_) {
        std::vector<std::string> lines = study.Remarks;
        lines.insert(lines.begin(), {study.Name, Counted(study.Runs.size(), "run")});
        new QListWidgetItem(ToQt(Joined(lines, "\n")), lstStudies_);
    }
    lstStudies_->setCurrentRow(static_cast<int>(studies_.size()) - 1);
    btnRemove_->setEnabled(!studies_.empty());
    btnFirst_->setEnabled(studies_.size() > 1);
    document_ = {};
    if (studies_.size() > 1)
        context_.Work.Run("Comparing the studies", [&](FileSystem&, const Progress&) {
            document_ = MakeComparisonReport(CompareConditions(studies_, options_), options_, context_.State.Settings,
                                             context_.Time.Now(), {}, context_.Documents.Measure());
        });
    const QString empty =
        studies_.empty()
            ? QStringLiteral("Add two studies or more to compare them.")
            : QStringLiteral("Add a study or a Study Group to compare with \"%1\".").arg(ToQt(studies_.front().Name));
    picReport_->SetEmptyText(empty);
    picReport_->setAccessibleDescription(document_.Pages.empty() ? empty : QString());
    picReport_->SetDocument(document_);
    for (QPushButton* button : {BtnSavePdf_, BtnPrint_}) button->setEnabled(!document_.Pages.empty());
}

void frmCompareStudies::SaveAsPdf() {
    SavePdf(context_, document_, StudyGroupFolder(context_.State) + WithSafeCharacters(document_.Title),
            "Save Comparison");
}

}  // namespace vantor
