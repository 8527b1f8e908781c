#include "counter/CounterDownload.h"

#include <algorithm>
#include <span>

#include "core/Numeric.h"
#include "core/Paths.h"
#include "core/modMain.h"
#include "counter/CounterFile.h"
#include "counter/KeptDumps.h"

namespace vantor {
namespace {

constexpr std::string_view EndMark = "::::::::::::::::::::";
/// Room for the end mark and what may follow it between two looks.
constexpr std::size_t TailLength = 30;

}  // namespace

std::string WithoutControlCharacters(const std::string& bytes) {
    std::string kept;
    kept.reserve(bytes.size());
    for (const char character : bytes)
        if (static_cast<unsigned char>(character) >= ' ' || character == '\r' || character == '\n') kept += character;
    return kept;
}

CounterDownload::CounterDownload(ApplicationState& state, FileSystem& files, SerialPort& port, const Clock& clock,
                                 ApplicationEnd& end)
    : state_(state),
      files_(files),
      port_(port),
      clock_(clock),
      end_(end),
      baudRate_(state.Settings.BaudRate),
      portNumber_(state.Settings.CommPort) {}

std::string CounterDownload::Prompt() const {
    switch (stage_) {
        case DownloadStage::Waiting:
            return "Begin dumping the Corvel counter by selecting DUMP then\n"
                   "LOCAL then BEGIN from the counter menu.\n"
                   "[Click SETUP to change baud rate and/or comm port settings.]";
        case DownloadStage::Receiving: return "Reading data from the counter, please wait...";
        case DownloadStage::Closed: break;
    }
    return "Turn on the Corvel counter and plug the serial cable into COM" + std::to_string(portNumber_) +
           ".\nMake sure the baud rate on the counter is set to " + std::to_string(baudRate_) +
           ",\nthen press the Begin pushbutton above.";
}

std::string CounterDownload::ReceivedText() const {
    if (!file_) return {};
    const std::string name = baseName_ + CounterFileExtension;
    if (stage_ != DownloadStage::Receiving) return "The dump will be written to " + name + ".";
    constexpr double SecondsOfDay = 24 * 60 * 60;
    // A clock that is put back meanwhile is no time that has passed.
    const std::int32_t seconds = Round32(std::max(0.0, (clock_.Now().Days - beganAt_.Days) * SecondsOfDay));
    const std::string rest = std::to_string(seconds % 60);
    return CountOfBytes(received_) + " received in " + std::to_string(seconds / 60) + ":" +
           (rest.size() < 2 ? "0" : "") + rest + ", written to " + name + ".";
}

std::string CounterDownload::FilePath() const {
    if (!file_) return {};
    return AsFolder(state_.Paths.FieldDataPath) + baseName_ + CounterFileExtension;
}

void CounterDownload::Begin() {
    const std::string folder = AsFolder(state_.Paths.FieldDataPath);
    baseName_ = "!Kestrel-" + DashedDate(clock_.Now()) + "-1";
    while (FileExists(files_, folder + baseName_ + CounterFileExtension)) baseName_ = NextName(baseName_);
    file_ = files_.Create(folder + baseName_ + CounterFileExtension);
    tail_.clear();
    received_ = 0;
    stage_ = DownloadStage::Waiting;
    try {
        port_.SetNumber(portNumber_);
        port_.SetSettings(std::to_string(baudRate_) + ",n,8,1");
        port_.Open();
    } catch (const RunTimeError&) {
        CancelQuietly();
        throw;
    }
}

void CounterDownload::Cancel() {
    if (stage_ == DownloadStage::Closed) return;
    stage_ = DownloadStage::Closed;
    port_.Close();
    const std::string path = FilePath();
    file_.reset();
    if (!FileExists(files_, path)) return;
    if (received_ > 0)
        KeepDump(files_, path);
    else
        files_.Delete(path);
}

void CounterDownload::CancelQuietly() {
    try {
        Cancel();
    } catch (const RunTimeError&) {  // the error that led here says more
    }
}

void CounterDownload::TakeEvent(SerialEvent event) {
    if (stage_ == DownloadStage::Closed) return;
    if (event == SerialEvent::Overrun || event == SerialEvent::ReceiveBufferOverflow) {
        const FatalFormatFault fault{FilePath(), 0, "a dump without lost characters"};
        CancelQuietly();
        end_.EndAtOnce(fault);
    }
    if (event != SerialEvent::Received) return;
    try {
        Append(WithoutControlCharacters(port_.ReadAll()));
    } catch (const RunTimeError&) {
        // A cable pulled as soon as the dump is over takes nothing away from it.
        if (HasEndMark()) return;
        CancelQuietly();
        throw;
    }
}

void CounterDownload::Append(const std::string& received) {
    if (received.empty()) return;
    if (stage_ != DownloadStage::Receiving) beganAt_ = clock_.Now();
    stage_ = DownloadStage::Receiving;
    file_->Append(std::as_bytes(std::span(received)));
    received_ += received.size();
    tail_ += received;
    if (tail_.size() > TailLength) tail_.erase(0, tail_.size() - TailLength);
}

bool CounterDownload::HasEndMark() const { return tail_.find(EndMark) != std::string::npos; }

std::optional<CounterFileChoice> CounterDownload::Finish() {
    if (stage_ != DownloadStage::Receiving || !HasEndMark()) return std::nullopt;
    try {
        file_->Close();
    } catch (const RunTimeError&) {
        CancelQuietly();
        throw;
    }
    file_.reset();
    port_.Close();
    stage_ = DownloadStage::Closed;
    state_.Settings.BaudRate = baudRate_;
    state_.Settings.CommPort = portNumber_;
    return CounterFileChoice{AsFolder(state_.Paths.FieldDataPath), baseName_};
}

}  // namespace vantor
