#pragma once

#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <vector>

#include "core/AppContext.h"
#include "counter/forms/CounterFiles.h"
#include "counter/forms/DeletionList.h"

namespace vantor {

/// Deletes counter files from the field data folder: those that the user takes off the list, and only on OK. The
/// active row is the one whose studies are shown; it counts as selected only when the user selected it.
class frmDeleteTDCFiles : public QDialog {
public:
    explicit frmDeleteTDCFiles(AppContext& context);

private:
    QWidget* BuildList();
    QWidget* BuildDetails();
    void ListFiles();
    void MakeActive(int row);
    void TakeOffActive();
    void ShowStudies();

    AppContext& context_;
    DeletionList* frTDCFiles_ = nullptr;
    CounterStudiesFrame* FrFileDetails_ = nullptr;
    QLabel* lblActiveFile_ = nullptr;
    QPushButton* btnDeleteSelected_ = nullptr;
    std::vector<ListedCounterFile> listed_;
};

}  // namespace vantor
