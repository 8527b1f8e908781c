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
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "analysis/ProfileTrace.h"
#include "core/AppContext.h"
#include "core/Choices.h"
#include "core/forms/TickList.h"
#include "core/forms/WrappedLabel.h"
#include "gpsobd/TrackInbox.h"
#include "gpsobd/forms/ZoneBox.h"
#include "map/forms/MapView.h"
#include "plots/forms/ProfileView.h"

class QLayout;

namespace vantor {

/// "Import Tracks": the runs that files of any kind would give, each a row with its picture and what is to be looked at
/// before it is taken. On OK the ticked ones become run files of a Study Group; nothing is written before.
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
    enum Column { File, Picture, Start, Direction, Length, Duration, GroupOfRow, Name, Flags };
    static constexpr const char* BaseNameKey = "ImportBaseName";

    /// What the user does with a track.
    struct InboxRow {
        ProfileTrace Trace;
        std::string SameAs;     ///< the run that is the same drive; mostly empty
        std::string OwnGroup;   ///< empty: the one above the list
        std::string TypedName;  ///< empty: the next one that is free
        bool IsTaken = true;
        bool WasFlagged = false;  ///< before its file was read again

        bool HasEntries() const { return !OwnGroup.empty() || !TypedName.empty(); }
    };

    /// What a file gave beside their tracks.
    struct ReadFile {
        std::vector<std::string> Remarks;
        bool HasTracks = false;
        bool HasColumns = false;
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
    void TakeInbox(const std::vector<std::string>& paths, std::vector<InboxFile> read);
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
    std::map<std::string, ReadFile> files_;                 ///< by path
    std::map<std::pair<std::string, int>, InboxRow> kept_;  ///< by file and number, while files are read again
    std::string shownGroup_;
    std::vector<RunsForStudy> forStudy_;
    std::vector<RunsForStudy> reviewed_;
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
