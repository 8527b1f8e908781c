#include "counter/CounterCheck.h"

#include <span>

#include "core/Backup.h"
#include "core/RunTimeError.h"
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

CounterCheck CheckCounterFile(const FileSystem& files, const std::string& path) {
    DelimitedReader fields(files.Open(path));
    RunRecord scratch;
    CounterCheck check;
    try {
        while (PassCounterRecord(fields, scratch)) {
            ++check.Runs;
            check.WholeBytes = fields.Position();
        }
    } catch (const RunTimeError& fault) {
        if (!IsOfContents(fault.Number())) throw;
        check.Fault = {check.Runs + 1, ReasonOf(fault)};
    }
    return check;
}

std::string SetAside(FileSystem& files, const std::string& path) {
    std::string aside = FreeBackupPath(files, path);
    files.Rename(path, aside);
    return aside;
}

std::string KeepWholeRuns(FileSystem& files, const std::string& path, const CounterCheck& check) {
    std::vector<std::byte> whole = ReadFirstBytes(files, path, check.WholeBytes);
    const std::string end = std::string(CounterEndMark) + "\r\n";
    const auto endBytes = std::as_bytes(std::span(end));
    whole.insert(whole.end(), endBytes.begin(), endBytes.end());
    std::string aside = SetAside(files, path);
    try {
        WriteFile(files, path, whole);
    } catch (const RunTimeError&) {
        files.Rename(aside, path);
        throw;
    }
    return aside;
}

}  // namespace vantor
