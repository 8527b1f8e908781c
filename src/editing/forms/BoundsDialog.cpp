#include "editing/forms/BoundsDialog.h"

#include <QSignalBlocker>
#include <limits>

#include "core/StudyFile.h"
#include "core/Text.h"
#include "core/Units.h"
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
const QString Dash = QStringLiteral("\u2013");

/// A delay, or a dash, which sorts below all delays.
void SetDelay(Table& table, int row, int column, const StudyRunEntry& entry, bool isThere) {
    const bool isComputed = isThere && HasBothBoundaries(entry) && !Trim(entry.LOSGrade).empty();
    table.SetNumber(row, column, isComputed ? entry.ControlDelay : std::numeric_limits<double>::lowest(),
                    isComputed ? QString::number(entry.ControlDelay) : Dash);
}

}  // namespace

BoundsDialog::BoundsDialog(AppContext& context, QWidget* parent)
    : QDialog(parent), context_(context), column_(new QVBoxLayout(this)) {
    resize(720, 420);
}

void BoundsDialog::BuildList(Columns columns) {
    places_ = columns == Columns::DelaysAndPlaces ? 2 : 0;
    vaRuns_ = Named<TickList>(this, "vaRuns");
    vaRuns_->setAccessibleName(QStringLiteral("Runs"));
    vaRuns_->SetEmptyText(QStringLiteral("There is no run to list."));
    QStringList heads{QStringLiteral("Run"), QStringLiteral("Delay now (s)")};
    const QString unit = QLatin1Char(' ') + ToQt(UnitsOf(context_.State).LengthTitle());
    if (places_ != 0) heads << QStringLiteral("Start") + unit << QStringLiteral("End") + unit;
    heads << QStringLiteral("Delay then (s)") << QStringLiteral("LOS then") << QStringLiteral("Warnings");
    vaRuns_->SetColumns(heads);
    column_->addWidget(vaRuns_, 1);
    column_->addWidget(buttons_ = new TickButtons(*this, context_, *vaRuns_, HelpTopic::SpeedProfile));
    vaRuns_->setFocus();
}

void BoundsDialog::ShowPreviews(std::vector<BoundsPreview> previews) {
    previews_ = std::move(previews);
    {
        const QSignalBlocker blocker(vaRuns_);
        vaRuns_->BeginFilling();
        vaRuns_->setRowCount(0);
        for (std::size_t index = 0; index < previews_.size(); ++index) AddPreview(index);
        vaRuns_->EndFilling();
    }
    vaRuns_->setCurrentCell(0, RunColumn);
    buttons_->ShowCount();
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
    // What would mean nothing is not taken unasked.
    vaRuns_->SetTick(row, index, canBe ? std::optional(preview.Warnings.empty()) : std::nullopt);
}

void BoundsDialog::SetPlace(int row, int column, std::int32_t feet, bool isThere) {
    vaRuns_->SetNumber(row, column, isThere ? feet : -1,
                       isThere ? ToQt(UnitsOf(context_.State).LengthCell(feet)) : Dash);
}

std::vector<BoundsPreview> BoundsDialog::Chosen() const {
    std::vector<BoundsPreview> chosen;
    for (const std::size_t index : vaRuns_->Ticked()) chosen.push_back(previews_[index]);
    return chosen;
}

}  // namespace vantor
