#include "counter/forms/frmUploadData.h"

#include <QHBoxLayout>
#include <QSplitter>
#include <QVBoxLayout>
#include <algorithm>
#include <set>

#include "core/Paths.h"
#include "core/RunDirection.h"
#include "core/Text.h"
#include "core/forms/Guarded.h"
#include "core/forms/HelpButton.h"
#include "core/forms/Named.h"
#include "core/forms/Theme.h"
#include "core/forms/WindowLayout.h"
#include "counter/CounterFile.h"
#include "counter/forms/RunTable.h"

namespace vantor {
namespace {

QPushButton* ToolButton(QWidget* parent, const char* name, const QString& caption, const char* icon) {
    auto* button = Named<QPushButton>(parent, name, caption);
    button->setIcon(LineIcon(QLatin1String(icon)));
    return button;
}

/// What to do where no runs wait, by where they come from.
QString EmptyText(UploadOf of) {
    const QString none = QStringLiteral("No runs are waiting here. ");
    switch (of) {
        case UploadOf::TemporaryRuns:
            return none + QStringLiteral("Read a counter file, or process a GPS or OBD log first.");
        case UploadOf::Log: return none + QStringLiteral("Process a GPS or OBD log first.");
        case UploadOf::CounterFile: break;
    }
    return none + QStringLiteral("Read a counter file first.");
}

}  // namespace

frmUploadData::frmUploadData(AppContext& context, const Upload& upload) : context_(context), uploadOf_(upload.Of) {
    setObjectName(QStringLiteral("frmUploadData"));
    setWindowTitle(QStringLiteral("Process Runs in Temp Folder"));

    auto* top = new QHBoxLayout;
    top->addWidget(BuildDirections());
    top->addWidget(BuildTemplate(), 1);
    auto* work = Named<QSplitter>(this, "splRuns");
    work->addWidget(BuildRunList());
    work->addWidget(BuildStudyGroups());
    work->setStretchFactor(0, 3);
    work->setStretchFactor(1, 1);
    work->setChildrenCollapsible(false);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addWidget(work, 1);
    layout->addLayout(BuildButtons());
    // Enter makes a Study Group or nothing: it must not close the window in the middle of the work.
    for (auto* button : findChildren<QPushButton*>()) button->setAutoDefault(false);
    resize(1240, 600);
    ConnectControls();

    fraTemplate_->setFocus();
    ShowLastGroup();
    if (upload.ToConvert) Convert(*upload.ToConvert);
    ShowRuns();
    Guarded(context_.Messages, [this] { ListRuns(); });
    RememberLayout(*this, context_.Memory);
}

QGroupBox* frmUploadData::BuildDirections() {
    auto* frame = Named<QGroupBox>(this, "fraQuickDirections", QStringLiteral("Quick Directions"));
    auto* TxtQuickDirections = Named<QLabel>(frame, "TxtQuickDirections",
                                             QStringLiteral("1- Enter Base Name in Template\n"
                                                            "2- Select runs then click Rename\n"
                                                            "3- Select Study Group or Enter new \n"
                                                            "name\n"
                                                            "4- Click Move Runs"));
    (new QVBoxLayout(frame))->addWidget(TxtQuickDirections);
    return frame;
}

QGroupBox* frmUploadData::BuildTemplate() {
    fraTemplate_ = new RunTemplateBox(this, context_.Messages);
    fraTemplate_->OnChanged = [this] { ShowOffers(); };
    fraTemplate_->FreeNumberNow = [this] {
        groupListed_.reset();
        return FreeNumber(CountToRename());
    };
    return fraTemplate_;
}

QGroupBox* frmUploadData::BuildRunList() {
    auto* frame = Named<QGroupBox>(this, "fraRunList", QStringLiteral("2) List of Runs in Uploaded Data"));
    vaSelRuns_ = Named<LongList>(frame, "vaSelRuns");
    vaSelRuns_->setAccessibleName(QStringLiteral("Runs in the temporary runs folder"));
    shownRuns_.emplace(*vaSelRuns_, context_.Work, UnitsOf(context_.State));
    vaSelRuns_->SetEmptyText(EmptyText(uploadOf_));
    btnRename_ = ToolButton(frame, "btnRename", QString(), "rename");
    btnRename_->setToolTip(QStringLiteral("Rename selected file(s)"));
    OfferUndo(false);
    BtnDelete_ = ToolButton(frame, "BtnDelete", QStringLiteral("&Delete"), "delete-runs");

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(btnRename_);
    buttons->addWidget(BtnDelete_);
    buttons->addStretch();
    lblStayed_ = Named<QLabel>(frame, "lblStayed");
    lblStayed_->setTextFormat(Qt::PlainText);
    btnRenameThese_ = ToolButton(frame, "btnRenameThese", QStringLiteral("Rename t&hese"), "rename");
    btnRenameThese_->setToolTip(QStringLiteral("Select them and give them the next free numbers of the template"));
    auto* stayed = new QHBoxLayout;
    stayed->addWidget(lblStayed_, 1);
    stayed->addWidget(btnRenameThese_);
    auto* layout = new QVBoxLayout(frame);
    layout->addWidget(vaSelRuns_, 1);
    layout->addLayout(stayed);
    layout->addLayout(buttons);
    return frame;
}

QGroupBox* frmUploadData::BuildStudyGroups() {
    auto* frame = Named<QGroupBox>(this, "fraStudyGroups", QStringLiteral("3) List of Study Groups"));
    treSDFPath_ = Named<FolderTree>(frame, "treSDFPath");
    treSDFPath_->setAccessibleName(QStringLiteral("Study Groups"));

    auto* current = Named<QGroupBox>(frame, "fraCurrentStudyGroup", QStringLiteral("Current Study Group"));
    TxtStudyGroup_ = Named<QLineEdit>(current, "TxtStudyGroup");
    TxtStudyGroup_->setAccessibleName(QStringLiteral("Current Study Group"));
    TxtStudyGroup_->setPlaceholderText(QStringLiteral("New name, then Enter"));
    (new QVBoxLayout(current))->addWidget(TxtStudyGroup_);

    btnMoveRuns_ = ToolButton(frame, "btnMoveRuns", QStringLiteral("&Move\nRuns"), "move-runs");
    btnStudyGroupDetails_ = ToolButton(frame, "btnStudyGroupDetails", QStringLiteral("De&tails"), "show-details");
    auto* buttons = new QHBoxLayout;
    for (QPushButton* button : {btnMoveRuns_, btnStudyGroupDetails_}) {
        button->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Minimum);
        buttons->addWidget(button);
    }
    auto* layout = new QVBoxLayout(frame);
    layout->addWidget(treSDFPath_, 1);
    layout->addWidget(current);
    layout->addLayout(buttons);
    return frame;
}

QLayout* frmUploadData::BuildButtons() {
    btnUploadOk_ = Named<QPushButton>(this, "btnUploadOk", QStringLiteral("&OK"));
    btnUploadCancel_ = Named<QPushButton>(this, "btnUploadCancel", QStringLiteral("Cancel"));
    btnUploadCancel_->setToolTip(
        QStringLiteral("Cancel any changes made to this screen and return to the Summary Screen."));
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(HelpButton(*this, context_, HelpTopic::ProcessRuns));
    buttons->addStretch();
    chkForStudy_ = Named<QCheckBox>(this, "chkForStudy", QStringLiteral("Add moved runs to the stud&y"));
    chkForStudy_->setToolTip(QStringLiteral("After OK the study that is open takes the runs that were moved"));
    chkForStudy_->setChecked(context_.State.CurrentStudy.Record.RunCount == 0);
    buttons->addWidget(chkForStudy_);
    buttons->addWidget(btnUploadOk_);
    buttons->addWidget(btnUploadCancel_);
    return buttons;
}

void frmUploadData::ConnectControls() {
    MessageBoxes& messages = context_.Messages;
    Connect(TxtStudyGroup_, &QLineEdit::textChanged, this, messages, [this] { ShowOffers(); });
    Connect(vaSelRuns_->selectionModel(), &QItemSelectionModel::selectionChanged, this, messages,
            [this] { ShowOffers(); });
    Connect(btnRenameThese_, &QPushButton::clicked, this, messages, [this] { RenameThese(); });
    Connect(btnRename_, &QPushButton::clicked, this, messages,
            [this] { OffersUndo() ? Undo() : Rename(fraTemplate_->Template()); });
    Connect(BtnDelete_, &QPushButton::clicked, this, messages, [this] { DeleteSelected(); });
    Connect(btnMoveRuns_, &QPushButton::clicked, this, messages, [this] { MoveSelected(); });
    treSDFPath_->OnChosen = [this](const std::string& folder) {
        currentGroup_ = LastComponent(folder);
        TxtStudyGroup_->setText(ToQt(currentGroup_));
    };
    Connect(TxtStudyGroup_, &QLineEdit::returnPressed, this, messages, [this] { MakeGroup(); });
    Connect(btnStudyGroupDetails_, &QPushButton::clicked, this, messages, [this] { ShowGroupDetails(); });
    Connect(btnUploadOk_, &QPushButton::clicked, this, messages, [this] { accept(); });
    Connect(btnUploadCancel_, &QPushButton::clicked, this, messages, [this] { reject(); });
}

std::string frmUploadData::TempFolder() const { return AsFolder(context_.State.Paths.TempRunsPath); }

std::string frmUploadData::GroupName() const { return std::string(Trim(FromQt(TxtStudyGroup_->text()))); }

void frmUploadData::Convert(const CounterFileChoice& file) {
    const std::string path = AsFolder(file.Folder) + file.Name + CounterFileExtension;
    RunRecord last;
    Guarded(context_.Messages, [&] {
        context_.Work.Run("Converting counter file " + file.Name,
                          [&last, path, folder = TempFolder()](FileSystem& files, const Progress& progress) {
                              ConvertCounterFile(files, path, folder, last, progress);
                          });
    });
    context_.State.CurrentRun = std::move(last);
}

void frmUploadData::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    treSDFPath_->ShowCurrent();
}

void frmUploadData::ListRuns() {
    shownRuns_->ShowFolder(TempFolder());
    ShowRuns();
}

void frmUploadData::ShowRuns() {
    shownRuns_->Refresh();
    std::set<std::string> there;
    bool haveDirections = false;
    for (int row = 0; row < vaSelRuns_->RowCount(); ++row) {
        if (!stayed_.empty()) there.insert(shownRuns_->RunAt(row).Name);
        haveDirections = haveDirections || !DirectionFromLog(shownRuns_->NotesAt(row)).empty();
    }
    fraTemplate_->ShowDirectionOffer(haveDirections);
    std::erase_if(stayed_, [&](const std::string& name) { return !there.contains(name); });
    lblStayed_->setVisible(!stayed_.empty());
    btnRenameThese_->setVisible(!stayed_.empty());
    constexpr std::size_t NamesTold = 3;
    lblStayed_->setText(QStringLiteral("Stayed here, for the Study Group has runs of these names: %1")
                            .arg(ToQt(FirstOf(stayed_, NamesTold))));
    btnRenameThese_->setAccessibleDescription(lblStayed_->text());
    ShowOffers();
}

std::vector<std::string> frmUploadData::SelectedNames() {
    std::vector<std::string> names;
    for (const UploadRun* run : shownRuns_->SelectedRuns()) names.push_back(run->Name);
    return names;
}

std::size_t frmUploadData::CountToRename() const { return std::max<std::size_t>(1, vaSelRuns_->SelectedRows().size()); }

std::string frmUploadData::DirectionOfRuns() const {
    std::vector<int> rows = vaSelRuns_->SelectedRows();
    if (rows.empty())
        for (int row = 0; row < vaSelRuns_->RowCount(); ++row) rows.push_back(row);
    std::string direction;
    for (const int row : rows) {
        const std::string ofRun = DirectionFromLog(shownRuns_->NotesAt(row));
        if (ofRun.empty() || ofRun == direction) continue;
        if (!direction.empty()) return {};
        direction = ofRun;
    }
    return direction;
}

const std::vector<std::string>& frmUploadData::RunsOfGroup() {
    const std::string group = GroupName();
    if (groupListed_ != group) {
        groupListed_ = group;
        runsOfGroup_.clear();
        if (IsSafeName(group))
            for (const FileInfo& info : FilesWithExtension(
                     context_.Files, GroupFolder(context_.State.Paths.StudyGroupRootPath, group), RunExtension))
                runsOfGroup_.push_back(BaseName(info.Name));
    }
    return runsOfGroup_;
}

std::string frmUploadData::FreeNumber(std::size_t count) {
    const RunNameTemplate parts = fraTemplate_->Template();
    if (parts.BaseName.empty()) return {};
    TakenNumbers taken;
    for (const std::string& name : RunsOfGroup()) TakeNumberOf(taken, parts, name);
    for (int row = 0; row < vaSelRuns_->RowCount(); ++row) TakeNumberOf(taken, parts, shownRuns_->RunAt(row).Name);
    return FreeRunNumber(taken, count);
}

void frmUploadData::ShowOffers() {
    const std::size_t count = CountToRename();
    const QString group = ToQt(GroupName());
    fraTemplate_->OfferNumber(FreeNumber(count), count,
                              group.isEmpty() ? QStringLiteral("in Temp") : QStringLiteral("in Temp and in ") + group);
    fraTemplate_->OfferDirection(DirectionOfRuns());
}

bool frmUploadData::OffersUndo() const { return WithoutAccessKey(btnRename_->text()) != QLatin1String(" Rename "); }

void frmUploadData::OfferUndo(bool undo) {
    const QString caption = undo ? QStringLiteral("  &Undo  ") : QStringLiteral(" &Rename ");
    btnRename_->setText(caption);
    btnRename_->setAccessibleName(WithoutAccessKey(caption).simplified());
    btnRename_->setIcon(LineIcon(undo ? QStringLiteral("undo") : QStringLiteral("rename")));
}

void frmUploadData::Rename(RunNameTemplate parts) {
    if (parts.BaseName.empty()) {
        context_.Messages.Tell("You must enter a Base Name for the new run names.", MessageIcon::Warning);
        return;
    }
    const auto selected = shownRuns_->SelectedRuns();
    if (selected.empty()) {
        context_.DesktopServices.Beep();
        return;
    }
    Guarded(context_.Messages, [&] {
        if (RenameRuns(context_.Work, context_.Messages, TempFolder(), selected, parts)) OfferUndo(true);
    });
    fraTemplate_->SetRunNumber(parts.RunNumber);
    ShowRuns();
}

void frmUploadData::RenameThese() {
    std::vector<int> rows;
    for (int row = 0; row < vaSelRuns_->RowCount(); ++row)
        if (std::ranges::find(stayed_, shownRuns_->RunAt(row).Name) != stayed_.end()) rows.push_back(row);
    vaSelRuns_->SelectRows(rows);
    vaSelRuns_->setFocus();
    groupListed_.reset();
    RunNameTemplate parts = fraTemplate_->Template();
    const std::string number = FreeNumber(rows.size());
    if (number.empty() && !parts.BaseName.empty()) {
        context_.Messages.Tell("There are not " + std::to_string(rows.size()) +
                                   " run numbers in a row free.\nChange the Base Name and try again.",
                               MessageIcon::Warning);
        return;
    }
    parts.RunNumber = number;
    Rename(parts);
}

void frmUploadData::Undo() {
    Guarded(context_.Messages, [&] {
        if (UndoRename(context_.Work, TempFolder(), shownRuns_->SelectedRuns())) OfferUndo(false);
    });
    ShowRuns();
}

void frmUploadData::DeleteSelected() {
    const std::vector<std::string> names = SelectedNames();
    if (names.empty()) {
        context_.DesktopServices.Beep();
        return;
    }
    Guarded(context_.Messages, [&] { DeleteRuns(context_.Work, TempFolder(), names); });
    ListRuns();
}

void frmUploadData::MoveSelected() {
    const std::vector<std::string> names = SelectedNames();
    if (names.empty()) {
        context_.Messages.Tell("You must select some runs before you click Move.", MessageIcon::Warning);
        return;
    }
    if (!OffersUndo()) {
        context_.Messages.Tell("You must rename the runs before you click Move.", MessageIcon::Warning);
        return;
    }
    const std::string& root = context_.State.Paths.StudyGroupRootPath;
    if (!CheckStudyGroup(context_.Files, context_.Messages, root, GroupName())) return;
    Guarded(context_.Messages, [&] {
        auto stayed = MoveRuns(context_.State, context_.Files, context_.Work, context_.Messages,
                               GroupFolder(root, GroupName()), names);
        if (!stayed) return;
        stayed_ = std::move(*stayed);
        OfferUndo(false);
        vaSelRuns_->clearSelection();
        for (int row = 0; row < vaSelRuns_->RowCount(); ++row) shownRuns_->RunAt(row).PreviousName.clear();
        NoteMoved(names);
        if (stayed_.size() < names.size()) RememberGroupOfRuns(context_.State, context_.Files, GroupName());
    });
    groupListed_.reset();
    ListRuns();
}

void frmUploadData::NoteMoved(const std::vector<std::string>& names) {
    const std::string folder = GroupFolder(context_.State.Paths.StudyGroupRootPath, GroupName());
    if (moved_.Folder != folder) moved_ = {folder, {}};
    for (const std::string& name : names)
        if (std::ranges::find(stayed_, name) == stayed_.end()) moved_.Names.push_back(name);
}

RunsForStudy frmUploadData::ForStudy() const { return chkForStudy_->isChecked() ? moved_ : RunsForStudy(); }

void frmUploadData::ShowLastGroup() {
    const std::string& root = context_.State.Paths.StudyGroupRootPath;
    treSDFPath_->SetRoot(context_.Files, root);
    const std::string last = LastGroupOfRuns(context_.State.Choices);
    if (!IsSafeName(last) || !treSDFPath_->SelectFolder(GroupFolder(root, last))) return;
    currentGroup_ = last;
    TxtStudyGroup_->setText(ToQt(last));
}

void frmUploadData::MakeGroup() {
    const std::string& root = context_.State.Paths.StudyGroupRootPath;
    if (MakeStudyGroup(context_.Files, context_.Messages, root, GroupName(), currentGroup_))
        treSDFPath_->SetRoot(context_.Files, root);
    if (treSDFPath_->SelectFolder(GroupFolder(root, GroupName()))) currentGroup_ = GroupName();
}

void frmUploadData::ShowGroupDetails() {
    const std::string& root = context_.State.Paths.StudyGroupRootPath;
    if (CheckStudyGroup(context_.Files, context_.Messages, root, GroupName()))
        context_.OtherScreens.ShowUploadRunList(GroupName());
}

}  // namespace vantor
