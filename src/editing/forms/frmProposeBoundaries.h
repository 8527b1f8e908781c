#pragma once

#include <QComboBox>

#include "core/forms/WrappedLabel.h"
#include "editing/forms/BoundsDialog.h"
#include "statistics/BoundsProposal.h"

namespace vantor {

/// "Propose Boundaries": where the runs of a study slow down at an intersection, what would become of them with
/// boundaries there, and which of them are to get them.
class frmProposeBoundaries : public BoundsDialog {
public:
    /// `node` from 1; 0 for the one that the runs speak for.
    frmProposeBoundaries(AppContext& context, Study study, std::vector<RunToPropose> runs, int node = 0,
                         QWidget* parent = nullptr);

private:
    void BuildHead();
    void FillNodes();
    ProposedNode Node() const;
    ProposalKind Kind() const;
    void Propose();
    QString WordsFor(const std::vector<RunProposal>& proposals) const;

    const Study study_;
    const std::vector<RunToPropose> runs_;
    int chosenNode_;  ///< 0 while the user has chosen none
    QComboBox* cmbNode_;
    QComboBox* cmbPairs_;
    WrappedLabel* lblReason_;
};

/// Reads the runs of the study and lets the user choose; none where the user did not.
std::vector<BoundsPreview> AskForProposals(AppContext& context, const Study& study, int node, QWidget* parent);

}  // namespace vantor
