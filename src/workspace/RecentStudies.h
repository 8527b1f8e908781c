#pragma once

#include <string>
#include <vector>

#include "core/UserChoices.h"

namespace vantor {

inline constexpr std::size_t MostRecentStudies = 8;

/// The study files that were opened or saved last, the newest first, as whole paths.
std::vector<std::string> RecentStudies(const UserChoices& choices);
/// What is to be stored so that `path` is the newest of them.
UserChoices WithRecentStudy(const UserChoices& choices, const std::string& path);
/// What is to be stored so that `path` is none of them.
UserChoices WithoutRecentStudy(const UserChoices& choices, const std::string& path);
/// What is to be stored so that there are none.
UserChoices WithoutRecentStudies();

}  // namespace vantor
