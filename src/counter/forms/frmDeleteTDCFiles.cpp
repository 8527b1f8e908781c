#include "counter/forms/frmDeleteTDCFiles.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QShortcut>
#include <QSplitter>
#include <QVBoxLayout>
#include <algorithm>

#include "core/Paths.h"
#include "core/forms/Guarded.h"
#include "core/forms/Named.h"
#include "core/forms/WindowLayout.h"

namespace vantor {

frmDeleteTDCFiles::frmDeleteTDCFiles(AppContext& context) : context_(context) {
    setObjectName(QStringLiteral("frmDeleteTDCFiles"));
    setWindowTitle(QStringLiteral("Select TDC Data Files To Delete"));
    auto* instructions =
        Named<QLabel>(this, "lblInstructions",
                      QStringLiteral("Files that you take off the list, and one still selected, are deleted when "
                                     "you click OK. Cancel deletes nothing."));
    instructions->setWordWrap(true);
    auto* work = Named<QSplitter>(this, "splFiles");
    work->addWidget(BuildList());
    work->addWidget(BuildDetails());
    work->setStretchFactor(0, 4);
    work->setStretchFactor(1, 5);
    work->setChildrenCollapsible(false);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(instructions);
    layout->addWidget(work, 1);
    layout->addLayout(DeletionButtons(*this, context, HelpTopic::DeleteCounterFiles, *frTDCFiles_));
    resize(920, 460);

    Guarded(context_.Messages, [this] { ListFiles(); });
    Connect(&frTDCFiles_->Files(), &Table::currentCellChanged, this, context_.Messages, [this] { ShowStudies(); });
    MakeActive(0);
    frTDCFiles_->Files().setFocus();
    RememberLayout(*this, context_.Memory);
}

QWidget* frmDeleteTDCFiles::BuildList() {
    auto* side = new QWidget(this);
    frTDCFiles_ = new DeletionList(side, "vaSelTDCFile", QStringLiteral(" Files in Field Data Path: "),
                                   {AsFolder(context_.State.Paths.FieldDataPath), CounterFileExtension});
    frTDCFiles_->setObjectName(QStringLiteral("frTDCFiles"));
    frTDCFiles_->setTitle(QStringLiteral("TDC Data Files"));
    Table& files = frTDCFiles_->Files();
    files.SetColumns({QStringLiteral("File Name"), QStringLiteral("Date"), QStringLiteral("Studies")});
    files.SetEmptyText(QStringLiteral("There are no counter files (.tdc) in this folder."));
    files.setSelectionMode(QAbstractItemView::SingleSelection);

    // Enter in the list takes the file off, which Cancel still undoes.
    btnDeleteSelected_ = Named<QPushButton>(side, "btnDeleteSelected", QStringLiteral("&Delete Selected File"));
    btnDeleteSelected_->setDefault(true);
    auto* key = new QShortcut(QKeySequence(Qt::Key_Delete), &files);
    key->setContext(Qt::WidgetShortcut);
    Connect(key, &QShortcut::activated, this, context_.Messages, [this] { TakeOffActive(); });
    Connect(btnDeleteSelected_, &QPushButton::clicked, this, context_.Messages, [this] { TakeOffActive(); });
    auto* layout = new QVBoxLayout(side);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(frTDCFiles_, 1);
    layout->addWidget(btnDeleteSelected_, 0, Qt::AlignLeft);
    return side;
}

QWidget* frmDeleteTDCFiles::BuildDetails() {
    FrFileDetails_ = Named<CounterStudiesFrame>(this, "FrFileDetails", QStringLiteral("TDC Data File Details"));
    lblActiveFile_ = Named<QLabel>(FrFileDetails_, "lblActiveFile");
    lblActiveFile_->setTextFormat(Qt::PlainText);
    static_cast<QVBoxLayout*>(FrFileDetails_->layout())->insertWidget(0, lblActiveFile_);
    return FrFileDetails_;
}

void frmDeleteTDCFiles::ListFiles() {
    listed_ = ListCounterFiles(context_.Work, frTDCFiles_->Folder(), context_.End);
    Table& files = frTDCFiles_->Files();
    files.BeginFilling();
    for (const ListedCounterFile& file : listed_) {
        const int row = frTDCFiles_->AddFile(file.Name);
        files.SetSorted(row, 1, ToQt(ShortDate(file.Modified)), file.Modified.Days);
        SetStudyCount(files, row, 2, file);
    }
    frTDCFiles_->EndFilling();
}

void frmDeleteTDCFiles::MakeActive(int row) {
    Table& files = frTDCFiles_->Files();
    // Not selected: OK would delete it.
    files.clearSelection();
    files.setCurrentCell(std::min(row, files.rowCount() - 1), 0, QItemSelectionModel::NoUpdate);
    ShowStudies();
}

void frmDeleteTDCFiles::TakeOffActive() {
    const int row = frTDCFiles_->Files().currentRow();
    if (row < 0) return;
    frTDCFiles_->TakeOff({row});
    MakeActive(row);
}

void frmDeleteTDCFiles::ShowStudies() {
    const int row = frTDCFiles_->Files().currentRow();
    btnDeleteSelected_->setEnabled(row >= 0);
    const std::string name = row < 0 ? std::string() : frTDCFiles_->NameAt(row);
    const auto file = std::find_if(listed_.begin(), listed_.end(),
                                   [&](const ListedCounterFile& listed) { return row >= 0 && listed.Name == name; });
    FrFileDetails_->ShowFile(file == listed_.end() ? nullptr : &*file);
    lblActiveFile_->setText(QStringLiteral("File: %1").arg(ToQt(name)));
    lblActiveFile_->setVisible(row >= 0);
}

}  // namespace vantor
