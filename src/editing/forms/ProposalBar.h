#pragma once

#include <QComboBox>
#include <QPushButton>
#include <QStringList>
#include <QWidget>

#include "core/forms/WrappedLabel.h"

namespace vantor {

/// The bar over a speed profile while boundaries are proposed: what is proposed, for which node, and what to do about
/// it.
class ProposalBar : public QWidget {
public:
    explicit ProposalBar(QWidget* parent);

    /// `node` is one of the names, from 0; -1 for none. `others` stand below them and cannot be chosen.
    void ShowNodes(const QStringList& names, int node, const QStringList& others);
    void ShowText(const QString& text, bool canBeUsed);

    WrappedLabel* lblProposal;
    QComboBox* cmbProposalNode;
    QPushButton* btnUseProposal;
    QPushButton* btnRejectProposal;
};

}  // namespace vantor
