#include "reports/forms/frmReportPreview.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QShortcut>
#include <QSignalBlocker>
#include <QVBoxLayout>
#include <algorithm>
#include <array>
#include <utility>

#include "core/StudyFile.h"
#include "core/Text.h"
#include "core/UserChoices.h"
#include "core/forms/Accessible.h"
#include "core/forms/Guarded.h"
#include "core/forms/HelpButton.h"
#include "core/forms/Named.h"
#include "core/forms/Theme.h"
#include "core/forms/WindowLayout.h"
#include "reports/CorridorReportSource.h"
#include "reports/StudyReportSource.h"
#include "reports/forms/SavePdf.h"

namespace vantor {
namespace {

/// In the order of the zoom list.
constexpr std::array ZoomSteps = {static_cast<int>(ReportPagesView::FitWidth),
                                  static_cast<int>(ReportPagesView::FitPage),
                                  25,
                                  50,
                                  75,
                                  100,
                                  125,
                                  150,
                                  200,
                                  300,
                                  400};
constexpr int FirstPercent = 2;

std::shared_ptr<ReportSource> SourceOfStudy(const AppContext& context) {
    return std::make_shared<StudyReportSource>(
        StudyReportSource::From{context.State.CurrentStudy, StudyGroupFolder(context.State), context.State.Settings,
                                context.Time.Now(), ChoiceOf(context.State.Choices, BaseMapKey)},
        context.Tiles);
}

std::shared_ptr<ReportSource> SourceOf(const AppContext& context, std::shared_ptr<const ReportedCorridor> corridor) {
    return std::make_shared<CorridorReportSource>(
        CorridorReportSource::From{std::move(corridor), context.State.Settings, context.Time.Now(),
                                   ChoiceOf(context.State.Choices, BaseMapKey)},
        context.Tiles);
}

}  // namespace

frmReportPreview::frmReportPreview(AppContext& context) : frmReportPreview(context, SourceOfStudy(context)) {}

frmReportPreview::frmReportPreview(AppContext& context, std::shared_ptr<const ReportedCorridor> corridor)
    : frmReportPreview(context, SourceOf(context, std::move(corridor))) {}

frmReportPreview::frmReportPreview(AppContext& context, std::shared_ptr<ReportSource> source)
    : context_(context), source_(std::move(source)) {
    LoadData();
    setObjectName(QStringLiteral("frmReportPreview"));
    setWindowTitle(QStringLiteral("Print Report"));
    setWindowFlag(Qt::WindowMaximizeButtonHint);
    picReport_ = Named<ReportPagesView>(this, "picReport");
    SetAccessibleRole(*picReport_, QAccessible::Document);
    picReport_->setAccessibleName(QStringLiteral("Pages of the report"));
    auto* pages = new QVBoxLayout;
    pages->addLayout(BuildPageBar());
    pages->addWidget(picReport_, 1);
    auto* middle = new QHBoxLayout;
    middle->addLayout(BuildChoices());
    middle->addLayout(pages, 1);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(middle, 1);
    layout->addLayout(BuildButtons());
    RecallChoice();
    ConnectAll();
    ShowDocument();
    picReport_->setFocus();
    resize(1120, 820);
    RememberLayout(*this, context.Memory);
}

void frmReportPreview::LoadData() {
    const bool isWhole = context_.Work.Run(
        source_->LoadingText(),
        [source = source_](FileSystem& files, const Progress& progress) { source->Load(files, progress); });
    // A report on a part of the runs would be taken for one on all.
    if (!isWhole) QMetaObject::invokeMethod(this, &QDialog::reject, Qt::QueuedConnection);
}

QLayout* frmReportPreview::BuildChoices() {
    auto* column = new QVBoxLayout;
    column->addWidget(BuildReports());
    column->addWidget(BuildPaper());
    if (const std::vector<std::string> problems = source_->Problems(); !problems.empty()) {
        auto* lblProblems = Named<QLabel>(this, "lblProblems");
        std::string text;
        for (const std::string& problem : problems) text += "\n" + problem;
        constexpr std::size_t MostShown = 300;
        const std::string_view shown = FirstCharacters(text, MostShown);
        lblProblems->setText(QStringLiteral("Not all runs can be printed:") + ToQt(shown) +
                             (shown.size() < text.size() ? QStringLiteral("...") : QString()));
        lblProblems->setTextFormat(Qt::PlainText);
        lblProblems->setWordWrap(true);
        lblProblems->setContentsMargins(8, 6, 8, 6);
        const ColourPair pair = AmberPair(palette());
        QPalette amber = palette();
        amber.setColor(QPalette::Window, pair.Background);
        amber.setColor(QPalette::WindowText, pair.Text);
        lblProblems->setPalette(amber);
        lblProblems->setAutoFillBackground(true);
        column->addWidget(lblProblems);
    }
    column->addStretch();
    return column;
}

QGroupBox* frmReportPreview::BuildReports() {
    auto* frame = Named<QGroupBox>(this, "fraReports", QStringLiteral("Reports"));
    auto* layout = new QVBoxLayout(frame);
    // There are many, and low screens.
    layout->setSpacing(2);
    for (const ReportSource::Part& part : source_->Parts()) {
        QCheckBox* report = chkReport_.emplace_back(Named<QCheckBox>(frame, "", ToQt(part.Caption)));
        report->setObjectName(QStringLiteral("chkReport(%1)").arg(chkReport_.size() - 1));
        layout->addWidget(report, 0, Qt::AlignLeft);
    }
    return frame;
}

QGroupBox* frmReportPreview::BuildPaper() {
    auto* frame = Named<QGroupBox>(this, "fraPaper", QStringLiteral("Paper"));
    auto* form = new QFormLayout(frame);
    cmbPaper_ = Named<QComboBox>(frame, "cmbPaper");
    cmbPaper_->addItems({QStringLiteral("Letter"), QStringLiteral("A4")});
    cmbOrientation_ = Named<QComboBox>(frame, "cmbOrientation");
    cmbOrientation_->addItems({QStringLiteral("Portrait"), QStringLiteral("Landscape")});
    cmbOrientation_->setAccessibleName(QStringLiteral("Orientation"));
    auto* sheet = new QHBoxLayout;
    sheet->addWidget(cmbPaper_);
    sheet->addWidget(cmbOrientation_);
    form->addRow(LabelFor(cmbPaper_, QStringLiteral("Si&ze")), sheet);
    chkLeaveOutHeadings_ = Named<QCheckBox>(frame, "chkLeaveOutHeadings", QStringLiteral("Leave out &headings"));
    chkLeaveOutHeadings_->setToolTip(QStringLiteral("The heading lines of Preferences, Report Options"));
    form->addRow(chkLeaveOutHeadings_);
    return frame;
}

QToolButton* frmReportPreview::BarButton(const char* name, const char* icon, const QString& caption) {
    auto* button = Named<QToolButton>(this, name, caption);
    button->setIcon(LineIcon(QLatin1String(icon)));
    button->setToolButtonStyle(Qt::ToolButtonIconOnly);
    button->setToolTip(caption);
    button->setAccessibleName(caption.section(QLatin1String(" ("), 0, 0));
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::TabFocus);
    return button;
}

QLayout* frmReportPreview::BuildPageBar() {
    cmdPrevious_ = BarButton("cmdPrevious", "back", QStringLiteral("Previous page (Page Up)"));
    cmdNext_ = BarButton("cmdNext", "forward", QStringLiteral("Next page (Page Down)"));
    cmdZoomOut_ = BarButton("cmdZoomOut", "zoom-out", QStringLiteral("Smaller (Ctrl -)"));
    cmdZoomIn_ = BarButton("cmdZoomIn", "zoom-in", QStringLiteral("Larger (Ctrl +)"));
    txtPage_ = Named<QSpinBox>(this, "txtPage");
    txtPage_->setAlignment(Qt::AlignRight);
    txtPage_->setKeyboardTracking(false);
    lblPages_ = Named<QLabel>(this, "lblPages");
    cmbZoom_ = Named<QComboBox>(this, "cmbZoom");
    cmbZoom_->addItems({QStringLiteral("Fit Width"), QStringLiteral("Fit Page")});
    for (std::size_t i = FirstPercent; i < ZoomSteps.size(); ++i)
        cmbZoom_->addItem(QStringLiteral("%1 %").arg(ZoomSteps[i]));

    auto* bar = new QHBoxLayout;
    bar->addWidget(cmdPrevious_);
    bar->addWidget(LabelFor(txtPage_, QStringLiteral("Pa&ge")));
    bar->addWidget(txtPage_);
    bar->addWidget(lblPages_);
    bar->addWidget(cmdNext_);
    bar->addStretch();
    bar->addWidget(LabelFor(cmbZoom_, QStringLiteral("Zoo&m")));
    bar->addWidget(cmdZoomOut_);
    bar->addWidget(cmbZoom_);
    bar->addWidget(cmdZoomIn_);
    return bar;
}

QLayout* frmReportPreview::BuildButtons() {
    BtnSavePdf_ = Named<QPushButton>(this, "BtnSavePdf", QStringLiteral("&Save as PDF..."));
    BtnPrint_ = Named<QPushButton>(this, "BtnPrint", QStringLiteral("&Print..."));
    BtnPrint_->setDefault(true);
    BtnClose_ = Named<QPushButton>(this, "BtnClose", QStringLiteral("Close"));
    for (QPushButton* button : {BtnSavePdf_, BtnClose_}) button->setAutoDefault(false);
    auto* row = new QHBoxLayout;
    row->addWidget(HelpButton(*this, context_, HelpTopic::Reports));
    row->addStretch();
    for (QPushButton* button : {BtnSavePdf_, BtnPrint_, BtnClose_}) row->addWidget(button);
    return row;
}

void frmReportPreview::ConnectAll() {
    MessageBoxes& messages = context_.Messages;
    std::vector<QCheckBox*> boxes(chkReport_.begin(), chkReport_.end());
    boxes.push_back(chkLeaveOutHeadings_);
    for (QCheckBox* box : boxes) Connect(box, &QCheckBox::toggled, this, messages, [this] { ChoiceChanged(); });
    for (QComboBox* list : {cmbPaper_, cmbOrientation_})
        Connect(list, &QComboBox::currentIndexChanged, this, messages, [this] { ChoiceChanged(); });
    Connect(cmbZoom_, &QComboBox::currentIndexChanged, this, messages, [this](int index) { SetZoom(index); });
    Connect(txtPage_, &QSpinBox::valueChanged, this, messages, [this](int page) { picReport_->GoToPage(page); });
    picReport_->OnPageChanged = [this] { ShowPage(); };
    picReport_->OnZoom = [this](int steps) { StepZoom(steps); };
    const auto onClick = [&](QAbstractButton* button, auto action) {
        Connect(button, &QAbstractButton::clicked, this, messages, action);
    };
    onClick(cmdPrevious_, [this] { picReport_->Navigate(Qt::Key_PageUp); });
    onClick(cmdNext_, [this] { picReport_->Navigate(Qt::Key_PageDown); });
    onClick(cmdZoomOut_, [this] { StepZoom(-1); });
    onClick(cmdZoomIn_, [this] { StepZoom(1); });
    onClick(BtnSavePdf_, [this] { SaveAsPdf(); });
    onClick(BtnPrint_, [this] { Print(); });
    onClick(BtnClose_, [this] { reject(); });
    for (const auto& [keys, steps] : {std::pair("Ctrl++", 1), std::pair("Ctrl+=", 1), std::pair("Ctrl+-", -1)})
        Connect(new QShortcut(QKeySequence(QLatin1String(keys)), this), &QShortcut::activated, this, messages,
                [this, by = steps] { StepZoom(by); });
}

void frmReportPreview::RecallChoice() {
    // Paper, orientation, headings and reports as one digit each, then the position in the zoom list.
    const std::string kept = context_.Memory.Recall(source_->ChoiceKey());
    constexpr std::size_t BeforeReports = 3;
    const bool isKept = kept.size() > BeforeReports + chkReport_.size();
    const std::vector<ReportSource::Part> parts = source_->Parts();
    for (std::size_t i = 0; i < chkReport_.size(); ++i)
        chkReport_[i]->setChecked(isKept ? kept[BeforeReports + i] == '1' : parts[i].IsUsual);
    if (!isKept) return;
    cmbPaper_->setCurrentIndex(kept[0] == '1' ? 1 : 0);
    cmbOrientation_->setCurrentIndex(kept[1] == '1' ? 1 : 0);
    chkLeaveOutHeadings_->setChecked(kept[2] == '1');
    const int zoom = ToQt(std::string_view(kept).substr(BeforeReports + chkReport_.size())).toInt();
    cmbZoom_->setCurrentIndex(std::clamp(zoom, 0, cmbZoom_->count() - 1));
    picReport_->SetZoom(ZoomSteps[static_cast<std::size_t>(cmbZoom_->currentIndex())]);
}

void frmReportPreview::StoreChoice() {
    std::string kept = std::to_string(cmbPaper_->currentIndex()) + std::to_string(cmbOrientation_->currentIndex());
    kept += chkLeaveOutHeadings_->isChecked() ? '1' : '0';
    for (const QCheckBox* report : chkReport_) kept += report->isChecked() ? '1' : '0';
    context_.Memory.Store(source_->ChoiceKey(), kept + std::to_string(cmbZoom_->currentIndex()));
}

PrintChoice frmReportPreview::Choice() const {
    PrintChoice choice;
    for (const QCheckBox* report : chkReport_) choice.Parts.push_back(report->isChecked());
    choice.Pages.Sheet = cmbPaper_->currentIndex() == 1 ? Paper::A4 : Paper::Letter;
    choice.Pages.IsLandscape = cmbOrientation_->currentIndex() == 1;
    choice.Pages.HasHeadings = !chkLeaveOutHeadings_->isChecked();
    return choice;
}

void frmReportPreview::ChoiceChanged() {
    StoreChoice();
    ShowDocument();
}

void frmReportPreview::ShowDocument() {
    const std::string noRuns = source_->NoRunsText();
    document_ = {};
    if (noRuns.empty())
        context_.Work.Run("Laying out the report", [this, choice = Choice()](FileSystem&, const Progress&) {
            document_ = source_->Make(choice, context_.Documents.Measure());
        });
    const QString empty = noRuns.empty() ? QStringLiteral("Choose one or more reports on the left.") : ToQt(noRuns);
    const bool hasPages = !document_.Pages.empty();
    picReport_->SetEmptyText(empty);
    if (!hasPages) picReport_->setAccessibleDescription(empty);
    picReport_->SetDocument(document_);
    for (QWidget* control :
         std::initializer_list<QWidget*>{BtnPrint_, BtnSavePdf_, txtPage_, cmbZoom_, cmdZoomIn_, cmdZoomOut_})
        control->setEnabled(hasPages);
    ShowPage();
}

void frmReportPreview::ShowPage() {
    const int page = picReport_->CurrentPage();
    const int count = picReport_->PageCount();
    const QSignalBlocker blocker(txtPage_);
    txtPage_->setRange(std::min(1, count), count);
    txtPage_->setValue(page);
    lblPages_->setText(QStringLiteral("of %1").arg(count));
    if (count > 0) picReport_->setAccessibleDescription(QStringLiteral("Page %1 of %2").arg(page).arg(count));
    cmdPrevious_->setEnabled(page > 1);
    cmdNext_->setEnabled(page < count);
}

void frmReportPreview::SetZoom(int index) {
    picReport_->SetZoom(ZoomSteps[static_cast<std::size_t>(index)]);
    StoreChoice();
}

void frmReportPreview::StepZoom(int steps) {
    const double shown = picReport_->ShownPercent();
    const auto first = ZoomSteps.begin() + FirstPercent;
    // A percentage of the list is met within a rounding error.
    constexpr double Near = 0.5;
    auto next = steps > 0 ? std::upper_bound(first, ZoomSteps.end(), shown + Near)
                          : std::lower_bound(first, ZoomSteps.end(), shown - Near) - 1;
    next = std::clamp(next, first, ZoomSteps.end() - 1);
    cmbZoom_->setCurrentIndex(static_cast<int>(next - ZoomSteps.begin()));
}

void frmReportPreview::Print() { context_.DesktopServices.Print(document_); }

void frmReportPreview::SaveAsPdf() {
    SavePdf(context_, source_->PathToSave(), "Save Report",
            [source = source_, choice = Choice(), &writer = context_.Documents](
                FileSystem& files, const std::string& path, const Progress& progress) {
                source->Save(files, path, choice, writer, progress);
            });
}

void frmReportPreview::keyPressEvent(QKeyEvent* event) {
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    // Enter takes the typed page, it does not print.
    if (isEnter && txtPage_->hasFocus()) return picReport_->setFocus();
    if (event->modifiers() == Qt::NoModifier && picReport_->Navigate(event->key())) return;
    QDialog::keyPressEvent(event);
}

}  // namespace vantor
