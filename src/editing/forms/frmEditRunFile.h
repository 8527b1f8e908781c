#pragma once

#include <QDialog>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>

#include "core/AppContext.h"
#include "editing/RunFileTexts.h"

namespace vantor {

/// "Edit Run File": every header value of the current run as plain text, stored as it is typed.
class frmEditRunFile : public QDialog {
public:
    /// `entryIndex` is the run's entry in the study, from 1; 0 where the run is none of the study's.
    frmEditRunFile(AppContext& context, int entryIndex);

    /// Esc and the window's own way out: asks before typed texts are lost.
    void reject() override;

private:
    QWidget* BuildRun();
    QWidget* BuildKeys();
    QWidget* BuildNodes();
    QLayout* BuildNotes();
    QLayout* BuildButtons();
    /// A field that shows `text` and keeps it up to date.
    QLineEdit* AddField(QWidget* parent, const QString& name, std::string& text, std::size_t width);
    void SaveRunFile();
    /// Says which values of the stored run a save would change: some are not typed but follow from the samples.
    void ShowChanges();

    AppContext& context_;
    int entryIndex_;
    RunRecord run_;       ///< as its samples say
    RunFileTexts shown_;  ///< when the screen was opened
    RunFileTexts texts_;  ///< in the fields
    QLabel* lblChanges_ = nullptr;
};

}  // namespace vantor
