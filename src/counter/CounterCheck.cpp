#include "counter/CounterCheck.h"

#include <span>
#include <utility>

#include "core/Backup.h"
#include "core/RunTimeError.h"
#include "core/Text.h"
#include "counter/CounterFile.h"
#include "counter/DelimitedReader.h"

namespace vantor {
namespace {

/// True for an error that the file's contents made, and not the disk.
bool IsOfContents(ErrorNumber number) {
    return number == ErrorNumber::InputPastEndOfFile || number == ErrorNumber::TypeMismatch ||
           number == ErrorNumber::Overflow;
}

std::string ReasonOf(const RunTimeError& fault) {
    if (fault.Number() == ErrorNumber::InputPastEndOfFile) return "The file ends without its end mark (twenty colons).";
    return fault.Place().empty() ? ErrorText(fault.Number()) + "." : fault.Place();
}

}  // namespace

CounterCheck CheckCounterFile(const FileSystem& files, const std::string& path, const Progress& progress) {
    DelimitedReader fields(files.Open(path));
    RunRecord scratch;
    std::string start;
    CounterCheck check;
    std::uint64_t lastBegin = 0;
    try {
        CounterRecord read = CounterRecord::Whole;
        while ((read = ReadCounterRecord(fields, scratch, start)) == CounterRecord::Whole) {
            ++check.Runs;
            lastBegin = std::exchange(check.WholeBytes, fields.Position());
            if (!progress(fields.Position(), fields.Size())) return check;
        }
        if (read == CounterRecord::EndMark) return check;
    } catch (const RunTimeError& fault) {
        if (!IsOfContents(fault.Number())) throw;
        check.Fault = {check.Runs + 1, ReasonOf(fault)};
        return check;
    }
    if (check.Runs == 0 || !IsDigit(start.empty() ? ' ' : start.front())) {
        check.Fault = {check.Runs + 1, "It begins with \"" + start + "\" and not with \"T\" or \":\"."};
        return check;
    }
    // A short field among the data words was taken for the trailer: what follows belongs to the same record.
    check.Fault = {check.Runs, "Its data words break off before \"" + start + "\"."};
    --check.Runs;
    check.WholeBytes = lastBegin;
    return check;
}

std::string SetAside(FileSystem& files, const std::string& path) {
    std::string aside = FreeBackupPath(files, path);
    files.Rename(path, aside);
    return aside;
}

std::string KeepWholeRuns(FileSystem& files, const std::string& path, const CounterCheck& check,
                          const Progress& progress) {
    std::vector<std::byte> whole = ReadFirstBytes(files, path, check.WholeBytes);
    const std::string end = std::string(CounterEndMark) + "\r\n";
    const auto endBytes = std::as_bytes(std::span(end));
    whole.insert(whole.end(), endBytes.begin(), endBytes.end());
    std::string aside = SetAside(files, path);
    bool isWritten = false;
    try {
        const auto writes = files.BeginWrites();
        writes->Add(path, whole, Expected::Nothing());
        isWritten = writes->Commit(progress);
    } catch (const RunTimeError&) {
        files.Rename(aside, path);
        throw;
    }
    if (!isWritten) files.Rename(std::exchange(aside, {}), path);
    return aside;
}

}  // namespace vantor
