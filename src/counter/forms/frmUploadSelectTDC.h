#pragma once

#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <string>
#include <vector>

#include "core/AppContext.h"
#include "core/Choices.h"
#include "core/forms/FolderTree.h"
#include "core/forms/Table.h"
#include "counter/forms/CounterFiles.h"
#include "counter/forms/GroupLook.h"

namespace vantor {

/// Chooses the counter file to convert, or to go on with the runs that wait in the temporary runs folder.
class frmUploadSelectTDC : public QDialog {
public:
    explicit frmUploadSelectTDC(AppContext& context);
    /// When it was accepted.
    const Upload& Choice() const { return choice_; }

protected:
    void showEvent(QShowEvent* event) override;

private:
    QWidget* BuildFolders();
    QWidget* BuildFiles();
    QWidget* BuildDetails();
    QLayout* BuildWaiting();
    QLayout* BuildButtons();
    void ConnectControls();

    void OpenFieldDataFolder();
    void CountWaitingRuns();
    void GoOnWithWaitingRuns();
    void ListFolder(const std::string& folder);
    const ListedCounterFile* SelectedFile() const;
    void ShowStudies();
    void TellRunsInGroups(const RunsFound& found);
    void Select();

    AppContext& context_;
    FolderTree* treTDCPath_ = nullptr;
    Table* vaSelTDCFile_ = nullptr;
    CounterStudiesFrame* FrFileDetails_ = nullptr;
    QPushButton* BtnSelect_ = nullptr;
    QPushButton* BtnCancel_ = nullptr;
    WrappedLabel* lblInGroups_ = nullptr;
    QLabel* lblWaiting_ = nullptr;
    QPushButton* btnWaiting_ = nullptr;
    Upload choice_;
    std::string folder_;
    std::vector<ListedCounterFile> listed_;
    GroupLook look_;
};

}  // namespace vantor
