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
namespace {

/// A version 1 run file as its header describes it.
struct Ver1RunInFile {
    std::string Name;
    RunHeader Header;
    std::string Problem;  ///< why it cannot be read; empty when it can
};

std::vector<Ver1RunInFile> ReadVer1Runs(const FileSystem& files, const std::string& folder, const Progress& progress) {
    std::vector<Ver1RunInFile> runs;
    const auto found = FilesWithExtension(files, folder, Ver1RunExtension);
    for (const FileInfo& info : found) {
        const bool goesOn = progress(runs.size(), found.size());
        Ver1RunInFile& run = runs.emplace_back();
        run.Name = BaseName(info.Name);
        if (!goesOn) run.Problem = ListingStoppedText;
        try {
            if (goesOn) run.Header = ReadVer1Run(files, folder, run.Name).Header;
        } catch (const RunTimeError& error) {
            run.Problem = error.Message();
        }
    }
    return runs;
}

void ShowRun(Table& runs, int row, const Ver1RunInFile& run, const Units& units) {
    if (run.Problem.empty()) {
        const RunHeader& header = run.Header;
        runs.SetSorted(row, 1, ToQt(ShortDate(header.RunDate)), header.RunDate.Days);
        runs.SetSorted(row, 2, ToQt(ShortTime(header.RunTime)), header.RunTime.Days);
        runs.SetNumber(row, 3, header.RunLength, ToQt(units.LengthCell(header.RunLength)));
        runs.SetNumber(row, 4, header.Duration, QString::number(header.Duration));
        return;
    }
    // A file that cannot be read can still be deleted.
    runs.SetText(row, 1, QStringLiteral("Not readable"));
    for (const int column : {0, 1}) SetCellNote(*runs.item(row, column), ToQt(run.Problem));
}

}  // namespace

frmDeleteTempRuns::frmDeleteTempRuns(AppContext& context)
    : context_(context),
      frRunList_(new DeletionList(this, "vaSelRuns", QStringLiteral(" Runs in Temp Path: "),
                                  {AsFolder(context.State.Paths.TempRunsPath), Ver1RunExtension})) {
    setObjectName(QStringLiteral("frmDeleteTempRuns"));
    setWindowTitle(QStringLiteral("Select Temp Runs To Delete"));
    frRunList_->setObjectName(QStringLiteral("frRunList"));
    Table& runs = frRunList_->Files();
    runs.SetColumns({QStringLiteral("Name"), QStringLiteral("Date"), QStringLiteral("Time"),
                     QStringLiteral("Length ") + ToQt(UnitsOf(context_.State).LengthTitle()),
                     QStringLiteral("Duration (s)")});
    runs.SetEmptyText(QStringLiteral("There are no version 1 runs (.rdf) in this folder."));

    auto* instructions =
        Named<QLabel>(this, "lblInstructions",
                      QStringLiteral("Runs that you take off the list, and those still selected, are deleted "
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
    auto* selectAll = Named<QPushButton>(this, "btnSelectAll", QStringLiteral("Select &All"));
    // Enter in the list takes runs off, which Cancel still undoes.
    auto* takeOff = Named<QPushButton>(this, "BtnDelete", QStringLiteral("&Delete Selected Runs"));
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
    std::vector<Ver1RunInFile> runs;
    context_.Work.Run("Reading the runs",
                      [&runs, folder = frRunList_->Folder()](FileSystem& files, const Progress& progress) {
                          runs = ReadVer1Runs(files, folder, progress);
                      });
    frRunList_->Files().BeginFilling();
    for (const Ver1RunInFile& run : runs)
        ShowRun(frRunList_->Files(), frRunList_->AddFile(run.Name), run, UnitsOf(context_.State));
    frRunList_->EndFilling();
}

}  // namespace vantor
