#include "workspace/forms/RunProfilePane.h"

#include <QHBoxLayout>
#include <QVBoxLayout>
#include <chrono>
#include <utility>

#include "core/StudyFile.h"
#include "core/UserChoices.h"
#include "core/forms/Guarded.h"
#include "core/forms/Named.h"
#include "map/MapFromRun.h"

namespace vantor {

using namespace std::chrono_literals;

namespace {

/// Of what is shown of the active run: the map of its way, where it has one.
constexpr const char* RunMapKey = "run-map";

constexpr const char* NoRunText = "There is no run to draw: its file is missing or damaged.";

std::shared_ptr<const MapScene> MapOf(const RunReading& reading, const std::string& name, const Units& units) {
    if (!reading || !HasPositions(reading.Run)) return nullptr;
    MapContents contents;
    contents.Title = "Way of the active run";
    contents.Tracks.push_back(TrackOf(reading.Run, name));
    contents.Nodes = NodesOf(reading.Run);
    contents.Shown = units;
    return std::make_shared<const MapScene>(std::move(contents));
}

}  // namespace

RunProfilePane::RunProfilePane(AppContext& context, QWidget* parent)
    : QWidget(parent), context_(context), work_(context.Work.Another()) {
    setObjectName(QStringLiteral("RunProfilePane"));
    view_ = Named<ProfileView>(this, "RunProfile");
    view_->setAccessibleName(QStringLiteral("Speed profile of the active run"));
    // It gives way to the list where the screen is small.
    view_->setMinimumSize(160, 60);
    map_ = new MapView(context, this);
    map_->setObjectName(QStringLiteral("RunMap"));
    map_->setAccessibleName(QStringLiteral("Map of the active run"));
    map_->PictureStart = [this] { return StudyGroupFolder(context_.State) + RunFileName(entry_) + " map"; };
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addLayout(BuildHead());
    views_ = new QStackedLayout;
    views_->addWidget(view_);
    views_->addWidget(map_);
    column->addLayout(views_, 1);

    soon_.setSingleShot(true);
    soon_.setInterval(80ms);
    whenRead_.setInterval(20ms);
    Connect(&soon_, &QTimer::timeout, this, context.Messages, [this] { BeginToRead(); });
    Connect(&whenRead_, &QTimer::timeout, this, context.Messages, [this] { ShowWhenRead(); });
    ShowRun(0);
}

QLayout* RunProfilePane::BuildHead() {
    lblRunProfile_ = Named<QLabel>(this, "lblRunProfile");
    lblRunProfile_->setTextFormat(Qt::PlainText);
    lblRunProfile_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    auto* line = new QHBoxLayout;
    line->setSpacing(0);
    line->addWidget(lblRunProfile_, 1);
    const auto add = [&](const char* name, const char* caption, const char* accessible, bool showsMap) {
        auto* button = Named<QToolButton>(this, name);
        button->setText(QString::fromLatin1(caption));
        button->setAccessibleName(QString::fromLatin1(accessible));
        button->setCheckable(true);
        button->setAutoExclusive(true);
        button->setAutoRaise(true);
        // No higher than the name beside it: on a low screen each line counts.
        button->setMaximumHeight(lblRunProfile_->sizeHint().height());
        button->setFocusPolicy(Qt::TabFocus);
        Connect(button, &QToolButton::clicked, this, context_.Messages, [this, showsMap] { ChooseMap(showsMap); });
        line->addWidget(button);
        return button;
    };
    btnShowProfile_ = add("btnShowProfile", "Profile", "Show the speed profile of the active run", false);
    btnShowMap_ = add("btnShowMap", "Map", "Show the map of the active run", true);
    btnShowProfile_->setChecked(true);
    return line;
}

void RunProfilePane::ChooseMap(bool showsMap) {
    context_.State.Choices = StoreUserChoices(context_.Files, {{RunMapKey, showsMap ? ChoiceTaken : ""}});
    OfferMap(btnShowMap_->isEnabled(), btnShowMap_->toolTip());
}

void RunProfilePane::OfferMap(bool hasMap, const QString& reason) {
    btnShowMap_->setEnabled(hasMap);
    btnShowMap_->setToolTip(reason);
    const bool showsMap = hasMap && IsTaken(context_.State.Choices, RunMapKey);
    (showsMap ? btnShowMap_ : btnShowProfile_)->setChecked(true);
    views_->setCurrentIndex(showsMap ? 1 : 0);
}

void RunProfilePane::ShowRun(int run) {
    const Study& study = context_.State.CurrentStudy;
    soon_.stop();
    // What is being read may be another run.
    whenRead_.stop();
    if (run < 1 || run > study.Record.RunCount) {
        lblRunProfile_->clear();
        OfferMap(false, QStringLiteral("There is no active run."));
        return view_->ShowText(QStringLiteral("The speed profile of the active run stands here."));
    }
    entry_ = study.Entries[run];
    if (isVisible()) soon_.start();
}

void RunProfilePane::BeginToRead() {
    // What is being read is not waited for.
    if (work_->IsBusy()) return soon_.start();
    reading_ = std::make_shared<Reading>();
    work_->Begin([reading = reading_, folder = StudyGroupFolder(context_.State), name = RunFileName(entry_),
                  units = UnitsOf(context_.State.Settings)](FileSystem& files, const Progress&) {
        reading->Run = ReadRun(files, folder, name, RunPart::Whole);
        reading->Map = MapOf(reading->Run, name, units);
    });
    whenRead_.start();
}

void RunProfilePane::ShowWhenRead() {
    if (work_->IsBusy()) return;
    whenRead_.stop();
    work_->Finish();
    ShowReading(std::move(*reading_));
}

void RunProfilePane::ShowReading(Reading reading) {
    lblRunProfile_->setText(ToQt(RunFileName(entry_)));
    if (!reading.Run) {
        OfferMap(false, QString::fromLatin1(NoRunText));
        return view_->ShowText(QString::fromLatin1(NoRunText));
    }
    const bool hasMap = reading.Map != nullptr;
    if (hasMap) map_->Show(std::move(reading.Map));
    OfferMap(hasMap, hasMap ? QString() : QStringLiteral("This run has no positions, as runs of counters have none."));
    view_->ShowRun(std::move(reading.Run.Run), entry_, context_.State.Settings);
}

}  // namespace vantor
