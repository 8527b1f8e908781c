#include "counter/forms/frmUploadSelectTDC.h"

#include <QHBoxLayout>
#include <QSplitter>
#include <QVBoxLayout>

#include "core/Paths.h"
#include "core/forms/Guarded.h"
#include "core/forms/HelpButton.h"
#include "core/forms/Named.h"
#include "core/forms/WindowLayout.h"
#include "core/modMain.h"

namespace vantor {
namespace {

constexpr int FileIndexRole = Qt::UserRole;

/// The root of the drive that a path lies on.
std::string RootOf(const std::string& path) { return path.substr(0, path.find(PathSeparator) + 1); }

}  // namespace

frmUploadSelectTDC::frmUploadSelectTDC(AppContext& context) : context_(context) {
    setObjectName(QStringLiteral("frmUploadSelectTDC"));
    setWindowTitle(QStringLiteral("Select TDC Data"));

    auto* folders = Named<QSplitter>(this, "splFolders");
    folders->addWidget(BuildFolders());
    auto* files = Named<QSplitter>(folders, "splFiles");
    files->setOrientation(Qt::Vertical);
    files->addWidget(BuildFiles());
    FrFileDetails_ = Named<CounterStudiesFrame>(files, "FrFileDetails", QStringLiteral("File Details"));
    files->addWidget(FrFileDetails_);
    folders->setStretchFactor(0, 2);
    folders->setStretchFactor(1, 3);
    for (QSplitter* splitter : {files, folders}) splitter->setChildrenCollapsible(false);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(Named<QLabel>(
        this, "lblInstructions", QStringLiteral("Choose the folder of the counter files, then the file to process.")));
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
    layout->addWidget(LabelFor(treTDCPath_, QStringLiteral("F&older")));
    layout->addWidget(treTDCPath_);
    return side;
}

QWidget* frmUploadSelectTDC::BuildFiles() {
    auto* side = new QWidget(this);
    vaSelTDCFile_ = Named<Table>(side, "vaSelTDCFile");
    vaSelTDCFile_->SetColumns({QStringLiteral("File Name"), QStringLiteral("Studies")});
    vaSelTDCFile_->SetEmptyText(QStringLiteral("There are no counter files (.tdc) in this folder."));
    vaSelTDCFile_->setSelectionMode(QAbstractItemView::SingleSelection);
    auto* layout = new QVBoxLayout(side);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(LabelFor(vaSelTDCFile_, QStringLiteral("Counter &files")));
    layout->addWidget(vaSelTDCFile_);
    return side;
}

QLayout* frmUploadSelectTDC::BuildButtons() {
    BtnSelect_ = Named<QPushButton>(this, "BtnSelect", QStringLiteral("&Select"));
    BtnCancel_ = Named<QPushButton>(this, "BtnCancel", QStringLiteral("Cancel"));
    BtnCancel_->setAutoDefault(false);
    BtnSelect_->setDefault(true);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(HelpButton(*this, context_, HelpTopic::SelectCounterFile));
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
    folder_ = folder;
    vaSelTDCFile_->BeginFilling();
    listed_ = {};
    listed_ = ListCounterFiles(context_.Work, folder, context_.End);
    for (std::size_t index = 0; index < listed_.size(); ++index) {
        const int row = vaSelTDCFile_->AddRow();
        vaSelTDCFile_->SetText(row, 0, ToQt(listed_[index].Name + " "));
        vaSelTDCFile_->item(row, 0)->setData(FileIndexRole, static_cast<int>(index));
        SetStudyCount(*vaSelTDCFile_, row, 1, listed_[index]);
    }
    vaSelTDCFile_->EndFilling();
    if (!listed_.empty()) vaSelTDCFile_->selectRow(0);
    ShowStudies();
}

const ListedCounterFile* frmUploadSelectTDC::SelectedFile() const {
    const auto rows = vaSelTDCFile_->SelectedRows();
    if (rows.empty()) return nullptr;
    return &listed_[static_cast<std::size_t>(vaSelTDCFile_->item(rows.front(), 0)->data(FileIndexRole).toInt())];
}

void frmUploadSelectTDC::ShowStudies() {
    const ListedCounterFile* file = SelectedFile();
    BtnSelect_->setEnabled(file != nullptr);
    FrFileDetails_->ShowFile(file);
}

void frmUploadSelectTDC::Select() {
    const ListedCounterFile* file = SelectedFile();
    if (file == nullptr) return;
    choice_ = {folder_, file->Name};
    accept();
}

void frmUploadSelectTDC::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    treTDCPath_->ShowCurrent();
}

}  // namespace vantor
