#include "gpsobd/forms/frmTrackColumns.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QScopedValueRollback>
#include <QVBoxLayout>
#include <algorithm>
#include <array>
#include <cmath>
#include <initializer_list>
#include <optional>

#include "core/Date.h"
#include "core/Numeric.h"
#include "core/Paths.h"
#include "core/RunTimeError.h"
#include "core/Text.h"
#include "core/forms/Guarded.h"
#include "core/forms/HelpButton.h"
#include "core/forms/Named.h"
#include "core/forms/WindowLayout.h"
#include "core/modMain.h"
#include "gpsobd/PalmDatabase.h"
#include "gpsobd/TrackChoices.h"
#include "gpsobd/TrackLog.h"
#include "tracks/CsvReader.h"
#include "tracks/TrackTimes.h"

namespace vantor {
namespace {

constexpr std::array<const char*, CsvColumnKinds> KindNames = {
    "-",    "Latitude", "Longitude", "N or S",  "E or W",
    "Time", "Date",     "Speed",     "Course",  "Satellites",
    "HDOP", "Fix",      "Node",      "Segment", "Latitude and longitude"};
constexpr std::array UnitNames = {"m/s", "km/h", "mph", "knots"};
constexpr std::array TimeNames = {"dates and times", "seconds since 1970", "seconds since the start",
                                  "milliseconds since the start"};
constexpr std::array OrderNames = {"not known", "day before month", "month before day"};
constexpr std::array DelimiterNames = {"comma", "semicolon", "tab", "bar", "blank"};
constexpr std::array Delimiters = {',', ';', '\t', '|', ' '};
constexpr int MostRows = 50;
constexpr int MostLinesAbove = 60;

template <class Names>
QComboBox* BoxOf(QWidget* parent, const char* name, const Names& texts) {
    auto* box = Named<QComboBox>(parent, name);
    for (const char* text : texts) box->addItem(QString::fromLatin1(text));
    return box;
}

bool IsElapsed(const CsvMapping& mapping) {
    return mapping.TimeForm == CsvTimeForm::Elapsed || mapping.TimeForm == CsvTimeForm::ElapsedMilliseconds;
}

}  // namespace

frmTrackColumns::frmTrackColumns(AppContext& context, const std::vector<std::string>& paths, QWidget* parent)
    : QDialog(parent), context_(context), paths_(paths) {
    setObjectName(QStringLiteral("frmTrackColumns"));
    setWindowTitle(QStringLiteral("Columns"));
    auto* column = new QVBoxLayout(this);
    column->addLayout(BuildForm());
    vaRows_ = Named<QTableWidget>(this, "vaRows");
    vaRows_->setAccessibleName(QStringLiteral("The first rows of the file"));
    vaRows_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    // Its boxes take the keys.
    vaRows_->setFocusPolicy(Qt::NoFocus);
    vaRows_->setTabKeyNavigation(false);
    vaRows_->verticalHeader()->hide();
    column->addWidget(vaRows_, 1);
    lblOutcome_ = Named<WrappedLabel>(this, "lblOutcome");
    column->addWidget(lblOutcome_);
    auto* foot = new QHBoxLayout;
    cmdHelp_ = HelpButton(*this, context, HelpTopic::ImportTracks);
    foot->addWidget(cmdHelp_);
    foot->addStretch();
    btnOk_ = Named<QPushButton>(this, "btnOk", QStringLiteral("OK"));
    btnOk_->setDefault(true);
    auto* btnCancel = Named<QPushButton>(this, "btnCancel", QStringLiteral("Cancel"));
    btnCancel->setAutoDefault(false);
    foot->addWidget(btnOk_);
    foot->addWidget(btnCancel);
    column->addLayout(foot);
    Connect(btnOk_, &QPushButton::clicked, this, context.Messages, [this] { accept(); });
    Connect(btnCancel, &QPushButton::clicked, this, context.Messages, [this] { reject(); });
    ConnectControls();
    resize(860, 520);
    RememberLayout(*this, context.Memory);
    ShowFile();
}

QLayout* frmTrackColumns::BuildForm() {
    cmbFile_ = Named<QComboBox>(this, "cmbFile");
    for (const std::string& path : paths_) cmbFile_->addItem(ToQt(LastComponent(path)), ToQt(path));
    cmbDelimiter_ = BoxOf(this, "cmbDelimiter", DelimiterNames);
    spnHead_ = Named<QSpinBox>(this, "spnHead");
    spnHead_->setRange(0, MostLinesAbove);
    spnHead_->setSpecialValueText(QStringLiteral("none"));
    chkComma_ = Named<QCheckBox>(this, "chkComma", QStringLiteral("N&umbers have a decimal comma"));
    cmbUnit_ = BoxOf(this, "cmbUnit", UnitNames);
    cmbTimes_ = BoxOf(this, "cmbTimes", TimeNames);
    cmbOrder_ = BoxOf(this, "cmbOrder", OrderNames);
    cmbZone_ = Named<ZoneBox>(this, "cmbZone");
    cmbZone_->SetZones(context_.Time);
    cmbZone_->setToolTip(QStringLiteral("Of times that tell no zone themselves"));
    dteStart_ = Named<QDateTimeEdit>(this, "dteStart");
    dteStart_->setTimeSpec(Qt::UTC);
    dteStart_->setCalendarPopup(true);
    auto* file = new QFormLayout;
    const auto add = [](QFormLayout* form, QWidget* field, const char* caption) {
        form->addRow(LabelFor(field, QString::fromLatin1(caption)), field);
    };
    add(file, cmbFile_, "&File");
    add(file, cmbDelimiter_, "Cells are &parted by");
    add(file, spnHead_, "&Names of the columns in line");
    file->addRow(QString(), chkComma_);
    auto* meaning = new QFormLayout;
    add(meaning, cmbUnit_, "&Speeds in");
    add(meaning, cmbTimes_, "&Times as");
    add(meaning, cmbOrder_, "&Order in dates");
    add(meaning, cmbZone_, "Time &zone");
    add(meaning, dteStart_, "The log &began");
    auto* halves = new QHBoxLayout;
    halves->addLayout(file, 1);
    halves->addSpacing(16);
    halves->addLayout(meaning, 1);
    return halves;
}

void frmTrackColumns::ConnectControls() {
    MessageBoxes& messages = context_.Messages;
    Connect(cmbFile_, &QComboBox::activated, this, messages, [this] { ShowFile(); });
    Connect(cmbDelimiter_, &QComboBox::activated, this, messages, [this] { TakeSplitting(); });
    Connect(spnHead_, &QSpinBox::valueChanged, this, messages, [this] { TakeSplitting(); });
    for (QComboBox* box : std::initializer_list<QComboBox*>{cmbUnit_, cmbTimes_, cmbOrder_, cmbZone_})
        Connect(box, &QComboBox::activated, this, messages, [this] { TakeMeaning(); });
    Connect(chkComma_, &QCheckBox::clicked, this, messages, [this] { TakeMeaning(); });
    Connect(dteStart_, &QDateTimeEdit::dateTimeChanged, this, messages, [this] { TakeMeaning(); });
}

frmTrackColumns::File& frmTrackColumns::Chosen() {
    const std::string path = FromQt(cmbFile_->currentData().toString());
    const auto known = files_.find(path);
    if (known != files_.end()) return known->second;
    const TrackSources tracks = TrackSourcesOf(context_.State.Choices, context_.OtherPrograms);
    const PalmDatabase palm(context_.Files);
    const LogSources sources{context_.Files, context_.Databases, palm, context_.Time, false, tracks};
    File file{PreviewCsv(context_.Files, path)};
    file.Preview.Mapping = MappingOf(sources, file.Preview);
    SplitAgain(context_.Files, path, file.Preview);
    return files_[path] = std::move(file);
}

void frmTrackColumns::ShowFile() {
    const QScopedValueRollback showing(isShowing_, true);
    const CsvMapping& mapping = Chosen().Preview.Mapping;
    const auto* delimiter = std::ranges::find(Delimiters, mapping.Delimiter);
    cmbDelimiter_->setCurrentIndex(static_cast<int>(delimiter - Delimiters.begin()));
    spnHead_->setValue(mapping.HeadLine);
    chkComma_->setChecked(mapping.HasDecimalComma);
    cmbUnit_->setCurrentIndex(static_cast<int>(mapping.SpeedUnit));
    cmbTimes_->setCurrentIndex(static_cast<int>(mapping.TimeForm));
    cmbOrder_->setCurrentIndex(static_cast<int>(mapping.DayOrder));
    cmbZone_->SetZone(mapping.Zone);
    ShowStart();
    ShowRows();
    ShowOutcome();
}

/// The start by the clocks of the zone; today where none was said.
void frmTrackColumns::ShowStart() {
    const CsvMapping& mapping = Chosen().Preview.Mapping;
    const bool isElapsed = IsElapsed(mapping);
    dteStart_->setDisplayFormat(isElapsed ? QStringLiteral("yyyy-MM-dd HH:mm:ss") : QStringLiteral("yyyy-MM-dd"));
    constexpr double SecondsADay = 86400;
    constexpr double DateOf1970 = 25569;
    const Date local = mapping.Start > 0 ? TrackTimes(context_.Time, mapping.StartZone()).LocalOf(mapping.Start)
                                         : Date{std::floor(context_.Time.Now().Days)};
    const auto seconds = static_cast<qint64>(std::floor((local.Days - DateOf1970) * SecondsADay + 0.5));
    dteStart_->setDateTime(QDateTime::fromSecsSinceEpoch(seconds, Qt::UTC));
    const auto& questions = Chosen().Preview.Questions;
    dteStart_->setEnabled(isElapsed || std::ranges::find(questions, CsvQuestion::Start) != questions.end());
}

void frmTrackColumns::ShowRows() {
    const CsvPreview& preview = Chosen().Preview;
    std::size_t columns = std::max(preview.HeadCells.size(), preview.Mapping.Columns.size());
    for (const auto& row : preview.Rows) columns = std::max(columns, row.size());
    Chosen().Preview.Mapping.Columns.resize(columns, CsvColumn::Other);
    const int rows = std::min(static_cast<int>(preview.Rows.size()), MostRows);
    vaRows_->clear();
    vaRows_->setRowCount(0);
    vaRows_->setRowCount(rows + 1);
    QWidget* before = dteStart_;
    vaRows_->setColumnCount(static_cast<int>(columns));
    for (int column = 0; column < vaRows_->columnCount(); ++column) {
        const auto at = static_cast<std::size_t>(column);
        const QString head = at < preview.HeadCells.size() && !preview.HeadCells[at].empty()
                                 ? ToQt(preview.HeadCells[at])
                                 : QString::number(column + 1);
        vaRows_->setHorizontalHeaderItem(column, new QTableWidgetItem(head));
        QWidget* const box = KindBox(column);
        vaRows_->setCellWidget(0, column, box);
        setTabOrder(before, box);
        before = box;
        for (int row = 0; row < rows; ++row) {
            const auto& cells = preview.Rows[static_cast<std::size_t>(row)];
            if (at < cells.size()) vaRows_->setItem(row + 1, column, new QTableWidgetItem(ToQt(cells[at])));
        }
    }
    setTabOrder(before, cmdHelp_);
    vaRows_->resizeColumnsToContents();
}

/// The box that has the keys comes into view.
bool frmTrackColumns::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::FocusIn)
        for (int column = 0; column < vaRows_->columnCount(); ++column)
            if (vaRows_->cellWidget(0, column) == watched) vaRows_->scrollTo(vaRows_->model()->index(0, column));
    return QDialog::eventFilter(watched, event);
}

QWidget* frmTrackColumns::KindBox(int column) {
    auto* box = BoxOf(vaRows_, "", KindNames);
    box->setObjectName(QStringLiteral("cmbKind%1").arg(column + 1));
    box->setAccessibleName(QStringLiteral("What column %1 holds").arg(vaRows_->horizontalHeaderItem(column)->text()));
    box->setCurrentIndex(static_cast<int>(Chosen().Preview.Mapping.Columns[static_cast<std::size_t>(column)]));
    Connect(box, &QComboBox::activated, this, context_.Messages,
            [this, column](int kind) { TakeColumn(column, kind); });
    box->installEventFilter(this);
    return box;
}

/// A kind stands in one column: the one that had it has none then.
void frmTrackColumns::TakeColumn(int column, int kind) {
    std::vector<CsvColumn>& columns = Chosen().Preview.Mapping.Columns;
    const auto chosen = static_cast<CsvColumn>(kind);
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const bool isHere = i == static_cast<std::size_t>(column);
        if (!isHere && (columns[i] != chosen || chosen == CsvColumn::Other)) continue;
        columns[i] = isHere ? chosen : CsvColumn::Other;
        auto* box = qobject_cast<QComboBox*>(vaRows_->cellWidget(0, static_cast<int>(i)));
        box->setCurrentIndex(static_cast<int>(columns[i]));
    }
    TakeMeaning();
}

void frmTrackColumns::TakeSplitting() {
    if (isShowing_) return;
    File& file = Chosen();
    file.Preview.Mapping.Delimiter = Delimiters[static_cast<std::size_t>(cmbDelimiter_->currentIndex())];
    file.Preview.Mapping.HeadLine = spnHead_->value();
    file.IsChanged = true;
    SplitAgain(context_.Files, FromQt(cmbFile_->currentData().toString()), file.Preview);
    ShowRows();
    ShowOutcome();
}

void frmTrackColumns::TakeMeaning() {
    if (isShowing_) return;
    File& file = Chosen();
    CsvMapping& mapping = file.Preview.Mapping;
    file.IsChanged = true;
    const bool wasElapsed = IsElapsed(mapping);
    mapping.HasDecimalComma = chkComma_->isChecked();
    mapping.SpeedUnit = static_cast<CsvSpeedUnit>(cmbUnit_->currentIndex());
    mapping.TimeForm = static_cast<CsvTimeForm>(cmbTimes_->currentIndex());
    mapping.DayOrder = static_cast<DayOrder>(cmbOrder_->currentIndex());
    mapping.Zone = cmbZone_->Zone();
    const double local = static_cast<double>(dteStart_->dateTime().toSecsSinceEpoch());
    if (dteStart_->isEnabled()) mapping.Start = TrackTimes(context_.Time, mapping.StartZone()).UtcOf(local);
    if (wasElapsed != IsElapsed(mapping)) {
        const QScopedValueRollback showing(isShowing_, true);
        ShowStart();
    }
    ShowOutcome();
}

void frmTrackColumns::ShowOutcome() {
    std::string text;
    bool isRead = true;
    try {
        text = Outcome();
    } catch (const RunTimeError& error) {
        text = error.Place().empty() ? ErrorText(error.Number()) : error.Place();
        isRead = false;
    }
    lblOutcome_->setText(ToQt(text));
    btnOk_->setEnabled(isRead);
}

/// The first point as it is read now; the error of a file that gives none.
std::string frmTrackColumns::Outcome() {
    const CsvMapping& mapping = Chosen().Preview.Mapping;
    const std::string path = FromQt(cmbFile_->currentData().toString());
    std::optional<TrackPoint> first;
    std::size_t count = 0;
    const TrackSummary summary = ReadCsv(context_.Files, context_.Time, path, mapping, [&](const TrackPoint& point) {
        if (!first) first = point;
        return ++count < CsvPreviewRows;
    });
    if (!first)
        throw RunTimeError(ErrorNumber::TypeMismatch, summary.Broken > 0 ? "No row is a point. Line " +
                                                                               std::to_string(summary.FirstBrokenLine) +
                                                                               ": " + summary.FirstBrokenReason
                                                                         : "The file has no row with a point.");
    std::string text = "Read so, the first point is";
    if (first->Time)
        text += " at " + IsoDateTime(TrackTimes(context_.Time, mapping.Zone).LocalOf(*first->Time)) + " (" +
                mapping.Zone + ")";
    if (first->Position)
        text +=
            " at " + FixedDecimals(first->Position->Latitude, 5) + ", " + FixedDecimals(first->Position->Longitude, 5);
    if (first->Speed) text += " with " + FixedDecimals(*first->Speed, 1) + " mph";
    if (!first->Time) text += "; it has no time";
    text += ".";
    if (summary.Broken > 0)
        text += " Of the first rows " + std::to_string(summary.Broken) + " cannot be read, the first in line " +
                std::to_string(summary.FirstBrokenLine) + ": " + summary.FirstBrokenReason;
    return text;
}

void frmTrackColumns::accept() {
    // What was looked at and not changed is as it was guessed; OK says that it is right.
    UserChoices changes;
    for (const auto& [path, file] : files_) {
        const bool isShown = path == FromQt(cmbFile_->currentData().toString());
        if (file.IsChanged || isShown) changes.merge(KeptMapping(file.Preview.Head, file.Preview.Mapping));
    }
    context_.State.Choices = StoreUserChoices(context_.Files, changes);
    QDialog::accept();
}

}  // namespace vantor
