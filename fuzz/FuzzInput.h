#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "core/RunTimeError.h"
#include "core/ports/ApplicationEnd.h"
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
