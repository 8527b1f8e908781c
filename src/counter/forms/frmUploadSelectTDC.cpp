#include "counter/forms/frmUploadSelectTDC.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QSplitter>
#include <QVBoxLayout>

#include "core/Paths.h"
#include "core/forms/Guarded.h"
#include "core/forms/Named.h"
#include "core/forms/WindowLayout.h"
#include "core/modMain.h"

namespace vantor {
namespace {

constexpr int FileIndexRole = Qt::UserRole;

/// The root of the drive that a path lies on.
std::string RootOf(const std::string& path) { return path.substr(0, path.find(PathSeparator) + 1); }

class WaitCursor {
public:
    WaitCursor() { QApplication::setOverrideCursor(Qt::WaitCursor); }
    ~WaitCursor() { QApplication::restoreOverrideCursor(); }
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;
};

}  // namespace

frmUploadSelectTDC::frmUploadSelectTDC(AppContext& context) : context_(context) {
    setObjectName(QStringLiteral("frmUploadSelectTDC"));
    setWindowTitle(tr("Select TDC Data"));

    auto* folders = Named<QSplitter>(this, "splFolders");
    folders->addWidget(BuildFolders());
    auto* files = Named<QSplitter>(folders, "splFiles");
    files->setOrientation(Qt::Vertical);
    files->addWidget(BuildFiles());
    files->addWidget(BuildDetails());
    folders->setStretchFactor(0, 2);
    folders->setStretchFactor(1, 3);
    for (QSplitter* splitter : {files, folders}) splitter->setChildrenCollapsible(false);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(Named<QLabel>(this, "lblInstructions",
                                    tr("Choose the folder of the counter files, then the file to process.")));
    layout->addWidget(folders, 1);
    layout->addLayout(BuildButtons());
    resize(820, 500);

    ConnectControls();
    Guarded(context_.Messages, [this] { OpenFieldDataFolder(); });
    vaSelTDCFile_->setFocus();
    RememberLayout(*this, context_.Memory);
}

QWidget* frmUploadSelectTDC::BuildFolders() {
    auto* side = new QWidget(this);
    treTDCPath_ = Named<FolderTree>(side, "treTDCPath");
    auto* layout = new QVBoxLayout(side);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(LabelFor(treTDCPath_, tr("F&older")));
    layout->addWidget(treTDCPath_);
    return side;
}

QWidget* frmUploadSelectTDC::BuildFiles() {
    auto* side = new QWidget(this);
    vaSelTDCFile_ = Named<Table>(side, "vaSelTDCFile");
    vaSelTDCFile_->SetColumns({tr("File Name"), tr("Studies")});
    vaSelTDCFile_->SetEmptyText(tr("There are no counter files (.tdc) in this folder."));
    vaSelTDCFile_->setSelectionMode(QAbstractItemView::SingleSelection);
    auto* layout = new QVBoxLayout(side);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(LabelFor(vaSelTDCFile_, tr("Counter &files")));
    layout->addWidget(vaSelTDCFile_);
    return side;
}

QGroupBox* frmUploadSelectTDC::BuildDetails() {
    auto* frame = Named<QGroupBox>(this, "FrFileDetails", tr("File Details"));
    vaStudyInfo_ = Named<Table>(frame, "vaStudyInfo");
    vaStudyInfo_->setAccessibleName(tr("Studies in the selected file"));
    vaStudyInfo_->SetColumns({tr("Study"), tr("Site Code"), tr("Date / Time"), tr("Runs")});
    lblProblem_ = Named<QLabel>(frame, "lblProblem");
    lblProblem_->setWordWrap(true);
    lblProblem_->setTextFormat(Qt::PlainText);
    lblProblem_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto* layout = new QVBoxLayout(frame);
    layout->addWidget(vaStudyInfo_, 1);
    layout->addWidget(lblProblem_);
    return frame;
}

QLayout* frmUploadSelectTDC::BuildButtons() {
    cmdHelp_ = Named<QPushButton>(this, "cmdHelp", tr("Help"));
    cmdHelp_->setShortcut(Qt::Key_F1);
    BtnSelect_ = Named<QPushButton>(this, "BtnSelect", tr("&Select"));
    BtnCancel_ = Named<QPushButton>(this, "BtnCancel", tr("Cancel"));
    for (QPushButton* button : {cmdHelp_, BtnCancel_}) button->setAutoDefault(false);
    BtnSelect_->setDefault(true);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(cmdHelp_);
    buttons->addStretch();
    buttons->addWidget(BtnSelect_);
    buttons->addWidget(BtnCancel_);
    return buttons;
}

void frmUploadSelectTDC::ConnectControls() {
    MessageBoxes& messages = context_.Messages;
    treTDCPath_->OnChosen = [this, &messages](const std::string& folder) {
        Guarded(messages, [&] { ListFolder(folder); });
    };
    Connect(vaSelTDCFile_, &Table::itemSelectionChanged, this, messages, [this] { ShowStudies(); });
    Connect(vaSelTDCFile_, &Table::itemDoubleClicked, this, messages, [this] { Select(); });
    Connect(BtnSelect_, &QPushButton::clicked, this, messages, [this] { Select(); });
    Connect(BtnCancel_, &QPushButton::clicked, this, messages, [this] { reject(); });
    Connect(cmdHelp_, &QPushButton::clicked, this, messages,
            [this] { ShowHelp(context_.DesktopServices, context_.Files); });
}

void frmUploadSelectTDC::OpenFieldDataFolder() {
    // The tree begins at the drive's root, so that every folder can be reached.
    const std::string folder = AsFolder(context_.State.Paths.FieldDataPath);
    treTDCPath_->SetRoot(context_.Files, RootOf(folder));
    if (!treTDCPath_->SelectFolder(folder) && FolderExists(context_.Files, folder)) {
        treTDCPath_->SetRoot(context_.Files, folder);
        treTDCPath_->SelectFolder(folder);
    }
    ListFolder(folder);
}

void frmUploadSelectTDC::ListFolder(const std::string& folder) {
    const WaitCursor waiting;
    folder_ = folder;
    listed_.clear();
    vaSelTDCFile_->BeginFilling();
    for (const FileInfo& info : FilesWithExtension(context_.Files, folder, CounterFileExtension)) {
        listed_.push_back(Counted(folder, BaseName(info.Name)));
        ShowFile(listed_.back(), static_cast<int>(listed_.size()) - 1);
    }
    vaSelTDCFile_->EndFilling();
    if (!listed_.empty()) vaSelTDCFile_->selectRow(0);
    ShowStudies();
}

frmUploadSelectTDC::ListedFile frmUploadSelectTDC::Counted(const std::string& folder, const std::string& name) const {
    ListedFile file{name, {}, {}};
    try {
        file.Studies = CounterStudies(context_.Files, folder + name + CounterFileExtension, context_.End);
    } catch (const RunTimeError& error) {
        file.Problem = error.Message();
    }
    return file;
}

void frmUploadSelectTDC::ShowFile(const ListedFile& file, int index) {
    const int row = vaSelTDCFile_->AddRow();
    vaSelTDCFile_->SetText(row, 0, ToQt(file.Name + " "));
    vaSelTDCFile_->item(row, 0)->setData(FileIndexRole, index);
    const auto count = static_cast<int>(file.Studies.size());
    vaSelTDCFile_->SetNumber(row, 1, count, file.Problem.empty() ? QString::number(count) : QString());
    for (int column = 0; column < 2; ++column) vaSelTDCFile_->item(row, column)->setToolTip(ToQt(file.Problem));
}

const frmUploadSelectTDC::ListedFile* frmUploadSelectTDC::SelectedFile() const {
    const auto rows = vaSelTDCFile_->SelectedRows();
    if (rows.empty()) return nullptr;
    return &listed_[static_cast<std::size_t>(vaSelTDCFile_->item(rows.front(), 0)->data(FileIndexRole).toInt())];
}

void frmUploadSelectTDC::ShowStudies() {
    const ListedFile* file = SelectedFile();
    BtnSelect_->setEnabled(file != nullptr);
    lblProblem_->setText(file == nullptr ? QString() : ToQt(file->Problem));
    lblProblem_->setVisible(!lblProblem_->text().isEmpty());
    vaStudyInfo_->SetEmptyText(file == nullptr ? tr("Choose a counter file to see its studies.")
                                               : tr("No study could be counted in this file."));
    vaStudyInfo_->BeginFilling();
    if (file != nullptr)
        for (const CounterStudy& study : file->Studies) {
            const int row = vaStudyInfo_->AddRow();
            vaStudyInfo_->SetText(row, 0, ToQt(study.Study));
            vaStudyInfo_->SetText(row, 1, ToQt(study.SiteCode));
            vaStudyInfo_->SetText(row, 2, ToQt(study.Date + "  " + study.Time));
            vaStudyInfo_->SetNumber(row, 3, study.Runs, QString::number(study.Runs));
        }
    vaStudyInfo_->EndFilling();
}

void frmUploadSelectTDC::Select() {
    const ListedFile* file = SelectedFile();
    if (file == nullptr) return;
    context_.State.ChosenCounterFileFolder = folder_;
    context_.State.ChosenCounterFileName = file->Name;
    context_.State.CounterFileChosen = true;
    accept();
}

void frmUploadSelectTDC::reject() {
    context_.State.CounterFileChosen = false;
    QDialog::reject();
}

void frmUploadSelectTDC::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    if (QTreeWidgetItem* item = treTDCPath_->currentItem())
        treTDCPath_->scrollToItem(item, QAbstractItemView::PositionAtCenter);
}

}  // namespace vantor
