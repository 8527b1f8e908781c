#include "editing/forms/BoundsDialog.h"

#include <QHBoxLayout>
#include <limits>

#include "core/StudyFile.h"
#include "core/Text.h"
#include "core/Units.h"
#include "core/forms/Guarded.h"
#include "core/forms/HelpButton.h"
#include "core/forms/Named.h"

namespace vantor {
namespace {

/// Of the list: the columns of the places, where they are there, come behind the first two.
constexpr int RunColumn = 0;
constexpr int NowColumn = 1;
constexpr int PlaceColumn = 2;
constexpr int ThenColumn = 2;
constexpr int GradeColumn = 3;
constexpr int WarningColumn = 4;
constexpr int PreviewRole = Qt::UserRole + 1;
const QString Dash = QStringLiteral("\u2013");

/// A delay, or a dash, which sorts below all delays.
void SetDelay(Table& table, int row, int column, const StudyRunEntry& entry, bool isThere) {
    const bool isComputed = isThere && HasBothBoundaries(entry) && !Trim(entry.LOSGrade).empty();
    table.SetNumber(row, column, isComputed ? entry.ControlDelay : std::numeric_limits<double>::lowest(),
                    isComputed ? QString::number(entry.ControlDelay) : Dash);
}

}  // namespace

BoundsDialog::BoundsDialog(AppContext& context, QWidget* parent, Columns columns)
    : QDialog(parent), context_(context), places_(columns == Columns::DelaysAndPlaces ? 2 : 0) {
    auto* column = new QVBoxLayout(this);
    column->addLayout(head_ = new QVBoxLayout);
    BuildTable(columns);
    column->addWidget(vaRuns_, 1);
    BuildButtons(*column);
    Connect(vaRuns_, &QTableWidget::itemChanged, this, context.Messages, [this] { ShowCount(); });
    resize(720, 420);
}

void BoundsDialog::BuildTable(Columns columns) {
    vaRuns_ = Named<Table>(this, "vaRuns");
    vaRuns_->setAccessibleName(QStringLiteral("Runs"));
    QStringList heads{QStringLiteral("Run"), QStringLiteral("Delay now (s)")};
    const QString unit = QLatin1Char(' ') + ToQt(UnitsOf(context_.State).LengthTitle());
    if (columns == Columns::DelaysAndPlaces) heads << QStringLiteral("Start") + unit << QStringLiteral("End") + unit;
    heads << QStringLiteral("Delay then (s)") << QStringLiteral("LOS then") << QStringLiteral("Warnings");
    vaRuns_->SetColumns(heads);
}

void BoundsDialog::BuildButtons(QVBoxLayout& column) {
    lblCount_ = Named<QLabel>(this, "lblCount");
    auto* btnAll = Named<QPushButton>(this, "btnTickAll", QStringLiteral("Tick &All"));
    auto* btnNone = Named<QPushButton>(this, "btnTickNone", QStringLiteral("Tick &None"));
    btnOk_ = Named<QPushButton>(this, "btnOk", QStringLiteral("OK"));
    auto* btnCancel = Named<QPushButton>(this, "btnCancel", QStringLiteral("Cancel"));
    for (QPushButton* button : {btnAll, btnNone, btnCancel}) button->setAutoDefault(false);
    btnOk_->setDefault(true);

    auto* row = new QHBoxLayout;
    row->addWidget(HelpButton(*this, context_, HelpTopic::SpeedProfile));
    for (QPushButton* button : {btnAll, btnNone}) row->addWidget(button);
    row->addWidget(lblCount_, 1);
    row->addWidget(btnOk_);
    row->addWidget(btnCancel);
    column.addLayout(row);
    MessageBoxes& messages = context_.Messages;
    Connect(btnAll, &QPushButton::clicked, this, messages, [this] { TickAll(true); });
    Connect(btnNone, &QPushButton::clicked, this, messages, [this] { TickAll(false); });
    Connect(btnOk_, &QPushButton::clicked, this, messages, [this] { accept(); });
    Connect(btnCancel, &QPushButton::clicked, this, messages, [this] { reject(); });
}

void BoundsDialog::ShowPreviews(std::vector<BoundsPreview> previews) {
    previews_ = std::move(previews);
    vaRuns_->BeginFilling();
    vaRuns_->setRowCount(0);
    for (std::size_t index = 0; index < previews_.size(); ++index) AddPreview(index);
    vaRuns_->EndFilling();
    vaRuns_->setCurrentCell(0, RunColumn);
    ShowCount();
}

void BoundsDialog::AddPreview(std::size_t index) {
    const BoundsPreview& preview = previews_[index];
    const bool canBe = preview.Problem.empty();
    const int row = vaRuns_->AddRow();
    vaRuns_->SetText(row, RunColumn, ToQt(RunFileName(preview.Now)));
    SetDelay(*vaRuns_, row, NowColumn, preview.Now, true);
    if (places_ != 0) {
        SetPlace(row, PlaceColumn, preview.Then.CDStartDist, canBe);
        SetPlace(row, PlaceColumn + 1, preview.Then.CDEndDist, canBe);
    }
    SetDelay(*vaRuns_, row, ThenColumn + places_, preview.Then, canBe);
    vaRuns_->SetText(row, GradeColumn + places_, canBe ? ToQt(Trim(preview.Then.LOSGrade)) : QString());
    std::vector<std::string> remarks = preview.Warnings;
    if (!preview.Note.empty()) remarks.push_back(preview.Note);
    vaRuns_->SetText(row, WarningColumn + places_, ToQt(canBe ? Joined(remarks, "; ") : preview.Problem).simplified());
    QTableWidgetItem* item = vaRuns_->item(row, RunColumn);
    item->setData(PreviewRole, static_cast<int>(index));
    item->setFlags(item->flags().setFlag(Qt::ItemIsUserCheckable, canBe));
    if (!canBe) return;
    // What would mean nothing is not taken unasked.
    item->setCheckState(preview.Warnings.empty() ? Qt::Checked : Qt::Unchecked);
}

void BoundsDialog::SetPlace(int row, int column, std::int32_t feet, bool isThere) {
    vaRuns_->SetNumber(row, column, isThere ? feet : -1,
                       isThere ? ToQt(UnitsOf(context_.State).LengthCell(feet)) : Dash);
}

void BoundsDialog::TickAll(bool areTicked) {
    for (int row = 0; row < vaRuns_->rowCount(); ++row) {
        QTableWidgetItem* item = vaRuns_->item(row, RunColumn);
        if (item->flags().testFlag(Qt::ItemIsUserCheckable))
            item->setCheckState(areTicked ? Qt::Checked : Qt::Unchecked);
    }
}

void BoundsDialog::ShowCount() {
    const std::size_t count = Chosen().size();
    lblCount_->setText(QStringLiteral("%1 of %2 runs").arg(count).arg(previews_.size()));
    btnOk_->setEnabled(count > 0);
}

std::vector<BoundsPreview> BoundsDialog::Chosen() const {
    std::vector<bool> isTicked(previews_.size());
    for (int row = 0; row < vaRuns_->rowCount(); ++row) {
        const QTableWidgetItem* item = vaRuns_->item(row, RunColumn);
        isTicked[static_cast<std::size_t>(item->data(PreviewRole).toInt())] = item->checkState() == Qt::Checked;
    }
    std::vector<BoundsPreview> chosen;
    for (std::size_t i = 0; i < previews_.size(); ++i)
        if (isTicked[i]) chosen.push_back(previews_[i]);
    return chosen;
}

}  // namespace vantor
