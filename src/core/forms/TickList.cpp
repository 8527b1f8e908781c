#include "core/forms/TickList.h"

#include <QHBoxLayout>
#include <QSignalBlocker>
#include <algorithm>

#include "core/forms/Guarded.h"
#include "core/forms/HelpButton.h"
#include "core/forms/Named.h"

namespace vantor {
namespace {

constexpr int IndexRole = Qt::UserRole + 1;

}  // namespace

void TickList::SetTick(int row, std::size_t index, std::optional<bool> isTicked) {
    QTableWidgetItem* first = item(row, 0);
    first->setData(IndexRole, static_cast<int>(index));
    first->setFlags(first->flags().setFlag(Qt::ItemIsUserCheckable, isTicked.has_value()));
    if (isTicked) first->setCheckState(*isTicked ? Qt::Checked : Qt::Unchecked);
}

void TickList::TickAll(bool areTicked) {
    for (int row = 0; row < rowCount(); ++row)
        if (item(row, 0)->flags().testFlag(Qt::ItemIsUserCheckable))
            item(row, 0)->setCheckState(areTicked ? Qt::Checked : Qt::Unchecked);
}

std::vector<std::size_t> TickList::Ticked() const {
    std::vector<std::size_t> ticked;
    for (int row = 0; row < rowCount(); ++row)
        if (item(row, 0)->checkState() == Qt::Checked)
            ticked.push_back(static_cast<std::size_t>(item(row, 0)->data(IndexRole).toInt()));
    std::ranges::sort(ticked);
    return ticked;
}

TickButtons::TickButtons(QDialog& dialog, AppContext& context, TickList& list, HelpTopic topic)
    : QWidget(&dialog), list_(list) {
    lblCount_ = Named<QLabel>(this, "lblCount");
    auto* btnAll = Named<QPushButton>(this, "btnTickAll", QStringLiteral("Tick &All"));
    auto* btnNone = Named<QPushButton>(this, "btnTickNone", QStringLiteral("Tick &None"));
    btnOk_ = Named<QPushButton>(this, "btnOk", QStringLiteral("OK"));
    auto* btnCancel = Named<QPushButton>(this, "btnCancel", QStringLiteral("Cancel"));
    for (QPushButton* button : {btnAll, btnNone, btnCancel}) button->setAutoDefault(false);
    btnOk_->setDefault(true);

    auto* row = new QHBoxLayout(this);
    row->setContentsMargins({});
    row->addWidget(HelpButton(dialog, context, topic));
    for (QPushButton* button : {btnAll, btnNone}) row->addWidget(button);
    row->addWidget(lblCount_, 1);
    row->addWidget(btnOk_);
    row->addWidget(btnCancel);
    MessageBoxes& messages = context.Messages;
    const auto tick = [this](bool areTicked) {
        {
            // The count is shown once, and not for each row.
            const QSignalBlocker blocker(list_);
            list_.TickAll(areTicked);
        }
        list_.viewport()->update();
        ShowCount();
    };
    Connect(btnAll, &QPushButton::clicked, this, messages, [tick] { tick(true); });
    Connect(btnNone, &QPushButton::clicked, this, messages, [tick] { tick(false); });
    Connect(btnOk_, &QPushButton::clicked, &dialog, messages, [&dialog] { dialog.accept(); });
    Connect(btnCancel, &QPushButton::clicked, &dialog, messages, [&dialog] { dialog.reject(); });
    Connect(&list_, &QTableWidget::itemChanged, this, messages, [this] { ShowCount(); });
}

void TickButtons::ShowCount() {
    const std::size_t count = list_.Ticked().size();
    lblCount_->setText(QStringLiteral("%1 of %2 runs").arg(count).arg(list_.rowCount()));
    btnOk_->setEnabled(count > 0);
}

}  // namespace vantor
