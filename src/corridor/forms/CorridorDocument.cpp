#include "corridor/forms/CorridorDocument.h"

#include <QInputDialog>
#include <QLineEdit>
#include <algorithm>

#include "core/Paths.h"
#include "core/Text.h"
#include "core/UserChoices.h"
#include "core/forms/DocumentChange.h"
#include "core/forms/Named.h"
#include "corridor/CorridorFile.h"
#include "corridor/CorridorIntake.h"
#include "corridor/CorridorRules.h"

namespace vantor {
namespace {

constexpr const char* LastCorridorKey = "last-corridor";  // its path

}  // namespace

CorridorDocument::CorridorDocument(AppContext& context, QWidget& window)
    : QObject(&window), context_(context), window_(window), root_(AsFolder(context.State.Paths.StudyGroupRootPath)) {}

void CorridorDocument::Tell() const {
    for (const auto& listener : shownTo_) listener();
}

bool CorridorDocument::Show(const Corridor& now, const CorridorFilter& filter, const std::string& work, bool mayStop) {
    const auto made = std::make_shared<DetailedCorridor>();
    context_.Work.Run(work, [made, before = shown_, now, filter, root = root_, settings = context_.State.Settings,
                             mayStop](FileSystem& files, const Progress& progress) {
        *made = DetailCorridor(*before, now, filter, files, root, settings, mayStop ? progress : Progress());
    });
    if (!made->IsWhole) return false;
    const Corridor before = Of();
    shown_ = made;
    if (run_) {
        const CorridorRun& selected = before.Runs[*run_];
        const CorridorRun* there = FindCorridorRun(Of(), selected.Group, selected.Name);
        run_ = there == nullptr ? std::nullopt
                                : std::optional(static_cast<std::size_t>(there - Of().Runs.data()));
    }
    if (node_ && *node_ >= Of().Nodes.size()) node_.reset();
    Tell();
    return true;
}

bool CorridorDocument::Change(const QString& text, const Corridor& after) {
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
    steps_.push(new DocumentChange<Corridor>(text, before, after, [this](const Corridor& shown) {
        Show(shown, Shown().Filter, "Computing the corridor", false);
    }));
    Tell();  // what the steps say has changed
    return true;
}

void CorridorDocument::SetFilter(const CorridorFilter& filter) {
    if (!(filter == Shown().Filter)) Show(Of(), filter, "Computing the corridor", false);
}

void CorridorDocument::TakeFile(const std::string& path, const std::string& root) {
    path_ = path;
    root_ = root;
    run_.reset();
    node_.reset();
}

void CorridorDocument::Begin() {
    if (!MayLeave()) return;
    TakeFile({}, AsFolder(context_.State.Paths.StudyGroupRootPath));
    stamp_.reset();
    shown_ = std::make_shared<DetailedCorridor>();
    steps_.clear();
    Tell();
}

void CorridorDocument::Open(const std::string& path) {
    if (!MayLeave()) return;
    const StoredCorridor stored = LoadCorridor(context_.Files, path);
    const auto kept = std::pair(shown_, root_);
    const auto selected = std::pair(run_, node_);
    // Runs of the same names may lie in another folder.
    shown_ = std::make_shared<DetailedCorridor>();
    root_ = FolderOf(path);
    run_.reset();
    node_.reset();
    if (!Show(stored.Corridor, {}, "Reading the runs of " + stored.Corridor.Name, true)) {
        std::tie(shown_, root_) = kept;
        std::tie(run_, node_) = selected;
        return;
    }
    TakeFile(path, root_);
    stamp_ = stored.Stamp;
    steps_.clear();
    context_.State.Choices = StoreUserChoices(context_.Files, {{LastCorridorKey, path}});
    Tell();
}

bool CorridorDocument::AskForName() {
    bool isGiven = false;
    const std::string name = FromQt(QInputDialog::getText(&window_, QStringLiteral("Save Corridor"),
                                                          QStringLiteral("Name of the corridor, such as its street:"),
                                                          QLineEdit::Normal, QString(), &isGiven)
                                        .simplified());
    if (!isGiven) return false;
    if (const std::string problem = CorridorNameProblem(name); !problem.empty()) {
        context_.Messages.Tell(problem, MessageIcon::Warning);
        return AskForName();
    }
    path_ = CorridorPath(root_, name);
    if (context_.Files.Find(path_)) {
        path_.clear();
        context_.Messages.Tell("There is a corridor \"" + name + "\" already.\nEnter another name, or open that one.",
                               MessageIcon::Warning);
        return AskForName();
    }
    return true;
}

bool CorridorDocument::Save() {
    const bool isNew = path_.empty();
    if (isNew && !AskForName()) return false;
    Corridor named = Of();
    if (isNew) {
        const std::string file = LastComponent(path_);
        named.Name = file.substr(0, file.size() - std::string_view(CorridorExtension).size());
    }
    try {
        const SavedCorridor saved = SaveCorridor(context_.Files, path_, named,
                                                 stamp_ ? Expected::Unchanged(*stamp_) : Expected::Nothing());
        stamp_ = saved.Stamp;
        if (!saved.Backup.empty())
            context_.Messages.Tell("Another program had changed the corridor meanwhile.\nWhat it had written is kept as " +
                                   saved.Backup);
    } catch (...) {
        if (isNew) path_.clear();
        throw;
    }
    if (isNew) {
        const auto made = std::make_shared<DetailedCorridor>(*shown_);
        made->Of.Name = named.Name;
        shown_ = made;
    }
    context_.State.Choices = StoreUserChoices(context_.Files, {{LastCorridorKey, path_}});
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

void CorridorDocument::SelectRun(std::optional<std::size_t> run) {
    if (run == run_) return;
    run_ = run;
    for (const auto& listener : selectedTo_) listener();
}

void CorridorDocument::SelectNode(std::optional<std::size_t> node) {
    if (node == node_) return;
    node_ = node;
    for (const auto& listener : selectedTo_) listener();
}

}  // namespace vantor
