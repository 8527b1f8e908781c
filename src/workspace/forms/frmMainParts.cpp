#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QSplitter>
#include <QStatusBar>
#include <QVBoxLayout>

#include "core/forms/Guarded.h"
#include "core/forms/Named.h"
#include "core/forms/Theme.h"
#include "workspace/forms/MainMenu.h"
#include "workspace/forms/ResultsPanel.h"
#include "workspace/forms/RunListView.h"
#include "workspace/forms/RunProfilePane.h"
#include "workspace/forms/StudyDetailsPanel.h"
#include "workspace/forms/StudyHistory.h"
#include "workspace/forms/StudyNotice.h"
#include "workspace/forms/frmMain.h"

namespace vantor {
namespace {

/// Of the window as it opens for the first time: the list shows delays and grade.
constexpr int ListWidth = 620;
constexpr int ProfileWidth = 350;

}  // namespace

QWidget* frmMain::BuildStudyDetails() {
    auto* frame = Named<QFrame>(this, "FrStudyDetails");
    frame->setAccessibleName(QStringLiteral("Study details"));
    details_ = new StudyDetailsPanel(context_, frame);
    details_->OnEdited = [this](const QString& what, StudyContents before, int field) {
        history_->Note(QStringLiteral("Typing in ") + what, std::move(before), field);
        ShowStatus();
    };

    auto* column = new QVBoxLayout(frame);
    column->addWidget(details_);
    column->addLayout(BuildRunListHead(frame));
    column->addWidget(BuildRuns(frame), 1);
    column->addLayout(BuildRunListButtons(frame));
    column->addWidget(results_ = new ResultsPanel(frame));
    results_->OnComputeAnew = [this] { Guarded(context_.Messages, [this] { ComputeStopDelaysAnew(); }); };
    return frame;
}

QWidget* frmMain::BuildBeginning(QWidget* parent) {
    auto* frame = Named<QFrame>(parent, "frBegin");
    frame->setAccessibleName(QStringLiteral("Ways to begin"));
    auto* line = new QHBoxLayout(frame);
    line->setContentsMargins(0, 0, 0, 0);
    line->addWidget(new QLabel(QStringLiteral("Begin with"), frame));
    const auto add = [&](const char* name, const char* caption, const char* icon) {
        auto* button = Named<QPushButton>(frame, name, QString::fromLatin1(caption));
        button->setIcon(LineIcon(QLatin1String(icon)));
        line->addWidget(button);
        return button;
    };
    menu_->Attach(*add("btnBeginCounter", "Counter", "read-counter"), "mnuReadTDC");
    menu_->Attach(*add("btnBeginFile", "Counter File", "counter-file"), "mnuFileProcessRuns");
    auto* logs = new QMenu(frame);
    for (const char* command :
         {"mnuFileRoamlap", "mnuFileRoampad", "mnuFileRevlap", "mnuFileRevpad", "mnuFileCombined", "mnuFileBattelle"})
        logs->addAction(&menu_->Command(command));
    add("btnBeginLog", "GPS or OBD Log", "gps-log")->setMenu(logs);
    menu_->Attach(*add("btnBeginStudy", "Existing Study", "open-study"), "mnuFileOpen");
    menu_->Attach(*add("btnBeginSample", "Try the Sample", "statistics"), "mnuHelpSample");
    return frame;
}

QWidget* frmMain::BuildRuns(QWidget* parent) {
    auto* runs = Named<QSplitter>(parent, "splRuns");
    runs->addWidget(vaRunList_);
    runs->addWidget(profile_ = new RunProfilePane(context_, runs));
    runs->setStretchFactor(0, 1);
    runs->setStretchFactor(1, 1);
    runs->setSizes({ListWidth, ProfileWidth});
    runs->setChildrenCollapsible(false);
    vaRunList_->OnActivated = [this](int run) { profile_->ShowRun(run); };
    setTabOrder(details_->LastField(), vaRunList_);
    return runs;
}

QLayout* frmMain::BuildRunListHead(QWidget* parent) {
    lblNoneCounted_ =
        Named<QLabel>(parent, "lblNoneCounted",
                      QStringLiteral("No run counts yet: set both boundaries of a run on its speed profile."));
    auto* line = new QHBoxLayout;
    line->addWidget(LabelFor(vaRunList_, QStringLiteral("&Runs in this study")));
    line->addStretch();
    line->addWidget(frBegin_ = BuildBeginning(parent));
    lblHiddenRuns_ = Named<QLabel>(parent, "lblHiddenRuns");
    line->addWidget(lblHiddenRuns_);
    line->addWidget(lblNoneCounted_);
    // At most one of them is shown: the window need not have room for all.
    for (QWidget* part : {frBegin_, static_cast<QWidget*>(lblHiddenRuns_), static_cast<QWidget*>(lblNoneCounted_)})
        part->hide();
    return line;
}

QLayout* frmMain::BuildRunListButtons(QWidget* parent) {
    auto* line = new QHBoxLayout;
    const auto add = [&](const char* name, const char* caption, const char* icon, const char* command) {
        auto* button = Named<QPushButton>(parent, name, QString::fromLatin1(caption));
        button->setIcon(LineIcon(QLatin1String(icon)));
        menu_->Attach(*button, command);
        line->addWidget(button);
    };
    add("BtnAddRun", "&Add Run", "add-run", "mnuRunAdd");
    add("BtnDeleteRun", "De&lete Run", "delete-run", "mnuRunDelete");
    add("BtnShowDetails", "Sho&w Details", "show-details", "mnuRunShow");
    add("BtnEditRun", "&Edit Run", "edit", "mnuRunDetails");
    line->addStretch();
    add("btnContDelayVsAvg", "View Control Delay &Plot", "delay-chart", "mnuViewDelayChart");
    return line;
}

void frmMain::BuildStatusBar() {
    lblStudyGroup_ = Named<QLabel>(statusBar(), "lblStudyGroup");
    // A long folder must not keep the window from becoming narrow.
    lblStudyGroup_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    lblDone_ = Named<QLabel>(statusBar(), "lblDone");
    lblSaved_ = Named<QLabel>(statusBar(), "lblSaved");
    notice_ = new StudyNotice(context_, statusBar());
    notice_->OnChanged = [this] {
        details_->ShowStudy();
        ShowStatus();
    };
    statusBar()->addWidget(lblStudyGroup_, 1);
    statusBar()->addWidget(lblDone_);
    statusBar()->addPermanentWidget(notice_);
    notice_->ShowStudy();
    statusBar()->addPermanentWidget(lblSaved_);
}

}  // namespace vantor
