#include "gpsobd/forms/frmImportTracks.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QSignalBlocker>
#include <QSplitter>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "core/LoggerChoices.h"
#include "core/Paths.h"
#include "core/RunFile.h"
#include "core/StudyFile.h"
#include "core/StudyGroupFolders.h"
#include "core/Text.h"
#include "core/Units.h"
#include "core/forms/FileDrops.h"
#include "core/forms/Guarded.h"
#include "core/forms/Named.h"
#include "core/forms/WindowLayout.h"
#include "core/modMain.h"
#include "gpsobd/PalmDatabase.h"
#include "gpsobd/TrackChoices.h"
#include "gpsobd/forms/SpeedPictures.h"

namespace vantor {
namespace {

enum Column { File, Picture, Start, Direction, Length, Duration, Name, Flags };

constexpr const char* BaseNameKey = "ImportBaseName";

QString DurationText(const RunRecord& run) {
    constexpr std::int32_t Minute = 60;
    const std::int32_t seconds = run.Header.SampleCount;
    return QStringLiteral("%1:%2").arg(seconds / Minute).arg(seconds % Minute, 2, 10, QLatin1Char('0'));
}

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
    vaTracks_ = Named<TickList>(parts, "vaTracks");
    vaTracks_->setAccessibleName(QStringLiteral("Tracks"));
    vaTracks_->SetEmptyText(
        QStringLiteral("No track yet. Add files, or drop them here: logs of GPS and OBD loggers, GPX, NMEA, CSV."));
    const QString unit = QLatin1Char(' ') + ToQt(UnitsOf(context.State).LengthTitle());
    vaTracks_->SetColumns({QStringLiteral("Track"), QStringLiteral("Speed"), QStringLiteral("Start"),
                           QStringLiteral("Direction"), QStringLiteral("Length") + unit, QStringLiteral("Duration"),
                           QStringLiteral("Name of the Run"), QStringLiteral("To Be Looked At")});
    constexpr int LinesARow = 2;
    vaTracks_->verticalHeader()->setDefaultSectionSize(LinesARow * fontMetrics().height());
    vaTracks_->setWordWrap(true);
    vaTracks_->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed);
    vaTracks_->setItemDelegateForColumn(Picture, new SpeedPictures(vaTracks_, [this](int row) -> const ProfileTrace* {
                                            const auto index = static_cast<std::size_t>(row);
                                            return index < rows_.size() ? &rows_[index].Trace : nullptr;
                                        }));
    profile_ = Named<ProfileView>(parts, "picTrack");
    parts->addWidget(vaTracks_);
    parts->addWidget(profile_);
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

QLayout* frmImportTracks::BuildHead() {
    cmbGroup_ = Named<QComboBox>(this, "cmbGroup");
    cmbGroup_->setEditable(true);
    cmbGroup_->setMinimumContentsLength(20);
    cmbGroup_->setToolTip(QStringLiteral("Where the runs go. A new name makes a new Study Group"));
    const ApplicationState& state = context_.State;
    for (const std::string& folder : ListStudyGroups(context_.Files, state.Paths.StudyGroupRootPath))
        cmbGroup_->addItem(ToQt(LastComponent(folder)));
    const std::string current = LastComponent(StudyGroupFolder(state));
    const bool hasRuns = state.CurrentStudy.Record.RunCount > 0;
    cmbGroup_->setCurrentText(ToQt(hasRuns ? current : LastGroupOfRuns(state.Choices)));
    txtBaseName_ = Named<QLineEdit>(this, "txtBaseName");
    txtBaseName_->setText(ToQt(ChoiceOf(state.Choices, BaseNameKey)));
    txtBaseName_->setPlaceholderText(QStringLiteral("as the Study Group"));
    txtBaseName_->setToolTip(QStringLiteral("Runs are named after it, their direction and the next free number"));
    BuildReading();
    btnAddFiles_ = Named<QPushButton>(this, "btnAddFiles", QStringLiteral("Add &Files..."));
    btnAddFiles_->setAutoDefault(false);
    auto* how = new QHBoxLayout;
    how->addWidget(LabelFor(cmbZone_, QStringLiteral("Times of tracks in &zone")));
    how->addWidget(cmbZone_);
    how->addSpacing(8);
    how->addWidget(LabelFor(spnGap_, QStringLiteral("A new run &after a gap of")));
    how->addWidget(spnGap_);
    how->addStretch();
    auto* row = new QHBoxLayout;
    row->addWidget(LabelFor(cmbGroup_, QStringLiteral("&Study Group")));
    row->addWidget(cmbGroup_);
    row->addSpacing(8);
    row->addWidget(LabelFor(txtBaseName_, QStringLiteral("&Base Name")));
    row->addWidget(txtBaseName_, 1);
    row->addSpacing(8);
    row->addWidget(btnAddFiles_);
    auto* rows = new QVBoxLayout;
    rows->addLayout(row);
    rows->addLayout(how);
    return rows;
}

/// How tracks that know neither zones nor runs are read.
void frmImportTracks::BuildReading() {
    const UserChoices& choices = context_.State.Choices;
    cmbZone_ = Named<QComboBox>(this, "cmbZone");
    cmbZone_->addItem(QStringLiteral("this computer's, ") + ToQt(context_.Time.OwnZone()), QString());
    for (const std::string& zone : context_.Time.ZoneNames()) cmbZone_->addItem(ToQt(zone), ToQt(zone));
    cmbZone_->setCurrentIndex(std::max(0, cmbZone_->findData(ToQt(ChoiceOf(choices, TrackZoneKey)))));
    cmbZone_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    constexpr int ZoneLetters = 28;
    cmbZone_->setMinimumContentsLength(ZoneLetters);
    cmbZone_->setToolTip(QStringLiteral("Receivers and phones tell universal time; runs have the time of a clock"));
    constexpr int LongestGap = 86400;
    spnGap_ = Named<QSpinBox>(this, "spnGap");
    spnGap_->setRange(1, LongestGap);
    spnGap_->setSuffix(QStringLiteral(" s"));
    spnGap_->setValue(static_cast<int>(TrackGapOf(choices)));
    spnGap_->setKeyboardTracking(false);
}

QLayout* frmImportTracks::BuildFoot() {
    chkForStudy_ = Named<QCheckBox>(this, "chkForStudy", QStringLiteral("Add the runs to the stud&y"));
    chkForStudy_->setToolTip(QStringLiteral("After OK the study that is open takes the runs"));
    chkForStudy_->setChecked(true);
    btnUnflagged_ = Named<QPushButton>(this, "btnAcceptUnflagged", QStringLiteral("Accept All &Without Flags"));
    btnUnflagged_->setToolTip(QStringLiteral("Ticks the tracks of which nothing is to be looked at, and no other"));
    btnUnflagged_->setAutoDefault(false);
    auto* choices = new QHBoxLayout;
    choices->addWidget(btnUnflagged_);
    choices->addStretch();
    choices->addWidget(chkForStudy_);
    auto* foot = new QVBoxLayout;
    foot->addLayout(choices);
    foot->addWidget(buttons_ = new TickButtons(*this, context_, *vaTracks_, HelpTopic::ImportTracks));
    return foot;
}

void frmImportTracks::ConnectControls() {
    MessageBoxes& messages = context_.Messages;
    Connect(btnAddFiles_, &QPushButton::clicked, this, messages, [this] { AskForFiles(); });
    Connect(btnUnflagged_, &QPushButton::clicked, this, messages, [this] { TickUnflagged(); });
    Connect(cmbGroup_, &QComboBox::activated, this, messages, [this] { TakeGroup(); });
    Connect(cmbGroup_->lineEdit(), &QLineEdit::editingFinished, this, messages, [this] { TakeGroup(); });
    Connect(txtBaseName_, &QLineEdit::textChanged, this, messages, [this] { ShowNames(); });
    Connect(cmbZone_, &QComboBox::activated, this, messages, [this] { ReadAgain(); });
    Connect(spnGap_, &QSpinBox::valueChanged, this, messages, [this] { ReadAgain(); });
    Connect(vaTracks_, &QTableWidget::itemChanged, this, messages, [this](QTableWidgetItem* item) {
        if (item->column() == Name) TakeTypedName(static_cast<std::size_t>(item->row()), FromQt(item->text()));
        ShowNames();
    });
    Connect(vaTracks_, &QTableWidget::currentCellChanged, this, messages, [this] { ShowChosen(); });
    new FileDrops(
        *this, [this](const std::vector<std::string>& paths) { Guarded(context_.Messages, [&] { AddFiles(paths); }); });
}

void frmImportTracks::AskForFiles() {
    AddFiles(context_.DesktopServices.ChooseFilesToOpen(context_.State.Paths.FieldDataPath, "Add Tracks", "Tracks",
                                                        LogExtensions()));
}

void frmImportTracks::AddFiles(const std::vector<std::string>& paths) {
    std::vector<InboxFile> read;
    paths_.insert(paths_.end(), paths.begin(), paths.end());
    const bool isSigned = HasSignedCoordinates(context_.State.Choices);
    const TrackSources choices = TrackSourcesOf(context_.State.Choices, context_.OtherPrograms);
    const auto readAll = [&, settings = context_.State.Settings](FileSystem& files, const Progress& progress) {
        const PalmDatabase palm(files);
        const LogSources sources{files, context_.Databases, palm, context_.Time, isSigned, choices};
        for (std::size_t i = 0; i < paths.size() && progress(i, paths.size()); ++i)
            read.push_back(ReadTracks(sources, paths[i], settings, progress.PartOf(i, paths.size())));
    };
    if (!paths.empty()) context_.Work.Run("Reading tracks", readAll);
    for (InboxFile& file : read) {
        std::ranges::move(file.Tracks, std::back_inserter(tracks_));
        std::ranges::move(file.Remarks, std::back_inserter(remarks_));
    }
    const std::size_t before = rows_.size();
    for (std::size_t i = before; i < tracks_.size(); ++i)
        rows_.push_back({ProfileTrace(tracks_[i].Run, context_.State.Settings.SpeedFactor), {}, {}, true});
    FindSameRuns();
    for (std::size_t i = before; i < rows_.size(); ++i) rows_[i].IsTaken = IsWithoutFlags(i);
    ShowTracks();
}

/// The files, in another zone or cut in another way.
void frmImportTracks::ReadAgain() {
    context_.State.Choices = StoreUserChoices(
        context_.Files,
        {{TrackZoneKey, FromQt(cmbZone_->currentData().toString())}, {TrackGapKey, std::to_string(spnGap_->value())}});
    const std::vector<std::string> paths = std::exchange(paths_, {});
    tracks_.clear();
    rows_.clear();
    remarks_.clear();
    AddFiles(paths);
}

bool frmImportTracks::IsWithoutFlags(std::size_t index) const {
    return tracks_[index].Flags.empty() && rows_[index].SameAs.empty();
}

std::string frmImportTracks::Group() const { return std::string(Trim(FromQt(cmbGroup_->currentText()))); }

std::string frmImportTracks::Folder() const { return GroupFolder(context_.State.Paths.StudyGroupRootPath, Group()); }

void frmImportTracks::TakeGroup() {
    FindSameRuns();
    ShowTracks();
}

/// Looks for the tracks among the runs that lie in the group, and among each other.
void frmImportTracks::FindSameRuns() {
    namesInGroup_.clear();
    const std::string folder = Folder();
    const bool isThere = !Group().empty() && FolderExists(context_.Files, folder);
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
    lblRemarks_->setText(ToQt(Joined(remarks_, "\n")));
    lblRemarks_->setVisible(!remarks_.empty());
    btnUnflagged_->setEnabled(!tracks_.empty());
    ShowNames();
    ShowChosen();
}

void frmImportTracks::ShowTrack(std::size_t index, const Units& units) {
    const InboxTrack& track = tracks_[index];
    const RunHeader& header = track.Run.Header;
    const int row = vaTracks_->AddRow();
    vaTracks_->SetText(row, File, ToQt(LastComponent(track.Path) + ", " + std::to_string(track.Number)));
    vaTracks_->item(row, File)->setToolTip(ToQt(track.Path));
    vaTracks_->SetText(row, Picture, {});
    vaTracks_->SetText(row, Start, ToQt(ShortDate(header.RunDate) + " " + ShortTime(header.RunTime)));
    vaTracks_->SetText(row, Direction, ToQt(track.Direction));
    vaTracks_->SetNumber(row, Length, header.RunLength, ToQt(units.LengthCell(header.RunLength)));
    vaTracks_->SetText(row, Duration, DurationText(track.Run));
    vaTracks_->SetText(row, Name, {});
    std::vector<std::string> flags = track.Flags;
    if (!rows_[index].SameAs.empty()) flags.insert(flags.begin(), "same drive as " + rows_[index].SameAs);
    vaTracks_->SetText(row, Flags, ToQt(Joined(flags, "; ")));
    for (int column = 0; column < vaTracks_->columnCount(); ++column) {
        QTableWidgetItem* item = vaTracks_->item(row, column);
        item->setFlags(item->flags().setFlag(Qt::ItemIsEditable, column == Name));
    }
    vaTracks_->SetTick(row, index, rows_[index].IsTaken);
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
    const std::vector<std::string> proposed = InboxNames(NameParts(), tracks, taken);
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
    if (row < 0 || tracks_.empty()) return profile_->ShowText(QStringLiteral("The chosen track is shown here."));
    profile_->ShowRun(tracks_[static_cast<std::size_t>(row)].Run, {}, context_.State.Settings);
}

void frmImportTracks::done(int result) {
    if (result == Accepted) {
        bool isWritten = false;
        Guarded(context_.Messages, [&] { isWritten = WriteTicked(); });
        if (!isWritten) return;
    }
    QDialog::done(result);
}

bool frmImportTracks::WriteTicked() {
    const std::map<std::size_t, std::string> names = Names();
    if (Group().empty()) {
        context_.Messages.Tell("The runs need a Study Group.\nEnter its name above the list.", MessageIcon::Warning);
        cmbGroup_->setFocus();
        return false;
    }
    std::vector<NamedTrack> tracks;
    for (const auto& [index, name] : names) {
        if (!AcceptName(context_.Messages, name)) return false;
        tracks.push_back({&tracks_[index], name});
    }
    ApplicationState& state = context_.State;
    MakeStudyGroup(context_.Files, context_.Messages, state.Paths.StudyGroupRootPath, Group(), {});
    const std::string folder = Folder();
    if (!FolderExists(context_.Files, folder)) return false;
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
