#include "gpsobd/forms/LogSelect.h"

#include <QEventLoop>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QPointer>
#include <QSplitter>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>
#include <limits>

#include "core/Paths.h"
#include "core/Text.h"
#include "core/forms/Guarded.h"
#include "core/forms/HelpButton.h"
#include "core/forms/Named.h"
#include "core/forms/Theme.h"
#include "core/forms/WindowLayout.h"
#include "core/modMain.h"
#include "gpsobd/DeviceCopy.h"
#include "gpsobd/modWinCERAPIConnectionHandler.h"

namespace vantor {
namespace {

/// The root of the drive that a path lies on.
std::string RootOf(const std::string& path) {
    const std::string root = path.substr(0, path.find(PathSeparator) + 1);
    return root.empty() ? std::string(1, PathSeparator) : root;
}

double SecondsSinceMidnight(const Clock& clock) {
    const double days = clock.Now().Days;
    return (days - std::floor(days)) * 86400;
}

/// Rests in between: asking for events without a pause would keep a processor busy.
void ProcessEventsForAMoment() {
    constexpr int Moment = 10;  // milliseconds
    QEventLoop events;
    QTimer::singleShot(Moment, &events, &QEventLoop::quit);
    events.exec();
}

}  // namespace

LogSelect::LogSelect(AppContext& context, const LogFormat& format)
    : context_(context), format_(format), screen_(*format.Screen), listing_(context, format) {
    setObjectName(QLatin1String(screen_.FormName));
    setWindowTitle(QLatin1String(screen_.Caption));
    choice_.Folder = AsFolder(context_.State.Paths.FieldDataPath);

    auto* folders = Named<QSplitter>(this, "splFolders");
    folders->addWidget(BuildFolders());
    folders->addWidget(BuildLogs());
    folders->setStretchFactor(0, 2);
    folders->setStretchFactor(1, 5);
    folders->setChildrenCollapsible(false);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(Named<QLabel>(this, "lblInstructions",
                                    QStringLiteral("Choose the folder of the logs, then the log to process.")));
    layout->addWidget(folders, 1);
    layout->addLayout(BuildButtons());
    resize(940, 500);

    ConnectControls();
    grid_->setFocus();
    RememberLayout(*this, context_.Memory);
}

QWidget* LogSelect::BuildFolders() {
    auto* side = new QWidget(this);
    tree_ = Named<FolderTree>(side, screen_.TreeName);
    auto* layout = new QVBoxLayout(side);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(LabelFor(tree_, QStringLiteral("F&older")));
    layout->addWidget(tree_);
    return side;
}

QWidget* LogSelect::BuildLogs() {
    auto* side = new QWidget(this);
    grid_ = Named<Table>(side, screen_.GridName);
    QStringList heads;
    for (const LogColumnHead& column : screen_.Columns) heads += QLatin1String(column.Caption);
    grid_->SetColumns(heads);
    constexpr int NarrowestColumn = 64;
    grid_->horizontalHeader()->setDefaultSectionSize(NarrowestColumn);
    grid_->setSelectionMode(QAbstractItemView::SingleSelection);
    if (screen_.IsFileTypeHidden) grid_->hideColumn(ColumnOf(LogColumn::FileType));
    SetColumnWidths();
    grid_->BeginFilling();
    lblNote_ = Named<QLabel>(side, "lblNote");
    lblNote_->setWordWrap(true);
    lblNote_->setTextFormat(Qt::PlainText);
    lblNote_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    lblNote_->hide();

    auto* layout = new QVBoxLayout(side);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(LabelFor(grid_, QStringLiteral("&Logs")));
    layout->addWidget(grid_, 1);
    layout->addWidget(lblNote_);
    return side;
}

/// Rows are seen long before the last one is there to fit the columns to.
void LogSelect::SetColumnWidths() {
    const auto fit = [this](int column, const QString& text) {
        const int needed = grid_->fontMetrics().horizontalAdvance(text) + 24;
        grid_->setColumnWidth(column, std::max(grid_->columnWidth(column), needed));
    };
    for (int column = 0; column < grid_->columnCount(); ++column) {
        const LogColumn shows = ColumnAt(column);
        if (shows == LogColumn::FileName) fit(column, QStringLiteral("Main Street AM 01"));
        if (shows == LogColumn::StartTime || shows == LogColumn::EndTime)
            fit(column, ToQt(TimeText(screen_.Times, Date{}, false)));
    }
}

QLayout* LogSelect::BuildButtons() {
    BtnSelect_ = Named<QPushButton>(this, "BtnSelect", QStringLiteral("&Select"));
    BtnCancel_ = Named<QPushButton>(this, "BtnCancel", QStringLiteral("Cancel"));
    BtnCancel_->setAutoDefault(false);
    BtnSelect_->setDefault(true);
    lblProgress_ = Named<QLabel>(this, "lblProgress");
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(HelpButton(*this, context_, HelpTopic::SelectLog));
    buttons->addWidget(lblProgress_, 1);
    buttons->addWidget(BtnSelect_);
    buttons->addWidget(BtnCancel_);
    return buttons;
}

void LogSelect::ConnectControls() {
    MessageBoxes& messages = context_.Messages;
    tree_->OnChosen = [this, &messages](const std::string& folder) { Guarded(messages, [&] { ListFolder(folder); }); };
    listing_.OnRead = [this](const ListedLog& log) {
        AddRow(log.FileName);
        ShowLog(log);
    };
    listing_.OnProgress = [this](std::size_t number, std::size_t count) {
        lblProgress_->setText(QStringLiteral("Reading %1 of %2...").arg(number).arg(count));
    };
    listing_.OnEnd = [this] {
        lblProgress_->clear();
        grid_->SetEmptyText(emptyText_);
        grid_->EndFilling();
        TellUnreadable();
    };
    Connect(grid_, &Table::itemSelectionChanged, this, messages, [this] { ShowNote(); });
    Connect(grid_, &Table::itemDoubleClicked, this, messages, [this] { Select(); });
    Connect(BtnSelect_, &QPushButton::clicked, this, messages, [this] { Select(); });
    Connect(BtnCancel_, &QPushButton::clicked, this, messages, [this] { reject(); });
}

void LogSelect::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    if (isLoaded_) return;
    isLoaded_ = true;
    // Once the window stands: questions lie over it then, and the modal loop is there to be left.
    QTimer::singleShot(0, this, [this] { Guarded(context_.Messages, [this] { Load(); }); });
}

void LogSelect::Load() {
    const QPointer<LogSelect> self(this);
    if (screen_.Device != nullptr) Guarded(context_.Messages, [this] { OfferCopy(); });
    if (self && isVisible()) OpenFieldDataFolder();
}

/// The screen may be closed, and even destroyed, while the question stands and during the copy.
void LogSelect::OfferCopy() {
    const QPointer<LogSelect> self(this);
    AppContext& context = context_;
    const LogDevice& device = *screen_.Device;
    if (!WantsDeviceCopy(context.Messages, device) || !self) return;
    lblProgress_->setText(QStringLiteral("Copying from the handheld..."));
    lblProgress_->repaint();
    CopyFromDevice(context, device, std::string(choice_.Folder), [self](std::int16_t milliseconds) {
        if (self) self->DelayXMsec(milliseconds);
    });
    if (self) lblProgress_->clear();
}

/// Ends early when the screen is closed.
void LogSelect::DelayXMsec(std::int16_t milliseconds) {
    if (!isVisible()) return;
    const QPointer<LogSelect> self(this);
    const Clock& clock = context_.Time;
    const auto timer = [&] {
        return self && self->isVisible() ? SecondsSinceMidnight(clock) : std::numeric_limits<double>::infinity();
    };
    vantor::DelayXMsec(milliseconds, timer, ProcessEventsForAMoment);
}

void LogSelect::OpenFieldDataFolder() {
    // The tree begins at the drive's root, so that every folder can be reached.
    const std::string folder = AsFolder(context_.State.Paths.FieldDataPath);
    tree_->SetRoot(context_.Files, RootOf(folder));
    if (!tree_->SelectFolder(folder) && FolderExists(context_.Files, folder)) {
        tree_->SetRoot(context_.Files, folder);
        tree_->SelectFolder(folder);
    }
    if (tree_->currentItem() == nullptr) {
        ListFolder(folder);
        return;
    }
    tree_->ShowCurrent();
    ListFolder(tree_->SelectedFolder());  // in the letter case that it is stored in
}

void LogSelect::ListFolder(const std::string& folder) {
    listing_.Stop();
    lblProgress_->clear();
    choice_.Folder = folder;
    grid_->SetEmptyText({});
    grid_->BeginFilling();
    ShowNote();
    unreadable_.clear();
    emptyText_ = QStringLiteral("There are no %1 in this folder.").arg(QLatin1String(screen_.FilesListed));
    std::vector<std::string> fileNames;
    try {
        fileNames = LogFilesIn(context_.Files, folder, format_);
    } catch (const RunTimeError&) {
        const QString problem = FolderExists(context_.Files, folder) ? QStringLiteral("This folder cannot be read:")
                                                                     : QStringLiteral("This folder does not exist:");
        emptyText_ =
            problem + QLatin1Char('\n') + ToQt(folder) + QLatin1Char('\n') + QStringLiteral("Choose another folder.");
    }
    listing_.Start(folder, std::move(fileNames));
}

void LogSelect::AddRow(const std::string& fileName) {
    const int row = grid_->AddRow();
    for (int column = 0; column < grid_->columnCount(); ++column) {
        const LogColumn shows = ColumnAt(column);
        std::string text;
        if (shows == LogColumn::FileName) text = BaseName(fileName);
        if (shows == LogColumn::FileType) text = FileTypeOf(format_, fileName).Mark;
        if (shows == LogColumn::Extension) text = fileName.substr(BaseName(fileName).size());
        grid_->SetText(row, column, ToQt(text));
    }
    if (row == 0) grid_->selectRow(row);
}

void LogSelect::ShowLog(const ListedLog& log) {
    const int row = grid_->rowCount() - 1;
    if (log.Summary) SetSummary(row, *log.Summary);
    if (!log.Note.empty()) SetNote(row, ToQt(log.Note));
    if (!log.Summary && !log.IsOfOtherKind && screen_.Device != nullptr)
        unreadable_.push_back({log.FileName, "unable to open " + log.FileName});
}

void LogSelect::TellUnreadable() {
    const QPointer<LogSelect> self(this);
    context_.Messages.WarnOfEach(std::exchange(unreadable_, {}), [self] { return !self.isNull(); });
}

void LogSelect::SetSummary(int row, const LogSummary& summary) {
    const auto set = [&](int column, const std::optional<Date>& moment, const auto& textOf) {
        if (moment) grid_->SetSorted(row, column, ToQt(textOf(*moment)), moment->Days);
    };
    const bool isOverDays = summary.StartTime && summary.EndTime &&
                            std::floor(summary.StartTime->Days) != std::floor(summary.EndTime->Days);
    const auto setTime = [&](int column, const std::optional<Date>& moment) {
        set(column, moment, [&](Date time) { return TimeText(screen_.Times, time, isOverDays); });
        if (moment) grid_->item(row, column)->setToolTip(ToQt(TimeText(LogTimeLook::DateAndSeconds, *moment, true)));
    };
    for (int column = 0; column < grid_->columnCount(); ++column) switch (ColumnAt(column)) {
            case LogColumn::StudyDate: set(column, summary.StudyDate, ShortDate); break;
            case LogColumn::StartTime: setTime(column, summary.StartTime); break;
            case LogColumn::EndTime: setTime(column, summary.EndTime); break;
            case LogColumn::Runs: grid_->SetNumber(row, column, summary.Runs, QString::number(summary.Runs)); break;
            case LogColumn::FileName:
            case LogColumn::FileType:
            case LogColumn::Extension: break;
        }
}

void LogSelect::SetNote(int row, const QString& note) {
    grid_->item(row, 0)->setIcon(LineIcon(QStringLiteral("missing")));
    grid_->item(row, 0)->setData(Qt::AccessibleDescriptionRole, note);
    for (int column = 0; column < grid_->columnCount(); ++column) grid_->item(row, column)->setToolTip(note);
    ShowNote();
}

void LogSelect::ShowNote() {
    const int row = SelectedRow();
    lblNote_->setText(row < 0 ? QString() : grid_->item(row, 0)->toolTip());
    lblNote_->setVisible(!lblNote_->text().isEmpty());
}

LogColumn LogSelect::ColumnAt(int column) const { return screen_.Columns[static_cast<std::size_t>(column)].Shows; }

/// -1 for one that the screen does not have.
int LogSelect::ColumnOf(LogColumn shows) const {
    const auto head = std::ranges::find(screen_.Columns, shows, &LogColumnHead::Shows);
    return head == screen_.Columns.end() ? -1 : static_cast<int>(head - screen_.Columns.begin());
}

int LogSelect::SelectedRow() const {
    const auto rows = grid_->SelectedRows();
    return rows.empty() ? -1 : rows.front();
}

const LogFileType& LogSelect::FileTypeAt(int row) const {
    const int column = ColumnOf(LogColumn::FileType);
    const std::string mark = column < 0 ? std::string() : FromQt(grid_->Text(row, column));
    for (const LogFileType& type : format_.FileTypes)
        if (mark == type.Mark) return type;
    return FileTypeOf(format_, {});
}

void LogSelect::Select() {
    const int row = SelectedRow();
    const LogFileType& type = FileTypeAt(row);
    choice_.File = TrimLeft(FromQt(grid_->Text(row, 0)));
    choice_.Extension = type.Extension;
    accept();
}

void LogSelect::done(int result) {
    listing_.Stop();
    QDialog::done(result);
}

}  // namespace vantor
