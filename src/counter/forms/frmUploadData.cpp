#include "counter/forms/frmUploadData.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QSplitter>
#include <QVBoxLayout>
#include <map>
#include <set>

#include "core/Paths.h"
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

QLineEdit* NarrowField(QWidget* parent, const char* name, int width) {
    auto* field = Named<QLineEdit>(parent, name);
    field->setMaxLength(width);
    field->setMaximumWidth(field->fontMetrics().averageCharWidth() * (width + 4) + 16);
    return field;
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

    const RunNameTemplate defaults;
    txtTemplateDir_->setText(ToQt(defaults.Direction));
    txtTemplateRunNumber_->setText(ToQt(defaults.RunNumber));
    txtTemplateBaseName_->setFocus();
    treSDFPath_->SetRoot(context_.Files, context_.State.Paths.StudyGroupRootPath);
    if (upload.ToConvert) Convert(*upload.ToConvert);
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
    auto* frame = Named<QGroupBox>(this, "fraTemplate", QStringLiteral("1) Run NameTemplate"));
    txtTemplateBaseName_ = Named<QLineEdit>(frame, "txtTemplateBaseName");
    txtTemplateBaseName_->setMaxLength(20);
    txtTemplateDir_ = NarrowField(frame, "txtTemplateDir", 2);
    txtTemplateRunNumber_ = NarrowField(frame, "txtTemplateRunNumber", 3);
    lblNextName_ = Named<QLabel>(frame, "lblNextName");
    lblNextName_->setTextFormat(Qt::PlainText);
    BtnEditTemplate_ = ToolButton(frame, "BtnEditTemplate", QStringLiteral("&Edit"), "edit");

    auto* layout = new QGridLayout(frame);
    layout->addWidget(LabelFor(txtTemplateBaseName_, QStringLiteral("&Base Name")), 0, 0);
    layout->addWidget(LabelFor(txtTemplateDir_, QStringLiteral("D&irection")), 0, 1);
    layout->addWidget(LabelFor(txtTemplateRunNumber_, QStringLiteral("Ru&n #")), 0, 2);
    layout->addWidget(txtTemplateBaseName_, 1, 0);
    layout->addWidget(txtTemplateDir_, 1, 1);
    layout->addWidget(txtTemplateRunNumber_, 1, 2);
    layout->addWidget(BtnEditTemplate_, 1, 3);
    layout->addWidget(lblNextName_, 2, 0, 1, 4);
    layout->setColumnStretch(0, 1);
    layout->setRowStretch(3, 1);
    return frame;
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
    auto* layout = new QVBoxLayout(frame);
    layout->addWidget(vaSelRuns_, 1);
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
    buttons->addWidget(btnUploadOk_);
    buttons->addWidget(btnUploadCancel_);
    return buttons;
}

void frmUploadData::ConnectControls() {
    MessageBoxes& messages = context_.Messages;
    for (QLineEdit* field : {txtTemplateBaseName_, txtTemplateDir_, txtTemplateRunNumber_})
        Connect(field, &QLineEdit::textChanged, this, messages, [this] { ShowNextName(); });
    Connect(BtnEditTemplate_, &QPushButton::clicked, this, messages,
            [&messages] { messages.Tell("This function is not implemented yet."); });
    Connect(btnRename_, &QPushButton::clicked, this, messages, [this] { OffersUndo() ? Undo() : Rename(); });
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

void frmUploadData::ListRuns() {
    std::map<std::string, std::string> previousNames;
    for (const UploadRun& run : runs_)
        if (!run.PreviousName.empty()) previousNames[run.Name] = run.PreviousName;
    std::set<std::string> selected;
    for (const UploadRun* run : SelectedRuns()) selected.insert(run->Name);
    std::vector<std::string> names = shownRuns_->ShowFolder(TempFolder());
    runs_.clear();
    runs_.reserve(names.size());
    for (std::string& name : names) runs_.emplace_back().Name = std::move(name);
    if (previousNames.empty() && selected.empty()) return;
    std::vector<int> rows;
    for (std::size_t i = 0; i < runs_.size(); ++i) {
        if (const auto previous = previousNames.find(runs_[i].Name); previous != previousNames.end())
            runs_[i].PreviousName = previous->second;
        if (selected.contains(runs_[i].Name)) rows.push_back(static_cast<int>(i));
    }
    vaSelRuns_->SelectRows(rows);
}

void frmUploadData::ShowNames() {
    std::vector<std::string> names;
    for (const UploadRun& run : runs_) names.push_back(run.Name);
    shownRuns_->ShowNames(names);
}

std::vector<UploadRun*> frmUploadData::SelectedRuns() {
    std::vector<UploadRun*> selected;
    for (const int row : vaSelRuns_->SelectedRows()) selected.push_back(&runs_[static_cast<std::size_t>(row)]);
    return selected;
}

std::vector<std::string> frmUploadData::SelectedNames() {
    std::vector<std::string> names;
    for (const UploadRun* run : SelectedRuns()) names.push_back(run->Name);
    return names;
}

RunNameTemplate frmUploadData::Template() const {
    return {FromQt(txtTemplateBaseName_->text().trimmed()), FromQt(txtTemplateDir_->text()),
            FromQt(txtTemplateRunNumber_->text())};
}

void frmUploadData::ShowNextName() {
    const RunNameTemplate parts = Template();
    lblNextName_->setText(parts.BaseName.empty() ? QStringLiteral("Enter a Base Name to see the next run's name.")
                                                 : QStringLiteral("Next name: %1").arg(ToQt(RunNameOf(parts))));
}

bool frmUploadData::OffersUndo() const { return WithoutAccessKey(btnRename_->text()) != QLatin1String(" Rename "); }

void frmUploadData::OfferUndo(bool undo) {
    const QString caption = undo ? QStringLiteral("  &Undo  ") : QStringLiteral(" &Rename ");
    btnRename_->setText(caption);
    btnRename_->setAccessibleName(WithoutAccessKey(caption).simplified());
    btnRename_->setIcon(LineIcon(undo ? QStringLiteral("undo") : QStringLiteral("rename")));
}

void frmUploadData::Rename() {
    RunNameTemplate parts = Template();
    if (parts.BaseName.empty()) {
        context_.Messages.Tell("You must enter a Base Name for the new run names.", MessageIcon::Warning);
        return;
    }
    const auto selected = SelectedRuns();
    if (selected.empty()) {
        context_.DesktopServices.Beep();
        return;
    }
    Guarded(context_.Messages, [&] {
        if (RenameRuns(context_.Work, context_.Messages, TempFolder(), selected, parts)) OfferUndo(true);
    });
    ShowNames();
    txtTemplateRunNumber_->setText(ToQt(parts.RunNumber));
}

void frmUploadData::Undo() {
    Guarded(context_.Messages, [&] {
        if (UndoRename(context_.Work, TempFolder(), SelectedRuns())) OfferUndo(false);
    });
    ShowNames();
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
        if (!MoveRuns(context_.State, context_.Files, context_.Work, context_.Messages, GroupFolder(root, GroupName()),
                      names))
            return;
        OfferUndo(false);
        vaSelRuns_->clearSelection();
        for (UploadRun& run : runs_) run.PreviousName.clear();
    });
    ListRuns();
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
