#include "workspace/forms/StudyNotice.h"

#include <QHBoxLayout>

#include "core/Paths.h"
#include "core/StudyFile.h"
#include "core/Text.h"
#include "core/forms/Guarded.h"
#include "core/forms/Named.h"
#include "workspace/StudyWorkspace.h"

namespace vantor {

StudyNotice::StudyNotice(AppContext& context, QWidget* parent) : QWidget(parent), context_(context) {
    lblNotice_ = Named<QLabel>(this, "lblNotice");
    lblNotice_->setTextFormat(Qt::PlainText);
    btnNotice_ = Named<QPushButton>(this, "btnNotice");
    auto* line = new QHBoxLayout(this);
    line->setContentsMargins(0, 0, 0, 0);
    line->addWidget(lblNotice_);
    line->addWidget(btnNotice_);
    Connect(btnNotice_, &QPushButton::clicked, this, context_.Messages, [this] {
        if (const Notice notice = Current(); notice.Action) notice.Action();
        OnChanged();
    });
}

StudyNotice::Notice StudyNotice::Current() {
    ApplicationState& state = context_.State;
    const Study& study = state.CurrentStudy;
    if (study.MissingEntries != 0) return {ToQt(CutShortText(study)), {}, {}};
    if (!state.Replaced.Path.empty())
        return {QStringLiteral("The study that was there is kept as %1.").arg(ToQt(LastComponent(state.Replaced.Path))),
                QStringLiteral("Put back"), [this, &state] { PutReplacedStudyBack(state, context_.Files); }};
    if (!study.Stored) return {};
    const std::string file = BaseName(study.Stored->Path);
    const std::string name(Trim(study.Record.StudyName));
    if (EqualIgnoringCase(file, name)) return {};
    return {QStringLiteral("File %1, study name %2").arg(ToQt(LastComponent(study.Stored->Path)), ToQt(name)),
            QStringLiteral("Use %1").arg(ToQt(file)), [this] { UseNameOfFile(); }};
}

void StudyNotice::UseNameOfFile() {
    ApplicationState& state = context_.State;
    state.CurrentStudy.Record.StudyName = BaseName(state.CurrentStudy.Stored->Path);
    state.StudyUnchanged = false;
    state.StudyFieldsEdited = true;
}

void StudyNotice::ShowStudy() {
    const Notice notice = Current();
    lblNotice_->setText(notice.Text);
    btnNotice_->setText(notice.Caption);
    btnNotice_->setVisible(!notice.Caption.isEmpty());
    setVisible(!notice.Text.isEmpty());
}

}  // namespace vantor
