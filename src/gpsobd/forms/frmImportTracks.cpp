#include "gpsobd/forms/frmImportTracks.h"

#include <QSignalBlocker>
#include <QSplitter>
#include <QVBoxLayout>
#include <algorithm>
#include <iterator>
#include <memory>
#include <optional>
#include <utility>

#include "core/LoggerChoices.h"
#include "core/Paths.h"
#include "core/Position.h"
#include "core/RunFile.h"
#include "core/StudyFile.h"
#include "core/StudyGroupFolders.h"
#include "core/Text.h"
#include "core/Units.h"
#include "core/forms/Guarded.h"
#include "core/forms/Named.h"
#include "core/forms/WindowLayout.h"
#include "core/modMain.h"
#include "gpsobd/PalmDatabase.h"
#include "gpsobd/TrackChoices.h"
#include "gpsobd/TrackLog.h"
#include "gpsobd/forms/frmTrackColumns.h"
#include "map/MapFromRun.h"
#include "map/MapScene.h"

namespace vantor {
namespace {

QString DurationText(const RunRecord& run) {
    constexpr std::int32_t Minute = 60;
    const std::int32_t seconds = run.Header.SampleCount;
    return QStringLiteral("%1:%2").arg(seconds / Minute).arg(seconds % Minute, 2, 10, QLatin1Char('0'));
}

std::optional<Position> FirstPosition(const RunRecord& run) {
    for (const RunSample& sample : run.RunSamples)
        if (const auto at = PositionOf(sample)) return at;
    return std::nullopt;
}

std::string TitleOf(const InboxTrack& track) { return LastComponent(track.Path) + ", " + std::to_string(track.Number); }

}  // namespace

frmImportTracks::frmImportTracks(AppContext& context, const std::vector<std::string>& paths, QWidget* parent)
    : QDialog(parent), context_(context) {
    setObjectName(QStringLiteral("frmImportTracks"));
    setWindowTitle(QStringLiteral("Import Tracks"));
    setWindowFlag(Qt::WindowMaximizeButtonHint);
    auto* column = new QVBoxLayout(this);
    column->addLayout(BuildHead());
    auto* parts = Named<QSplitter>(this, "splTracks");
    parts->setOrientation(Qt::Vertical);
    parts->addWidget(BuildList());
    parts->addWidget(BuildChosen());
    parts->setStretchFactor(0, 3);
    parts->setStretchFactor(1, 2);
    parts->setChildrenCollapsible(false);
    column->addWidget(parts, 1);
    lblRemarks_ = Named<WrappedLabel>(this, "lblRemarks");
    column->addWidget(lblRemarks_);
    column->addLayout(BuildFoot());
    ConnectControls();
    resize(1120, 640);
    RememberLayout(*this, context.Memory);
    AddFiles(paths);
}

void frmImportTracks::AskForFiles() {
    AddFiles(context_.DesktopServices.ChooseFilesToOpen(context_.State.Paths.FieldDataPath, "Add Tracks", "Tracks",
                                                        LogExtensions()));
}

void frmImportTracks::AddFiles(const std::vector<std::string>& paths) {
    std::vector<std::string> added;
    for (const std::string& path : paths)
        if (!files_.contains(path) && std::ranges::find(added, path) == added.end()) added.push_back(path);
    std::vector<InboxFile> read;
    const bool isSigned = HasSignedCoordinates(context_.State.Choices);
    const TrackSources choices = TrackSourcesOf(context_.State.Choices, context_.OtherPrograms);
    const auto readAll = [&, settings = context_.State.Settings](FileSystem& files, const Progress& progress) {
        const PalmDatabase palm(files);
        const LogSources sources{files, context_.Databases, palm, context_.Time, isSigned, choices};
        for (std::size_t i = 0; i < added.size(); ++i) {
            InboxFile file = ReadTracks(sources, added[i], settings, progress.PartOf(i, added.size()));
            // A file in which the user stopped the reading may lack its end.
            if (!progress(i + 1, added.size())) return;
            read.push_back(std::move(file));
        }
    };
    if (!added.empty()) context_.Work.Run("Reading tracks", readAll);
    added.resize(read.size());
    TakeInbox(added, std::move(read));
}

void frmImportTracks::TakeInbox(const std::vector<std::string>& paths, std::vector<InboxFile> read) {
    const std::size_t before = rows_.size();
    for (std::size_t i = 0; i < read.size(); ++i) {
        InboxFile& file = read[i];
        paths_.push_back(paths[i]);
        files_[paths[i]] = {std::move(file.Remarks), !file.Tracks.empty(), file.HasColumns};
        std::ranges::move(file.Tracks, std::back_inserter(tracks_));
    }
    for (std::size_t i = before; i < tracks_.size(); ++i) {
        rows_.push_back({ProfileTrace(tracks_[i].Run, context_.State.Settings.SpeedFactor), {}, {}, true, false});
        const auto kept = kept_.find({tracks_[i].Path, tracks_[i].Number});
        if (kept != kept_.end()) rows_.back().TypedName = kept->second.TypedName;
    }
    FindSameRuns();
    for (std::size_t i = before; i < rows_.size(); ++i) {
        const bool isFlagged = !IsWithoutFlags(i);
        const auto kept = kept_.find({tracks_[i].Path, tracks_[i].Number});
        const bool isAsBefore = kept != kept_.end() && kept->second.WasFlagged == isFlagged;
        rows_[i].IsTaken = isAsBefore ? kept->second.IsTaken : !isFlagged || !rows_[i].TypedName.empty();
    }
    mapped_.clear();
    ShowTracks();
}

/// The way of the chosen track and of those that begin near it; without a position the profile has the room.
void frmImportTracks::ShowMap(std::size_t chosen) {
    const auto at = FirstPosition(tracks_[chosen].Run);
    const auto isNear = [&](const InboxTrack& track) {
        constexpr double Near = 30 * FeetPerMile;
        const auto its = FirstPosition(track.Run);
        return at && its && FeetBetween(*at, *its) <= Near;
    };
    map_->setVisible(at.has_value());
    if (!at || (chosen < mapped_.size() && mapped_[chosen])) return;
    mapped_.assign(tracks_.size(), false);
    auto scene = std::make_shared<MapScene>();
    context_.Work.Run("Drawing the map", [&](FileSystem&, const Progress&) {
        MapContents contents;
        contents.Title = "Tracks";
        contents.Shown = UnitsOf(context_.State);
        for (std::size_t i = 0; i < tracks_.size(); ++i) {
            mapped_[i] = isNear(tracks_[i]);
            contents.Tracks.push_back(mapped_[i] ? TrackOf(tracks_[i].Run, TitleOf(tracks_[i])) : MapTrack());
        }
        *scene = MapScene(std::move(contents));
    });
    map_->Show(std::move(scene));
}

/// The files, in another zone or cut in another way.
void frmImportTracks::ReadAgain() {
    context_.State.Choices = StoreUserChoices(
        context_.Files,
        {{TrackZoneKey, FromQt(cmbZone_->currentData().toString())}, {TrackGapKey, std::to_string(spnGap_->value())}});
    ReadFilesAgain();
}

/// Reads the files anew; what was ticked and typed stays with tracks that are still there.
void frmImportTracks::ReadFilesAgain() {
    const std::vector<std::string> paths = std::exchange(paths_, {});
    for (std::size_t i = 0; i < rows_.size(); ++i) {
        rows_[i].WasFlagged = !IsWithoutFlags(i);
        kept_.insert_or_assign({tracks_[i].Path, tracks_[i].Number}, std::move(rows_[i]));
    }
    tracks_.clear();
    rows_.clear();
    files_.clear();
    AddFiles(paths);
    kept_.clear();
}

bool frmImportTracks::IsWithoutFlags(std::size_t index) const {
    return tracks_[index].Flags.empty() && rows_[index].SameAs.empty();
}

std::string frmImportTracks::Group() const { return std::string(Trim(FromQt(cmbGroup_->currentText()))); }

std::string frmImportTracks::Folder() const { return GroupFolder(context_.State.Paths.StudyGroupRootPath, Group()); }

/// A track is ticked or not anew where the group changes whether something is to be looked at.
void frmImportTracks::TakeGroup() {
    if (Group() == shownGroup_) return;
    std::vector<bool> hadFlags;
    for (std::size_t i = 0; i < rows_.size(); ++i) hadFlags.push_back(!IsWithoutFlags(i));
    FindSameRuns();
    for (std::size_t i = 0; i < rows_.size(); ++i)
        if (hadFlags[i] == IsWithoutFlags(i)) rows_[i].IsTaken = IsWithoutFlags(i);
    ShowTracks();
}

/// Looks for the tracks among the runs that lie in the group, and among each other.
void frmImportTracks::FindSameRuns() {
    namesInGroup_.clear();
    shownGroup_ = Group();
    const std::string folder = Folder();
    const bool isThere = IsSafeName(Group()) && FolderExists(context_.Files, folder);
    for (InboxRow& row : rows_) row.SameAs.clear();
    if (isThere)
        for (const FileInfo& info : context_.Files.List(folder, RunExtension))
            namesInGroup_.push_back(BaseName(info.Name));
    std::vector<SameRun> same;
    context_.Work.Run("Comparing the tracks with the runs of the group",
                      [&](FileSystem& files, const Progress& progress) {
                          same = SameRuns(files, isThere ? folder : std::string(), tracks_, progress);
                      });
    for (const SameRun& run : same) rows_[run.Track].SameAs = run.Name;
}

void frmImportTracks::ShowTracks() {
    const Units units = UnitsOf(context_.State);
    const int current = vaTracks_->currentRow();
    {
        const QSignalBlocker blocker(vaTracks_);
        vaTracks_->BeginFilling();
        for (std::size_t i = 0; i < tracks_.size(); ++i) ShowTrack(i, units);
        vaTracks_->EndFilling();
        // Rows stand in the order of their files; their numbers are those of the tracks.
        vaTracks_->setSortingEnabled(false);
        vaTracks_->setCurrentCell(std::clamp(current, 0, std::max(0, vaTracks_->rowCount() - 1)), File);
    }
    std::vector<std::string> failures;
    for (const auto& [path, file] : files_)
        if (!file.HasTracks) failures.insert(failures.end(), file.Remarks.begin(), file.Remarks.end());
    lblRemarks_->setText(ToQt(FirstOf(failures, 3, "\n")));
    lblRemarks_->setVisible(!failures.empty());
    btnUnflagged_->setEnabled(!tracks_.empty());
    btnColumns_->setEnabled(std::ranges::any_of(files_, [](const auto& file) { return file.second.HasColumns; }));
    ShowNames();
    ShowChosen();
}

void frmImportTracks::ShowTrack(std::size_t index, const Units& units) {
    const InboxTrack& track = tracks_[index];
    const RunHeader& header = track.Run.Header;
    const int row = vaTracks_->AddRow();
    vaTracks_->SetText(row, File, ToQt(TitleOf(track)));
    vaTracks_->item(row, File)->setToolTip(ToQt(track.Path));
    vaTracks_->SetText(row, Picture, {});
    vaTracks_->SetText(row, Start, ToQt(ShortDate(header.RunDate) + " " + ShortTime(header.RunTime)));
    vaTracks_->SetText(row, Direction, ToQt(track.Direction));
    vaTracks_->SetNumber(row, Length, header.RunLength, ToQt(units.LengthCell(header.RunLength)));
    vaTracks_->SetText(row, Duration, DurationText(track.Run));
    vaTracks_->SetText(row, Name, {});
    vaTracks_->SetText(row, Flags, ToQt(Joined(FlagsOf(index), "; ")));
    for (int column = 0; column < vaTracks_->columnCount(); ++column) {
        QTableWidgetItem* item = vaTracks_->item(row, column);
        item->setFlags(item->flags().setFlag(Qt::ItemIsEditable, column == Name));
    }
    vaTracks_->SetTick(row, index, rows_[index].IsTaken);
}

std::vector<std::string> frmImportTracks::FlagsOf(std::size_t index) const {
    std::vector<std::string> flags = tracks_[index].Flags;
    if (!rows_[index].SameAs.empty()) flags.insert(flags.begin(), "same drive as " + rows_[index].SameAs);
    return flags;
}

RunNameTemplate frmImportTracks::NameParts() const {
    RunNameTemplate parts;
    parts.BaseName = std::string(Trim(FromQt(txtBaseName_->text())));
    if (parts.BaseName.empty()) parts.BaseName = Group();
    return parts;
}

/// Of each ticked track the name that was typed, or the next one that is free; of the others none.
std::map<std::size_t, std::string> frmImportTracks::Names() const {
    std::vector<std::string> taken = namesInGroup_;
    std::map<std::size_t, std::string> names;
    std::vector<std::size_t> unnamed;
    std::vector<const InboxTrack*> tracks;
    for (const std::size_t index : vaTracks_->Ticked()) {
        if (rows_[index].TypedName.empty()) {
            unnamed.push_back(index);
            tracks.push_back(&tracks_[index]);
        } else {
            taken.push_back(names[index] = rows_[index].TypedName);
        }
    }
    const RunNameTemplate parts = NameParts();
    // Without a group there are no names yet.
    const std::vector<std::string> proposed =
        parts.BaseName.empty() ? std::vector<std::string>(tracks.size()) : InboxNames(parts, tracks, taken);
    for (std::size_t i = 0; i < unnamed.size(); ++i) names[unnamed[i]] = proposed[i];
    return names;
}

void frmImportTracks::ShowNames() {
    const std::map<std::size_t, std::string> names = Names();
    const QSignalBlocker blocker(vaTracks_);
    for (std::size_t i = 0; i < rows_.size(); ++i) {
        const auto name = names.find(i);
        rows_[i].IsTaken = name != names.end();
        vaTracks_->item(static_cast<int>(i), Name)->setText(rows_[i].IsTaken ? ToQt(name->second) : QString());
    }
    vaTracks_->viewport()->update();
    buttons_->ShowCount();
}

void frmImportTracks::TakeTypedName(std::size_t index, const std::string& name) {
    rows_[index].TypedName = Trim(name);
    if (!rows_[index].TypedName.empty() && !rows_[index].IsTaken)
        vaTracks_->item(static_cast<int>(index), File)->setCheckState(Qt::Checked);
}

void frmImportTracks::TickUnflagged() {
    for (std::size_t i = 0; i < rows_.size(); ++i) rows_[i].IsTaken = IsWithoutFlags(i);
    ShowTracks();
}

void frmImportTracks::ShowChosen() {
    const int row = vaTracks_->currentRow();
    btnReview_->setEnabled(ChosenPath() != nullptr);
    ShowNotes();
    if (row < 0 || tracks_.empty()) {
        map_->hide();
        return profile_->ShowText(QStringLiteral("The chosen track is shown here."));
    }
    ShowMap(static_cast<std::size_t>(row));
    map_->SetChosenItem(row + 1);
    profile_->ShowRun(tracks_[static_cast<std::size_t>(row)].Run, {}, context_.State.Settings);
}

/// The file of the chosen track; null without one.
const std::string* frmImportTracks::ChosenPath() const {
    const auto row = static_cast<std::size_t>(vaTracks_->currentRow());
    return row < tracks_.size() ? &tracks_[row].Path : nullptr;
}

void frmImportTracks::ShowNotes() {
    std::vector<std::string> lines;
    if (const std::string* path = ChosenPath()) {
        const auto row = static_cast<std::size_t>(vaTracks_->currentRow());
        lines = FlagsOf(row);
        lines.insert(lines.begin(), TitleOf(tracks_[row]) + (lines.empty() ? "" : ", to be looked at:"));
        const std::vector<std::string>& remarks = files_.at(*path).Remarks;
        lines.insert(lines.end(), remarks.begin(), remarks.end());
    } else {
        for (const auto& [name, file] : files_) lines.insert(lines.end(), file.Remarks.begin(), file.Remarks.end());
    }
    txtNotes_->setPlainText(ToQt(Joined(lines, "\n")));
}

void frmImportTracks::ChooseColumns() {
    std::vector<std::string> paths;
    for (const std::string& path : paths_)
        if (files_.at(path).HasColumns) paths.push_back(path);
    // First the one that is chosen, or that gave nothing.
    const std::string* chosen = ChosenPath();
    const auto isFirst = [&](const std::string& path) {
        return chosen != nullptr && HasColumns(*chosen) ? path == *chosen : !files_.at(path).HasTracks;
    };
    std::stable_partition(paths.begin(), paths.end(), isFirst);
    frmTrackColumns form(context_, paths, this);
    if (form.exec() == Accepted) ReadFilesAgain();
}

void frmImportTracks::keyPressEvent(QKeyEvent* event) {
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    const QWidget* field = focusWidget();
    // Above the list Enter takes what was typed, and the list shows what came of it.
    if (isEnter && (field == cmbGroup_ || field == txtBaseName_ || field == cmbZone_ || field == spnGap_))
        return vaTracks_->setFocus();
    QDialog::keyPressEvent(event);
}

void frmImportTracks::done(int result) {
    if (result == Accepted) {
        bool isWritten = false;
        Guarded(context_.Messages, [&] { isWritten = WriteTicked(); });
        if (!isWritten) return;
    } else if (std::ranges::any_of(rows_, [](const InboxRow& row) { return !row.TypedName.empty(); }) &&
               !context_.Messages.ConfirmLoss("Names of runs were typed, and no run was made.\nDo you want to discard "
                                              "the names?")) {
        return;
    }
    QDialog::done(result);
}

/// Whether the group and the names can be used; else the user was told why.
bool frmImportTracks::AcceptNames(const std::map<std::size_t, std::string>& names) {
    if (Group().empty()) {
        context_.Messages.Tell("The runs need a Study Group.\nEnter its name above the list.", MessageIcon::Warning);
        cmbGroup_->setFocus();
        return false;
    }
    if (!AcceptName(context_.Messages, Group())) {
        cmbGroup_->setFocus();
        return false;
    }
    std::vector<std::string> called;
    for (const auto& [index, name] : names) {
        if (!AcceptName(context_.Messages, name)) return false;
        called.push_back(name);
    }
    const std::string clash = NameClash(called, namesInGroup_);
    if (!clash.empty()) context_.Messages.Tell(clash, MessageIcon::Warning);
    return clash.empty();
}

bool frmImportTracks::WriteTicked() {
    TakeGroup();
    const std::map<std::size_t, std::string> names = Names();
    if (!AcceptNames(names)) return false;
    std::vector<NamedTrack> tracks;
    tracks.reserve(names.size());
    for (const auto& [index, name] : names) tracks.push_back({&tracks_[index], name});
    ApplicationState& state = context_.State;
    MakeStudyGroup(context_.Files, context_.Messages, state.Paths.StudyGroupRootPath, Group(), {});
    const std::string folder = Folder();
    bool isWritten = false;
    context_.Work.Run("Writing the runs", [&](FileSystem& files, const Progress& progress) {
        isWritten = WriteTracks(files, tracks, folder, progress);
    });
    if (!isWritten) return false;
    RememberGroupOfRuns(state, context_.Files, Group());
    state.Choices = StoreUserChoices(context_.Files, {{BaseNameKey, FromQt(txtBaseName_->text())}});
    if (!chkForStudy_->isChecked()) return true;
    forStudy_.Folder = folder;
    for (const NamedTrack& track : tracks) forStudy_.Names.push_back(track.Name);
    return true;
}

}  // namespace vantor
