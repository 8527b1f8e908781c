#include "gpsobd/forms/frmImportTracks.h"

#include <QSignalBlocker>
#include <QSplitter>
#include <QVBoxLayout>
#include <algorithm>
#include <iterator>
#include <memory>
#include <optional>
#include <set>
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

/// To those of its group; none where there are none.
void AddRuns(std::vector<RunsForStudy>& groups, const RunsForStudy& runs) {
    if (runs.Names.empty()) return;
    auto its = std::ranges::find(groups, runs.Folder, &RunsForStudy::Folder);
    if (its == groups.end()) its = groups.insert(its, {runs.Folder, {}});
    its->Names.insert(its->Names.end(), runs.Names.begin(), runs.Names.end());
}

std::vector<MapNode> MapNodesOf(const Corridor& corridor) {
    std::vector<MapNode> nodes;
    for (const CorridorNode& node : corridor.Nodes)
        if (node.At) nodes.push_back({node.Name, *node.At});
    return nodes;
}

std::string TitleOf(const InboxTrack& track) { return LastComponent(track.Path) + ", " + std::to_string(track.Number); }

}  // namespace

frmImportTracks::frmImportTracks(AppContext& context, const std::vector<std::string>& paths,
                                 const std::string& corridor, QWidget* parent)
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
    cmbGroup_->setFocus();
    resize(1240, 660);
    RememberLayout(*this, context.Memory);
    if (!corridor.empty()) ChooseCorridor(corridor);
    AddFiles(paths);
}

void frmImportTracks::AskForFiles() {
    AddFiles(context_.DesktopServices.ChooseFilesToOpen(context_.State.Paths.FieldDataPath, "Add Tracks", "Tracks",
                                                        LogExtensions()));
    // With a group, and so with names, Enter takes the runs.
    if (!tracks_.empty() && !Group().empty()) vaTracks_->setFocus();
}

void frmImportTracks::AddFiles(const std::vector<std::string>& paths) {
    std::vector<std::string> added;
    for (const std::string& path : paths)
        if (!files_.contains(path) && std::ranges::find(added, path) == added.end()) added.push_back(path);
    std::vector<Reading> read;
    const bool isSigned = HasSignedCoordinates(context_.State.Choices);
    const TrackSources choices = TrackSourcesOf(context_.State.Choices, context_.OtherPrograms);
    const auto readAll = [&, settings = context_.State.Settings](FileSystem& files, const Progress& progress) {
        const PalmDatabase palm(files);
        const LogSources sources{files, context_.Databases, palm, context_.Time, isSigned, choices};
        for (std::size_t i = 0; i < added.size(); ++i) {
            Reading file = ReadFile(sources, added[i], settings, progress.PartOf(i, added.size()));
            // A file in which the user stopped the reading may lack its end.
            if (!progress(i + 1, added.size())) return;
            read.push_back(std::move(file));
        }
    };
    if (!added.empty()) context_.Work.Run("Reading tracks", readAll);
    added.resize(read.size());
    TakeInbox(added, std::move(read));
}

void frmImportTracks::TakeInbox(const std::vector<std::string>& paths, std::vector<Reading> read) {
    const std::size_t before = rows_.size();
    std::vector<PassFacts> passes;
    for (std::size_t i = 0; i < read.size(); ++i) {
        InboxFile& file = read[i].File;
        paths_.push_back(paths[i]);
        files_[paths[i]] = {std::move(file.Remarks), !file.Tracks.empty(), file.HasColumns, read[i].Known};
        std::ranges::move(file.Tracks, std::back_inserter(tracks_));
        std::ranges::move(read[i].Passes, std::back_inserter(passes));
    }
    TakeTracks(before, std::move(passes));
    mapped_.clear();
    ShowTracks();
}

/// Makes the rows of tracks from the one with that index on.
void frmImportTracks::TakeTracks(std::size_t before, std::vector<PassFacts> passes) {
    for (std::size_t i = before; i < tracks_.size(); ++i) {
        InboxRow& row = rows_.emplace_back(InboxRow{});
        row.Trace = ProfileTrace(tracks_[i].Run, context_.State.Settings.SpeedFactor);
        if (!passes.empty()) row.Pass = std::move(passes[i - before]);
        const auto kept = kept_.find({tracks_[i].Path, tracks_[i].Number});
        if (kept == kept_.end()) continue;
        row.OwnGroup = kept->second.OwnGroup;
        row.TypedName = kept->second.TypedName;
    }
    FindSameRuns();
    for (std::size_t i = before; i < rows_.size(); ++i) {
        const bool isFlagged = !IsWithoutFlags(i);
        const auto kept = kept_.find({tracks_[i].Path, tracks_[i].Number});
        const bool isAsBefore = kept != kept_.end() && kept->second.WasFlagged == isFlagged;
        rows_[i].IsTaken = isAsBefore ? kept->second.IsTaken : !isFlagged || !rows_[i].TypedName.empty();
    }
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
        if (corridor_) contents.Nodes = MapNodesOf(corridor_->Of);
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

bool frmImportTracks::HasEntries() const { return std::ranges::any_of(rows_, &InboxRow::HasEntries); }

bool frmImportTracks::IsWithoutFlags(std::size_t index) const {
    return tracks_[index].Flags.empty() && rows_[index].SameAs.empty();
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
    vaTracks_->setColumnHidden(Nodes, !corridor_);
    const std::string remarks = RemarksOnFiles();
    lblRemarks_->setText(ToQt(remarks));
    lblRemarks_->setVisible(!remarks.empty());
    for (QPushButton* button : {btnUnflagged_, btnGroupOfRows_}) button->setEnabled(!tracks_.empty());
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
    vaTracks_->SetText(row, Nodes, ToQt(NodesOf(index)));
    vaTracks_->SetNumber(row, Length, header.RunLength, ToQt(units.LengthCell(header.RunLength)));
    vaTracks_->SetText(row, Duration, DurationText(track.Run));
    vaTracks_->SetText(row, GroupOfRow, ToQt(GroupOf(index)));
    vaTracks_->SetText(row, Name, {});
    vaTracks_->SetText(row, Flags, ToQt(Joined(FlagsOf(index), "; ")));
    for (int column = 0; column < vaTracks_->columnCount(); ++column) {
        QTableWidgetItem* item = vaTracks_->item(row, column);
        item->setFlags(item->flags().setFlag(Qt::ItemIsEditable, column == Name || column == GroupOfRow));
    }
    vaTracks_->SetTick(row, index, rows_[index].IsTaken);
}

std::vector<std::string> frmImportTracks::FlagsOf(std::size_t index) const {
    std::vector<std::string> flags = tracks_[index].Flags;
    if (!rows_[index].SameAs.empty()) flags.insert(flags.begin(), "same drive as " + rows_[index].SameAs);
    return flags;
}

/// The ticked tracks with the names that were typed, or the next ones that are free.
std::vector<TakenTrack> frmImportTracks::NamedTracks() const {
    std::vector<TakenTrack> tracks;
    for (const std::size_t index : vaTracks_->Ticked())
        tracks.push_back({&tracks_[index], GroupOf(index), rows_[index].TypedName, {}});
    NameTracks(std::string(Trim(FromQt(txtBaseName_->text()))), tracks, namesInGroups_);
    return tracks;
}

void frmImportTracks::ShowNames() {
    const std::vector<TakenTrack> named = NamedTracks();
    const QSignalBlocker blocker(vaTracks_);
    auto next = named.begin();
    for (std::size_t i = 0; i < rows_.size(); ++i) {
        rows_[i].IsTaken = next != named.end() && next->Track == &tracks_[i];
        vaTracks_->item(static_cast<int>(i), Name)->setText(rows_[i].IsTaken ? ToQt(next->Name) : QString());
        if (rows_[i].IsTaken) ++next;
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
    btnReview_->setEnabled(ChosenPath() != nullptr && !corridor_);
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

/// A file that was reviewed has given its runs; its tracks leave the list.
void frmImportTracks::ReviewChosen() {
    const std::string path = *ChosenPath();
    const std::string name = BaseName(path);
    if (!context_.OtherScreens.ShowLogReview(std::nullopt,
                                             {FolderOf(path), name, LastComponent(path).substr(name.size())}))
        return;
    AddRuns(reviewed_, context_.OtherScreens.ShowUploadData({UploadOf::Log}));
    std::erase(paths_, path);
    ReadFilesAgain();
}

void frmImportTracks::keyPressEvent(QKeyEvent* event) {
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    const QWidget* field = focusWidget();
    // A cell's editor takes Enter, but hands it on, and closes only afterwards.
    if (isEnter && vaTracks_->isPersistentEditorOpen(vaTracks_->currentIndex())) return;
    // Above the list Enter takes what was typed, and the list shows what came of it.
    if (isEnter && (field == cmbGroup_ || field == txtBaseName_ || field == cmbZone_ || field == spnGap_ ||
                    field == cmbCorridor_ || field == cmbCondition_))
        return vaTracks_->setFocus();
    if (event->key() == Qt::Key_F2 && field == vaTracks_) return EditChosen(Name);
    QDialog::keyPressEvent(event);
}

void frmImportTracks::done(int result) {
    if (result == Accepted) {
        bool isWritten = false;
        Guarded(context_.Messages, [&] { isWritten = WriteTicked(); });
        if (!isWritten) return;
    } else if (HasEntries() &&
               !context_.Messages.ConfirmLoss("Names or Study Groups of runs were typed, and no run was made.\nDo you "
                                              "want to discard them?")) {
        return;
    }
    QDialog::done(result);
}

/// Whether the groups can be used; else the user was told why.
bool frmImportTracks::AcceptGroups(const std::vector<TakenTrack>& tracks) {
    std::set<std::string> accepted;
    for (const TakenTrack& track : tracks) {
        if (accepted.contains(track.Group)) continue;
        if (track.Group.empty())
            context_.Messages.Tell("The runs need a Study Group.\nEnter its name above the list.",
                                   MessageIcon::Warning);
        if (!track.Group.empty() && AcceptName(context_.Messages, track.Group)) {
            accepted.insert(track.Group);
            continue;
        }
        if (track.Group == Group())
            cmbGroup_->setFocus();
        else
            vaTracks_->setCurrentCell(static_cast<int>(track.Track - tracks_.data()), GroupOfRow);
        return false;
    }
    return true;
}

bool frmImportTracks::AcceptNames(const std::vector<TakenTrack>& tracks) {
    if (!std::ranges::all_of(tracks,
                             [&](const TakenTrack& track) { return AcceptName(context_.Messages, track.Name); }))
        return false;
    const std::string clash = NameClash(tracks, namesInGroups_);
    if (!clash.empty()) context_.Messages.Tell(clash, MessageIcon::Warning);
    return clash.empty();
}

bool frmImportTracks::WriteTicked() {
    TakeGroup();
    std::vector<TakenTrack> tracks = NamedTracks();
    if (!AcceptGroups(tracks) || !AcceptNames(tracks)) return false;
    // A study without runs takes those of the first group.
    std::stable_partition(tracks.begin(), tracks.end(),
                          [&](const TakenTrack& track) { return track.Group == Group(); });
    ApplicationState& state = context_.State;
    const std::string root = GroupRoot();
    for (const TakenTrack& track : tracks) MakeStudyGroup(context_.Files, context_.Messages, root, track.Group, {});
    if (!Write(tracks)) return false;
    RememberGroupOfRuns(state, context_.Files, tracks.front().Group);
    if (corridor_) return true;
    state.Choices = StoreUserChoices(context_.Files, {{BaseNameKey, FromQt(txtBaseName_->text())}});
    if (!chkForStudy_->isChecked()) return true;
    for (const TakenTrack& track : tracks) AddRuns(forStudy_, {GroupFolder(root, track.Group), {track.Name}});
    return true;
}

std::vector<RunsForStudy> frmImportTracks::ForStudy() const {
    std::vector<RunsForStudy> all = forStudy_;
    for (const RunsForStudy& runs : reviewed_) AddRuns(all, runs);
    return all;
}

}  // namespace vantor
