#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <atomic>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "core/AppContext.h"
#include "gpsobd/FieldLog.h"

namespace vantor {

/// What came of reading a log's summary.
struct ListedLog {
    std::string FileName;
    std::optional<LogSummary> Summary;  ///< nothing where the log could not be read
    std::string Note;                   ///< why, or what was left out; otherwise empty
    bool IsOfOtherKind = false;         ///< a sound database of the handheld's other logger
};

/// Reads the summaries of logs one after another beside the window, which stays alive over hundreds of logs and over a
/// long one. It may be stopped, started anew and destroyed at any time and in every call of its own.
class LogListing : public QObject {
public:
    LogListing(AppContext& context, const LogFormat& format);
    ~LogListing() override;

    /// Reads these files of a folder, which ends in a separator. The listing before it is stopped.
    void Start(const std::string& folder, std::vector<std::string> fileNames);
    void Stop();

    std::function<void(const ListedLog& log)> OnRead;
    /// Called now and then while log `number`, from 1, of `count` is read, once the listing takes long enough to be
    /// noticed.
    std::function<void(std::size_t number, std::size_t count)> OnProgress;
    /// Called when all are read; of a stopped listing never.
    std::function<void()> OnEnd;

private:
    /// What was read and is not told yet. Outlives a listing that is stopped while it reads.
    struct Listing {
        std::string Folder;
        std::vector<std::string> FileNames;
        std::atomic<std::size_t> Begun = 0;
        std::atomic<bool> IsStopped = false;
        std::atomic<bool> IsAtEnd = false;
        std::mutex Guard;
        std::deque<ListedLog> Read;  ///< under Guard

        std::optional<ListedLog> TakeRead();
    };

    void BeginReading();
    void TellWhatIsNew();
    /// False when there was nothing to tell.
    bool TellNext(const std::shared_ptr<Listing>& listing);

    AppContext& context_;
    const LogFormat& format_;
    QTimer timer_;
    std::unique_ptr<LongWork> work_;
    std::shared_ptr<Listing> listing_;
    QElapsedTimer age_;
    bool isBegun_ = false;
};

}  // namespace vantor
