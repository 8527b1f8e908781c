#include "gpsobd/forms/LogReview.h"

#include <QApplication>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QShortcut>
#include <QSplitter>
#include <QVBoxLayout>
#include <algorithm>

#include "core/LoggerChoices.h"
#include "core/Paths.h"
#include "core/RunTimeError.h"
#include "core/forms/Accessible.h"
#include "core/forms/FigureLabel.h"
#include "core/forms/Guarded.h"
#include "core/forms/Named.h"
#include "core/forms/Theme.h"
#include "core/forms/WindowLayout.h"
#include "core/modMain.h"
#include "gpsobd/DeviceLog.h"
#include "gpsobd/LogPoints.h"
#include "gpsobd/LogScreens.h"
#include "gpsobd/PalmDatabase.h"
#include "gpsobd/TrackChoices.h"
#include "gpsobd/forms/ReviewRuns.h"

namespace vantor {
LogReview::LogReview(AppContext& context, const LogFormat& format, const LogChoice& log)
    : context_(context),
      format_(format),
      screen_(*format.Review),
      logPath_(log.File.empty() ? std::string() : AsFolder(log.Folder) + log.File + log.Extension),
      model_(LoadLog(), context.Work),
      export_(context, AsFolder(log.Folder) + log.File, model_.Grid()) {
    setObjectName(QLatin1String(screen_.FormName));
    setWindowTitle(QLatin1String(screen_.Caption));
    setWindowFlag(Qt::WindowMaximizeButtonHint);
    auto* column = new QVBoxLayout(this);
    vaData_ = Named<ReviewTable>(this, screen_.GridName);
    vaData_->setAccessibleName(QStringLiteral("Logged points"));
    vaData_->SetEmptyText(logPath_.empty() ? QStringLiteral("No log was chosen.")
                                           : QStringLiteral("This log has no points in a run."));
    column->addLayout(BuildHead());
    auto* lists = Named<QSplitter>(this, "splGaps");
    lists->setOrientation(Qt::Vertical);
    gaps_ = new GapList(lists, context.Messages, context.Work, UnitsOf(context.State.Settings));
    for (QWidget* list : std::initializer_list<QWidget*>{vaData_, gaps_}) lists->addWidget(list);
    lists->setStretchFactor(0, 3);
    lists->setStretchFactor(1, 1);
    lists->setChildrenCollapsible(false);
    column->addWidget(lists, 1);
    column->addLayout(BuildActions());
    column->addLayout(BuildFoot());
    ConnectControls();
    vaData_->Show(model_);
    vaData_->setFocus();
    resize(1180, 680);
    RememberLayout(*this, context.Memory);
    // A log opens in the order it is reviewed in, whatever column the one before was sorted by.
    vaData_->sortByColumn(-1, Qt::AscendingOrder);
    gaps_->Show(std::exchange(gapsAsLoaded_, {}));
    ShowProblems(std::exchange(problemsAsLoaded_, {}));
    QString status = QStringLiteral("%1 rows.").arg(model_.rowCount());
    if (const std::size_t count = CountRowsOf(model_.Problems()); count > 0)
        status += QStringLiteral(" With a problem: %1.").arg(count);
    ShowState(status);
}

FieldLog LogReview::LoadLog() {
    FieldLog log = NewFieldLog(format_, logPath_);
    isLoaded_ = logPath_.empty();
    if (isLoaded_) return log;
    Guarded(context_.Messages, [&] {
        const bool isSigned = HasSignedCoordinates(context_.State.Choices);
        const TrackSources tracks = TrackSourcesOf(context_.State.Choices, context_.OtherPrograms);
        const auto load = [&](FileSystem& files, const Progress& progress) {
            const PalmDatabase palm(files);
            const LogSources sources{files, context_.Databases, palm, context_.Time, isSigned, tracks};
            try {
                log = ReadFieldLog(sources, format_, logPath_, progress);
            } catch (const NoSuchTable& error) {
                const std::string advice = OtherLoggerText(sources, logPath_);
                throw RunTimeError(error.Number(), advice.empty() ? error.Place() : advice + "\n" + logPath_);
            }
            ArrangeForReview(log);
            gapsAsLoaded_ = FindGaps(RunsOf(log));
            std::vector<RunPoint> rows;
            rows.reserve(log.PointCount());
            for (std::size_t i = 0; i < log.PointCount(); ++i) rows.push_back(RunPointAt(log, i));
            problemsAsLoaded_ = FindProblems(rows);
        };
        isLoaded_ = context_.Work.Run("Reading log " + LastComponent(logPath_), load);
    });
    if (!isLoaded_) return NewFieldLog(format_, logPath_);
    if (const std::string cut = CutText(log.DroppedBytes, log.MissingRecords); !cut.empty())
        context_.Messages.Tell(cut + "\n" + logPath_, MessageIcon::Warning);
    studyName_ = ToQt(StudyName(log));
    if (log.StudyDate) studyDate_ = ToQt(ShortDate(*log.StudyDate));
    return log;
}

int LogReview::exec() { return isLoaded_ ? QDialog::exec() : int{Rejected}; }

QLayout* LogReview::BuildHead() {
    const auto addPair = [this](QHBoxLayout* row, const QString& title, const char* name, const QString& text) {
        auto* value = Figure(this, name, title);
        value->setText(text);
        QFont font = value->font();
        font.setBold(true);
        value->setFont(font);
        row->addWidget(new QLabel(title, this));
        row->addWidget(value);
        row->addSpacing(16);
        return value;
    };
    auto* row = new QHBoxLayout;
    addPair(row, QStringLiteral("Study Name"), "lblStudyName", studyName_);
    addPair(row, QStringLiteral("Study Date"), "lblStudyDate", studyDate_);
    QLabel* file = addPair(row, QStringLiteral("Log"), "lblDataFile", ToQt(LastComponent(logPath_)));
    file->setToolTip(ToQt(logPath_));
    row->addStretch();
    return row;
}

QPushButton* LogReview::AddButton(const char* name, const QString& caption, const char* icon, const QString& toolTip) {
    auto* button = Named<QPushButton>(this, name, caption);
    if (icon != nullptr) button->setIcon(LineIcon(QLatin1String(icon)));
    button->setToolTip(toolTip);
    // Enter is for the main action, OK.
    button->setAutoDefault(false);
    return button;
}

QLayout* LogReview::BuildActions() {
    btnFindMissingData_ = AddButton("btnFindMissingData", QStringLiteral("&Find Next Missing Speed"), "search",
                                    QStringLiteral("Go to the next row with -1 in column %1").arg(RepairColumn()));
    btnCalcSpeed_ = AddButton("btnCalcSpeed", QStringLiteral("&Calculate Speed"), "smooth",
                              QStringLiteral("Fill the gap that begins in the active row, of any length"));
    btnFindAndFixAll_ = AddButton("btnFindAndFixAll", QStringLiteral("Find and Fix &All Speeds"), "process-runs",
                                  QStringLiteral("Fill every gap of up to %1 rows").arg(ReviewGrid::MaximumGap));
    btnDeleteRow_ = AddButton("btnDeleteRow", QStringLiteral("&Delete Row"), "delete",
                              QStringLiteral("Delete the selected rows (Delete)"));
    btnUndo_ = AddButton("btnUndo", QStringLiteral("&Undo"), "undo", QStringLiteral("Ctrl+Z"));
    btnRedo_ = AddButton("btnRedo", QStringLiteral("&Redo"), "redo", QStringLiteral("Ctrl+Y"));
    btnNextProblem_ =
        AddButton("btnNextProblem", QStringLiteral("Next Prob&lem"), "missing",
                  QStringLiteral("Go to the next row without a speed or with a spike, a gap or a jump (F8)"));
    btnExport2Excel_ =
        AddButton("btnExport2Excel", QStringLiteral("&Export"), "export-spreadsheet", QLatin1String(screen_.ExportTip));
    btnExportAs_ = AddButton("btnExportAs", QStringLiteral("E&xport As..."), nullptr,
                             QStringLiteral("Export to a file of another name or kind: .xls, .xlsx or .csv"));

    auto* frame = Named<QGroupBox>(this, "frMissingSpeedOptions", QStringLiteral("Missing Speed Options"));
    auto* repairs = new QHBoxLayout(frame);
    for (QPushButton* button : {btnFindMissingData_, btnCalcSpeed_, btnFindAndFixAll_}) repairs->addWidget(button);
    auto* rowActions = new QHBoxLayout;
    for (QPushButton* button : {btnDeleteRow_, btnUndo_, btnRedo_}) rowActions->addWidget(button);
    auto* exports = new QHBoxLayout;
    exports->addWidget(btnNextProblem_);
    exports->addStretch();
    for (QPushButton* button : {btnExport2Excel_, btnExportAs_}) exports->addWidget(button);
    auto* right = new QVBoxLayout;
    right->addLayout(rowActions);
    right->addLayout(exports);
    auto* row = new QHBoxLayout;
    row->addWidget(frame);
    row->addStretch();
    row->addLayout(right);
    return row;
}

QLayout* LogReview::BuildFoot() {
    cmdHelp_ = AddButton("cmdHelp", QStringLiteral("Help"));
    cmdHelp_->setShortcut(QKeySequence::HelpContents);
    lblStatus_ = Named<QLabel>(this, "lblStatus");
    SetValueCaption(*lblStatus_, QStringLiteral("What was done"));
    lblStatus_->setTextFormat(Qt::PlainText);
    lblStatus_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    prgRepair_ = Named<QProgressBar>(this, "prgRepair");
    prgRepair_->setAccessibleName(QStringLiteral("Rows searched"));
    prgRepair_->setTextVisible(false);
    btnStop_ = AddButton("btnStop", QStringLiteral("&Stop"), "stop",
                         QStringLiteral("Stop and leave this screen; nothing is written (Esc)"));
    btnGoOn_ = AddButton("btnGoOn", QStringLiteral("G&o On From There"), nullptr,
                         QStringLiteral("Search the rows behind row 32767, too"));
    for (QWidget* control : std::initializer_list<QWidget*>{prgRepair_, btnStop_, btnGoOn_}) control->hide();
    // It has the focus when it is offered, and Enter is for it then.
    btnGoOn_->setAutoDefault(true);
    BtnOk_ = AddButton("BtnOk", QStringLiteral("OK"), nullptr,
                       QStringLiteral("Make runs of the rows and write the log back"));
    BtnOk_->setDefault(true);
    BtnCancel_ = AddButton("BtnCancel", QStringLiteral("Cancel"));

    auto* row = new QHBoxLayout;
    row->addWidget(cmdHelp_);
    row->addWidget(lblStatus_, 1);
    for (QWidget* control : std::initializer_list<QWidget*>{btnGoOn_, prgRepair_, btnStop_, BtnOk_, BtnCancel_})
        row->addWidget(control);
    return row;
}

void LogReview::ConnectControls() {
    MessageBoxes& messages = context_.Messages;
    const auto onClick = [&](QPushButton* button, auto action) {
        Connect(button, &QPushButton::clicked, this, messages, action);
    };
    onClick(btnFindMissingData_, [this] { FindMissing(ReviewGrid::Search::FromSearchRow); });
    onClick(btnCalcSpeed_, [this] { CalculateSpeed(); });
    onClick(btnFindAndFixAll_, [this] { FindAndFixAll(ReviewGrid::Search::FromSearchRow); });
    onClick(btnGoOn_, [this] { GoOnFromThere(); });
    onClick(btnStop_, [this] { stopRequested_ = true; });
    onClick(btnNextProblem_, [this] { NextProblem(); });
    onClick(btnDeleteRow_, [this] { DeleteRows(); });
    onClick(btnUndo_, [this] { Undo(); });
    onClick(btnRedo_, [this] { Redo(); });
    onClick(btnExport2Excel_, [this] { export_.ToXls(); });
    onClick(btnExportAs_, [this] {
        const std::string path = export_.ToNamedFile();
        if (!path.empty()) ShowState(QStringLiteral("Exported to %1").arg(ToQt(path)));
    });
    onClick(cmdHelp_, [this] { ShowHelp(context_.DesktopServices, context_.Files, HelpTopic::ReviewLog); });
    onClick(BtnOk_, [this] { MakeRuns(); });
    onClick(BtnCancel_, [this] { reject(); });

    gaps_->OnChosen = [this](const LogGap& gap) { ShowGap(gap); };
    gaps_->OnFill = [this](const std::vector<LogGap>& gaps, GapFill fill) { FillGaps(gaps, fill); };

    const auto onKeys = [&](QShortcut* keys, auto action) {
        Connect(keys, &QShortcut::activated, this, messages, action);
    };
    onKeys(new QShortcut(Qt::CTRL | Qt::Key_Z, this), [this] { Undo(); });
    onKeys(new QShortcut(Qt::CTRL | Qt::Key_Y, this), [this] { Redo(); });
    onKeys(new QShortcut(Qt::Key_Delete, vaData_, nullptr, nullptr, Qt::WidgetShortcut), [this] { DeleteRows(); });
    onKeys(new QShortcut(Qt::Key_F8, this), [this] { NextProblem(); });
}

void LogReview::FindMissing(ReviewGrid::Search search) {
    isGoingOnFixing_ = false;
    const bool isOn = search == ReviewGrid::Search::OnFromThere;
    const int from = isOn ? model_.Grid().UnreachedRow() : int{model_.Grid().SearchRow()};
    std::optional<bool> isFound;
    Guarded(context_.Messages, [&] {
        int row = 0;
        context_.Work.Run("Searching", [&](FileSystem&, const Progress&) { row = model_.Grid().NextMissing(search); });
        isFound = model_.GoToMissing(row, search);
    });
    if (!isFound) return OfferToGoOn();
    if (!*isFound)
        return ShowState(QStringLiteral("From row %1 on no row has -1 in column %2.").arg(from).arg(RepairColumn()));
    vaData_->ShowFound();
    ShowState(QStringLiteral("Row %1 has -1 in column %2.").arg(model_.Grid().ActiveRow()).arg(RepairColumn()));
}

void LogReview::CalculateSpeed() {
    const int row = model_.Grid().ActiveRow();
    const int column = format_.Columns().RepairColumn;
    const bool fills = row != 0 && model_.Grid().Number(row, column) == ReviewGrid::Missing;
    if (!fills) return ShowState(QStringLiteral("Row %1 has no -1 in column %2.").arg(row).arg(RepairColumn()));
    Change([](ReviewGrid& grid) { grid.CalculateSpeed(); },
           QStringLiteral("The gap that begins in row %1 is filled.").arg(row));
}

void LogReview::FindAndFixAll(ReviewGrid::Search search) {
    isGoingOnFixing_ = true;
    const bool hadChanges = model_.Grid().CanUndo();
    SetRepairing(true);
    bool isDone = false;
    Guarded(context_.Messages, [&] {
        model_.Change(
            [&](ReviewGrid& grid) { isDone = grid.FindAndFixAll([this] { return GoesOnAfterEvents(); }, search); });
    });
    SetRepairing(false);
    // Of what the repair did nothing is asked, of what was changed before it is.
    const bool wasStopped = std::exchange(stopRequested_, false);
    if (wasStopped && MayDiscard(hadChanges)) return QDialog::done(Rejected);
    ShowGaps();
    vaData_->ShowActive();
    vaData_->setFocus();
    if (wasStopped) return ShowState(QStringLiteral("Stopped. Undo takes back what was filled."));
    if (!isDone) return OfferToGoOn();
    ShowState(QStringLiteral("No gap of up to %1 rows is left in column %2.")
                  .arg(ReviewGrid::MaximumGap)
                  .arg(RepairColumn()));
}

/// A search that went as far as 16 bits reach can be had for the rest.
void LogReview::OfferToGoOn() {
    const int row = model_.Grid().UnreachedRow();
    ShowState(QStringLiteral("Searched as far as row 32767."));
    btnGoOn_->setVisible(row != 0);
    if (row != 0) btnGoOn_->setFocus();
}

void LogReview::GoOnFromThere() {
    if (isGoingOnFixing_)
        FindAndFixAll(ReviewGrid::Search::OnFromThere);
    else
        FindMissing(ReviewGrid::Search::OnFromThere);
}

void LogReview::ShowGaps() {
    std::vector<LogGap> gaps;
    std::vector<LogProblem> problems;
    context_.Work.Run("Looking for gaps", [&](FileSystem&, const Progress&) {
        gaps = model_.Grid().Gaps();
        problems = FindProblems(model_.Grid().Points());
    });
    gaps_->Show(std::move(gaps));
    ShowProblems(std::move(problems));
}

void LogReview::ShowProblems(std::vector<LogProblem> problems) {
    model_.ShowProblems(std::move(problems), UnitsOf(context_.State.Settings));
}

void LogReview::NextProblem() {
    if (isRepairing_) return;
    if (model_.Problems().empty()) return ShowState(QStringLiteral("No row has a problem."));
    const auto active = static_cast<std::size_t>(std::max(model_.Grid().ActiveRow() - 1, 0));
    const int row = static_cast<int>(NextProblemRow(model_.Problems(), active)) + 1;
    ShowRow(row);
    ShowState(QStringLiteral("Row %1: %2.").arg(row).arg(model_.ProblemOf(row)));
}

void LogReview::ShowGap(const LogGap& gap) {
    const int row = model_.Grid().RowBefore(gap);
    if (row != 0) ShowRow(row);
}

void LogReview::ShowRow(int row) {
    model_.SetActiveRow(row);
    vaData_->ShowActive();
    vaData_->scrollTo(vaData_->currentIndex(), QAbstractItemView::PositionAtCenter);
}

void LogReview::FillGaps(const std::vector<LogGap>& gaps, GapFill fill) {
    const auto left = std::ranges::count_if(gaps, [&](const LogGap& gap) { return !CanBeFilled(gap, fill); });
    QString status =
        (gaps.size() == 1 ? QStringLiteral("The gap is filled ") : QStringLiteral("The gaps are filled ")) +
        GapFillText(fill) + QLatin1Char('.');
    if (left != 0) status += QStringLiteral(" %1 without positions stayed as before.").arg(left);
    Change([&](ReviewGrid& grid) { grid.FillGapsAs(gaps, fill); }, status);
}

bool LogReview::GoesOnAfterEvents() {
    prgRepair_->setValue(model_.Grid().ActiveRow());
    QApplication::processEvents();
    return !stopRequested_;
}

void LogReview::SetRepairing(bool isRepairing) {
    isRepairing_ = isRepairing;
    prgRepair_->setRange(0, model_.rowCount());
    prgRepair_->setVisible(isRepairing);
    btnStop_->setVisible(isRepairing);
    if (isRepairing) btnStop_->setFocus();
    ShowState(isRepairing ? QStringLiteral("Filling gaps...") : QString());
}

void LogReview::DeleteRows() {
    const std::vector<int> places = vaData_->SelectedPlaces();
    if (places.empty()) return;
    std::vector<int> rows;
    rows.reserve(places.size());
    for (const int place : places) rows.push_back(model_.GridRow(place));
    Change([&](ReviewGrid& grid) { grid.DeleteRows(rows); },
           rows.size() == 1 ? QStringLiteral("Row %1 is deleted.").arg(rows.front())
                            : QStringLiteral("%1 rows are deleted.").arg(rows.size()));
    // In a sorted grid the row that follows in the log may be anywhere.
    vaData_->ShowPlace(places.front());
}

void LogReview::Undo() {
    if (!isRepairing_ && model_.Grid().CanUndo())
        Change([](ReviewGrid& grid) { grid.Undo(); }, QStringLiteral("Undone."));
}

void LogReview::Redo() {
    if (!isRepairing_ && model_.Grid().CanRedo())
        Change([](ReviewGrid& grid) { grid.Redo(); }, QStringLiteral("Done again."));
}

void LogReview::Change(const std::function<void(ReviewGrid&)>& change, const QString& status) {
    model_.Change(change);
    vaData_->ShowActive();
    ShowGaps();
    ShowState(status);
}

void LogReview::MakeRuns() {
    if (WriteReview(context_, model_.Grid())) accept();
}

void LogReview::done(int result) {
    if (isRepairing_) {
        stopRequested_ = true;
        return;
    }
    if (result == Rejected && !MayDiscard(model_.Grid().CanUndo())) return;
    QDialog::done(result);
}

bool LogReview::MayDiscard(bool hasChanges) {
    return !hasChanges || context_.Messages.ConfirmLoss("The rows of log: " + logPath_ +
                                                        "\nhave changed. Do you want to discard the changes?");
}

void LogReview::ShowState(const QString& status) {
    lblStatus_->setText(status);
    btnGoOn_->hide();
    gaps_->setEnabled(!isRepairing_);
    const bool hasRows = model_.rowCount() > 0 && !isRepairing_;
    for (QWidget* control :
         std::initializer_list<QWidget*>{vaData_, btnFindMissingData_, btnCalcSpeed_, btnFindAndFixAll_,
                                         btnNextProblem_, btnDeleteRow_, btnExport2Excel_, btnExportAs_})
        control->setEnabled(hasRows);
    btnUndo_->setEnabled(!isRepairing_ && model_.Grid().CanUndo());
    btnRedo_->setEnabled(!isRepairing_ && model_.Grid().CanRedo());
    for (QWidget* control : {cmdHelp_, BtnOk_, BtnCancel_}) control->setEnabled(!isRepairing_);
}

QString LogReview::RepairColumn() const { return ToQt(model_.Grid().Column(format_.Columns().RepairColumn).Caption); }

}  // namespace vantor
