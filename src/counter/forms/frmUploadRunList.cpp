#include "counter/forms/frmUploadRunList.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "core/forms/Guarded.h"
#include "core/forms/HelpButton.h"
#include "core/forms/Named.h"
#include "core/forms/Table.h"
#include "core/forms/WindowLayout.h"
#include "counter/forms/RunTable.h"
#include "counter/modUpload.h"

namespace vantor {

frmUploadRunList::frmUploadRunList(AppContext& context, const std::string& studyGroup) {
    setObjectName(QStringLiteral("frmUploadRunList"));
    setWindowTitle(QStringLiteral("Runs in Selected Study Group"));

    auto* lblStudyGroup =
        Named<QLabel>(this, "lblStudyGroup", QStringLiteral("List of runs in Study Group: ") + ToQt(studyGroup));
    auto* frame = Named<QGroupBox>(this, "fraRunList", QStringLiteral("List of Runs in ..."));
    auto* vaShowRuns = Named<LongList>(frame, "vaShowRuns");
    vaShowRuns->setAccessibleName(QStringLiteral("Runs in the Study Group"));
    runs_.emplace(*vaShowRuns, context.Work, UnitsOf(context.State));
    vaShowRuns->SetEmptyText(QStringLiteral("There are no runs in this Study Group yet."));
    (new QVBoxLayout(frame))->addWidget(vaShowRuns);

    auto* BtnUploadOk = Named<QPushButton>(this, "BtnUploadOk", QStringLiteral("OK"));
    BtnUploadOk->setDefault(true);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(HelpButton(*this, context, HelpTopic::RunsInGroup));
    buttons->addStretch();
    buttons->addWidget(BtnUploadOk);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(lblStudyGroup);
    layout->addWidget(frame);
    layout->addLayout(buttons);
    resize(1040, 420);
    vaShowRuns->setFocus();

    Connect(BtnUploadOk, &QPushButton::clicked, this, context.Messages, [this] { accept(); });
    Guarded(context.Messages,
            [&] { runs_->ShowFolder(GroupFolder(context.State.Paths.StudyGroupRootPath, studyGroup)); });
    RememberLayout(*this, context.Memory);
}

}  // namespace vantor
