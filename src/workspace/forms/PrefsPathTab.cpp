#include "workspace/forms/PrefsPathTab.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "core/Paths.h"
#include "core/Text.h"
#include "core/forms/Guarded.h"
#include "core/forms/Named.h"
#include "core/forms/Theme.h"

namespace vantor {

PrefsPathTab::PrefsPathTab(QWidget* parent, AppContext& context) : QWidget(parent), context_(context) {
    setObjectName(QStringLiteral("fraPathOptions"));
    auto* lower = new QHBoxLayout;
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(BuildFolders());
    layout->addLayout(lower, 1);
    lower->addLayout(BuildTree(), 1);
    lower->addLayout(BuildDirections(), 1);
}

QLayout* PrefsPathTab::BuildFolders() {
    const WorkingPaths& paths = context_.State.Paths;
    auto* grid = new QGridLayout;
    AddFolder(*grid, QStringLiteral("Tempory R&uns Files Path"), paths.TempRunsPath,
              QStringLiteral("Where temporary runs are kept"));
    AddFolder(*grid, QStringLiteral("&Study Group Root Path"), paths.StudyGroupRootPath,
              QStringLiteral("Parent folder of all active Study Groups"));
    AddFolder(*grid, QStringLiteral("&Field Data Files Path"), paths.FieldDataPath,
              QStringLiteral("Where counter data files are stored before processing"));
    return grid;
}

void PrefsPathTab::AddFolder(QGridLayout& grid, const QString& caption, const std::string& folder,
                             const QString& purpose) {
    auto* box = new PathBox(this);
    auto* browse = new QPushButton(QStringLiteral("Browse..."), this);
    auto* hint = new QLabel(this);
    boxes_.push_back(box);
    const auto name = [number = boxes_.size()](const char* role) {
        return QStringLiteral("%1(%2)").arg(QLatin1String(role)).arg(number);
    };
    box->setObjectName(name("txtFilePath"));
    browse->setObjectName(name("cmdBrowse"));
    hint->setObjectName(name("lblFilePath"));
    browse->setAccessibleName(QStringLiteral("Browse for the ") + WithoutAccessKey(caption));
    browse->setAutoDefault(false);

    box->OnEntered = [this, box] { Mark(box); };
    box->OnAccepted = [this, box] { Guarded(context_.Messages, [&] { AcceptTyped(*box); }); };
    Connect(box, &QLineEdit::textChanged, this, context_.Messages,
            [box, hint, purpose] { ShowHint(*box, *hint, purpose); });
    Connect(browse, &QPushButton::clicked, this, context_.Messages, [this, box] { Browse(*box); });
    box->setText(ToQt(folder));

    const int row = grid.rowCount();
    grid.addWidget(LabelFor(box, caption), row, 0);
    grid.addWidget(box, row, 1);
    grid.addWidget(browse, row, 2);
    grid.addWidget(hint, row + 1, 1, 1, 2);
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

void PrefsPathTab::ShowHint(const PathBox& box, QLabel& hint, const QString& purpose) {
    const std::string folder = box.Folder();
    const bool isTooLong = FirstCharacters(folder, PathWidth).size() < folder.size();
    QPalette colours;
    if (isTooLong) colours.setColor(QPalette::WindowText, RedText(colours));
    hint.setPalette(colours);
    hint.setText(isTooLong ? QStringLiteral("Too long: only the first %1 characters are kept.").arg(PathWidth)
                           : purpose);
}

void PrefsPathTab::Take(Preferences& preferences) const {
    preferences.Paths.TempRunsPath = boxes_[0]->Folder();
    preferences.Settings.StudyGroupRootPath = boxes_[1]->Folder();
    preferences.Paths.FieldDataPath = boxes_[2]->Folder();
}

}  // namespace vantor
