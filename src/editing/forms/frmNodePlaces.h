#pragma once

#include <QDialog>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>
#include <vector>

#include "core/AppContext.h"
#include "core/forms/TickList.h"
#include "editing/NodePlaces.h"

namespace vantor {

/// "Nodes for All Runs": places along the street, the nodes that the runs of a study would have there, and which runs
/// are to get them. OK writes their files.
class frmNodePlaces : public QDialog {
public:
    /// The places are those of `from`.
    frmNodePlaces(AppContext& context, Study study, const RunRecord& from, QWidget* parent = nullptr);

    /// Files that were written.
    int Written() const { return written_; }

    void accept() override;

private:
    void BuildPlaces(QVBoxLayout& column);
    void BuildRuns(QVBoxLayout& column);
    void ShowPlaces();
    void TakePlace(const QTableWidgetItem& item);
    void AddPlace();
    void RemovePlace();
    void Preview();
    void AddRun(std::size_t index);
    std::vector<std::string> Ticked() const;

    AppContext& context_;
    const Study study_;
    const Units units_;
    std::vector<NodePlace> places_;
    std::vector<NodesPreview> previews_;
    int written_ = 0;
    QTableWidget* vaPlaces_;
    QPushButton* btnRemove_;
    TickList* vaRuns_;
    TickButtons* buttons_;
};

/// Lets the user set the nodes of the current study's runs at the places of the current run, which is read again where
/// its file was written. How many files were.
int AskForNodePlaces(AppContext& context, QWidget* parent);

}  // namespace vantor
