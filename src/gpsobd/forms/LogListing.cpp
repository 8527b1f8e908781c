#include "gpsobd/forms/LogListing.h"

#include <utility>

#include "core/forms/Guarded.h"
#include "gpsobd/DeviceLog.h"
#include "gpsobd/PalmDatabase.h"

namespace vantor {
namespace {

// In milliseconds.
constexpr int BetweenLooks = 15;
constexpr int Noticeable = 100;

std::string NoteOn(const LogSummary& summary) {
    return summary.Problem.empty() ? CutText(summary.DroppedBytes, summary.MissingRecords) : summary.Problem;
}

ListedLog ReadListed(const LogSources& sources, const LogFormat& format, const std::string& folder,
                     const std::string& fileName, const LogProgress& goesOn) {
    ListedLog log{fileName, {}, {}};
    try {
        log.Summary = ReadLogSummary(sources, format, folder + fileName, goesOn);
        if (log.Summary) log.Note = NoteOn(*log.Summary);
    } catch (const NoSuchTable& error) {
        const std::string advice = OtherLoggerText(sources, folder + fileName);
        log.IsOfOtherKind = !advice.empty();
        log.Note = log.IsOfOtherKind ? advice : error.Message();
    } catch (const RunTimeError& error) {
        log.Note = error.Message();
    }
    return log;
}

}  // namespace

LogListing::LogListing(AppContext& context, const LogFormat& format)
    : context_(context), format_(format), work_(context.Work.Another()) {
    Connect(&timer_, &QTimer::timeout, this, context_.Messages, [this] { TellWhatIsNew(); });
}

LogListing::~LogListing() { Stop(); }

void LogListing::Start(const std::string& folder, std::vector<std::string> fileNames) {
    Stop();
    listing_ = std::make_shared<Listing>();
    listing_->Folder = folder;
    listing_->FileNames = std::move(fileNames);
    isBegun_ = false;
    age_.start();
    timer_.start(0);
}

void LogListing::Stop() {
    timer_.stop();
    if (listing_) listing_->IsStopped = true;
    listing_.reset();
}

void LogListing::BeginReading() {
    // The listing before this one comes to its end at the next piece of its log.
    if (work_->IsBusy()) return;
    isBegun_ = true;
    timer_.setInterval(BetweenLooks);
    const auto read = [listing = listing_, &format = format_, &databases = context_.Databases, &time = context_.Time](
                          FileSystem& files, const Progress& progress) {
        const PalmDatabase deviceDatabases(files);
        const LogSources sources{files, databases, deviceDatabases, time};
        const auto goesOn = [&] { return !listing->IsStopped && progress(listing->Begun, listing->FileNames.size()); };
        for (const std::string& fileName : listing->FileNames) {
            ++listing->Begun;
            ListedLog log = ReadListed(sources, format, listing->Folder, fileName, goesOn);
            if (!goesOn()) return;
            const std::lock_guard guard(listing->Guard);
            listing->Read.push_back(std::move(log));
        }
        listing->IsAtEnd = true;
    };
    work_->Begin(read);
}

std::optional<ListedLog> LogListing::Listing::TakeRead() {
    const std::lock_guard guard(Guard);
    if (Read.empty()) return std::nullopt;
    ListedLog log = std::move(Read.front());
    Read.pop_front();
    return log;
}

/// Every call out may stop the listing, or destroy this object.
void LogListing::TellWhatIsNew() {
    if (!isBegun_) BeginReading();
    if (!isBegun_) return;
    const std::shared_ptr<Listing> listing = listing_;
    const std::size_t begun = listing->Begun;
    if (age_.elapsed() >= Noticeable && begun > 0) OnProgress(begun, listing->FileNames.size());
    while (!listing->IsStopped && TellNext(listing)) {
    }
}

bool LogListing::TellNext(const std::shared_ptr<Listing>& listing) {
    // Its end, too, is only told when all that was read before is.
    const bool isAtEnd = listing->IsAtEnd;
    if (auto log = listing->TakeRead()) {
        OnRead(*log);
        return true;
    }
    if (!isAtEnd && work_->IsBusy()) return false;
    if (!isAtEnd && !listing->IsAtEnd) work_->Finish();  // abandoned for want of memory: what was read is told
    Stop();
    OnEnd();
    return false;
}

}  // namespace vantor
