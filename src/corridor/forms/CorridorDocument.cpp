#include "corridor/forms/CorridorDocument.h"

#include <QInputDialog>
#include <QLineEdit>
#include <algorithm>

#include "core/Paths.h"
#include "core/StudyGroupFolders.h"
#include "core/Text.h"
#include "core/UserChoices.h"
#include "core/forms/DocumentChange.h"
#include "core/forms/Named.h"
#include "corridor/CorridorFile.h"
#include "corridor/CorridorIntake.h"
#include "corridor/CorridorRules.h"

namespace vantor {
CorridorDocument::CorridorDocument(AppContext& context, QWidget& window)
    : QObject(&window), context_(context), window_(window) {
    TakeFile({}, AsFolder(context.State.Paths.StudyGroupRootPath));
}

// A stack that ends tells that it is empty; nobody listens any more.
CorridorDocument::~CorridorDocument() { steps_.disconnect(); }

void CorridorDocument::Tell() const {
    for (const auto& listener : shownTo_) listener();
}

bool CorridorDocument::Show(const Corridor& now, const CorridorFilter& filter, const std::string& work, bool mayStop) {
    const auto made = std::make_shared<DetailedCorridor>();
    context_.Work.Run(work, [made, before = taken_.Shown, now, filter, root = Root(),
                             settings = context_.State.Settings, mayStop](FileSystem& files, const Progress& progress) {
        *made = DetailCorridor(*before, now, filter, files, root, settings, mayStop ? progress : Progress());
    });
    if (!made->IsWhole) return false;
    const Corridor before = Of();
    made->Of.Name = taken_.Name;
    taken_.Shown = made;
    if (taken_.Run) {
        const CorridorRun& selected = before.Runs[*taken_.Run];
        const CorridorRun* there = FindCorridorRun(Of(), selected.Group, selected.Name);
        taken_.Run =
            there == nullptr ? std::nullopt : std::optional(static_cast<std::size_t>(there - Of().Runs.data()));
    }
    if (taken_.Node && *taken_.Node >= Of().Nodes.size()) taken_.Node.reset();
    Tell();
    return true;
}

bool CorridorDocument::Change(const QString& text, const Corridor& after, int gesture) {
    if (after == Of()) return true;
    const Corridor before = Of();
    if (const std::string problem = ProblemOf(after); !problem.empty()) {
        context_.Messages.Tell(problem, MessageIcon::Warning);
        Tell();
        return false;
    }
    const bool readsMore = after.Runs.size() > before.Runs.size();
    if (!Show(after, Shown().Filter, readsMore ? "Reading the runs of the corridor" : "Computing the corridor",
              readsMore)) {
        Tell();
        return false;
    }
    const auto show = [this](const Corridor& shown) { Show(shown, Shown().Filter, "Computing the corridor", false); };
    steps_.push(new DocumentChange<Corridor>(text, before, after, show, gesture));
    return true;
}

void CorridorDocument::SetFilter(const CorridorFilter& filter) {
    if (!(filter == Shown().Filter)) Show(Of(), filter, "Computing the corridor", false);
}

void CorridorDocument::TakeFile(const std::string& path, const std::string& root) {
    taken_ = {};
    taken_.Path = path;
    taken_.Root = root;
    const std::string file = LastComponent(path);
    if (HasExtension(file, CorridorExtension))
        taken_.Name = file.substr(0, file.size() - std::string_view(CorridorExtension).size());
    else
        taken_.Name = BaseName(file);
}

void CorridorDocument::Begin() {
    if (!MayLeave()) return;
    TakeFile({}, AsFolder(context_.State.Paths.StudyGroupRootPath));
    steps_.clear();
    Tell();
}

void CorridorDocument::Open(const std::string& path) {
    if (!MayLeave()) return;
    const StoredCorridor stored = LoadCorridor(context_.Files, path);
    const Taken kept = taken_;
    TakeFile(path, FolderOf(path));
    taken_.Stamp = stored.Stamp;
    // Half a corridor would be taken for the whole.
    if (!Show(stored.Corridor, {}, "Reading the runs of " + taken_.Name, true)) {
        taken_ = kept;
        return;
    }
    steps_.clear();
    context_.State.Choices = StoreUserChoices(context_.Files, {{LastCorridorKey, path}});
    Tell();
}

void CorridorDocument::Reload() {
    const StoredCorridor stored = LoadCorridor(context_.Files, taken_.Path);
    if (stored.Stamp == taken_.Stamp) return;
    // Stopped, it stays as it was, and its stamp with it: Save keeps what the file holds as a backup then.
    if (!Show(stored.Corridor, Shown().Filter, "Reading the runs of " + taken_.Name, true)) return;
    taken_.Stamp = stored.Stamp;
    steps_.clear();
    Tell();
}

std::optional<std::string> CorridorDocument::AskForName() {
    for (;;) {
        bool isGiven = false;
        const std::string name = FromQt(QInputDialog::getText(&window_, QStringLiteral("Save Corridor"),
                                                              QStringLiteral("Name of the corridor, as its street:"),
                                                              QLineEdit::Normal, QString(), &isGiven)
                                            .simplified());
        if (!isGiven) return std::nullopt;
        std::string problem = CorridorNameProblem(name);
        if (problem.empty() && context_.Files.Find(CorridorPath(Root(), name)))
            problem = "There is a corridor \"" + name + "\" already.\nEnter another name, or open that one.";
        if (problem.empty()) return name;
        context_.Messages.Tell(problem, MessageIcon::Warning);
    }
}

bool CorridorDocument::Save() {
    Taken then = taken_;
    if (then.Path.empty()) {
        const auto name = AskForName();
        if (!name) return false;
        then.Path = CorridorPath(Root(), *name);
        then.Name = *name;
    }
    const auto named = std::make_shared<DetailedCorridor>(Shown());
    named->Of.Name = then.Name;
    const SavedCorridor saved = SaveCorridor(context_.Files, then.Path, named->Of,
                                             then.Stamp ? Expected::Unchanged(*then.Stamp) : Expected::Nothing());
    then.Stamp = saved.Stamp;
    then.Shown = named;
    taken_ = then;
    if (!saved.Backup.empty())
        context_.Messages.Tell("Another program had written the corridor meanwhile.\nWhat it wrote is kept as " +
                               saved.Backup);
    context_.State.Choices = StoreUserChoices(context_.Files, {{LastCorridorKey, then.Path}});
    steps_.setClean();
    Tell();
    return true;
}

bool CorridorDocument::MayLeave() {
    if (!HasChanges()) return true;
    const std::string name = Of().Name.empty() ? "The new corridor" : "The corridor " + Of().Name;
    switch (context_.Messages.AskToSave(name + " has been changed.\nDo you want to save it?")) {
        case MessageAnswer::Yes: return Save();
        case MessageAnswer::No: return true;
        default: return false;
    }
}

std::vector<std::string> CorridorDocument::Others() const {
    return ListCorridors(context_.Files, context_.State.Paths.StudyGroupRootPath);
}

std::vector<std::string> CorridorDocument::Groups() const {
    std::vector<std::string> groups;
    for (const std::string& folder : ListStudyGroups(context_.Files, Root()))
        groups.push_back(LastComponent(std::string_view(folder).substr(0, folder.size() - 1)));
    return groups;
}

void CorridorDocument::SelectRun(std::optional<std::size_t> run) {
    if (run == taken_.Run) return;
    taken_.Run = run;
    if (run) taken_.Along = Of().Runs[*run].Along;
    for (const auto& listener : selectedTo_) listener();
}

void CorridorDocument::SelectWay(Way way) {
    if (way == taken_.Along) return;
    taken_.Along = way;
    taken_.Run.reset();
    for (const auto& listener : selectedTo_) listener();
}

void CorridorDocument::SelectNode(std::optional<std::size_t> node) {
    if (node == taken_.Node) return;
    taken_.Node = node;
    for (const auto& listener : selectedTo_) listener();
}

}  // namespace vantor
