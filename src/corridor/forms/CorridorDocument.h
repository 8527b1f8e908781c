#pragma once

#include <QObject>
#include <QUndoStack>
#include <QWidget>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "core/AppContext.h"
#include "core/FileStamp.h"
#include "corridor/DetailedCorridor.h"

namespace vantor {

/// Of the user's choices: the path of the corridor that was open last.
inline constexpr const char* LastCorridorKey = "last-corridor";

/// The corridor that is open in a window, with its file, what can be taken back, what is looked at, and what is
/// selected: its parts show it, and change it through here.
class CorridorDocument : public QObject {
public:
    explicit CorridorDocument(AppContext& context, QWidget& window);
    ~CorridorDocument() override;
    CorridorDocument(const CorridorDocument&) = delete;
    CorridorDocument& operator=(const CorridorDocument&) = delete;

    AppContext& Context() const { return context_; }
    QWidget& Window() const { return window_; }
    const Corridor& Of() const { return taken_.Shown->Of; }
    const DetailedCorridor& Shown() const { return *taken_.Shown; }
    std::shared_ptr<const DetailedCorridor> Share() const { return taken_.Shown; }
    QUndoStack& Steps() { return steps_; }
    /// The folder of its Study Groups, with a final separator.
    const std::string& Root() const { return taken_.Root; }
    const std::string& Path() const { return taken_.Path; }
    bool HasChanges() const { return !steps_.isClean(); }
    Units Shows() const { return UnitsOf(context_.State.Settings); }

    /// Makes the corridor `after`, as a step that can be taken back; false, and nothing changed, where it cannot be,
    /// which the user is told, or was stopped. The selection goes with its run. Changes of one gesture, from 1, that
    /// follow each other become one step.
    bool Change(const QString& text, const Corridor& after, int gesture = 0);
    void SetFilter(const CorridorFilter& filter);

    /// A new one without anything, after a question where there are changes.
    void Begin();
    void Open(const std::string& path);
    /// What another screen has written into its file meanwhile; steps from before cannot be taken back then.
    void Reload();
    /// False where it was not saved.
    bool Save();
    /// False where the user stays.
    bool MayLeave();
    std::vector<std::string> Others() const;
    /// The names of its Study Groups.
    std::vector<std::string> Groups() const;

    std::optional<std::size_t> Run() const { return taken_.Run; }
    std::optional<std::size_t> Node() const { return taken_.Node; }
    /// The way that plots show: that of the selected run, or as it was chosen last.
    Way Along() const { return taken_.Along; }
    void SelectRun(std::optional<std::size_t> run);
    /// A selected run that goes the other way is no longer selected.
    void SelectWay(Way way);
    void SelectNode(std::optional<std::size_t> node);

    /// Called when the corridor, or what is looked at of it, is another one; in the order they were given.
    void WhenShown(std::function<void()> listener) { shownTo_.push_back(std::move(listener)); }
    /// Called when a run, a node or a way is selected.
    void WhenSelected(std::function<void()> listener) { selectedTo_.push_back(std::move(listener)); }
    /// Shows everything anew, as after an edit that was refused.
    void Tell() const;

private:
    bool Show(const Corridor& now, const CorridorFilter& filter, const std::string& work, bool mayStop);
    void TakeFile(const std::string& path, const std::string& root);
    std::optional<std::string> AskForName();

    /// What is taken together.
    struct Taken {
        std::string Path;  ///< empty before it was saved for the first time
        std::string Name;
        std::string Root;
        std::optional<FileStamp> Stamp;
        std::shared_ptr<const DetailedCorridor> Shown = std::make_shared<DetailedCorridor>();
        std::optional<std::size_t> Run, Node;
        Way Along = Way::Forward;
    };

    AppContext& context_;
    QWidget& window_;
    QUndoStack steps_;
    Taken taken_;
    std::vector<std::function<void()>> shownTo_;
    std::vector<std::function<void()>> selectedTo_;
};

}  // namespace vantor
