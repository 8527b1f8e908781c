#pragma once

#include <QAbstractItemDelegate>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSpinBox>
#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "analysis/ProfileTrace.h"
#include "core/AppContext.h"
#include "core/Choices.h"
#include "core/forms/TickList.h"
#include "core/forms/WrappedLabel.h"
#include "corridor/Corridor.h"
#include "gpsobd/CorridorTracks.h"
#include "gpsobd/TrackInbox.h"
#include "gpsobd/forms/ZoneBox.h"
#include "map/forms/MapView.h"
#include "plots/forms/ProfileView.h"

class QLayout;

namespace vantor {

/// "Import Tracks": the runs that files of any kind would give, each a row with its picture and what is to be looked at
/// before it is taken. On OK the ticked ones become run files of a Study Group; nothing is written before. With a
/// corridor chosen the rows are the passes along it, which its file takes as well.
class frmImportTracks : public QDialog {
public:
    /// `corridor` is the file of the one chosen to begin with; empty for none.
    frmImportTracks(AppContext& context, const std::vector<std::string>& paths, const std::string& corridor = {},
                    QWidget* parent = nullptr);

    /// The runs that were written and that the study is to take, by group: those of the ticked tracks, the group above
    /// the list first, and those of reviews.
    std::vector<RunsForStudy> ForStudy() const;
    /// Reads more files.
    void AddFiles(const std::vector<std::string>& paths);

    void done(int result) override;

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    enum Column { File, Picture, Start, Direction, Nodes, Length, Duration, GroupOfRow, Name, Flags };
    static constexpr const char* BaseNameKey = "ImportBaseName";

    /// What the user does with a track.
    struct InboxRow {
        ProfileTrace Trace;
        std::string SameAs;             ///< the run that is the same drive; mostly empty
        std::string OwnGroup;           ///< empty: the one above the list
        std::string TypedName;          ///< empty: the next one that is free
        std::optional<PassFacts> Pass;  ///< along the corridor; nothing without one
        bool IsTaken = true;
        bool WasFlagged = false;  ///< before its file was read again

        bool HasEntries() const { return !OwnGroup.empty() || !TypedName.empty(); }
    };

    /// What a file gave beside their tracks.
    struct InboxSource {
        std::vector<std::string> Remarks;
        bool HasTracks = false;
        bool HasColumns = false;
        std::size_t Known = 0;  ///< passes that the corridor has already
    };

    /// What reading a file gives.
    struct Reading {
        InboxFile File;
        std::vector<PassFacts> Passes;  ///< of its tracks, with a corridor
        std::size_t Known = 0;
    };

    /// The corridor that tracks are cut by.
    struct ChosenCorridor {
        std::string Path;
        Corridor Of;
    };

    QLayout* BuildHead();
    QWidget* BuildList();
    QWidget* BuildChosen();
    QLayout* BuildFoot();
    void BuildReading();
    void ConnectControls();
    void ReadAgain();
    void ReadFilesAgain();
    void AskForFiles();
    void ChooseColumns();
    void ReviewChosen();
    void TakeGroup();
    void TakeGroupOf(std::size_t index, const std::string& group);
    void EditChosen(Column column);
    void LeaveCell(QAbstractItemDelegate::EndEditHint hint);
    void Regroup();
    void ShowGroups();
    QLayout* BuildCorridor();
    void ChooseCorridor(const std::string& path);
    void ProposeNames();
    Reading ReadFile(const LogSources& sources, const std::string& path, const AppSettings& settings,
                     const Progress& progress) const;
    void TakeInbox(const std::vector<std::string>& paths, std::vector<Reading> read);
    void TakeTracks(std::size_t before, std::vector<PassFacts> passes);
    std::string RemarksOnFiles() const;
    std::string NodesOf(std::size_t index) const;
    bool HasEntries() const;
    bool Write(const std::vector<TakenTrack>& tracks);
    void ShowMap(std::size_t chosen);
    void FindSameRuns();
    void ShowTracks();
    void ShowTrack(std::size_t index, const Units& units);
    void ShowNames();
    void ShowChosen();
    void ShowNotes();
    void TakeTypedName(std::size_t index, const std::string& name);
    void TickUnflagged();
    bool IsWithoutFlags(std::size_t index) const;
    std::vector<std::string> FlagsOf(std::size_t index) const;
    const std::string* ChosenPath() const;
    std::vector<TakenTrack> NamedTracks() const;
    std::string GroupRoot() const;
    std::string Group() const;
    std::string GroupOf(std::size_t index) const;
    std::vector<std::string> KnownGroups() const;
    bool WriteTicked();
    bool AcceptGroups(const std::vector<TakenTrack>& tracks);
    bool AcceptNames(const std::vector<TakenTrack>& tracks);

    AppContext& context_;
    std::vector<std::string> paths_;  ///< as they were added
    std::vector<InboxTrack> tracks_;
    std::vector<InboxRow> rows_;  ///< of the tracks
    std::vector<bool> mapped_;    ///< whether a track is on the map
    NamesInGroups namesInGroups_;
    std::map<std::string, InboxSource> files_;              ///< by path
    std::map<std::pair<std::string, int>, InboxRow> kept_;  ///< by file and number, while files are read again
    std::string shownGroup_;
    std::vector<RunsForStudy> forStudy_;
    std::vector<RunsForStudy> reviewed_;
    std::optional<ChosenCorridor> corridor_;
    std::string plainGroup_;     ///< as it was entered without a corridor
    std::string plainBaseName_;  ///< likewise
    QComboBox* cmbCorridor_ = nullptr;
    QComboBox* cmbCondition_ = nullptr;
    QComboBox* cmbGroup_ = nullptr;
    QLineEdit* txtBaseName_ = nullptr;
    ZoneBox* cmbZone_ = nullptr;
    QSpinBox* spnGap_ = nullptr;
    QPushButton* btnAddFiles_ = nullptr;
    TickList* vaTracks_ = nullptr;
    ProfileView* profile_ = nullptr;
    MapView* map_ = nullptr;
    QPlainTextEdit* txtNotes_ = nullptr;
    WrappedLabel* lblRemarks_ = nullptr;
    QPushButton* btnUnflagged_ = nullptr;
    QPushButton* btnGroupOfRows_ = nullptr;
    QPushButton* btnColumns_ = nullptr;
    QPushButton* btnReview_ = nullptr;
    QCheckBox* chkForStudy_ = nullptr;
    TickButtons* buttons_ = nullptr;
};

}  // namespace vantor
