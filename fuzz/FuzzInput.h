#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "core/RunTimeError.h"
#include "core/ports/ApplicationEnd.h"
#include "core/ports/Clock.h"
#include "fakes/MemoryFileSystem.h"
#include "fakes/ScriptedMessageBoxes.h"

namespace vantor {

/// Thrown where the program would end at once.
struct ApplicationEnded {};

class ThrowingEnd : public ApplicationEnd {
public:
    [[noreturn]] void EndAtOnce(const FatalFormatFault&) override { throw ApplicationEnded{}; }
};

/// Nobody answers a fuzzer.
class SilentMessageBoxes : public MessageBoxes {
public:
    MessageAnswer Ask(const Prompt&) override { return MessageAnswer::Ok; }
};

/// A clock without a day, in whose zones it is UTC.
class NoDay : public Clock {
public:
    Date Now() const override { return {}; }
    std::vector<std::string> ZoneNames() const override { return {}; }
    std::string OwnZone() const override { return {}; }
    std::optional<int> ZoneOffset(const std::string&, std::int64_t) const override { return 0; }
};

/// Gives `read` a disk in memory on which the input lies as the file of that path. A run-time error is an answer;
/// everything else is a finding.
template <class Read>
void FuzzFile(const std::uint8_t* data, std::size_t size, const std::string& path, Read read) {
    MemoryFileSystem files;
    const auto* bytes = reinterpret_cast<const std::byte*>(data);
    files.Put(path, std::vector<std::byte>(bytes, bytes + size));
    try {
        read(files);
    } catch (const RunTimeError&) {
    } catch (const ApplicationEnded&) {
    }
}

}  // namespace vantor
