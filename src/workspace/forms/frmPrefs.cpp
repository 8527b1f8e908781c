#include "workspace/forms/frmPrefs.h"

#include <QScrollArea>
#include <QTabBar>
#include <QVBoxLayout>
#include <utility>

#include "core/LoggerChoices.h"
#include "core/forms/Guarded.h"
#include "core/forms/Named.h"
#include "core/forms/WindowLayout.h"
#include "workspace/forms/DialogParts.h"

namespace vantor {
namespace {

/// A page that scrolls where the screen is too small for it.
QScrollArea* Scrolled(QTabWidget* tabs, QWidget* page) {
    auto* area = new QScrollArea(tabs);
    area->setFrameShape(QFrame::NoFrame);
    area->setWidgetResizable(true);
    area->setWidget(page);
    area->setFocusPolicy(Qt::NoFocus);  // it follows the field that has the focus
    // The background is that of the tab.
    page->setAutoFillBackground(false);
    area->viewport()->setAutoFillBackground(false);
    return area;
}

}  // namespace

frmPrefs::frmPrefs(AppContext& context)
    : context_(context),
      tabPrefs_(Named<QTabWidget>(this, "tabPrefs")),
      paths_(new PrefsPathTab(tabPrefs_, context)),
      defaults_(new PrefsDefaultsTab(tabPrefs_, context.State.Settings, context.Serial)),
      reports_(new PrefsReportTab(tabPrefs_, context.State.Settings)) {
    setObjectName(QStringLiteral("frmPrefs"));
    defaults_->SignedCoordinates()->setChecked(HasSignedCoordinates(context.State.Choices));
    setWindowTitle(QStringLiteral("Vantor Preferences"));
    tabPrefs_->setAccessibleName(QStringLiteral("Preferences"));
    tabPrefs_->addTab(Scrolled(tabPrefs_, paths_), QStringLiteral("Pat&h Options"));
    tabPrefs_->addTab(Scrolled(tabPrefs_, defaults_), QStringLiteral("&Default Values"));
    tabPrefs_->addTab(Scrolled(tabPrefs_, reports_), QStringLiteral("&Report Options"));
    auto* ok = Named<QPushButton>(this, "btnOk", QStringLiteral("OK"));
    ok->setDefault(true);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(tabPrefs_, 1);
    layout->addWidget(BuildNextStart());
    layout->addLayout(DialogFoot(*this, context, HelpTopic::Preferences, {ok}, QStringLiteral("Cancel"), "btnCancel"));
    Connect(ok, &QPushButton::clicked, this, context.Messages, [this] { Save(false); });
    paths_->OnChanged = defaults_->OnUnitsChanged = [this] { ShowNextStart(); };
    ShowNextStart();
    // No folder box is being edited at first.
    tabPrefs_->tabBar()->setFocus();
    resize(780, 600);
    RememberLayout(*this, context.Memory);
}

QWidget* frmPrefs::BuildNextStart() {
    fraNextStart_ = Named<QWidget>(this, "fraNextStart");
    lblNextStart_ = Named<QLabel>(fraNextStart_, "lblNextStart");
    lblNextStart_->setWordWrap(true);
    auto* restart = Named<QPushButton>(fraNextStart_, "cmdRestart", QStringLiteral("Restart no&w"));
    restart->setToolTip(QStringLiteral("Save these preferences and start the program again"));
    restart->setAutoDefault(false);
    Connect(restart, &QPushButton::clicked, this, context_.Messages, [this] { Save(true); });
    auto* row = new QHBoxLayout(fraNextStart_);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(lblNextStart_, 1);
    row->addWidget(restart);
    return fraNextStart_;
}

void frmPrefs::ShowNextStart() {
    const bool changesLabels = context_.State.LengthUnitLabel != Units{defaults_->IsMetric()}.LengthLabel();
    const bool changesRoot = paths_->ChangesRootInUse();
    QStringList texts;
    if (changesLabels)
        texts += QStringLiteral(
            "Column titles keep their units until the next start; until then values of the new units carry theirs.");
    if (changesRoot) texts += QStringLiteral("The new Study Group root is in use from the next start.");
    lblNextStart_->setText(texts.join(QLatin1Char('\n')));
    fraNextStart_->setVisible(!texts.isEmpty());
}

Preferences frmPrefs::Chosen() const {
    Preferences chosen{context_.State.Settings, context_.State.Paths};
    paths_->Take(chosen);
    reports_->Take(chosen.Settings);
    try {
        defaults_->Take(chosen.Settings);
    } catch (const RunTimeError&) {
        tabPrefs_->setCurrentIndex(1);
        throw;
    }
    return chosen;
}

bool frmPrefs::RemindOfRoot() {
    const std::string root = paths_->ForgottenRoot();
    if (root.empty()) return true;
    const MessageAnswer answer =
        context_.Messages.Ask({"The Study Group Root Path was to be, from the next start:\n" + root +
                                   "\n\nKeep that? No stays with:\n" + context_.State.Paths.StudyGroupRootPath,
                               MessageButtons::YesNoCancel, MessageIcon::Question});
    if (answer == MessageAnswer::Yes) paths_->PutRoot(root);
    return answer != MessageAnswer::Cancel;
}

bool frmPrefs::OfferMissingFolders(const Preferences& preferences) {
    for (const std::string& folder : MissingFolders(context_.Files, preferences)) {
        const MessageAnswer answer =
            paths_->IsToBeMade(folder)
                ? MessageAnswer::Yes
                : context_.Messages.Ask({"There is no folder: " + folder + "\nDo you want to create it?",
                                         MessageButtons::YesNoCancel, MessageIcon::Question});
        if (answer == MessageAnswer::Cancel) return false;
        if (answer == MessageAnswer::Yes && !MakesFolder(folder)) return false;
    }
    return true;
}

bool frmPrefs::MakesFolder(const std::string& folder) {
    try {
        context_.Files.CreateFolder(folder);
        return true;
    } catch (const RunTimeError& error) {
        context_.Messages.Tell("This folder cannot be made. Choose another one.\n" + folder + "\n\n" + error.Message(),
                               MessageIcon::Warning);
        return false;
    }
}

void frmPrefs::Save(bool restarts) {
    if (!paths_->IsAccepted()) {
        tabPrefs_->setCurrentIndex(0);
        paths_->FocusRefused();
        return context_.DesktopServices.Beep();
    }
    if (!RemindOfRoot()) return;
    const Preferences chosen = Chosen();
    if (!OfferMissingFolders(chosen)) return;
    SavePreferences(context_.State, context_.Files, chosen);
    context_.State.Choices = StoreUserChoices(
        context_.Files, {{SignedCoordinatesKey, defaults_->SignedCoordinates()->isChecked() ? ChoiceTaken : ""},
                         {BaseMapKey, paths_->BaseMap()}});
    if (ChangesRoot(chosen) && !restarts) {
        context_.DesktopServices.Beep();
        context_.Messages.Tell(
            "The Study Group Root Path has been changed. The new path won't go into effect until the next time the "
            "program is run.");
    }
    context_.State.RestartWanted = restarts;
    accept();
}

}  // namespace vantor
