#include "workspace/forms/frmStudyOpen.h"

#include <QVBoxLayout>

#include "core/Paths.h"
#include "core/StudyFile.h"
#include "core/StudyRecords.h"
#include "core/forms/Guarded.h"
#include "core/forms/Named.h"
#include "core/forms/WindowLayout.h"
#include "core/modMain.h"
#include "workspace/StudyWorkspace.h"
#include "workspace/forms/DialogParts.h"

namespace vantor {

frmStudyOpen::frmStudyOpen(AppContext& context)
    : context_(context),
      browser_(new StudyBrowser(this, context)),
      BtnOpen_(Named<QPushButton>(this, "BtnOpen", QStringLiteral("&Open"))) {
    setObjectName(QStringLiteral("frmStudyOpen"));
    setWindowTitle(QStringLiteral("Open Existing Study"));
    BtnOpen_->setDefault(true);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(browser_, 1);
    layout->addLayout(DialogFoot(*this, context, HelpTopic::StudyOpen, {BtnOpen_}));

    Connect(BtnOpen_, &QPushButton::clicked, this, context.Messages, [this] { OpenChosen(); });
    browser_->OnStudyOpened = [this] { OpenChosen(); };
    browser_->OnStudyChosen = [this] {
        BtnOpen_->setEnabled(browser_->Study() != nullptr && browser_->Study()->Problem.empty());
    };
    browser_->ShowGroup(StudyGroupFolder(context.State));
    browser_->SelectStudy(context.State.Paths.LastStudyName);
    browser_->FocusStudies();
    resize(820, 560);
    RememberLayout(*this, context.Memory);
}

void frmStudyOpen::OpenChosen() {
    const ListedStudy* study = browser_->Study();
    if (study == nullptr || !study->Problem.empty()) return;
    const std::string group = browser_->Group();
    const std::string name = study->Name;
    if (!FileExists(context_.Files, group + name + StudyExtension)) {
        // Opening a file that is gone would leave an empty study in the place of the current one.
        browser_->ShowGroup(group);
        context_.Messages.Tell("The file of study: " + name + "\n is no longer in Study Group: " + LastComponent(group),
                               MessageIcon::Warning);
        return;
    }
    // The study is open even where only the settings could not be saved.
    const bool isTaken = Guarded(context_.Messages, [&] {
        OpenStudy(context_.State, context_.Files, context_.DesktopServices, context_.Time, group, name);
    });
    if (isTaken || IsCurrentStudy(context_.State, group, name)) accept();
}

}  // namespace vantor
