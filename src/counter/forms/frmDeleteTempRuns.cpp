#include "counter/forms/frmDeleteTempRuns.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

#include "core/Numeric.h"
#include "core/Paths.h"
#include "core/RunFile.h"
#include "core/forms/Accessible.h"
#include "core/forms/Guarded.h"
#include "core/forms/Named.h"
#include "core/forms/WindowLayout.h"

namespace vantor {

frmDeleteTempRuns::frmDeleteTempRuns(AppContext& context)
    : context_(context),
      frRunList_(new DeletionList(this, "vaSelRuns", tr(" Runs in Temp Path: "),
                                  {AsFolder(context.State.Paths.TempRunsPath), Ver1RunExtension})) {
    setObjectName(QStringLiteral("frmDeleteTempRuns"));
    setWindowTitle(tr("Select Temp Runs To Delete"));
    frRunList_->setObjectName(QStringLiteral("frRunList"));
    Table& runs = frRunList_->Files();
    runs.SetColumns({tr("Name"), tr("Date"), tr("Time"), tr("Length ") + ToQt(UnitsOf(context_.State).LengthTitle()),
                     tr("Duration (s)")});
    runs.SetEmptyText(tr("There are no version 1 runs (.rdf) in this folder."));

    auto* instructions = Named<QLabel>(this, "lblInstructions",
                                       tr("Runs that you take off the list, and those still selected, are deleted "
                                          "when you click OK. Cancel deletes nothing."));
    instructions->setWordWrap(true);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(instructions);
    layout->addWidget(frRunList_, 1);
    layout->addLayout(BuildListButtons());
    layout->addLayout(DeletionButtons(*this, context, HelpTopic::DeleteRuns, *frRunList_));
    resize(760, 460);
    Guarded(context_.Messages, [this] { ListRuns(); });
    runs.setFocus();
    RememberLayout(*this, context_.Memory);
}

QLayout* frmDeleteTempRuns::BuildListButtons() {
    auto* selectAll = Named<QPushButton>(this, "btnSelectAll", tr("Select &All"));
    // Enter in the list takes runs off, which Cancel still undoes.
    auto* takeOff = Named<QPushButton>(this, "BtnDelete", tr("&Delete Selected Runs"));
    takeOff->setDefault(true);
    Table* runs = &frRunList_->Files();
    auto* key = new QShortcut(QKeySequence(Qt::Key_Delete), runs);
    key->setContext(Qt::WidgetShortcut);
    Connect(key, &QShortcut::activated, this, context_.Messages, [takeOff] { takeOff->click(); });
    Connect(selectAll, &QPushButton::clicked, this, context_.Messages, [runs] {
        runs->selectAll();
        runs->setFocus();
    });
    Connect(takeOff, &QPushButton::clicked, this, context_.Messages,
            [this, runs] { frRunList_->TakeOff(runs->SelectedRows()); });
    auto* row = new QHBoxLayout;
    row->addWidget(selectAll);
    row->addWidget(takeOff);
    row->addStretch();
    return row;
}

void frmDeleteTempRuns::ListRuns() {
    frRunList_->Files().BeginFilling();
    for (const FileInfo& info : FilesWithExtension(context_.Files, frRunList_->Folder(), Ver1RunExtension)) {
        const std::string name = BaseName(info.Name);
        ShowRun(frRunList_->AddFile(name), name);
    }
    frRunList_->EndFilling();
}

void frmDeleteTempRuns::ShowRun(int row, const std::string& name) {
    Table& runs = frRunList_->Files();
    try {
        const RunHeader header = ReadVer1Run(context_.Files, frRunList_->Folder(), name).Header;
        runs.SetSorted(row, 1, ToQt(ShortDate(header.RunDate)), header.RunDate.Days);
        runs.SetSorted(row, 2, ToQt(ShortTime(header.RunTime)), header.RunTime.Days);
        runs.SetNumber(row, 3, header.RunLength, ToQt(UnitsOf(context_.State).LengthCell(header.RunLength)));
        runs.SetNumber(row, 4, header.Duration, QString::number(header.Duration));
    } catch (const RunTimeError& error) {
        // A file that cannot be read can still be deleted.
        runs.SetText(row, 1, tr("Not readable"));
        for (const int column : {0, 1}) SetCellNote(*runs.item(row, column), ToQt(error.Message()));
    }
}

}  // namespace vantor
