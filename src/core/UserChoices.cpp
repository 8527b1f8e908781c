#include "core/UserChoices.h"

#include <algorithm>
#include <span>

#include "core/modMain.h"

namespace vantor {
namespace {

/// On one line, whatever the text holds.
std::string Escaped(std::string_view text) {
    std::string line;
    for (const char character : text) {
        if (character == '\\')
            line += "\\\\";
        else if (character == '\n')
            line += "\\n";
        else if (character == '\r')
            line += "\\r";
        else
            line += character;
    }
    return line;
}

std::string Unescaped(std::string_view line) {
    std::string text;
    for (std::size_t at = 0; at < line.size(); ++at) {
        if (line[at] != '\\' || at + 1 == line.size()) {
            text += line[at];
            continue;
        }
        const char escaped = line[++at];
        text += escaped == 'n' ? '\n' : (escaped == 'r' ? '\r' : escaped);
    }
    return text;
}

std::string PathOf(const FileSystem& files) { return files.SettingsFolder() + UserChoicesFileName; }

}  // namespace

std::string ChoiceOf(const UserChoices& choices, const std::string& key) {
    const auto found = choices.find(key);
    return found == choices.end() ? std::string() : found->second;
}

void ChangeChoices(UserChoices& choices, const UserChoices& changes) {
    for (const auto& [key, text] : changes) {
        if (text.empty())
            choices.erase(key);
        else
            choices[key] = text;
    }
}

UserChoices DecodeUserChoices(std::string_view file) {
    UserChoices choices;
    while (!file.empty()) {
        std::string_view line = file.substr(0, file.find('\n'));
        file.remove_prefix(std::min(line.size() + 1, file.size()));
        if (line.ends_with('\r')) line.remove_suffix(1);
        const std::size_t equals = line.find('=');
        if (equals == std::string_view::npos || equals == 0) continue;
        choices[std::string(line.substr(0, equals))] = Unescaped(line.substr(equals + 1));
    }
    return choices;
}

std::string EncodeUserChoices(const UserChoices& choices) {
    std::string file;
    for (const auto& [key, text] : choices) file += key + "=" + Escaped(text) + "\n";
    return file;
}

UserChoices LoadUserChoices(const FileSystem& files) {
    const std::string path = PathOf(files);
    if (!FileExists(files, path)) return {};
    const auto bytes = ReadWholeFile(files, path);
    return DecodeUserChoices({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}

UserChoices StoreUserChoices(FileSystem& files, const UserChoices& changes) {
    const UserChoices before = LoadUserChoices(files);
    UserChoices choices = before;
    ChangeChoices(choices, changes);
    if (choices == before) return choices;
    const std::string text = EncodeUserChoices(choices);
    files.CreateFolder(files.SettingsFolder());
    WriteFile(files, PathOf(files), std::as_bytes(std::span(text)), AsItStands(files, PathOf(files)));
    return choices;
}

}  // namespace vantor
