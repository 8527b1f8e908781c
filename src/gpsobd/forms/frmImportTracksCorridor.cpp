#include <QHBoxLayout>
#include <QSignalBlocker>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "core/Paths.h"
#include "core/Text.h"
#include "core/forms/Named.h"
#include "core/modMain.h"
#include "corridor/CorridorFile.h"
#include "corridor/CorridorLine.h"
#include "gpsobd/forms/frmImportTracks.h"

namespace vantor {

// A corridor chosen above the rows: they are the passes along it.

/// The corridor, and the files.
QLayout* frmImportTracks::BuildCorridor() {
    const std::string& root = context_.State.Paths.StudyGroupRootPath;
    cmbCorridor_ = Named<QComboBox>(this, "cmbCorridor");
    cmbCorridor_->setMinimumContentsLength(20);
    cmbCorridor_->addItem(QStringLiteral("(none)"), QString());
    for (const std::string& name : ListCorridors(context_.Files, root))
        cmbCorridor_->addItem(ToQt(name), ToQt(CorridorPath(root, name)));
    const bool hasCorridors = cmbCorridor_->count() > 1;
    cmbCorridor_->setEnabled(hasCorridors);
    cmbCorridor_->setToolTip(
        hasCorridors ? QStringLiteral("The tracks are cut into passes along it, and it takes those that are ticked")
                     : QStringLiteral("There is no corridor yet: Utilities, Corridors makes one"));
    cmbCondition_ = Named<QComboBox>(this, "cmbCondition");
    cmbCondition_->addItems({QStringLiteral("Before"), QStringLiteral("After")});
    cmbCondition_->setEnabled(false);
    cmbCondition_->setToolTip(
        QStringLiteral("Whether the passes were driven before or after a change of the corridor"));
    btnAddFiles_ = Named<QPushButton>(this, "btnAddFiles", QStringLiteral("Add &Files..."));
    btnAddFiles_->setAutoDefault(false);
    auto* row = new QHBoxLayout;
    row->addWidget(LabelFor(cmbCorridor_, QStringLiteral("C&orridor")));
    row->addWidget(cmbCorridor_);
    row->addSpacing(8);
    row->addWidget(LabelFor(cmbCondition_, QStringLiteral("&Driven")));
    row->addWidget(cmbCondition_);
    row->addStretch();
    row->addWidget(btnAddFiles_);
    return row;
}

/// Reads the files anew, as passes along the corridor of that file, or as they are where it is empty. A corridor that
/// cannot be read or has no positions leaves everything as it was, which the user is told.
void frmImportTracks::ChooseCorridor(const std::string& path) {
    const std::string before = corridor_ ? corridor_->Path : std::string();
    const auto showChosen = [this](const std::string& chosen) {
        if (cmbCorridor_->findData(ToQt(chosen)) < 0) cmbCorridor_->addItem(ToQt(LastComponent(chosen)), ToQt(chosen));
        cmbCorridor_->setCurrentIndex(cmbCorridor_->findData(ToQt(chosen)));
        cmbCorridor_->setEnabled(cmbCorridor_->count() > 1);
    };
    showChosen(before);
    if (path == before) return;
    std::optional<ChosenCorridor> chosen;
    if (!path.empty()) {
        Corridor corridor;
        context_.Work.Run("Reading the corridor",
                          [&](FileSystem& files, const Progress&) { corridor = LoadCorridor(files, path).Corridor; });
        if (!CorridorLine::Of(corridor))
            return context_.Messages.Tell("The nodes of " + corridor.Name +
                                              " have no positions, so that tracks cannot be cut by it.\nGive them "
                                              "positions in the window of the corridor and try again.",
                                          MessageIcon::Warning);
        chosen = {path, std::move(corridor)};
    }
    if (HasEntries() &&
        !context_.Messages.ConfirmLoss("Names or Study Groups of runs were typed, and the rows will be others.\nDo you "
                                       "want to discard them?"))
        return;
    showChosen(path);
    if (!corridor_) {
        plainGroup_ = Group();
        plainBaseName_ = FromQt(txtBaseName_->text());
    }
    corridor_ = std::move(chosen);
    ProposeNames();
    tracks_.clear();
    rows_.clear();
    ReadFilesAgain();
}

/// The Study Group and the base name: those of the corridor, or as they were entered without one.
void frmImportTracks::ProposeNames() {
    const QSignalBlocker blocker(txtBaseName_);
    cmbGroup_->setCurrentText(ToQt(corridor_ ? corridor_->Of.Name : plainGroup_));
    txtBaseName_->setText(ToQt(corridor_ ? RunBaseNameOf(corridor_->Of) : plainBaseName_));
    cmbCondition_->setEnabled(corridor_.has_value());
    chkForStudy_->setVisible(!corridor_);
}

frmImportTracks::Reading frmImportTracks::ReadFile(const LogSources& sources, const std::string& path,
                                                   const AppSettings& settings, const Progress& progress) const {
    Reading reading;
    if (!corridor_) {
        reading.File = ReadTracks(sources, path, settings, progress);
        return reading;
    }
    CorridorTracks cut = ReadCorridorTracks(sources, path, corridor_->Of, settings, progress);
    reading.File.Remarks = std::move(cut.Remarks);
    reading.File.HasColumns = cut.HasColumns;
    reading.Known = cut.Known;
    for (CorridorTrack& pass : cut.Passes) {
        reading.File.Tracks.push_back(std::move(pass.Track));
        reading.Passes.push_back(std::move(pass.Pass));
    }
    return reading;
}

/// Why files gave no track, and how many passes the corridor has already.
std::string frmImportTracks::RemarksOnFiles() const {
    constexpr std::size_t MostFailures = 3;
    std::vector<std::string> failures;
    std::size_t known = 0;
    for (const auto& [path, file] : files_) {
        known += file.Known;
        if (file.HasTracks || file.Known > 0) continue;
        // That a file does not drive along the corridor stands behind what else there is to say about it.
        failures.insert(failures.end(), corridor_ ? file.Remarks.end() - 1 : file.Remarks.begin(), file.Remarks.end());
    }
    std::string remarks = FirstOf(failures, MostFailures, "\n");
    if (known > 0)
        remarks += (remarks.empty() ? "" : "\n") + corridor_->Of.Name + " has " +
                   (known == 1 ? "1 pass" : std::to_string(known) + " passes") + " of these files already; " +
                   (known == 1 ? "it is" : "they are") + " not listed.";
    return remarks;
}

/// "5 of 6"; empty without a corridor.
std::string frmImportTracks::NodesOf(std::size_t index) const {
    const std::optional<PassFacts>& pass = rows_[index].Pass;
    if (!pass) return {};
    return std::to_string(pass->Nodes) + " of " + std::to_string(corridor_->Of.Nodes.size());
}

/// Writes the runs, into the corridor as well; false where it was stopped.
bool frmImportTracks::Write(const std::vector<TakenTrack>& tracks) {
    bool isWritten = false;
    std::vector<TakenPass> passes;
    if (corridor_)
        for (const TakenTrack& track : tracks)
            passes.push_back({track, *rows_[static_cast<std::size_t>(track.Track - tracks_.data())].Pass});
    context_.Work.Run("Writing the runs", [&, areBefore = cmbCondition_->currentIndex() == 0](
                                              FileSystem& files, const Progress& progress) {
        isWritten = corridor_ ? TakePassesIntoFile(files, corridor_->Path, passes, areBefore, progress)
                              : WriteTracks(files, tracks, GroupRoot(), progress);
    });
    return isWritten;
}

}  // namespace vantor
