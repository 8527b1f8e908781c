#include "counter/forms/frmUploadSelectTDC.h"

#include <QHBoxLayout>
#include <QSplitter>
#include <QVBoxLayout>

#include "core/Paths.h"
#include "core/RunRecords.h"
#include "core/Text.h"
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

frmUploadSelectTDC::frmUploadSelectTDC(AppContext& context)
    : context_(context), look_(context, [this](const RunsFound& found) { TellRunsInGroups(found); }) {
    setObjectName(QStringLiteral("frmUploadSelectTDC"));
    setWindowTitle(QStringLiteral("Select TDC Data"));

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
    layout->addWidget(Named<QLabel>(
        this, "lblInstructions", QStringLiteral("Choose the folder of the counter files, then the file to process.")));
    layout->addLayout(BuildWaiting());
    layout->addWidget(folders, 1);
    layout->addLayout(BuildButtons());
    resize(820, 500);

    ConnectControls();
    Guarded(context_.Messages, [this] { CountWaitingRuns(); });
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

QWidget* frmUploadSelectTDC::BuildDetails() {
    FrFileDetails_ = Named<CounterStudiesFrame>(this, "FrFileDetails", QStringLiteral("File Details"));
    lblInGroups_ = Named<WrappedLabel>(FrFileDetails_, "lblInGroups");
    FrFileDetails_->layout()->addWidget(lblInGroups_);
    return FrFileDetails_;
}

QLayout* frmUploadSelectTDC::BuildWaiting() {
    lblWaiting_ = Named<QLabel>(this, "lblWaiting");
    btnWaiting_ = Named<QPushButton>(this, "btnWaiting", QStringLiteral("&Go on with them"));
    btnWaiting_->setAutoDefault(false);
    btnWaiting_->setToolTip(QStringLiteral("Name these runs and move them into a Study Group"));
    auto* row = new QHBoxLayout;
    row->addWidget(lblWaiting_);
    row->addWidget(btnWaiting_);
    row->addStretch();
    return row;
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
    Connect(btnWaiting_, &QPushButton::clicked, this, messages, [this] { GoOnWithWaitingRuns(); });
    Connect(BtnSelect_, &QPushButton::clicked, this, messages, [this] { Select(); });
    Connect(BtnCancel_, &QPushButton::clicked, this, messages, [this] { reject(); });
}

void frmUploadSelectTDC::CountWaitingRuns() {
    std::size_t count = 0;
    context_.Work.Run("Counting the runs in Temp", [&count, folder = AsFolder(context_.State.Paths.TempRunsPath)](
                                                       FileSystem& files, const Progress&) {
        count = FilesWithExtension(files, folder, RunExtension).size();
    });
    lblWaiting_->setText(count == 0   ? QStringLiteral("No runs are waiting in Temp.")
                         : count == 1 ? QStringLiteral("1 run is waiting in Temp.")
                                      : QStringLiteral("%1 runs are waiting in Temp.").arg(count));
    btnWaiting_->setEnabled(count > 0);
    btnWaiting_->setAccessibleDescription(lblWaiting_->text());
}

void frmUploadSelectTDC::GoOnWithWaitingRuns() {
    choice_ = {UploadOf::TemporaryRuns, std::nullopt};
    accept();
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
    lblInGroups_->clear();
    look_.Stop();
    if (file != nullptr) look_.LookFor(folder_ + file->Name + CounterFileExtension);
}

void frmUploadSelectTDC::TellRunsInGroups(const RunsFound& found) {
    if (found.InGroups == 0) return;
    constexpr std::size_t GroupsTold = 3;
    lblInGroups_->setText(QStringLiteral("%1 of its %2 runs %3 in Study Groups already: %4")
                              .arg(found.InGroups)
                              .arg(found.All)
                              .arg(found.InGroups == 1 ? QStringLiteral("is") : QStringLiteral("are"),
                                   ToQt(FirstOf(found.Groups, GroupsTold))));
}

void frmUploadSelectTDC::Select() {
    const ListedCounterFile* file = SelectedFile();
    if (file == nullptr) return;
    choice_ = {UploadOf::CounterFile, CounterFileChoice{folder_, file->Name}};
    accept();
}

void frmUploadSelectTDC::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    treTDCPath_->ShowCurrent();
}

}  // namespace vantor
