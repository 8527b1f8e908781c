#include "core/Paths.h"

#include <algorithm>
#include <span>
#include <vector>

#include "core/Numeric.h"
#include "core/Text.h"
#include "core/Windows1252.h"
#include "core/modMain.h"

namespace vantor {
namespace {

bool IsSeparator(char character) { return character == '/' || character == PathSeparator; }

bool IsForbidden(char character) {
    return static_cast<unsigned char>(character) < 32 || character == 127 ||
           std::string_view("/\\:*?\"<>|").find(character) != std::string_view::npos;
}

/// True for a name that stands for a device on Windows, whatever follows its first dot.
bool IsDeviceName(std::string_view name) {
    const std::string base = FoldCase(TrimRight(name.substr(0, name.find('.'))));
    for (const char* device : {"con", "prn", "aux", "nul"})
        if (base == device) return true;
    return base.size() == 4 && (base.starts_with("com") || base.starts_with("lpt")) && IsDigit(base[3]) &&
           base[3] != '0';
}

std::string_view WithoutFinalSeparator(std::string_view path) {
    while (path.size() > 1 && IsSeparator(path.back())) path.remove_suffix(1);
    return path;
}

std::size_t NameStart(std::string_view path) {
    std::size_t at = path.size();
    while (at > 0 && !IsSeparator(path[at - 1])) --at;
    return at;
}

}  // namespace

std::string AsStored(std::string_view text, std::size_t width) {
    const std::string stored = Windows1252FromUtf8(FirstCharacters(text, width));
    return std::string(Trim(Utf8FromWindows1252(std::as_bytes(std::span(stored)))));
}

std::string AsFolder(std::string_view folder) {
    std::string result(folder);
    if (!result.empty() && !IsSeparator(result.back())) result += PathSeparator;
    return result;
}

bool IsAbsolutePath(std::string_view path) {
    if (path.empty()) return false;
    const bool hasDrives = PathSeparator == '\\';
    return IsSeparator(path.front()) || (hasDrives && path.size() > 2 && path[1] == ':' && IsSeparator(path[2]));
}

std::string LastComponent(std::string_view path) {
    const std::string_view trimmed = WithoutFinalSeparator(path);
    return std::string(trimmed.substr(NameStart(trimmed)));
}

std::string FolderOf(std::string_view path) { return std::string(path.substr(0, NameStart(path))); }

std::string WholePath(const FileSystem& files, std::string_view path) {
    const std::string given =
        AsFolder(IsAbsolutePath(path) ? std::string(path) : AsFolder(files.CurrentFolder()) + std::string(path));
    std::vector<std::string> parts;  // the first one is the drive, or nothing for the root
    std::size_t start = 0;
    for (std::size_t end = 0; end < given.size(); ++end) {
        if (!IsSeparator(given[end])) continue;
        const std::string part = given.substr(start, end - start);
        start = end + 1;
        const bool stays = part.empty() || part == ".";
        if (parts.empty() || (!stays && part != ".."))
            parts.push_back(part);
        else if (part == ".." && parts.size() > 1)
            parts.pop_back();
    }
    std::string whole = parts.front();
    for (std::size_t i = 1; i < parts.size(); ++i) whole += PathSeparator + parts[i];
    return parts.size() == 1 ? whole + PathSeparator : whole;
}

std::string BaseName(std::string_view path) {
    std::string name = LastComponent(path);
    const std::size_t dot = name.rfind('.');
    return dot == std::string::npos || dot == 0 ? name : name.substr(0, dot);
}

bool HasExtension(std::string_view name, std::string_view extension) {
    return name.size() > extension.size() && EqualIgnoringCase(name.substr(name.size() - extension.size()), extension);
}

bool IsSafeName(std::string_view name) {
    const std::string_view trimmed = Trim(name);
    if (trimmed.empty() || trimmed.front() == '.' || trimmed.find("..") != std::string_view::npos) return false;
    if (IsDeviceName(trimmed)) return false;
    for (const char character : trimmed)
        if (IsForbidden(character)) return false;
    return true;
}

std::string UnsafeNameMessage(std::string_view name) {
    if (Trim(name).empty()) return "The name is empty.\nEnter a name and try again.";
    const std::string_view trimmed = Trim(name);
    const std::string refused = "\"" + Printable(trimmed) + "\" cannot be used as a name.\n";
    if (trimmed.find("..") == std::string_view::npos && std::ranges::none_of(trimmed, IsForbidden))
        return refused +
               (trimmed.front() == '.' ? "A name that begins with a dot is hidden. Leave the dot out"
                                       : "Windows keeps it for a device. Choose another name") +
               " and try again.";
    return refused + "Leave out \"..\" and the characters / \\ : * ? \" < > | and try again.";
}

std::string NameProblem(std::string_view name, std::size_t width) {
    if (!IsSafeName(name)) return UnsafeNameMessage(name);
    if (AsStored(name, width) == name) return {};
    return "\"" + std::string(name) + "\" cannot be used as a name.\nA name has at most " + std::to_string(width) +
           " letters, digits and signs of the Western alphabet and no blank at its ends.";
}

std::string WithSafeCharacters(std::string_view name) {
    std::string safe(name);
    for (char& character : safe)
        if (IsForbidden(character)) character = '_';
    if (safe.starts_with('.')) safe.front() = '_';
    return IsDeviceName(safe) ? "_" + safe : safe;
}

std::string NextName(const std::string& name) {
    const std::string last = name.empty() ? "" : name.substr(name.size() - 1);
    return name.substr(0, name.size() - last.size()) + std::to_string(Round32(Val(last)) + 1);
}

std::vector<FileInfo> FilesWithExtension(const FileSystem& files, const std::string& folder,
                                         std::string_view extension) {
    std::vector<FileInfo> found;
    if (!FolderExists(files, folder)) return found;
    for (FileInfo& info : files.List(folder, extension))
        if (!info.IsFolder && HasExtension(info.Name, extension)) found.push_back(std::move(info));
    return found;
}

}  // namespace vantor
