#include "app/AppScreens.h"

#include <QApplication>

#include "analysis/StudyEdits.h"
#include "analysis/forms/frmRunStatistics.h"
#include "corridor/forms/frmCorridor.h"
#include "counter/DamagedCounterFile.h"
#include "counter/forms/frmDeleteTDCFiles.h"
#include "counter/forms/frmDeleteTempRuns.h"
#include "counter/forms/frmReadTDC.h"
#include "counter/forms/frmUploadData.h"
#include "counter/forms/frmUploadRunList.h"
#include "counter/forms/frmUploadSelectTDC.h"
#include "editing/forms/frmEditPulseData.h"
#include "editing/forms/frmEditRunFile.h"
#include "editing/forms/frmNodePlaces.h"
#include "editing/forms/frmPlotRunSpeedProfileHoriz.h"
#include "editing/forms/frmProposeBoundaries.h"
#include "editing/forms/frmRunDetails.h"
#include "gpsobd/LogFormat.h"
#include "gpsobd/forms/LogReview.h"
#include "gpsobd/forms/LogSelect.h"
#include "gpsobd/forms/frmImportTracks.h"
#include "reports/forms/frmCompareStudies.h"
#include "reports/forms/frmReportPreview.h"
#include "statistics/forms/frmContDelayVsAvg.h"
#include "statistics/forms/frmStatisticsOptions.h"
#include "statistics/forms/frmStudyStatistics.h"
#include "workspace/forms/frmPrefs.h"
#include "workspace/forms/frmRunSelect.h"
#include "workspace/forms/frmStartUp.h"
#include "workspace/forms/frmStudyOpen.h"
#include "workspace/forms/frmStudySaveAs.h"

namespace vantor {
namespace {

/// Shows a form over the active window until it is closed; true when it was accepted.
bool Run(QDialog& form) {
    if (QWidget* active = QApplication::activeWindow()) form.setParent(active, form.windowFlags());
    QWidget* const owner = form.parentWidget();
    const bool accepted = form.exec() == QDialog::Accepted;
    // Where a message box closed just before, a window manager may leave no window active.
    if (owner != nullptr) owner->activateWindow();
    return accepted;
}

template <class Form, class... Arguments>
bool ShowModal(Arguments&&... arguments) {
    Form form(std::forward<Arguments>(arguments)...);
    return Run(form);
}

/// What is chosen in a form that is accepted.
template <class Form, class... Arguments>
auto ChosenIn(Arguments&&... arguments) {
    Form form(std::forward<Arguments>(arguments)...);
    return Run(form) ? std::optional(form.Choice()) : std::nullopt;
}

}  // namespace

StartUpChoice AppScreens::ShowStartUp() { return ChosenIn<frmStartUp>(*context_).value_or(StartUpChoice::None); }
bool AppScreens::ShowStudyOpen() { return ShowModal<frmStudyOpen>(*context_); }
bool AppScreens::ShowStudySaveAs() { return ShowModal<frmStudySaveAs>(*context_); }
bool AppScreens::ShowRunSelect() { return ShowModal<frmRunSelect>(*context_); }

ProfileChanges AppScreens::ShowSpeedProfile(const ProfileVisit& visit) {
    // The study holds each change at once, for its unsaved changes are kept from there while the screen is open.
    frmPlotRunSpeedProfileHoriz form(
        *context_, visit, [this](int run, const StudyRunEntry& entry) { TakeEntry(context_->State, run, entry); });
    Run(form);
    return form.Changes();
}

std::map<int, StudyRunEntry> AppScreens::ShowBoundaryProposals() {
    std::map<int, StudyRunEntry> entries;
    for (const BoundsPreview& chosen :
         AskForProposals(*context_, context_->State.CurrentStudy, 0, QApplication::activeWindow()))
        entries[chosen.Run] = chosen.Then;
    return entries;
}

bool AppScreens::ShowNodePlaces() { return AskForNodePlaces(*context_, QApplication::activeWindow()) > 0; }

void AppScreens::ShowRunEditor(int entryIndex) { ShowModal<frmRunDetails>(*context_, entryIndex); }
void AppScreens::ShowSensorData(int entryIndex) { ShowModal<frmEditPulseData>(*context_, entryIndex); }
void AppScreens::ShowRunFileEditor(int entryIndex) { ShowModal<frmEditRunFile>(*context_, entryIndex); }
void AppScreens::ShowRunStatistics(int entryIndex) { ShowModal<frmRunStatistics>(*context_, entryIndex); }

void AppScreens::ShowDelayChart() { ShowModal<frmContDelayVsAvg>(*context_); }
StatisticsVisit AppScreens::ShowStudyStatistics(int run) {
    frmStudyStatistics form(*context_, run);
    Run(form);
    return form.Outcome();
}
std::optional<StudyChoices> AppScreens::ShowStatisticsOptions(const StudyChoices& choices) {
    return ChosenIn<frmStatisticsOptions>(*context_, choices);
}
void AppScreens::ShowCompareStudies() { ShowModal<frmCompareStudies>(*context_); }
void AppScreens::ShowReportPreview() { ShowModal<frmReportPreview>(*context_); }
void AppScreens::ShowCorridorReport(std::shared_ptr<const ReportedCorridor> corridor) {
    ShowModal<frmReportPreview>(*context_, std::move(corridor));
}

void AppScreens::ShowPreferences() { ShowModal<frmPrefs>(*context_); }

std::optional<CounterFileChoice> AppScreens::HandOver(const std::optional<CounterFileChoice>& choice) {
    ApplicationState& state = context_->State;
    state.CounterFileChosen = choice.has_value();
    if (choice) {
        state.ChosenCounterFileFolder = choice->Folder;
        state.ChosenCounterFileName = choice->Name;
    }
    return choice;
}

std::optional<CounterFileChoice> AppScreens::ShowReadTDC() { return HandOver(ChosenIn<frmReadTDC>(*context_)); }
std::optional<Upload> AppScreens::ShowUploadSelect() {
    auto choice = ChosenIn<frmUploadSelectTDC>(*context_);
    HandOver(choice ? choice->ToConvert : std::nullopt);
    return choice;
}

std::optional<LogChoice> AppScreens::ShowLogSelect(LogKind kind) {
    const auto choice = ChosenIn<LogSelect>(*context_, FormatOf(kind));
    ApplicationState& state = context_->State;
    state.DataFileSelected = choice.has_value();
    if (choice) {
        state.SelectedDataFolder = choice->Folder;
        state.SelectedDataFile = choice->File;
        state.SelectedDataExt = choice->Extension;
    }
    return choice;
}

bool AppScreens::ShowLogReview(std::optional<LogKind> kind, const LogChoice& log) {
    const LogFormat* format = kind ? &FormatOf(*kind) : FormatToReview(*context_, log);
    return context_->State.DataFileSelected = format != nullptr && ShowModal<LogReview>(*context_, *format, log);
}

void AppScreens::ShowDamagedCounterFile() { OfferDamagedCounterFile(*context_); }
RunsForStudy AppScreens::ShowUploadData(const Upload& upload) {
    if (upload.ChecksFirst &&
        !IsWholeCounterFile(*context_, upload.ToConvert->Folder + upload.ToConvert->Name + CounterFileExtension))
        return {};
    frmUploadData form(*context_, upload);
    return Run(form) ? form.ForStudy() : RunsForStudy();
}
std::vector<RunsForStudy> AppScreens::ShowImportTracks(const std::vector<std::string>& paths,
                                                       const std::string& corridor) {
    frmImportTracks form(*context_, paths, corridor);
    Run(form);
    return form.ForStudy();
}
void AppScreens::ShowDeleteTempRuns() { ShowModal<frmDeleteTempRuns>(*context_); }
void AppScreens::ShowDeleteTDCFiles() { ShowModal<frmDeleteTDCFiles>(*context_); }
void AppScreens::ShowCorridor(const std::optional<std::string>& path) { ShowModal<frmCorridor>(*context_, path); }

void AppScreens::ShowUploadRunList(const std::string& studyGroup) {
    ShowModal<frmUploadRunList>(*context_, studyGroup);
}

}  // namespace vantor
