#include "workspace/forms/PrefsPathTab.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>

#include "core/Paths.h"
#include "core/forms/Guarded.h"
#include "core/forms/Named.h"

namespace vantor {

PrefsPathTab::PrefsPathTab(QWidget* parent, AppContext& context) : QWidget(parent), context_(context) {
    setObjectName(QStringLiteral("fraPathOptions"));
    const std::string documents = context.DesktopServices.DocumentsFolder();
    if (!documents.empty()) inDocuments_ = FoldersInDocuments(documents);
    auto* lower = new QHBoxLayout;
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(BuildDocumentsBar());
    layout->addLayout(BuildFolders());
    layout->addLayout(lower, 1);
    lower->addLayout(BuildTree(), 1);
    lower->addLayout(BuildDirections(), 1);
}

QWidget* PrefsPathTab::BuildDocumentsBar() {
    auto* bar = Named<QFrame>(this, "fraDocuments");
    bar->setFrameShape(QFrame::StyledPanel);
    lblDocuments_ =
        Named<QLabel>(bar, "lblDocuments", QStringLiteral("All in one place, easy to find and to back up:"));
    lblDocuments_->setWordWrap(true);
    auto* use = Named<QPushButton>(bar, "cmdUseDocuments", QStringLiteral("Use a &Vantor folder in your documents"));
    use->setToolTip(ToQt(VantorFolder()));
    use->setAutoDefault(false);
    auto* row = new QHBoxLayout(bar);
    row->addWidget(lblDocuments_, 1);
    row->addWidget(use);
    Connect(use, &QPushButton::clicked, this, context_.Messages, [this] { UseDocuments(); });
    bar->setVisible(!inDocuments_[Temp].empty());
    return bar;
}

std::string PrefsPathTab::VantorFolder() const {
    const std::string& temp = inDocuments_[Temp];
    return temp.empty() ? temp : FolderOf(temp.substr(0, temp.size() - 1));
}

void PrefsPathTab::UseDocuments() {
    Mark(nullptr);
    for (std::size_t i = 0; i < FieldCount; ++i) {
        fields_[i]->Put(inDocuments_[i]);
        fields_[i]->Insist();
    }
    usesDocuments_ = true;
    lblDocuments_->setText(QStringLiteral("Runs, studies and counter files will go to %1. OK makes the folders.")
                               .arg(ToQt(VantorFolder())));
}

QLayout* PrefsPathTab::BuildFolders() {
    auto* grid = new QGridLayout;
    AddFolder(*grid, Temp, QStringLiteral("Tempory R&uns Files Path"), QStringLiteral("Where temporary runs are kept"));
    AddFolder(*grid, Root, QStringLiteral("&Study Group Root Path"),
              QStringLiteral("Parent folder of all active Study Groups"));
    AddNextRoot(*grid);
    AddFolder(*grid, FieldData, QStringLiteral("&Field Data Files Path"),
              QStringLiteral("Where counter data files are stored before processing"));
    baseMap_ = new BaseMapField(this, *grid, context_);
    const WorkingPaths& paths = context_.State.Paths;
    fields_[Temp]->Fill(paths.TempRunsPath);
    fields_[Root]->Fill(paths.StudyGroupRootPath);
    fields_[FieldData]->Fill(paths.FieldDataPath);
    ShowNextRoot();
    return grid;
}

void PrefsPathTab::AddFolder(QGridLayout& grid, FieldIndex index, const QString& caption, const QString& purpose) {
    auto* field = new PathField(this, grid, static_cast<int>(index) + 1, caption, purpose);
    fields_[index] = field;
    PathBox* box = field->Box;
    box->OnEntered = [this, box] { Mark(box); };
    box->OnAccepted = [this, box] { Guarded(context_.Messages, [&] { AcceptTyped(*box); }); };
    Connect(field->Browse, &QPushButton::clicked, this, context_.Messages, [this, box] { Browse(*box); });
    Connect(box, &QLineEdit::textChanged, this, context_.Messages, [this] {
        ShowNextRoot();
        if (OnChanged) OnChanged();
    });
}

void PrefsPathTab::AddNextRoot(QGridLayout& grid) {
    lblNextRoot_ = Named<QLabel>(this, "lblNextRoot");
    lblNextRoot_->setWordWrap(true);
    cmdTakeNextRoot_ = Named<QPushButton>(this, "cmdTakeNextRoot", QStringLiteral("Put it into the box"));
    cmdTakeNextRoot_->setAutoDefault(false);
    Connect(cmdTakeNextRoot_, &QPushButton::clicked, this, context_.Messages, [this] {
        PutRoot(context_.State.Settings.StudyGroupRootPath);
        fields_[Root]->Insist();
        fields_[Root]->Box->setFocus();
    });
    const int row = grid.rowCount();
    grid.addWidget(lblNextRoot_, row, 1);
    grid.addWidget(cmdTakeNextRoot_, row, 2, Qt::AlignTop);
}

void PrefsPathTab::ShowNextRoot() {
    const ApplicationState& state = context_.State;
    const std::string& next = state.Settings.StudyGroupRootPath;
    const bool waits = AsFolder(next) != AsFolder(state.Paths.StudyGroupRootPath) &&
                       AsFolder(next) != AsFolder(fields_[Root]->Box->Folder());
    const QString folder = next.empty() ? QStringLiteral("(none)") : ToQt(next);
    lblNextRoot_->setText(QStringLiteral("From the next start: ") + folder);
    cmdTakeNextRoot_->setAccessibleName(QStringLiteral("Put %1 into the box").arg(folder));
    cmdTakeNextRoot_->setToolTip(cmdTakeNextRoot_->accessibleName());
    lblNextRoot_->setVisible(waits);
    cmdTakeNextRoot_->setVisible(waits);
}

QLayout* PrefsPathTab::BuildTree() {
    const std::string& root = context_.State.Paths.StudyGroupRootPath;
    trePrefs_ = Named<FolderTree>(this, "trePrefs");
    trePrefs_->SetRoot(context_.Files, root);
    // With a current folder, coming to the tree by the Tab key chooses none.
    const bool isThere = trePrefs_->SelectFolder(root);
    trePrefs_->OnChosen = [this](const std::string& folder) {
        Guarded(context_.Messages, [&] { TakeFromTree(folder); });
    };
    // A click on the folder that is the current one already.
    Connect(trePrefs_, &QTreeWidget::itemClicked, this, context_.Messages,
            [this] { TakeFromTree(trePrefs_->SelectedFolder()); });

    auto* column = new QVBoxLayout;
    auto* caption = LabelFor(trePrefs_, QStringLiteral("Fo&lders"), "lblPrefsTree");
    if (!isThere) caption->setText(QStringLiteral("The Study Group root folder does not exist."));
    column->addWidget(caption);
    column->addWidget(trePrefs_, 1);
    return column;
}

QLayout* PrefsPathTab::BuildDirections() {
    auto* title = Named<QLabel>(this, "txtQuickDirTitle", QStringLiteral("Quick Directions to Select Paths"));
    QFont bold = title->font();
    bold.setBold(true);
    title->setFont(bold);
    auto* directions = Named<QLabel>(
        this, "txtQuickDirections",
        QStringLiteral(
            "1- Click in the text box of the path you want to change.  The text box will turn yellow.\n"
            "2a- Click on the name of the new path folder on the tree diagram. The name in the text box will change.\n"
            "Or\n"
            "2b- Type the full path name into the text box, then press Enter."));
    directions->setWordWrap(true);
    auto* column = new QVBoxLayout;
    column->addWidget(title);
    column->addWidget(directions);
    column->addStretch();
    return column;
}

void PrefsPathTab::Mark(PathBox* box) {
    if (box == marked_) return;
    if (marked_ != nullptr) marked_->ShowMarked(false);
    marked_ = box;
    if (marked_ != nullptr) marked_->ShowMarked(true);
}

void PrefsPathTab::TakeFromTree(const std::string& folder) {
    if (marked_ != nullptr && !folder.empty()) marked_->setText(ToQt(AsFolder(folder)));
}

void PrefsPathTab::Browse(PathBox& box) {
    Mark(&box);
    TakeFromTree(context_.DesktopServices.ChooseFolder(box.Folder()));
}

void PrefsPathTab::AcceptTyped(PathBox& box) {
    box.setText(ToQt(box.Folder()));
    trePrefs_->SelectFolder(box.Folder());
    Mark(nullptr);
}

bool PrefsPathTab::IsAccepted() const { return std::ranges::all_of(fields_, &PathField::IsAccepted); }

void PrefsPathTab::FocusRefused() {
    const auto refused = std::ranges::find_if_not(fields_, &PathField::IsAccepted);
    if (refused != fields_.end()) (*refused)->Box->setFocus();
}

bool PrefsPathTab::IsToBeMade(const std::string& folder) const {
    return usesDocuments_ && std::ranges::find(inDocuments_, folder) != inDocuments_.end();
}

std::string PrefsPathTab::ForgottenRoot() const {
    return lblNextRoot_->isHidden() || fields_[Root]->IsTouched() ? std::string()
                                                                  : context_.State.Settings.StudyGroupRootPath;
}

bool PrefsPathTab::ChangesRootInUse() const {
    return AsFolder(fields_[Root]->Box->Folder()) != AsFolder(context_.State.Paths.StudyGroupRootPath);
}

void PrefsPathTab::Take(Preferences& preferences) const {
    preferences.Paths.TempRunsPath = fields_[Temp]->Box->Folder();
    preferences.Settings.StudyGroupRootPath = fields_[Root]->Box->Folder();
    preferences.Paths.FieldDataPath = fields_[FieldData]->Box->Folder();
    // Without a Study Group so far, the first study begins in the new place, too.
    const WorkingPaths& inUse = context_.State.Paths;
    if (usesDocuments_ && preferences.Settings.StudyGroupRootPath == inDocuments_[Root] &&
        AsFolder(inUse.LastStudyGroupPath) == AsFolder(inUse.StudyGroupRootPath))
        preferences.Paths.LastStudyGroupPath = inDocuments_[Root];
}

}  // namespace vantor
