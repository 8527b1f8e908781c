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
        // Waiting for one channel takes in the other, too, and goes on as long as that has something.
        QObject::connect(&process_, &QProcess::readyReadStandardError, [this] { Watch(); });
        QObject::connect(&process_, &QProcess::readyReadStandardOutput, [this] { Watch(); });
        process_.start(path, arguments, QIODevice::ReadOnly);
        clock_.start();
        hasStarted_ = process_.waitForStarted();
    }
    ~QtProgram() override { StopIt(); }

    bool HasStarted() const { return hasStarted_; }

    std::size_t Read(std::span<std::byte> into) override {
        std::size_t filled = 0;
        for (Watch(); filled < into.size() && !wasStopped_; Watch()) {
            const qint64 got =
                process_.read(reinterpret_cast<char*>(into.data()) + filled, static_cast<qint64>(into.size() - filled));
            if (got <= 0 && process_.state() == QProcess::NotRunning) break;
            if (got <= 0) process_.waitForReadyRead(Turn);
            filled += static_cast<std::size_t>(std::max<qint64>(got, 0));
            output_ += static_cast<std::uint64_t>(std::max<qint64>(got, 0));
        }
        return filled;
    }

    ProgramEnd End() override {
        // One that nobody reads to its end would wait for ever.
        isEnding_ = true;
        clock_.start();
        Watch();
        if (process_.state() != QProcess::NotRunning) process_.waitForFinished(LastWait);
        StopIt();
        TakeMessages();
        ProgramEnd end;
        end.WasStopped = wasStopped_;
        end.Status = process_.exitStatus() == QProcess::NormalExit ? process_.exitCode() : -1;
        end.Messages = messages_.trimmed().toStdString();
        return end;
    }

private:
    static constexpr int LastWait = 2000;  // milliseconds
    static constexpr int Turn = 50;        // milliseconds

    bool IsOver() const {
        const qint64 most = isEnding_ ? LastWait : std::chrono::milliseconds(limits_.Time).count();
        return output_ > limits_.OutputBytes || clock_.hasExpired(most) || (limits_.GoesOn && !limits_.GoesOn());
    }

    void Watch() {
        TakeMessages();
        if (isEnding_) process_.readAllStandardOutput();
        if (wasStopped_ || process_.state() == QProcess::NotRunning || !IsOver()) return;
        wasStopped_ = true;
        process_.kill();
    }

    void TakeMessages() {
        const QByteArray more = process_.readAllStandardError();
        if (more.isEmpty()) return;
        output_ += static_cast<std::uint64_t>(more.size());
        messages_ = (messages_ + more).right(MostMessages);
    }

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
    bool isEnding_ = false;
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
