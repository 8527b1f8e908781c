#include "gpsobd/forms/LogListing.h"

#include <QCoreApplication>
#include <QPointer>
#include <utility>

#include "core/forms/Guarded.h"
#include "gpsobd/PalmDatabase.h"

namespace vantor {
namespace {

// In milliseconds.
constexpr int LongestWithoutEvents = 15;
constexpr int Noticeable = 100;

std::string NoteOn(const LogSummary& summary) {
    return summary.Problem.empty() ? CutText(summary.DroppedBytes, summary.MissingRecords) : summary.Problem;
}

/// The kind of a database; nothing where it has none that is known.
std::optional<LogKind> KindOf(const LogSources& sources, const std::string& path) {
    try {
        return LogKindOf(sources, path);
    } catch (const RunTimeError&) {
        return std::nullopt;
    }
}

/// What is to be done with a database of the handheld's other logger.
std::string OtherKindText(LogKind kind) {
    return kind == LogKind::GpsHandheld ? "This is a GPS database. Open it with File > Process Roampad Data."
                                        : "This is an OBD database. Open it with File > Process Revpad Data.";
}

}  // namespace

LogListing::LogListing(AppContext& context, LogKind kind) : context_(context), kind_(kind) {
    Connect(&timer_, &QTimer::timeout, this, context_.Messages, [this] { ReadForAWhile(); });
}

LogListing::~LogListing() { Stop(); }

void LogListing::Start(const std::string& folder, std::vector<std::string> fileNames) {
    Stop();
    listing_ = std::make_shared<Listing>();
    listing_->Folder = folder;
    listing_->FileNames = std::move(fileNames);
    listing_->Age.start();
    timer_.start(0);
}

void LogListing::Stop() {
    timer_.stop();
    if (listing_) listing_->Stopped = true;
    listing_.reset();
}

void LogListing::ReadForAWhile() {
    // A listing begun while another one is reading waits until that has come to its end.
    if (reading_) return;
    reading_ = true;
    const QPointer<LogListing> self(this);
    QElapsedTimer turn;
    turn.start();
    while (ReadNext() && turn.elapsed() < LongestWithoutEvents) {
    }
    if (self) reading_ = false;
}

/// False when the listing was stopped or is at its end. Every call out may stop it, or destroy this object.
bool LogListing::ReadNext() {
    const std::shared_ptr<Listing> listing = listing_;
    if (!listing) return false;
    if (listing->Begun == listing->FileNames.size()) {
        Stop();
        OnEnd();
        return false;
    }
    const std::string& fileName = listing->FileNames[listing->Begun++];
    ShowProgress(*listing);
    OnBegun(fileName);
    const ListedLog log = Read(listing, fileName);
    if (!listing->Stopped) OnRead(log);
    return !listing->Stopped;
}

ListedLog LogListing::Read(const std::shared_ptr<Listing>& listing, const std::string& fileName) {
    QElapsedTimer sinceEvents;
    sinceEvents.start();
    const auto goOn = [&] {
        if (!listing->Stopped && sinceEvents.elapsed() >= LongestWithoutEvents) {
            ShowProgress(*listing);
            QCoreApplication::processEvents();
            sinceEvents.restart();
        }
        return !listing->Stopped;
    };
    const PalmDatabase deviceDatabases(context_.Files);
    const LogSources sources{context_.Files, context_.Databases, deviceDatabases, context_.Time};
    ListedLog log{fileName, {}, {}};
    try {
        log.Summary = ReadLogSummary(sources, kind_, listing->Folder + fileName, goOn);
        if (log.Summary) log.Note = NoteOn(*log.Summary);
    } catch (const NoSuchTable& error) {
        const auto kind = KindOf(sources, listing->Folder + fileName);
        log.IsOfOtherKind = kind.has_value();
        log.Note = kind ? OtherKindText(*kind) : error.Message();
    } catch (const RunTimeError& error) {
        log.Note = error.Message();
    }
    return log;
}

void LogListing::ShowProgress(const Listing& listing) const {
    if (listing.Age.elapsed() >= Noticeable) OnProgress(listing.Begun, listing.FileNames.size());
}

}  // namespace vantor
