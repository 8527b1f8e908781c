#include "gpsobd/forms/LogReview.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QMenu>
#include <QScreen>
#include <QShortcut>
#include <QSplitter>
#include <QVBoxLayout>
#include <algorithm>

#include "core/LoggerChoices.h"
#include "core/Paths.h"
#include "core/RunTimeError.h"
#include "core/UserChoices.h"
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
namespace {

/// Of a review: trace and map stand beside the grid; without the choice where the screen is wide enough, which it is
/// for the actions in one row, too.
constexpr const char* ReviewViewsKey = "review-views";
constexpr const char* ViewsShown = "shown";
constexpr const char* ViewsHidden = "hidden";
constexpr int WidthForViews = 1000;
/// The least where they stand below the grid, which keeps half of it; the window scrolls where it must.
constexpr int HeightOfViews = 240;

std::string PathOf(const LogChoice& log) {
    return log.File.empty() ? std::string() : AsFolder(log.Folder) + log.File + log.Extension;
}

/// What a log is read with on another thread.
template <class Use>
bool UseSources(AppContext& context, const std::string& text, Use use) {
    const bool isSigned = HasSignedCoordinates(context.State.Choices);
    const TrackSources tracks = TrackSourcesOf(context.State.Choices, context.OtherPrograms);
    return context.Work.Run(text, [&](FileSystem& files, const Progress& progress) {
        const PalmDatabase palm(files);
        use(LogSources{files, context.Databases, palm, context.Time, isSigned, tracks}, progress);
    });
}

}  // namespace

const LogFormat* FormatToReview(AppContext& context, const LogChoice& log) {
    const LogFormat* format = nullptr;
    const std::string path = PathOf(log);
    Guarded(context.Messages, [&] {
        UseSources(context, "Looking at " + LastComponent(path),
                   [&](const LogSources& sources, const Progress&) { format = &FormatOfFile(sources, path); });
    });
    return format;
}

LogReview::LogReview(AppContext& context, const LogFormat& format, const LogChoice& log)
    : context_(context),
      format_(format),
      screen_(*format.Review),
      logPath_(PathOf(log)),
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
    column->addWidget(BuildLists(), 1);
    column->addLayout(BuildActions());
    column->addLayout(BuildFoot());
    BuildRunActions();
    ConnectControls();
    vaData_->Show(model_);
    vaData_->setFocus();
    resize(1280, 700);
    StackOnSmallScreen();
    RememberLayout(*this, context.Memory);
    OfferViews();
    // A log opens in the order it is reviewed in, whatever column the one before was sorted by.
    vaData_->sortByColumn(-1, Qt::AscendingOrder);
    gaps_->Show(std::exchange(gapsAsLoaded_, {}));
    ShowRows(rows_ != nullptr ? rows_ : std::make_shared<const ReviewedRows>());
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
        const auto load = [&](const LogSources& sources, const Progress& progress) {
            try {
                log = ReadFieldLog(sources, format_, logPath_, progress);
            } catch (const NoSuchTable& error) {
                const std::string advice = OtherLoggerText(sources, logPath_);
                throw RunTimeError(error.Number(), advice.empty() ? error.Place() : advice + "\n" + logPath_);
            }
            ArrangeForReview(log);
            gapsAsLoaded_ = FindGaps(RunsOf(log));
            const auto rows = std::make_shared<ReviewedRows>();
            rows->Points.reserve(log.PointCount());
            for (std::size_t i = 0; i < log.PointCount(); ++i) rows->Points.push_back(RunPointAt(log, i));
            rows->Problems = FindProblems(rows->Points);
            rows_ = rows;
        };
        isLoaded_ = UseSources(context_, "Reading log " + LastComponent(logPath_), load);
    });
    if (!isLoaded_) return NewFieldLog(format_, logPath_);
    if (const std::string cut = CutText(log.DroppedBytes, log.MissingRecords); !cut.empty())
        context_.Messages.Tell(cut + "\n" + logPath_, MessageIcon::Warning);
    for (const std::string& remark : log.Remarks) remarks_ += QLatin1Char('\n') + ToQt(remark);
    studyName_ = ToQt(StudyName(log));
    if (log.StudyDate) studyDate_ = ToQt(ShortDate(*log.StudyDate));
    return log;
}

int LogReview::exec() { return isLoaded_ ? QDialog::exec() : int{Rejected}; }

QWidget* LogReview::BuildLists() {
    auto* lists = Named<QSplitter>(this, "splGaps");
    lists->setOrientation(Qt::Vertical);
    gaps_ = new GapList(lists, context_.Messages, context_.Work, UnitsOf(context_.State.Settings));
    for (QWidget* list : std::initializer_list<QWidget*>{vaData_, gaps_}) lists->addWidget(list);
    lists->setStretchFactor(0, 3);
    lists->setStretchFactor(1, 1);
    auto* sides = Named<QSplitter>(this, "splViews");
    views_ = new ReviewViews(context_, format_.HasGps, sides);
    for (QWidget* side : std::initializer_list<QWidget*>{lists, views_}) sides->addWidget(side);
    sides->setStretchFactor(0, 3);
    sides->setStretchFactor(1, 2);
    sides->setSizes({720, 480});
    for (QSplitter* splitter : {lists, sides}) splitter->setChildrenCollapsible(false);
    return sides;
}

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
    file->setToolTip(ToQt(logPath_) + remarks_);
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
    btnRunHere_ = AddButton("btnRunHere", QStringLiteral("Run &Here"), "trim",
                            QStringLiteral("Start, end or split the run of the selected row at that row"));
    btnViews_ = AddButton("btnViews", QStringLiteral("Trace and &Map"), "chart",
                          QStringLiteral("The run of the selected row as its speeds over time and on a map"));
    btnViews_->setCheckable(true);
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
    for (QPushButton* button : {btnDeleteRow_, btnRunHere_, btnUndo_, btnRedo_}) rowActions->addWidget(button);
    auto* exports = new QHBoxLayout;
    for (QPushButton* button : {btnNextProblem_, btnViews_}) exports->addWidget(button);
    exports->addStretch();
    for (QPushButton* button : {btnExport2Excel_, btnExportAs_}) exports->addWidget(button);
    auto* right = new QVBoxLayout;
    right->addLayout(rowActions);
    right->addLayout(exports);
    const bool isNarrow = screen()->availableGeometry().width() < WidthForViews;
    auto* row = new QBoxLayout(isNarrow ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
    row->addWidget(frame);
    if (!isNarrow) row->addStretch();
    row->addLayout(right);
    return row;
}

void LogReview::BuildRunActions() {
    mnuRunHere_ = Named<QMenu>(this, "mnuRunHere");
    const auto add = [&](const char* name, const char* caption, const char* tip, void (LogReview::*action)()) {
        QAction* entry = mnuRunHere_->addAction(QLatin1String(caption));
        entry->setObjectName(QLatin1String(name));
        entry->setToolTip(QLatin1String(tip));
        Connect(entry, &QAction::triggered, this, context_.Messages, [this, action] { (this->*action)(); });
    };
    add("mnuStartRun", "&Start Run Here", "Delete the rows of this run before the selected one", &LogReview::StartRun);
    add("mnuEndRun", "&End Run Here", "Delete the rows of this run behind the selected one", &LogReview::EndRun);
    add("mnuSplitRun", "S&plit Run Here", "The rows of this run from the selected one on become a run of their own",
        &LogReview::SplitRun);
    mnuRunHere_->setToolTipsVisible(true);
    btnRunHere_->setMenu(mnuRunHere_);
    vaData_->addActions(mnuRunHere_->actions());
    vaData_->setContextMenuPolicy(Qt::ActionsContextMenu);
    views_->Extend([this](QMenu& menu) {
        menu.addSeparator();
        menu.addActions(mnuRunHere_->actions());
    });
}

/// Beside a grid on a small screen both are too narrow: the views stand below it, where they are wanted. Returns
/// whether it is one. To be called before the window is fitted to its screen, so that it scrolls when they are shown.
bool LogReview::StackOnSmallScreen() {
    const bool isSmall = screen()->availableGeometry().width() < WidthForViews;
    views_->setMinimumHeight(isSmall ? HeightOfViews : 0);
    vaData_->setMinimumHeight(isSmall ? HeightOfViews / 2 : 0);
    qobject_cast<QSplitter*>(views_->parentWidget())->setOrientation(isSmall ? Qt::Vertical : Qt::Horizontal);
    return isSmall;
}

void LogReview::OfferViews() {
    auto* sides = qobject_cast<QSplitter*>(views_->parentWidget());
    const bool isSmall = StackOnSmallScreen();  // again: the layout of the last time may be another
    const auto show = [this, sides, isSmall](bool isOn) {
        views_->setVisible(isOn);
        if (isSmall) vaData_->setMinimumHeight(isOn ? HeightOfViews / 2 : 0);
        if (isOn && sides->sizes().back() == 0) sides->setSizes({3, 2});
    };
    const std::string choice = ChoiceOf(context_.State.Choices, ReviewViewsKey);
    btnViews_->setChecked(choice.empty() ? !isSmall : choice == ViewsShown);
    show(btnViews_->isChecked());
    Connect(btnViews_, &QPushButton::toggled, this, context_.Messages, [this, show](bool isOn) {
        context_.State.Choices = StoreUserChoices(context_.Files, {{ReviewViewsKey, isOn ? ViewsShown : ViewsHidden}});
        show(isOn);
    });
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

    vaData_->OnActive = [this] { ShowActiveRow(); };
    views_->OnRow = [this](int row) { ShowRow(row); };
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
    for (QWidget* control : std::initializer_list<QWidget*>{
             vaData_, btnFindMissingData_, btnCalcSpeed_, btnFindAndFixAll_, views_, btnViews_, btnRunHere_,
             btnNextProblem_, btnDeleteRow_, btnExport2Excel_, btnExportAs_})
        control->setEnabled(hasRows);
    for (QAction* action : mnuRunHere_->actions()) action->setEnabled(hasRows);
    btnUndo_->setEnabled(!isRepairing_ && model_.Grid().CanUndo());
    btnRedo_->setEnabled(!isRepairing_ && model_.Grid().CanRedo());
    for (QWidget* control : {cmdHelp_, BtnOk_, BtnCancel_}) control->setEnabled(!isRepairing_);
}

QString LogReview::RepairColumn() const { return ToQt(model_.Grid().Column(format_.Columns().RepairColumn).Caption); }

}  // namespace vantor
