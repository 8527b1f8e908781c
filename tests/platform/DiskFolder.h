#pragma once

#include <sys/resource.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <string_view>

#include "core/Paths.h"
#include "fakes/MemoryFileSystem.h"
#include "fakes/ThrowsError.h"
#include "platform/DiskFileSystem.h"

namespace vantor {

inline std::string ContentsOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

using Texts = std::map<std::string, std::string>;

/// A new folder of the real disk; it goes with the test.
class DiskFolder {
protected:
    DiskFolder() {
        char pattern[] = "/tmp/vantor-test-XXXXXX";
        Folder = AsFolder(mkdtemp(pattern));
    }
    ~DiskFolder() { std::filesystem::remove_all(Folder); }

    std::string At(const std::string& name) const { return Folder + name; }
    void Put(const std::string& name, std::string_view text, OldTail tail = OldTail::Dropped) {
        WriteFile(Disk, At(name), BytesOf(text), AsItStands(Disk, At(name)), tail);
    }
    /// What lies in the folder by its name, hidden files too.
    Texts Found() const {
        Texts texts;
        for (const FileInfo& info : Disk.List(Folder))
            texts[info.Name] = info.IsFolder ? "" : ContentsOf(At(info.Name));
        return texts;
    }

    std::string Folder;
    DiskFileSystem Disk{"/"};
};

/// The error that an action ends with on a disk where no file can be longer.
template <class Action>
std::optional<ErrorNumber> ErrorWithFilesUpTo(rlim_t bytes, Action action) {
    rlimit old{};
    getrlimit(RLIMIT_FSIZE, &old);
    const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit small{bytes, old.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
    const auto error = ErrorOf(action);
    setrlimit(RLIMIT_FSIZE, &old);
    std::signal(SIGXFSZ, oldHandler);
    return error;
}

}  // namespace vantor
