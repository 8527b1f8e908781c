#include <QActionGroup>
#include <QApplication>
#include <QMenu>

#include "core/Counted.h"
#include "core/Paths.h"
#include "core/StudyFile.h"
#include "core/Text.h"
#include "core/forms/Guarded.h"
#include "core/forms/Named.h"
#include "core/forms/Theme.h"
#include "core/modMain.h"
#include "gpsobd/LogFormat.h"
#include "gpsobd/PalmDatabase.h"
#include "gpsobd/TrackChoices.h"
#include "workspace/DroppedFiles.h"
#include "workspace/RecentStudies.h"
#include "workspace/SampleStudy.h"
#include "workspace/StudyCommands.h"
#include "workspace/StudyGroups.h"
#include "workspace/forms/frmMain.h"

namespace vantor {

// Recent studies, the sample, files that are dropped, the theme.

void frmMain::NoteRecent() {
    const ApplicationState& state = context_.State;
    if (!state.CurrentStudy.Stored) return;
    const std::string path = state.CurrentStudy.Stored->Path;
    StoreChoices(WithRecentStudy(state.Choices, path));
}

void frmMain::StoreChoices(const UserChoices& changes) {
    // Where the user's own settings cannot be written, they hold until the end of the program.
    ChangeChoices(context_.State.Choices, changes);
    try {
        context_.State.Choices = StoreUserChoices(context_.Files, changes);
    } catch (const RunTimeError&) {
    }
}

void frmMain::FillRecentStudies(QMenu& menu) {
    const std::vector<std::string> paths = RecentStudies(context_.State.Choices);
    int number = 1;
    for (const std::string& path : paths) {
        const std::string group = LastComponent(AsFolder(FolderOf(path)));
        const QString name = ToQt(BaseName(path) + "  -  " + group).replace('&', QStringLiteral("&&"));
        QAction* action = menu.addAction(QStringLiteral("&%1  %2").arg(number++).arg(name));
        action->setToolTip(ToQt(path));
        Connect(action, &QAction::triggered, this, context_.Messages, [this, path] { OpenRecentStudy(path); });
    }
    if (paths.empty()) {
        menu.addAction(QStringLiteral("No study was opened yet"))->setEnabled(false);
        return;
    }
    menu.addSeparator();
    Connect(menu.addAction(QStringLiteral("&Clear This List")), &QAction::triggered, this, context_.Messages,
            [this] { StoreChoices(WithoutRecentStudies()); });
}

void frmMain::OpenRecentStudy(const std::string& path) {
    if (!FileExists(context_.Files, path))
        return context_.Messages.Tell(
            "The study is not there any more:\n" + path + "\nOpen Existing Study shows where studies lie now.",
            MessageIcon::Warning);
    if (MayLeaveStudy(context_)) OpenStudyAt(path);
}

void frmMain::TrySample() {
    if (!MayLeaveStudy(context_)) return;
    const std::string& root = context_.State.Paths.StudyGroupRootPath;
    auto sample = FindSample(context_.Files, root);
    if (!sample) sample = MakeSample(context_.Files, root, context_.State.Settings);
    TakeStudy(sample->Folder, sample->Name, true);
    Tell(QStringLiteral("The sample: eight reckoned drives. Show Details shows a run's speed profile."));
}

void frmMain::RemoveSample() {
    const auto sample = FindSample(context_.Files, context_.State.Paths.StudyGroupRootPath);
    if (!sample) return context_.Messages.Tell("There is no sample in the Study Groups.");
    const Prompt prompt{.Text = "Do you want to delete the sample study and its eight runs?\n" + sample->Folder,
                        .Buttons = MessageButtons::YesNo,
                        .Icon = MessageIcon::Question,
                        .LosesSomething = true};
    if (context_.Messages.Ask(prompt) != MessageAnswer::Yes) return;
    const bool isOpen = IsSameFolder(StudyGroupFolder(context_.State), sample->Folder);
    DeleteSample(context_.Files, *sample);
    StoreChoices(WithoutRecentStudy(context_.State.Choices, sample->Folder + sample->Name + StudyExtension));
    if (isOpen) BeginNewStudy();
    Tell(QStringLiteral("The sample was removed."));
}

void frmMain::FillThemes(QMenu& menu) {
    // The program may have been started with another theme than the one that is remembered.
    std::string chosen = ChoiceOf(context_.State.Choices, ThemeKey);
    if (!chosen.empty()) chosen = IsDark(palette()) ? "dark" : "light";
    qDeleteAll(menu.findChildren<QActionGroup*>());
    auto* group = new QActionGroup(&menu);
    const auto add = [&](const char* caption, const char* theme) {
        QAction* action = menu.addAction(QString::fromLatin1(caption));
        group->addAction(action);
        action->setCheckable(true);
        action->setChecked(chosen == theme);
        Connect(action, &QAction::triggered, this, context_.Messages, [this, theme] {
            StoreChoices({{ThemeKey, theme}});
            UseTheme(ThemeNamed(theme));
        });
    };
    add("As the &Desktop", "");
    add("&Light", "light");
    add("D&ark", "dark");
}

void frmMain::TakeFiles(const std::vector<std::string>& paths) {
    const DroppedFiles files = SortDropped(paths);
    if (const std::string refusal = RefusalOf(files); !refusal.empty())
        context_.Messages.Tell(refusal, MessageIcon::Warning);
    if (!files.Studies.empty() && MayLeaveStudy(context_)) OpenStudyAt(files.Studies.front());
    if (!files.Runs.empty()) AddDroppedRuns(files.Runs);
    for (const CounterFileChoice& file : files.CounterFiles)
        TakeRuns(context_.OtherScreens.ShowUploadData(
            {.Of = UploadOf::CounterFile, .ToConvert = file, .ChecksFirst = true}));
    for (const DroppedFiles::Log& log : files.Logs) {
        LogKind kind = log.Kind;
        if (log.IsOfHandheld) {
            const auto answer = context_.Messages.Ask(
                {.Text = "What is in this database of a handheld?\n" + log.Choice.File + log.Choice.Extension,
                 .Buttons = MessageButtons::YesNoCancel,
                 .Icon = MessageIcon::Question,
                 .Captions = {"&GPS", "&OBD"}});
            if (answer == MessageAnswer::Cancel) continue;
            if (answer == MessageAnswer::No) kind = LogKind::ObdHandheld;
        }
        TakeRuns(ReviewLog(context_, kind, log.Choice));
    }
    if (!files.Tracks.empty()) ImportTracks(files.Tracks);
}

/// Looks into those files whose names do not tell what they are.
DroppedFiles frmMain::SortDropped(const std::vector<std::string>& paths) {
    DroppedFiles sorted;
    const TrackSources tracks = TrackSourcesOf(context_.State.Choices, context_.OtherPrograms);
    context_.Work.Run("Looking into the files", [&](FileSystem& files, const Progress&) {
        const PalmDatabase palm(files);
        const LogSources sources{files, context_.Databases, palm, context_.Time, false, tracks};
        sorted = SortedByKind(paths, [&](const std::string& path) { return FormatKnown(sources, path); });
    });
    return sorted;
}

void frmMain::AddDroppedRuns(const std::vector<std::string>& paths) {
    RunsForStudy runs{FolderOf(paths.front()), {}};
    std::vector<std::string> elsewhere;
    for (const std::string& path : paths)
        (IsSameFolder(FolderOf(path), runs.Folder) ? runs.Names : elsewhere).push_back(BaseName(path));
    if (!elsewhere.empty())
        context_.Messages.Tell(
            "The runs of a study lie in one Study Group.\nThese lie elsewhere than the first and are not "
            "added: " +
                FirstOf(elsewhere, 3),
            MessageIcon::Warning);
    TakeRuns(runs);
}

void frmMain::TakeRuns(const RunsForStudy& runs) {
    ApplicationState& state = context_.State;
    if (runs.Names.empty()) return RefreshStudyResults();
    if (state.CurrentStudy.Record.RunCount == 0) state.Paths.LastStudyGroupPath = runs.Folder;
    const std::string group = StudyGroupFolder(state);
    if (IsSameFolder(group, runs.Folder)) return AddRuns([&] { vantor::AddRuns(state, runs.Names); });
    context_.Messages.Tell("The runs of a study lie in one Study Group, those of this one in:\n" + group +
                               "\nThese lie elsewhere and are not added: " + FirstOf(runs.Names, 3),
                           MessageIcon::Warning);
    RefreshStudyResults();
}

/// The study takes the runs of its own group; a study without runs has that of the first.
void frmMain::TakeRunsOfGroups(const std::vector<RunsForStudy>& groups) {
    if (groups.size() < 2) return TakeRuns(groups.empty() ? RunsForStudy() : groups.front());
    const bool isEmpty = context_.State.CurrentStudy.Record.RunCount == 0;
    const std::string own = isEmpty ? groups.front().Folder : StudyGroupFolder(context_.State);
    RunsForStudy taken;
    std::string elsewhere;
    for (const RunsForStudy& runs : groups) {
        if (IsSameFolder(runs.Folder, own)) {
            taken = runs;
            continue;
        }
        elsewhere += "\n" + Counted(runs.Names.size(), "run") + (runs.Names.size() == 1 ? " is in " : " are in ") +
                     LastComponent(runs.Folder) + ": " + FirstOf(runs.Names, 3);
    }
    TakeRuns(taken);
    context_.Messages.Tell("The study takes the runs of its own Study Group, " + LastComponent(own) +
                               ".\nThe others lie in theirs, for studies there:" + elsewhere,
                           MessageIcon::Information);
}

}  // namespace vantor
