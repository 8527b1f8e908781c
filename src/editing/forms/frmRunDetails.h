#pragma once

#include <QDialog>
#include <QUndoStack>
#include <memory>
#include <string>

#include "core/AppContext.h"
#include "core/RunFile.h"
#include "core/ports/Screens.h"
#include "editing/RunDetails.h"
#include "editing/forms/RunDetailsControls.h"

namespace vantor {

/// "Run Details": the header of the current run and its nodes, edited on a copy until they are saved.
class frmRunDetails : public QDialog {
public:
    /// `entryIndex` is the current run's entry in the study, from 1; 0 for a run that is none of the study's.
    frmRunDetails(AppContext& context, int entryIndex);

    /// Esc and the window's own close button: asks about unsaved changes. The Cancel button does not.
    void reject() override;

private:
    /// What Undo brings back.
    struct Document {
        RunDetails Details;
        RunDetailTexts Texts;

        bool operator==(const Document&) const = default;
    };

    void ConnectControls();
    /// Every change of the screen is a step that can be taken back, what is typed into a field once it is left.
    void ConnectUndo();
    /// Keeps what was changed since the last step as one that is undone under this name.
    void Record(const char* text);
    /// From here on nothing can be taken back.
    void ForgetSteps();
    /// Begins with the current run; a name that another screen gave it is an unsaved change of the name box.
    void Load();
    void ShowRun(const RunDetailTexts& texts);
    /// The labels of the keys that were used.
    void ShowKeys(const RunDetailTexts& texts);
    void ShowNodes();
    RunDetailTexts TypedTexts();

    void Insert();
    void Delete();
    void Reverse();
    void CopyNames();
    void Calibrate();
    void ShowDay();
    void TrimRunWith(std::optional<Refusal> (RunDetails::*trim)(const RunDetailTexts&), const char* text);
    /// The backups of the run's file, each a line of the menu.
    void ListBackups();
    void Restore(const RunBackup& backup);
    void OpenScreen(void (Screens::*showScreen)(int));
    void ShowPlot();

    bool Save();
    /// True when nothing is unsaved any more, or the user gives it up.
    bool SettleChanges();
    /// Tells why nothing was done and goes where it can be mended. True when there was a refusal.
    bool Refused(const std::optional<Refusal>& refusal);
    std::string RunName() const;

    AppContext& context_;
    const int entry_;
    RunDetails details_;
    RunDetailsControls controls_;
    QUndoStack steps_;
    std::shared_ptr<const Document> settled_;  ///< after the last step
};

}  // namespace vantor
