#pragma once

#include <set>
#include <string>
#include <vector>

#include "analysis/StudyResults.h"
#include "core/AppContext.h"

namespace vantor {

// Commands of the main window that ask and tell the user on their way.

/// Asks whether the current study is to be saved and saves it on Yes. False when it was not saved.
bool SaveStudyNow(AppContext& context);

/// To be asked before another study takes the current one's place and before the program ends: offers to save what
/// was changed. False when the user stays, or wanted it saved and its name does not allow it; the study must stay then.
bool MayLeaveStudy(AppContext& context);

// Each of these returns the runs that the study is to take afterwards.

/// Downloads a counter, then lets the user process the runs of its dump. Nothing is processed when none came whole.
RunsForStudy DownloadAndProcess(AppContext& context);

/// Lets the user choose a counter file, then process the runs in the temporary folder. Nothing is processed when no
/// file was chosen.
RunsForStudy ProcessCounterFile(AppContext& context);

/// Lets the user choose a log of that kind, review it, and then process the runs made of it. Nothing is processed when
/// no log was chosen or its review was cancelled.
RunsForStudy ImportLog(AppContext& context, LogKind kind);

/// Lets the user review a log, and then process the runs made of it.
RunsForStudy ReviewLog(AppContext& context, LogKind kind, const LogChoice& log);

/// Lets the user name a workbook or a CSV file and writes the run list to it. A study without runs has none to write.
void ExportRunList(AppContext& context);

/// Tells of the missing runs of the study whose names are not in `told` yet, one after the other, and notes them there.
void TellMissingRuns(AppContext& context, const std::vector<RunListRow>& rows, std::set<std::string>& told);

/// Shows the speed profile of run `index` (from 1) of the study, from which the user may go on to the others, and takes
/// over what was changed there: boundaries, and names of runs where new ones were given. `selected` are the runs that
/// Makes a run of the study (from 1) the current one and shows the nodes that all runs can get from it; true when run
/// files were written.
bool ShowNodePlacesOf(AppContext& context, int index);
/// are selected in the list. A run that cannot be read is told to the user.
void ShowRunDetails(AppContext& context, int index, const std::vector<int>& selected = {});

/// Reads run `index` (from 1) of the study and opens one of the screens of a run for it. A run that cannot be read is
/// told to the user.
void ShowRun(AppContext& context, int index, void (Screens::*screen)(int entryIndex));

}  // namespace vantor
