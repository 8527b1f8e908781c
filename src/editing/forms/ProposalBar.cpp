#include "editing/forms/ProposalBar.h"

#include <QHBoxLayout>
#include <QSignalBlocker>
#include <QStandardItemModel>

#include "core/forms/Named.h"

namespace vantor {

ProposalBar::ProposalBar(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("ProposalBar"));
    lblProposal = Named<WrappedLabel>(this, "lblProposal");
    cmbProposalNode = Named<QComboBox>(this, "cmbProposalNode");
    cmbProposalNode->setToolTip(
        QStringLiteral("The node at the intersection whose delay the study is about; below the nodes stand the "
                       "places without a node where the run slows down, too"));
    btnUseProposal = Named<QPushButton>(this, "btnUseProposal", QStringLiteral("&Use"));
    btnUseProposal->setToolTip(QStringLiteral("Set both boundaries to the proposed lines"));
    btnRejectProposal = Named<QPushButton>(this, "btnRejectProposal", QStringLiteral("Re&ject"));
    btnRejectProposal->setToolTip(QStringLiteral("Take the proposed lines away; the boundaries stay as they are"));
    for (QPushButton* button : {btnUseProposal, btnRejectProposal}) button->setAutoDefault(false);

    auto* row = new QHBoxLayout(this);
    row->setContentsMargins({});
    row->addWidget(LabelFor(cmbProposalNode, QStringLiteral("&Which Node")));
    row->addWidget(cmbProposalNode);
    row->addWidget(lblProposal, 1);
    row->addWidget(btnUseProposal);
    row->addWidget(btnRejectProposal);
    hide();
}

void ProposalBar::ShowNodes(const QStringList& names, int node, const QStringList& others) {
    const QSignalBlocker blocker(cmbProposalNode);
    cmbProposalNode->clear();
    cmbProposalNode->addItems(names + others);
    auto* items = qobject_cast<QStandardItemModel*>(cmbProposalNode->model());
    for (qsizetype other = names.size(); items != nullptr && other < cmbProposalNode->count(); ++other)
        items->item(static_cast<int>(other))->setEnabled(false);
    cmbProposalNode->setCurrentIndex(node);
    cmbProposalNode->setEnabled(cmbProposalNode->count() > 1 || !others.isEmpty());
}

void ProposalBar::ShowText(const QString& text, bool canBeUsed) {
    lblProposal->setText(text);
    btnUseProposal->setEnabled(canBeUsed);
}

}  // namespace vantor
