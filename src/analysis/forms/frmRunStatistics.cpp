#include "analysis/forms/frmRunStatistics.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QPushButton>
#include <QVBoxLayout>
#include <span>

#include "core/Csv.h"
#include "core/StudyFile.h"
#include "core/Text.h"
#include "core/forms/FigureLabel.h"
#include "core/forms/Guarded.h"
#include "core/forms/HelpButton.h"
#include "core/forms/Named.h"
#include "core/forms/Theme.h"
#include "core/forms/WindowLayout.h"

namespace vantor {
namespace {

const StudyRunEntry* EntryWithBoundaries(const Study& study, int index) {
    if (index < 1 || index > study.Record.RunCount) return nullptr;
    const StudyRunEntry& entry = study.Entries[index];
    return HasBothBoundaries(entry) ? &entry : nullptr;
}

/// A long head breaks at the blank nearest its middle.
QString InTwoLines(QString head) {
    const qsizetype middle = head.size() / 2;
    const qsizetype before = head.lastIndexOf(QLatin1Char(' '), middle);
    const qsizetype behind = head.indexOf(QLatin1Char(' '), middle);
    const bool breaksBefore = behind < 0 || (before >= 0 && middle - before < behind - middle);
    const qsizetype at = breaksBefore ? before : behind;
    if (at >= 0) head[at] = QLatin1Char('\n');
    return head;
}

void MakeBold(QLabel& label, double factor = 1) {
    QFont font = label.font();
    font.setPointSizeF(font.pointSizeF() * factor);
    font.setBold(true);
    label.setFont(font);
}

}  // namespace

frmRunStatistics::frmRunStatistics(AppContext& context, int entryIndex)
    : context_(context),
      runName_(Trim(context.State.CurrentRun.Header.RunName)),
      units_(UnitsOf(context.State.Settings)),
      statistics_(ComputeRunStatistics(context.State.CurrentRun, context.State.Settings)),
      entry_(EntryWithBoundaries(context.State.CurrentStudy, entryIndex)) {
    setObjectName(QStringLiteral("frmRunStatistics"));
    setWindowTitle(QStringLiteral("Run Statistics"));
    setWindowFlag(Qt::WindowMaximizeButtonHint);
    auto* layout = new QVBoxLayout(this);
    vaRunStatistics_ = Named<Table>(this, "vaRunStatistics");
    vaRunStatistics_->setSelectionMode(QAbstractItemView::SingleSelection);
    layout->addLayout(BuildHead());
    layout->addLayout(BuildFigures());
    layout->addWidget(vaRunStatistics_, 1);
    layout->addLayout(BuildButtons());
    FillTable();
    vaRunStatistics_->setFocus();
    resize(1320, 420);
    RememberLayout(*this, context.Memory);
}

QLayout* frmRunStatistics::BuildHead() {
    const RunHeader& header = context_.State.CurrentRun.Header;
    auto* lblRunName = Named<QLabel>(this, "lblRunName", ToQt(runName_));
    lblRunName->setTextFormat(Qt::PlainText);
    MakeBold(*lblRunName, 1.25);
    auto* lblRunDate =
        Named<QLabel>(this, "lblRunDate", ToQt(ShortDate(header.RunDate) + "  " + ShortTime(header.RunTime)));
    auto* row = new QHBoxLayout;
    row->addWidget(lblRunName);
    row->addWidget(lblRunDate);
    row->addStretch();
    return row;
}

QLayout* frmRunStatistics::BuildFigures() {
    QLabel* lblContDelay = Figure(this, "lblContDelay", QStringLiteral("Control Delay (s)"));
    lblLOS_ = Figure(this, "lblLOS", QStringLiteral("LOS Grade"));

    auto* row = new QHBoxLayout;
    QLabel* lblSections = LabelFor(vaRunStatistics_, QStringLiteral("Sec&tions between nodes"));
    lblSections->setToolTip(NoteOnHead(QStringLiteral("Section")));
    row->addWidget(lblSections, 0, Qt::AlignBottom);
    row->addStretch();
    if (entry_ == nullptr) {
        lblContDelay->setText(QStringLiteral("Set both boundaries on the speed profile to see the control delay."));
        lblLOS_->hide();
        row->addWidget(lblContDelay);
        return row;
    }
    lblContDelay->setText(QString::number(entry_->ControlDelay));
    MakeBold(*lblContDelay, 1.25);
    lblLOS_->setText(ToQt(Trim(entry_->LOSGrade)));
    lblLOS_->setAutoFillBackground(true);
    lblLOS_->setContentsMargins(8, 2, 8, 2);
    MakeBold(*lblLOS_, 1.25);
    ShowGrade();
    row->addWidget(new QLabel(QStringLiteral("Control Delay (s)"), this));
    row->addWidget(lblContDelay);
    row->addSpacing(16);
    row->addWidget(new QLabel(QStringLiteral("LOS Grade"), this));
    row->addWidget(lblLOS_);
    return row;
}

QLayout* frmRunStatistics::BuildButtons() {
    auto* BtnCopy = Named<QPushButton>(this, "BtnCopy", QStringLiteral("&Copy"));
    BtnCopy->setToolTip(QStringLiteral("Copy the table, ready to be pasted into a spreadsheet"));
    auto* BtnSaveCsv = Named<QPushButton>(this, "BtnSaveCsv", QStringLiteral("&Save as CSV..."));
    auto* BtnClose = Named<QPushButton>(this, "BtnClose", QStringLiteral("Close"));
    BtnClose->setDefault(true);
    for (QPushButton* button : {BtnCopy, BtnSaveCsv}) button->setAutoDefault(false);
    const bool hasFigures = !statistics_.Sections.empty();
    BtnCopy->setEnabled(hasFigures);
    BtnSaveCsv->setEnabled(hasFigures);

    MessageBoxes& messages = context_.Messages;
    Connect(BtnCopy, &QPushButton::clicked, this, messages, [this] { Copy(); });
    Connect(BtnSaveCsv, &QPushButton::clicked, this, messages, [this] { SaveAsCsv(); });
    Connect(BtnClose, &QPushButton::clicked, this, messages, [this] { accept(); });

    auto* row = new QHBoxLayout;
    row->addWidget(HelpButton(*this, context_, HelpTopic::RunStatistics));
    row->addStretch();
    for (QPushButton* button : {BtnCopy, BtnSaveCsv, BtnClose}) row->addWidget(button);
    return row;
}

void frmRunStatistics::FillTable() {
    const auto rows = StatisticsSheet(statistics_, units_, nullptr);
    QStringList heads;
    for (const SheetField& head : rows.front()) heads += InTwoLines(ToQt(head.Text));
    vaRunStatistics_->SetColumns(heads);
    const QString nothing = QStringLiteral("This run has no samples.");
    vaRunStatistics_->SetEmptyText(nothing);
    if (statistics_.Sections.empty()) return;

    vaRunStatistics_->BeginFilling();
    for (const SheetRow& fields : std::span(rows).subspan(1)) {
        const int row = vaRunStatistics_->AddRow();
        for (int column = 0; column < static_cast<int>(fields.size()); ++column) {
            const SheetField& field = fields[static_cast<std::size_t>(column)];
            const QString text = ToQt(field.Text);
            if (field.IsNumber)
                vaRunStatistics_->SetNumber(row, column, text.toDouble(), text);
            else
                vaRunStatistics_->SetText(row, column, text);
        }
    }
    vaRunStatistics_->EndFilling();
    ShowTotalBold();
    vaRunStatistics_->resizeColumnsToContents();
    // The table would sort the whole run's row among the sections.
    vaRunStatistics_->setSortingEnabled(false);
    QHeaderView* header = vaRunStatistics_->horizontalHeader();
    header->setSortIndicatorShown(true);
    Connect(header, &QHeaderView::sortIndicatorChanged, this, context_.Messages,
            [this](int column, Qt::SortOrder order) { SortSections(column, order); });
}

void frmRunStatistics::ShowTotalBold() {
    const int last = vaRunStatistics_->rowCount() - 1;
    QFont font = vaRunStatistics_->font();
    font.setBold(true);
    for (int column = 0; column < vaRunStatistics_->columnCount(); ++column)
        vaRunStatistics_->item(last, column)->setFont(font);
    vaRunStatistics_->item(last, 0)->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
}

void frmRunStatistics::SortSections(int column, Qt::SortOrder order) {
    const int last = vaRunStatistics_->rowCount() - 1;
    std::vector<QTableWidgetItem*> total(static_cast<std::size_t>(vaRunStatistics_->columnCount()));
    for (int i = 0; i < vaRunStatistics_->columnCount(); ++i)
        total[static_cast<std::size_t>(i)] = vaRunStatistics_->takeItem(last, i);
    vaRunStatistics_->setRowCount(last);
    if (column < 0)
        vaRunStatistics_->sortItems(0, Qt::AscendingOrder);
    else
        vaRunStatistics_->sortItems(column, order);
    vaRunStatistics_->setRowCount(last + 1);
    for (int i = 0; i < vaRunStatistics_->columnCount(); ++i)
        vaRunStatistics_->setItem(last, i, total[static_cast<std::size_t>(i)]);
}

void frmRunStatistics::ShowGrade() {
    const ColourPair pair = GradePair(lblLOS_->text(), palette());
    QPalette badge = palette();
    badge.setColor(QPalette::Window, pair.Background);
    badge.setColor(QPalette::WindowText, pair.Text);
    lblLOS_->setPalette(badge);
}

void frmRunStatistics::Copy() {
    context_.DesktopServices.CopyText(TabSeparatedText(StatisticsSheet(statistics_, units_, entry_)));
}

void frmRunStatistics::SaveAsCsv() {
    const std::string path =
        context_.DesktopServices.ChooseFileToSave(StudyGroupFolder(context_.State) + runName_ + " statistics.csv",
                                                  "Save Run Statistics", {{"Comma-separated values", ".csv"}});
    if (path.empty()) return;
    const std::string text = CsvText(StatisticsSheet(statistics_, units_, entry_));
    WriteFile(context_.Files, path, std::as_bytes(std::span(text)), AsItStands(context_.Files, path));
}

void frmRunStatistics::changeEvent(QEvent* event) {
    QDialog::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && entry_ != nullptr && lblLOS_ != nullptr) ShowGrade();
}

}  // namespace vantor
