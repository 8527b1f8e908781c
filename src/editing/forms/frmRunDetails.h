#pragma once

#include <QDialog>
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
    void ConnectControls();
    /// Begins with the current run; a name that another screen gave it is an unsaved change of the name box.
    void Load();
    void ShowRun(const RunDetailTexts& texts);
    void ShowNodes();
    RunDetailTexts TypedTexts();

    void Insert();
    void Delete();
    void Reverse();
    void CopyNames();
    void Calibrate();
    void ShowDay();
    void TrimRunWith(std::optional<Refusal> (RunDetails::*trim)(const RunDetailTexts&));
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
};

}  // namespace vantor
