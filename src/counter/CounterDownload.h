#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "core/ApplicationState.h"
#include "core/Choices.h"
#include "core/ports/ApplicationEnd.h"
#include "core/ports/Clock.h"
#include "core/ports/FileSystem.h"
#include "core/ports/SerialPort.h"

namespace vantor {

enum class DownloadStage {
    Closed,     ///< the port is closed, there is no file
    Waiting,    ///< the port is open, the file is empty
    Receiving,  ///< characters have arrived
};

/// The bytes of a dump that are kept: control characters but carriage return and line feed are dropped.
std::string WithoutControlCharacters(const std::string& bytes);

/// Receives a counter's dump and stores it, as it arrives, in a new counter file of the field data folder. The counter
/// drives the transfer. A file whose dump did not come to its end mark is no counter file, whatever ends it: what has
/// arrived of it is kept for a week (KeptDumps.h).
class CounterDownload {
public:
    /// Begins with the baud rate and the port number of the settings.
    CounterDownload(ApplicationState& state, FileSystem& files, SerialPort& port, const Clock& clock,
                    ApplicationEnd& end);

    void SetBaudRate(std::int32_t baudRate) { baudRate_ = baudRate; }
    void SetPortNumber(std::int16_t number) { portNumber_ = number; }

    DownloadStage Stage() const { return stage_; }
    /// What the user is to do now, for the stage, the port number and the baud rate.
    std::string Prompt() const;
    /// The file that is written and, while data arrives, how much of it has in which time; empty when there is no file.
    std::string ReceivedText() const;
    /// The counter file being written; empty when there is none.
    std::string FilePath() const;

    /// Makes the file "!Kestrel-mm-dd-yy-1.tdc", or the next one of the day, and opens the port. After an error there
    /// is no file.
    void Begin();
    /// Closes the port and takes the file away; what was received is kept. Nothing when the stage is Closed.
    void Cancel();
    /// Takes what the port tells. Lost data cancels and ends the application; any error, such as a device that
    /// is gone or a full disk, cancels the download.
    void TakeEvent(SerialEvent event);
    /// The counter file once the end mark has arrived: it is whole and closed, and the settings hold baud rate and port
    /// number. To be asked about every 100 ms, not for every character.
    [[nodiscard]] std::optional<CounterFileChoice> Finish();

private:
    void Append(const std::string& received);
    bool HasEndMark() const;
    void CancelQuietly();

    ApplicationState& state_;
    FileSystem& files_;
    SerialPort& port_;
    const Clock& clock_;
    ApplicationEnd& end_;

    std::int32_t baudRate_;
    std::int16_t portNumber_;
    DownloadStage stage_ = DownloadStage::Closed;
    std::string baseName_;
    std::unique_ptr<GrowingFile> file_;
    std::uint64_t received_ = 0;  ///< bytes in the file
    Date beganAt_;                ///< when the first of them came
    std::string tail_;            ///< the last characters received, across events
};

}  // namespace vantor
