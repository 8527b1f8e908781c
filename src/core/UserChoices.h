#pragma once

#include <map>
#include <string>
#include <string_view>

#include "core/ports/FileSystem.h"

namespace vantor {

/// The user's own choices that the settings record has no place for, as texts by key. They stand in the file
/// "vantor-user.ini" beside the settings file; keys that this version does not know are carried through.
using UserChoices = std::map<std::string, std::string>;

inline constexpr const char* UserChoicesFileName = "vantor-user.ini";
/// What stands under the key of a yes-or-no choice that was taken.
inline constexpr const char* ChoiceTaken = "yes";

/// Of the run list and the delay chart: the runs that do not count are left out.
inline constexpr const char* CountedOnlyKey = "counted-only";

/// The file with the tiles that lie under maps.
inline constexpr const char* BaseMapKey = "base-map";

/// The text under a key; empty where there is none.
std::string ChoiceOf(const UserChoices& choices, const std::string& key);
inline bool IsTaken(const UserChoices& choices, const std::string& key) {
    return ChoiceOf(choices, key) == ChoiceTaken;
}
/// Puts `changes` over `choices`; an empty text takes its key out.
void ChangeChoices(UserChoices& choices, const UserChoices& changes);

/// The lines "key=text" of the file; others are passed over.
UserChoices DecodeUserChoices(std::string_view file);
std::string EncodeUserChoices(const UserChoices& choices);

/// Without a file there are no choices.
UserChoices LoadUserChoices(const FileSystem& files);
/// Puts `changes` over what the file holds now, which another window may have written, and returns that. The file is
/// written where it changes.
UserChoices StoreUserChoices(FileSystem& files, const UserChoices& changes);

}  // namespace vantor
