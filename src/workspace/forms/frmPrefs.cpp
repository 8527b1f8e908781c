#include "workspace/forms/frmPrefs.h"

#include <QScreen>
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

frmPrefs::frmPrefs(AppContext& context, std::function<bool(int port)> portAvailable,
                   std::function<std::string(int port)> deviceName)
    : context_(context),
      tabPrefs_(Named<QTabWidget>(this, "tabPrefs")),
      paths_(new PrefsPathTab(tabPrefs_, context)),
      defaults_(
          new PrefsDefaultsTab(tabPrefs_, context.State.Settings, {std::move(portAvailable), std::move(deviceName)})),
      reports_(new PrefsReportTab(tabPrefs_, context.State.Settings)) {
    setObjectName(QStringLiteral("frmPrefs"));
    defaults_->SignedCoordinates()->setChecked(HasSignedCoordinates(context.Memory));
    setWindowTitle(QStringLiteral("Vantor Preferences"));
    tabPrefs_->setAccessibleName(QStringLiteral("Preferences"));
    tabPrefs_->addTab(Scrolled(tabPrefs_, paths_), QStringLiteral("Pat&h Options"));
    tabPrefs_->addTab(Scrolled(tabPrefs_, defaults_), QStringLiteral("&Default Values"));
    tabPrefs_->addTab(Scrolled(tabPrefs_, reports_), QStringLiteral("&Report Options"));
    auto* ok = Named<QPushButton>(this, "btnOk", QStringLiteral("OK"));
    ok->setDefault(true);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(tabPrefs_, 1);
    layout->addLayout(DialogFoot(*this, context, HelpTopic::Preferences, {ok}, QStringLiteral("Cancel"), "btnCancel"));
    Connect(ok, &QPushButton::clicked, this, context.Messages, [this] { Save(); });
    // No folder box is being edited at first.
    tabPrefs_->tabBar()->setFocus();
    resize(QSize(780, 540).boundedTo(screen()->availableSize()));
    RememberLayout(*this, context.Memory);
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

void frmPrefs::OfferMissingFolders(const Preferences& preferences) {
    for (const std::string& folder : MissingFolders(context_.Files, preferences))
        if (context_.Messages.Confirm("There is no folder: " + folder + "\nDo you want to create it?"))
            context_.Files.CreateFolder(folder);
}

void frmPrefs::Save() {
    const Preferences chosen = Chosen();
    OfferMissingFolders(chosen);
    SavePreferences(context_.State, context_.Files, chosen);
    StoreSignedCoordinates(context_.Memory, defaults_->SignedCoordinates()->isChecked());
    if (ChangesRoot(chosen)) {
        context_.DesktopServices.Beep();
        context_.Messages.Tell(
            "The Study Group Root Path has been changed. The new path won't go into effect until the next time the "
            "program is run.");
    }
    accept();
}

}  // namespace vantor
