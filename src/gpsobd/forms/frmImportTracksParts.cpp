#include <QHBoxLayout>
#include <QHeaderView>
#include <QScreen>
#include <QSplitter>
#include <QVBoxLayout>
#include <initializer_list>
#include <string>

#include "core/LoggerChoices.h"
#include "core/Paths.h"
#include "core/StudyFile.h"
#include "core/StudyGroupFolders.h"
#include "core/Units.h"
#include "core/UserChoices.h"
#include "core/forms/FileDrops.h"
#include "core/forms/Guarded.h"
#include "core/forms/Named.h"
#include "core/modMain.h"
#include "gpsobd/TrackChoices.h"
#include "gpsobd/forms/GroupCells.h"
#include "gpsobd/forms/SpeedPictures.h"
#include "gpsobd/forms/frmImportTracks.h"

namespace vantor {

// What the screen is made of.

QWidget* frmImportTracks::BuildList() {
    vaTracks_ = Named<TickList>(this, "vaTracks");
    vaTracks_->setAccessibleName(QStringLiteral("Tracks"));
    vaTracks_->SetEmptyText(
        QStringLiteral("No track yet. Add files, or drop them here: logs of GPS and OBD loggers, GPX, NMEA, CSV."));
    const QString unit = QLatin1Char(' ') + ToQt(UnitsOf(context_.State).LengthTitle());
    vaTracks_->SetColumns({QStringLiteral("Track"), QStringLiteral("Speed"), QStringLiteral("Start"),
                           QStringLiteral("Direction"), QStringLiteral("Nodes"), QStringLiteral("Length") + unit,
                           QStringLiteral("Duration"), QStringLiteral("Study Group"), QStringLiteral("Name of the Run"),
                           QStringLiteral("To Be Looked At")});
    // What is to be looked at has the room.
    QHeaderView* heads = vaTracks_->horizontalHeader();
    for (const Column column : {Direction, Nodes, Duration})
        heads->resizeSection(column, heads->sectionSizeHint(column));
    constexpr int LinesARow = 2;
    vaTracks_->verticalHeader()->setDefaultSectionSize(LinesARow * fontMetrics().height() + 4);
    vaTracks_->setWordWrap(true);
    vaTracks_->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed);
    vaTracks_->setItemDelegateForColumn(Picture, new SpeedPictures(vaTracks_, [this](int row) -> const ProfileTrace* {
                                            const auto index = static_cast<std::size_t>(row);
                                            return index < rows_.size() ? &rows_[index].Trace : nullptr;
                                        }));
    vaTracks_->setSelectionMode(QAbstractItemView::ExtendedSelection);
    auto* groups = new GroupCells(vaTracks_);
    groups->Groups = [this] { return KnownGroups(); };
    groups->OnEntered = [this](int row, const std::string& group) {
        Guarded(context_.Messages, [&] { TakeGroupOf(static_cast<std::size_t>(row), group); });
    };
    vaTracks_->setItemDelegateForColumn(GroupOfRow, groups);
    return vaTracks_;
}

/// The chosen track: its profile, its way among those of the others, and what is to be looked at.
QWidget* frmImportTracks::BuildChosen() {
    auto* parts = Named<QSplitter>(this, "splChosen");
    profile_ = Named<ProfileView>(parts, "picTrack");
    profile_->setAccessibleName(QStringLiteral("Speed profile of the chosen track"));
    profile_->setMinimumSize(160, 60);
    map_ = new MapView(context_, parts);
    map_->setObjectName(QStringLiteral("picMap"));
    map_->setAccessibleName(QStringLiteral("Map of the tracks"));
    map_->PictureStart = [this] { return AsFolder(context_.State.Paths.FieldDataPath) + "Tracks map"; };
    map_->OnChosen = [this] {
        if (map_->ChosenItem() > 0) vaTracks_->setCurrentCell(map_->ChosenItem() - 1, File);
    };
    txtNotes_ = Named<QPlainTextEdit>(parts, "txtNotes");
    txtNotes_->setAccessibleName(QStringLiteral("About the chosen track"));
    txtNotes_->setPlaceholderText(QStringLiteral("What is to be looked at stands here."));
    txtNotes_->setReadOnly(true);
    txtNotes_->setTabChangesFocus(true);
    txtNotes_->setMinimumSize(160, 60);
    for (QWidget* part : std::initializer_list<QWidget*>{profile_, map_, txtNotes_}) parts->addWidget(part);
    parts->setSizes({440, 340, 320});
    parts->setChildrenCollapsible(false);
    return parts;
}

QLayout* frmImportTracks::BuildHead() {
    auto* rows = new QVBoxLayout;
    rows->addLayout(BuildCorridor());
    cmbGroup_ = Named<QComboBox>(this, "cmbGroup");
    cmbGroup_->setEditable(true);
    cmbGroup_->setMinimumContentsLength(20);
    cmbGroup_->setToolTip(
        QStringLiteral("Where runs go whose rows have no group of their own. A new name makes a new Study Group"));
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
    btnColumns_ = Named<QPushButton>(this, "btnColumns", QStringLiteral("&Columns..."));
    btnColumns_->setToolTip(QStringLiteral("What the columns of CSV files hold"));
    btnColumns_->setAutoDefault(false);
    auto* how = new QHBoxLayout;
    how->addWidget(LabelFor(cmbZone_, QStringLiteral("Times of tracks in &zone")));
    how->addWidget(cmbZone_);
    how->addSpacing(8);
    how->addWidget(LabelFor(spnGap_, QStringLiteral("A new run after a &gap of")));
    how->addWidget(spnGap_);
    how->addStretch();
    btnReview_ = Named<QPushButton>(this, "btnReview", QStringLiteral("Re&view..."));
    btnReview_->setToolTip(
        QStringLiteral("Every point of the chosen track's file: repair it, or mark its runs by hand"));
    btnReview_->setAutoDefault(false);
    auto* row = new QHBoxLayout;
    row->addWidget(LabelFor(cmbGroup_, QStringLiteral("&Study Group")));
    row->addWidget(cmbGroup_);
    row->addSpacing(8);
    row->addWidget(LabelFor(txtBaseName_, QStringLiteral("&Base Name")));
    row->addWidget(txtBaseName_, 1);
    row->addSpacing(8);
    row->addWidget(btnColumns_);
    row->addWidget(btnReview_);
    rows->addLayout(row);
    rows->addLayout(how);
    constexpr int NarrowWidth = 900;
    constexpr int LettersOfZone = 18;
    if (screen()->availableGeometry().width() < NarrowWidth) cmbZone_->setMinimumContentsLength(LettersOfZone);
    return rows;
}

/// How tracks that know neither zones nor runs are read.
void frmImportTracks::BuildReading() {
    const UserChoices& choices = context_.State.Choices;
    cmbZone_ = Named<ZoneBox>(this, "cmbZone");
    cmbZone_->SetZones(context_.Time, QStringLiteral("this computer's, "));
    cmbZone_->SetZone(ChoiceOf(choices, TrackZoneKey));
    cmbZone_->setToolTip(
        QStringLiteral("Receivers and phones tell universal time; runs have the time of a clock. Type "
                       "a part of the zone's name"));
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
    btnGroupOfRows_ = Named<QPushButton>(this, "btnGroupOfRows", QStringLiteral("G&roup of Selected Rows"));
    btnGroupOfRows_->setToolTip(QStringLiteral("The runs of the selected rows go into a Study Group of their own"));
    btnGroupOfRows_->setAutoDefault(false);
    auto* choices = new QHBoxLayout;
    choices->addWidget(btnUnflagged_);
    choices->addWidget(btnGroupOfRows_);
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
    Connect(btnColumns_, &QPushButton::clicked, this, messages, [this] { ChooseColumns(); });
    Connect(btnReview_, &QPushButton::clicked, this, messages, [this] { ReviewChosen(); });
    Connect(btnUnflagged_, &QPushButton::clicked, this, messages, [this] { TickUnflagged(); });
    Connect(btnGroupOfRows_, &QPushButton::clicked, this, messages, [this] { EditChosen(GroupOfRow); });
    Connect(cmbCorridor_, &QComboBox::activated, this, messages,
            [this] { ChooseCorridor(FromQt(cmbCorridor_->currentData().toString())); });
    Connect(cmbGroup_, &QComboBox::activated, this, messages, [this] { TakeGroup(); });
    Connect(cmbGroup_->lineEdit(), &QLineEdit::editingFinished, this, messages, [this] { TakeGroup(); });
    Connect(txtBaseName_, &QLineEdit::textChanged, this, messages, [this] { ShowNames(); });
    Connect(cmbZone_, &QComboBox::activated, this, messages, [this] { ReadAgain(); });
    Connect(spnGap_, &QSpinBox::valueChanged, this, messages, [this] { ReadAgain(); });
    Connect(vaTracks_, &QTableWidget::itemChanged, this, messages, [this](QTableWidgetItem* item) {
        if (item->column() == Name) TakeTypedName(static_cast<std::size_t>(item->row()), FromQt(item->text()));
        ShowNames();
    });
    for (QAbstractItemDelegate* cells : {vaTracks_->itemDelegate(), vaTracks_->itemDelegateForColumn(GroupOfRow)})
        Connect(cells, &QAbstractItemDelegate::closeEditor, this, messages,
                [this](QWidget*, QAbstractItemDelegate::EndEditHint hint) { LeaveCell(hint); });
    Connect(vaTracks_, &QTableWidget::currentCellChanged, this, messages, [this] { ShowChosen(); });
    new FileDrops(
        *this, [this](const std::vector<std::string>& paths) { Guarded(context_.Messages, [&] { AddFiles(paths); }); });
}

}  // namespace vantor
