#pragma once

#include <QDialog>
#include <QPushButton>
#include <string>
#include <vector>

#include "core/AppContext.h"
#include "core/Choices.h"
#include "core/forms/FolderTree.h"
#include "core/forms/Table.h"
#include "counter/forms/CounterFiles.h"

namespace vantor {

/// Chooses the counter file to convert.
class frmUploadSelectTDC : public QDialog {
public:
    explicit frmUploadSelectTDC(AppContext& context);
    /// When it was accepted.
    const CounterFileChoice& Choice() const { return choice_; }

protected:
    void showEvent(QShowEvent* event) override;

private:
    QWidget* BuildFolders();
    QWidget* BuildFiles();
    QLayout* BuildButtons();
    void ConnectControls();

    void OpenFieldDataFolder();
    void ListFolder(const std::string& folder);
    const ListedCounterFile* SelectedFile() const;
    void ShowStudies();
    void Select();

    AppContext& context_;
    FolderTree* treTDCPath_ = nullptr;
    Table* vaSelTDCFile_ = nullptr;
    CounterStudiesFrame* FrFileDetails_ = nullptr;
    QPushButton* BtnSelect_ = nullptr;
    QPushButton* BtnCancel_ = nullptr;
    CounterFileChoice choice_;
    std::string folder_;
    std::vector<ListedCounterFile> listed_;
};

}  // namespace vantor
