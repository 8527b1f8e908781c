#include "corridor/forms/frmCorridorTracks.h"

#include <QHBoxLayout>
#include <QVBoxLayout>
#include <algorithm>
#include <iterator>
#include <memory>
#include <utility>

#include "core/LoggerChoices.h"
#include "core/Paths.h"
#include "core/StudyGroupFolders.h"
#include "core/Text.h"
#include "core/Units.h"
#include "core/forms/Guarded.h"
#include "core/forms/Named.h"
#include "core/forms/WindowLayout.h"
#include "core/forms/WrappedLabel.h"
#include "core/modMain.h"
#include "gpsobd/LogFormat.h"
#include "gpsobd/PalmDatabase.h"
#include "gpsobd/TrackChoices.h"

namespace vantor {
namespace {

enum Column { File, Direction, Start, Length, Duration, Flags };

constexpr std::size_t MostTold = 6;  // remarks

/// False where it was stopped.
bool ReadAll(AppContext& context, const std::vector<std::string>& paths, const Corridor& corridor,
             CorridorTracks& tracks) {
    bool isWhole = true;
    const TrackSources choices = TrackSourcesOf(context.State.Choices, context.OtherPrograms);
    const bool isSigned = HasSignedCoordinates(context.State.Choices);
    context.Work.Run(
        "Reading tracks", [&, settings = context.State.Settings](FileSystem& files, const Progress& progress) {
            const PalmDatabase palm(files);
            const LogSources sources{files, context.Databases, palm, context.Time, isSigned, choices};
            for (std::size_t i = 0; i < paths.size() && isWhole; ++i) {
                CorridorTracks read =
                    ReadCorridorTracks(sources, paths[i], corridor, settings, progress.PartOf(i, paths.size()));
                isWhole = progress(i + 1, paths.size());
                std::ranges::move(read.Passes, std::back_inserter(tracks.Passes));
                std::ranges::move(read.Remarks, std::back_inserter(tracks.Remarks));
            }
        });
    return isWhole;
}

}  // namespace

frmCorridorTracks::frmCorridorTracks(AppContext& context, const CorridorTracks& tracks,
                                     const std::vector<std::string>& groups, const std::string& group, QWidget* parent)
    : QDialog(parent), context_(context), tracks_(tracks) {
    setObjectName(QStringLiteral("frmCorridorTracks"));
    setWindowTitle(QStringLiteral("Passes of Tracks"));
    auto* column = new QVBoxLayout(this);
    vaPasses_ = Named<TickList>(this, "vaPasses");
    const Units units = UnitsOf(context.State.Settings);
    vaPasses_->SetColumns({QStringLiteral("Track"), QStringLiteral("Direction"), QStringLiteral("Start"),
                           QStringLiteral("Length ") + ToQt(units.LengthTitle()), QStringLiteral("Duration (s)"),
                           QStringLiteral("To be looked at")});
    vaPasses_->SetEmptyText(QStringLiteral("No track passes two nodes of the corridor"));
    column->addWidget(LabelFor(vaPasses_, QStringLiteral("&Passes along the corridor")));
    column->addWidget(vaPasses_, 1);
    auto* remarks = Named<WrappedLabel>(this, "lblRemarks");
    remarks->resize(600, 0);
    remarks->setText(ToQt(FirstOf(tracks.Remarks, MostTold, "\n")));
    remarks->setVisible(!tracks.Remarks.empty());
    column->addWidget(remarks);
    column->addLayout(BuildTarget(groups, group));
    auto* buttons = new TickButtons(*this, context, *vaPasses_, HelpTopic::Corridor);
    column->addWidget(buttons);
    FillList();
    buttons->ShowCount();
    resize(760, 520);
    RememberLayout(*this, context.Memory);
}

QLayout* frmCorridorTracks::BuildTarget(const std::vector<std::string>& groups, const std::string& group) {
    cmbGroup_ = Named<QComboBox>(this, "cmbGroup");
    cmbGroup_->setEditable(true);
    for (const std::string& each : groups) cmbGroup_->addItem(ToQt(each));
    cmbGroup_->setCurrentText(ToQt(group));
    cmbCondition_ = Named<QComboBox>(this, "cmbCondition");
    cmbCondition_->addItems({QStringLiteral("Before"), QStringLiteral("After")});
    auto* row = new QHBoxLayout;
    row->addWidget(LabelFor(cmbGroup_, QStringLiteral("Into &Study Group")));
    row->addWidget(cmbGroup_, 1);
    row->addSpacing(12);
    row->addWidget(LabelFor(cmbCondition_, QStringLiteral("&Driven")));
    row->addWidget(cmbCondition_);
    return row;
}

void frmCorridorTracks::FillList() {
    const Units units = UnitsOf(context_.State.Settings);
    vaPasses_->BeginFilling();
    for (std::size_t i = 0; i < tracks_.Passes.size(); ++i) {
        const InboxTrack& track = tracks_.Passes[i].Track;
        const RunHeader& header = track.Run.Header;
        const int row = vaPasses_->AddRow();
        vaPasses_->SetText(row, File, ToQt(LastComponent(track.Path) + ", " + std::to_string(track.Number)));
        vaPasses_->SetText(row, Direction, ToQt(track.Direction));
        vaPasses_->SetText(row, Start, ToQt(ShortDate(header.RunDate) + " " + ShortTime(header.RunTime)));
        vaPasses_->SetNumber(row, Length, header.RunLength, ToQt(units.LengthCell(header.RunLength)));
        vaPasses_->SetNumber(row, Duration, header.SampleCount, QString::number(header.SampleCount));
        vaPasses_->SetText(row, Flags, ToQt(Joined(track.Flags, "; ")));
        vaPasses_->SetTick(row, i, true);
    }
    vaPasses_->EndFilling();
}

std::vector<CorridorTrack> frmCorridorTracks::Taken() const {
    std::vector<CorridorTrack> taken;
    for (const std::size_t index : vaPasses_->Ticked()) taken.push_back(tracks_.Passes[index]);
    return taken;
}

std::string frmCorridorTracks::Group() const { return std::string(Trim(FromQt(cmbGroup_->currentText()))); }

void frmCorridorTracks::done(int result) {
    if (result == Accepted && Group().empty()) {
        context_.Messages.Tell("The runs need a Study Group.\nEnter its name below the list.", MessageIcon::Warning);
        return cmbGroup_->setFocus();
    }
    if (result == Accepted && !AcceptName(context_.Messages, Group())) return cmbGroup_->setFocus();
    QDialog::done(result);
}

std::optional<Corridor> ImportPasses(const CorridorDocument& document, QWidget* parent) {
    AppContext& context = document.Context();
    const Corridor& corridor = document.Of();
    const std::vector<std::string> paths = context.DesktopServices.ChooseFilesToOpen(
        context.State.Paths.FieldDataPath, "Import Tracks", "Tracks", LogExtensions());
    CorridorTracks tracks;
    if (paths.empty() || !ReadAll(context, paths, corridor, tracks)) return std::nullopt;
    if (tracks.Passes.empty()) {
        context.Messages.Tell(tracks.Remarks.empty() ? "The files have no track." : Joined(tracks.Remarks, "\n"),
                              MessageIcon::Warning);
        return std::nullopt;
    }
    frmCorridorTracks form(context, tracks, document.Groups(),
                           corridor.Runs.empty() ? corridor.Name : corridor.Runs.back().Group, parent);
    if (form.exec() != QDialog::Accepted) return std::nullopt;
    Corridor changed = corridor;
    bool isWritten = false;
    const std::vector<CorridorTrack> taken = form.Taken();
    context.Work.Run("Writing runs", [&](FileSystem& files, const Progress& progress) {
        isWritten = TakePasses(files, changed, taken, document.Root(), form.Group(), form.AreBefore(), progress);
    });
    return isWritten ? std::optional(changed) : std::nullopt;
}

}  // namespace vantor
