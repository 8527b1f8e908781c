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

/// The corridor that is open in a window, with its file, what can be taken back, what is looked at, and what is
/// selected: its parts show it, and change it through here.
class CorridorDocument : public QObject {
public:
    explicit CorridorDocument(AppContext& context, QWidget& window);

    AppContext& Context() const { return context_; }
    QWidget& Window() const { return window_; }
    const Corridor& Of() const { return shown_->Of; }
    const DetailedCorridor& Shown() const { return *shown_; }
    std::shared_ptr<const DetailedCorridor> Share() const { return shown_; }
    QUndoStack& Steps() { return steps_; }
    /// The folder of its Study Groups, with a final separator.
    const std::string& Root() const { return root_; }
    const std::string& Path() const { return path_; }
    bool HasChanges() const { return !steps_.isClean(); }
    Units Shows() const { return UnitsOf(context_.State.Settings); }

    /// Makes the corridor `after`, as a step that can be taken back; false, and nothing changed, where it cannot be,
    /// which the user is told, or was stopped. The selection goes with its run.
    bool Change(const QString& text, const Corridor& after);
    void SetFilter(const CorridorFilter& filter);

    /// A new one without anything, after a question where there are changes.
    void Begin();
    void Open(const std::string& path);
    /// False where it was not saved.
    bool Save();
    /// False where the user stays.
    bool MayLeave();
    std::vector<std::string> Others() const;

    std::optional<std::size_t> Run() const { return run_; }
    std::optional<std::size_t> Node() const { return node_; }
    void SelectRun(std::optional<std::size_t> run);
    void SelectNode(std::optional<std::size_t> node);

    /// Called when the corridor, or what is looked at of it, is another one; in the order they were given.
    void WhenShown(std::function<void()> listener) { shownTo_.push_back(std::move(listener)); }
    /// Called when a run or node is selected.
    void WhenSelected(std::function<void()> listener) { selectedTo_.push_back(std::move(listener)); }
    /// Shows everything anew, as after an edit that was refused.
    void Tell() const;

private:
    bool Show(const Corridor& now, const CorridorFilter& filter, const std::string& work, bool mayStop);
    void TakeFile(const std::string& path, const std::string& root);
    bool AskForName();

    AppContext& context_;
    QWidget& window_;
    QUndoStack steps_;
    std::shared_ptr<const DetailedCorridor> shown_ = std::make_shared<DetailedCorridor>();
    std::string root_;
    std::string path_;  ///< empty before it was saved for the first time
    std::optional<FileStamp> stamp_;
    std::optional<std::size_t> run_;
    std::optional<std::size_t> node_;
    std::vector<std::function<void()>> shownTo_;
    std::vector<std::function<void()>> selectedTo_;
};

}  // namespace vantor
