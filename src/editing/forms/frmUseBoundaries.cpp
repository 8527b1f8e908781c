#include "editing/forms/frmUseBoundaries.h"

#include <QHBoxLayout>
#include <QVBoxLayout>
#include <limits>

#include "core/StudyFile.h"
#include "core/Text.h"
#include "core/Units.h"
#include "core/forms/Guarded.h"
#include "core/forms/HelpButton.h"
#include "core/forms/Named.h"
#include "core/forms/WindowLayout.h"

namespace vantor {
namespace {

enum Column { RunColumn, NowColumn, ThenColumn, GradeColumn, WarningColumn };
constexpr int PreviewRole = Qt::UserRole + 1;

/// A delay, or a dash, which sorts below all delays.
void SetDelay(Table& table, int row, int column, const StudyRunEntry& entry, bool isThere) {
    const bool isComputed = isThere && HasBothBoundaries(entry) && !Trim(entry.LOSGrade).empty();
    table.SetNumber(row, column, isComputed ? entry.ControlDelay : std::numeric_limits<double>::lowest(),
                    isComputed ? QString::number(entry.ControlDelay) : QStringLiteral("\u2013"));
}

}  // namespace

frmUseBoundaries::frmUseBoundaries(AppContext& context, std::vector<BoundsPreview> previews, const Bounds& bounds,
                                   QWidget* parent)
    : QDialog(parent), previews_(std::move(previews)) {
    setObjectName(QStringLiteral("frmUseBoundaries"));
    setWindowTitle(QStringLiteral("Use Boundaries"));
    const Units units = UnitsOf(context.State.Settings);
    auto* lblBounds =
        Named<QLabel>(this, "lblBounds",
                      QStringLiteral("The ticked runs get the start boundary %1 and the end boundary %2.")
                          .arg(ToQt(units.LengthText(bounds.StartDist)), ToQt(units.LengthText(bounds.EndDist))));
    vaRuns_ = Named<Table>(this, "vaRuns");
    vaRuns_->setAccessibleName(QStringLiteral("Runs"));
    vaRuns_->SetColumns({QStringLiteral("Run"), QStringLiteral("Delay now (s)"), QStringLiteral("Delay then (s)"),
                         QStringLiteral("LOS then"), QStringLiteral("Warnings")});
    lblCount_ = Named<QLabel>(this, "lblCount");
    auto* btnAll = Named<QPushButton>(this, "btnTickAll", QStringLiteral("Tick &All"));
    auto* btnNone = Named<QPushButton>(this, "btnTickNone", QStringLiteral("Tick &None"));
    btnOk_ = Named<QPushButton>(this, "btnOk", QStringLiteral("OK"));
    auto* btnCancel = Named<QPushButton>(this, "btnCancel", QStringLiteral("Cancel"));
    for (QPushButton* button : {btnAll, btnNone, btnCancel}) button->setAutoDefault(false);
    btnOk_->setDefault(true);

    auto* row = new QHBoxLayout;
    row->addWidget(HelpButton(*this, context, HelpTopic::SpeedProfile));
    for (QPushButton* button : {btnAll, btnNone}) row->addWidget(button);
    row->addWidget(lblCount_, 1);
    row->addWidget(btnOk_);
    row->addWidget(btnCancel);
    auto* column = new QVBoxLayout(this);
    column->addWidget(lblBounds);
    column->addWidget(vaRuns_, 1);
    column->addLayout(row);
    Fill();
    MessageBoxes& messages = context.Messages;
    Connect(btnAll, &QPushButton::clicked, this, messages, [this] { TickAll(true); });
    Connect(btnNone, &QPushButton::clicked, this, messages, [this] { TickAll(false); });
    Connect(btnOk_, &QPushButton::clicked, this, messages, [this] { accept(); });
    Connect(btnCancel, &QPushButton::clicked, this, messages, [this] { reject(); });
    Connect(vaRuns_, &QTableWidget::itemChanged, this, messages, [this] { ShowCount(); });
    ShowCount();
    vaRuns_->setFocus();
    resize(720, 420);
    RememberLayout(*this, context.Memory);
}

void frmUseBoundaries::Fill() {
    vaRuns_->BeginFilling();
    for (std::size_t index = 0; index < previews_.size(); ++index) AddPreview(index);
    vaRuns_->EndFilling();
    vaRuns_->setCurrentCell(0, RunColumn);
}

void frmUseBoundaries::AddPreview(std::size_t index) {
    const BoundsPreview& preview = previews_[index];
    const bool canBe = preview.Problem.empty();
    const int row = vaRuns_->AddRow();
    vaRuns_->SetText(row, RunColumn, ToQt(RunFileName(preview.Now)));
    SetDelay(*vaRuns_, row, NowColumn, preview.Now, true);
    SetDelay(*vaRuns_, row, ThenColumn, preview.Then, canBe);
    vaRuns_->SetText(row, GradeColumn, canBe ? ToQt(Trim(preview.Then.LOSGrade)) : QString());
    vaRuns_->SetText(row, WarningColumn, ToQt(canBe ? Joined(preview.Warnings, "; ") : preview.Problem).simplified());
    QTableWidgetItem* item = vaRuns_->item(row, RunColumn);
    item->setData(PreviewRole, static_cast<int>(index));
    item->setFlags(item->flags().setFlag(Qt::ItemIsUserCheckable, canBe));
    if (!canBe) return;
    // What would mean nothing is not taken unasked.
    item->setCheckState(preview.Warnings.empty() ? Qt::Checked : Qt::Unchecked);
}

void frmUseBoundaries::TickAll(bool areTicked) {
    for (int row = 0; row < vaRuns_->rowCount(); ++row) {
        QTableWidgetItem* item = vaRuns_->item(row, RunColumn);
        if (item->flags().testFlag(Qt::ItemIsUserCheckable))
            item->setCheckState(areTicked ? Qt::Checked : Qt::Unchecked);
    }
}

void frmUseBoundaries::ShowCount() {
    const std::size_t count = Chosen().size();
    lblCount_->setText(QStringLiteral("%1 of %2 runs").arg(count).arg(previews_.size()));
    btnOk_->setEnabled(count > 0);
}

std::vector<BoundsPreview> frmUseBoundaries::Chosen() const {
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
