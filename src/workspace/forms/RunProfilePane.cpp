#include "workspace/forms/RunProfilePane.h"

#include <QVBoxLayout>
#include <chrono>

#include "core/StudyFile.h"
#include "core/forms/Guarded.h"
#include "core/forms/Named.h"

namespace vantor {

using namespace std::chrono_literals;

RunProfilePane::RunProfilePane(AppContext& context, QWidget* parent)
    : QWidget(parent), context_(context), work_(context.Work.Another()) {
    setObjectName(QStringLiteral("RunProfilePane"));
    lblRunProfile_ = Named<QLabel>(this, "lblRunProfile");
    lblRunProfile_->setTextFormat(Qt::PlainText);
    lblRunProfile_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    view_ = Named<ProfileView>(this, "RunProfile");
    view_->setAccessibleName(QStringLiteral("Speed profile of the active run"));
    // It gives way to the list where the screen is small.
    view_->setMinimumSize(160, 60);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(lblRunProfile_);
    column->addWidget(view_, 1);

    soon_.setSingleShot(true);
    soon_.setInterval(80ms);
    whenRead_.setInterval(20ms);
    Connect(&soon_, &QTimer::timeout, this, context.Messages, [this] { BeginToRead(); });
    Connect(&whenRead_, &QTimer::timeout, this, context.Messages, [this] { ShowWhenRead(); });
    ShowRun(0);
}

void RunProfilePane::ShowRun(int run) {
    const Study& study = context_.State.CurrentStudy;
    soon_.stop();
    // What is being read may be another run.
    whenRead_.stop();
    if (run < 1 || run > study.Record.RunCount) {
        lblRunProfile_->clear();
        return view_->ShowText(QStringLiteral("The speed profile of the active run stands here."));
    }
    entry_ = study.Entries[run];
    if (isVisible()) soon_.start();
}

void RunProfilePane::BeginToRead() {
    // What is being read is not waited for.
    if (work_->IsBusy()) return soon_.start();
    reading_ = std::make_shared<RunReading>();
    work_->Begin([reading = reading_, folder = StudyGroupFolder(context_.State), name = RunFileName(entry_)](
                     FileSystem& files, const Progress&) { *reading = ReadRun(files, folder, name, RunPart::Whole); });
    whenRead_.start();
}

void RunProfilePane::ShowWhenRead() {
    if (work_->IsBusy()) return;
    whenRead_.stop();
    work_->Finish();
    ShowReading(std::move(*reading_));
}

void RunProfilePane::ShowReading(RunReading reading) {
    lblRunProfile_->setText(ToQt(RunFileName(entry_)));
    if (!reading) return view_->ShowText(QStringLiteral("There is no run to draw: its file is missing or damaged."));
    view_->ShowRun(std::move(reading.Run), entry_, context_.State.Settings);
}

}  // namespace vantor
