#include "editing/forms/frmRunDetails.h"

#include <QMenu>

#include "analysis/StudyEdits.h"
#include "core/Backup.h"
#include "core/Numeric.h"
#include "core/Paths.h"
#include "core/RunFile.h"
#include "core/StudyFile.h"
#include "core/Text.h"
#include "core/forms/DocumentChange.h"
#include "core/forms/Guarded.h"
#include "core/forms/Named.h"
#include "core/forms/Theme.h"
#include "core/forms/WindowLayout.h"
#include "core/modMain.h"
#include "editing/SaveRun.h"

namespace vantor {

frmRunDetails::frmRunDetails(AppContext& context, int entryIndex)
    : context_(context),
      entry_(entryIndex),
      details_(context.State.CurrentRun, UnitsOf(context.State)),
      controls_(*this) {
    setObjectName(QStringLiteral("frmRunDetails"));
    setWindowTitle(QStringLiteral("Run Details"));
    setWindowFlag(Qt::WindowMaximizeButtonHint);
    ConnectControls();
    controls_.vaSectionNames->SetDetails(details_);
    ConnectUndo();
    Load();
    controls_.RunDetailsName->setFocus();
    RememberLayout(*this, context.Memory);
}

void frmRunDetails::ConnectControls() {
    const auto onClick = [this](QPushButton* button, auto action) {
        Connect(button, &QPushButton::clicked, this, context_.Messages, [this, action] {
            // An access key presses the button without leaving the field that is typed into.
            controls_.vaSectionNames->CommitEditor();
            Record("Edit Fields");
            action();
        });
    };
    onClick(controls_.BtnInsert, [this] { Insert(); });
    onClick(controls_.BtnDelete, [this] { Delete(); });
    onClick(controls_.BtnReverse, [this] { Reverse(); });
    onClick(controls_.BtnCopy, [this] { CopyNames(); });
    onClick(controls_.btnTrimStart, [this] { TrimRunWith(&RunDetails::TrimStart, "Trim Start"); });
    onClick(controls_.btnTrimEnd, [this] { TrimRunWith(&RunDetails::TrimEnd, "Trim End"); });
    onClick(controls_.BtnShowPlot, [this] { ShowPlot(); });
    onClick(controls_.BtnEditRunData, [this] { OpenScreen(&Screens::ShowSensorData); });
    onClick(controls_.BtnShowStats, [this] { OpenScreen(&Screens::ShowRunStatistics); });
    onClick(controls_.RunDetailsSave, [this] {
        if (Save()) accept();
    });
    onClick(controls_.RunDetailsCancel, [this] { done(Rejected); });
    onClick(controls_.cmdHelp, [this] { ShowHelp(context_.DesktopServices, context_.Files, HelpTopic::RunDetails); });
    Connect(controls_.btnRestore->menu(), &QMenu::aboutToShow, this, context_.Messages, [this] { ListBackups(); });
    Connect(controls_.RunDetailsDate, &QLineEdit::textChanged, this, context_.Messages, [this] { ShowDay(); });
    Connect(controls_.RunDetailsCalConst, &QLineEdit::editingFinished, this, context_.Messages,
            [this] { Calibrate(); });
}

void frmRunDetails::ConnectUndo() {
    AddStepActions(steps_, *this, *controls_.btnUndo, *controls_.btnRedo);
    MessageBoxes& messages = context_.Messages;
    Connect(controls_.vaSectionNames->model(), &QAbstractItemModel::dataChanged, this, messages,
            [this] { Record("Edit Node"); });
    for (QLineEdit* field : findChildren<QLineEdit*>())
        Connect(field, &QLineEdit::editingFinished, this, messages, [this] { Record("Edit Fields"); });
    for (QRadioButton* option : findChildren<QRadioButton*>())
        Connect(option, &QRadioButton::clicked, this, messages, [this] { Record("Edit Fields"); });
}

void frmRunDetails::Record(const char* text) {
    auto now = std::make_shared<const Document>(Document{details_, controls_.TypedTexts()});
    if (*now == *settled_) return;
    const auto before = std::exchange(settled_, now);
    steps_.push(new DocumentChange<std::shared_ptr<const Document>>(
        QLatin1String(text), before, now, [this](const std::shared_ptr<const Document>& document) {
            details_ = document->Details;
            settled_ = document;
            ShowRun(document->Texts);
        }));
}

void frmRunDetails::ForgetSteps() {
    steps_.clear();
    settled_ = std::make_shared<const Document>(Document{details_, controls_.TypedTexts()});
}

std::string frmRunDetails::RunName() const {
    const ApplicationState& state = context_.State;
    return entry_ > 0 ? RunFileName(state.CurrentStudy.Entries[entry_])
                      : std::string(Trim(state.CurrentRun.Header.RunName));
}

void frmRunDetails::Load() {
    RunHeader& header = context_.State.CurrentRun.Header;
    const std::string given(Trim(header.RunName));
    header.RunName = RunName();
    details_ = RunDetails(context_.State.CurrentRun, details_.Units());
    RunDetailTexts texts = DetailsOf(header);
    texts.Name = given;
    ShowRun(texts);
    ForgetSteps();
}

void frmRunDetails::ShowRun(const RunDetailTexts& texts) {
    controls_.ShowTexts(texts);
    ShowKeys(texts);
    ShowDay();
    ShowNodes();
    const bool hasData = !details_.Run().SampleValues.IsEmpty();
    controls_.BtnShowPlot->setEnabled(entry_ > 0);
    controls_.BtnEditRunData->setEnabled(hasData);
}

void frmRunDetails::ShowNodes() {
    controls_.vaSectionNames->Refresh();
    controls_.ShowSummary(details_.Run().Header, details_.Rows().size(), details_.Units());
}

RunDetailTexts frmRunDetails::TypedTexts() {
    controls_.vaSectionNames->CommitEditor();
    return controls_.TypedTexts();
}

void frmRunDetails::Insert() {
    controls_.vaSectionNames->CommitEditor();
    const int active = controls_.vaSectionNames->ActiveRow();
    if (Refused(details_.Insert(active))) return;
    ShowNodes();
    controls_.vaSectionNames->Activate(active, NodeTable::Name);
    Record("Insert Node");
}

void frmRunDetails::Delete() {
    controls_.vaSectionNames->CommitEditor();
    RunDetailTexts texts = TypedTexts();
    if (Refused(details_.Delete(controls_.vaSectionNames->ActiveRow()))) return;
    ShowNodes();
    // A key that was pressed in the node's second counts again.
    const RunDetailTexts stored = DetailsOf(details_.Run().Header);
    for (int key = 1; key <= KeySlots; ++key)
        if (!controls_.ButtonLabels.contains(key)) texts.ButtonLabel[key] = stored.ButtonLabel[key];
    ShowKeys(texts);
    Record("Delete Node");
}

void frmRunDetails::ShowKeys(const RunDetailTexts& texts) {
    controls_.ShowButtons(details_.Run().Header, texts);
    for (const auto& [key, label] : controls_.ButtonLabels)
        Connect(label, &QLineEdit::editingFinished, this, context_.Messages, [this] { Record("Edit Fields"); });
}

void frmRunDetails::Reverse() {
    controls_.vaSectionNames->CommitEditor();
    details_.Reverse();
    ShowNodes();
    Record("Reverse Names");
}

void frmRunDetails::CopyNames() {
    controls_.vaSectionNames->CommitEditor();
    const std::string path = context_.DesktopServices.ChooseFileToOpen(
        StudyGroupFolder(context_.State), "Copy Node Names", "Run files", {RunExtension, Ver1RunExtension});
    if (path.empty()) return;
    const auto other = ReadHeaderOfRunFile(context_.Files, path);
    if (!other) {
        context_.Messages.Tell("There is no run file " + path + ".", MessageIcon::Warning);
        return;
    }
    if (details_.TakeNames(*other) == 0)
        context_.Messages.Tell("No node of run " + BaseName(path) + " has a name. Nothing was copied.");
    ShowNodes();
    Record("Copy Names");
}

void frmRunDetails::Calibrate() {
    details_.Calibrate(FromQt(controls_.RunDetailsCalConst->text()));
    ShowNodes();
    Record("Edit Fields");
}

void frmRunDetails::ShowDay() {
    const auto date = DayOfText(FromQt(controls_.RunDetailsDate->text()));
    controls_.RunDetailsDay->setText(date ? ToQt(WeekdayName(*date)) : QString());
}

void frmRunDetails::TrimRunWith(std::optional<Refusal> (RunDetails::*trim)(const RunDetailTexts&), const char* text) {
    if (Refused((details_.*trim)(TypedTexts()))) return;
    ShowRun(DetailsOf(details_.Run().Header));
    Record(text);
}

void frmRunDetails::ListBackups() {
    QMenu& menu = *controls_.btnRestore->menu();
    menu.clear();
    const Units units = details_.Units();
    for (const RunBackup& backup : RunBackupsOf(context_.Files, StudyGroupFolder(context_.State), RunName())) {
        const QString text = QStringLiteral("%1    kept %2 %3    %4 s, %5")
                                 .arg(ToQt(LastComponent(backup.Path)).replace(QLatin1Char('&'), QLatin1String("&&")),
                                      ToQt(ShortDate(backup.Kept)), ToQt(ShortTime(backup.Kept)))
                                 .arg(backup.Header.SampleCount)
                                 .arg(ToQt(units.LengthText(backup.Header.RunLength)));
        Connect(menu.addAction(text), &QAction::triggered, this, context_.Messages,
                [this, backup] { Restore(backup); });
    }
    if (menu.isEmpty()) menu.addAction(QStringLiteral("No earlier state of this run is kept."))->setEnabled(false);
}

void frmRunDetails::Restore(const RunBackup& backup) {
    if (!SettleChanges()) return;
    const std::string path = StudyGroupFolder(context_.State) + RunName() + RunExtension;
    if (!context_.Messages.Confirm("Do you want to bring back run: " + RunName() + "\nas it is kept in " +
                                   LastComponent(backup.Path) + "?\n\nThe run as it is now is kept as " +
                                   LastComponent(FreeBackupPath(context_.Files, path)) + "."))
        return;
    const RunSaved saved = RestoreRun(context_.State, context_.Files, backup, entry_);
    Load();
    if (!saved.Warning.empty()) context_.Messages.Tell(saved.Warning, MessageIcon::Warning);
}

void frmRunDetails::OpenScreen(void (Screens::*showScreen)(int)) {
    if (!SettleChanges()) return;
    (context_.OtherScreens.*showScreen)(entry_);
    Load();
}

void frmRunDetails::ShowPlot() {
    if (!SettleChanges()) return;
    for (const auto& [run, entry] : context_.OtherScreens.ShowSpeedProfile({.Run = entry_}).Entries)
        TakeEntry(context_.State, run, entry);
    Load();
}

bool frmRunDetails::Save() {
    const DetailsSaved saved = details_.Save(context_.State, context_.Files, entry_, TypedTexts());
    if (Refused(saved.Refused)) return false;
    if (!saved.Warning.empty()) context_.Messages.Tell(saved.Warning, MessageIcon::Warning);
    return true;
}

bool frmRunDetails::SettleChanges() {
    if (!details_.HasChanges(TypedTexts())) return true;
    const MessageAnswer answer =
        context_.Messages.AskToSave("The details of run: " + RunName() + "\nhave changed. Do you want to save them?");
    return answer == MessageAnswer::Yes ? Save() : answer == MessageAnswer::No;
}

bool frmRunDetails::Refused(const std::optional<Refusal>& refusal) {
    if (!refusal) return false;
    if (refusal->Text.empty())
        context_.DesktopServices.Beep();
    else
        context_.Messages.Tell(refusal->Text, MessageIcon::Warning);
    if (refusal->Field == NodeGrid) {
        controls_.vaSectionNames->Edit(refusal->Row, NodeTable::Distance);
    } else if (auto* field = findChild<QLineEdit*>(ToQt(refusal->Field))) {
        field->setFocus();
        field->selectAll();
    }
    return true;
}

void frmRunDetails::reject() {
    bool leaves = false;
    Guarded(context_.Messages, [&] { leaves = SettleChanges(); });
    if (leaves) QDialog::reject();
}

}  // namespace vantor
