#include "platform/QtPrograms.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QStandardPaths>
#include <QStringList>
#include <algorithm>

namespace vantor {
namespace {

constexpr qsizetype MostMessages = 64 * 1024;

class QtProgram : public RunningProgram {
public:
    QtProgram(const QString& path, const QStringList& arguments, const ProgramLimits& limits) : limits_(limits) {
        process_.setProcessChannelMode(QProcess::SeparateChannels);
        process_.setStandardInputFile(QProcess::nullDevice());
        process_.start(path, arguments, QIODevice::ReadOnly);
        clock_.start();
        hasStarted_ = process_.waitForStarted();
    }
    ~QtProgram() override { StopIt(); }

    bool HasStarted() const { return hasStarted_; }

    std::size_t Read(std::span<std::byte> into) override {
        std::size_t filled = 0;
        while (filled < into.size() && !wasStopped_) {
            const qint64 got =
                process_.read(reinterpret_cast<char*>(into.data()) + filled, static_cast<qint64>(into.size() - filled));
            if (got > 0) {
                filled += static_cast<std::size_t>(got);
                output_ += static_cast<std::uint64_t>(got);
                if (output_ > limits_.OutputBytes) StopIt();
            } else if (!WaitForOutput()) {
                break;
            }
        }
        return filled;
    }

    ProgramEnd End() override {
        // One that nobody reads to its end would wait for ever.
        if (process_.state() != QProcess::NotRunning && !process_.waitForFinished(LastWait)) StopIt();
        TakeMessages();
        ProgramEnd end;
        end.WasStopped = wasStopped_;
        end.Status = process_.exitStatus() == QProcess::NormalExit ? process_.exitCode() : -1;
        end.Messages = messages_.trimmed().toStdString();
        return end;
    }

private:
    static constexpr int LastWait = 2000;  // milliseconds

    /// False when there will be no more.
    bool WaitForOutput() {
        TakeMessages();
        if (process_.bytesAvailable() > 0) return true;
        if (process_.state() == QProcess::NotRunning) return false;
        const qint64 left = std::chrono::milliseconds(limits_.Time).count() - clock_.elapsed();
        if (left <= 0) {
            StopIt();
            return false;
        }
        constexpr qint64 Turn = 200;
        process_.waitForReadyRead(static_cast<int>(std::min(left, Turn)));
        return true;
    }

    void TakeMessages() { messages_ = (messages_ + process_.readAllStandardError()).right(MostMessages); }

    void StopIt() {
        if (process_.state() == QProcess::NotRunning) return;
        wasStopped_ = true;
        process_.kill();
        process_.waitForFinished(LastWait);
    }

    ProgramLimits limits_;
    QProcess process_;
    QElapsedTimer clock_;
    QByteArray messages_;
    std::uint64_t output_ = 0;
    bool hasStarted_ = false;
    bool wasStopped_ = false;
};

}  // namespace

std::unique_ptr<RunningProgram> QtPrograms::Start(const std::string& name, const std::vector<std::string>& arguments,
                                                  const ProgramLimits& limits) const {
    const QString path = QStandardPaths::findExecutable(QString::fromStdString(name));
    if (path.isEmpty()) return nullptr;
    QStringList list;
    for (const std::string& argument : arguments) list << QString::fromStdString(argument);
    auto program = std::make_unique<QtProgram>(path, list, limits);
    return program->HasStarted() ? std::move(program) : nullptr;
}

}  // namespace vantor
