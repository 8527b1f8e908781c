#include "workspace/RecentStudies.h"

#include "core/Text.h"

namespace vantor {
namespace {

std::string KeyOf(std::size_t place) { return "recent-study-" + std::to_string(place + 1); }

UserChoices Places(const std::vector<std::string>& paths) {
    UserChoices places;
    for (std::size_t place = 0; place < MostRecentStudies; ++place)
        places[KeyOf(place)] = place < paths.size() ? paths[place] : std::string();
    return places;
}

std::vector<std::string> OtherRecentStudies(const UserChoices& choices, const std::string& path) {
    std::vector<std::string> paths = RecentStudies(choices);
    std::erase_if(paths, [&](const std::string& known) { return EqualIgnoringCase(known, path); });
    return paths;
}

}  // namespace

std::vector<std::string> RecentStudies(const UserChoices& choices) {
    std::vector<std::string> paths;
    for (std::size_t place = 0; place < MostRecentStudies; ++place)
        if (std::string path = ChoiceOf(choices, KeyOf(place)); !path.empty()) paths.push_back(std::move(path));
    return paths;
}

UserChoices WithRecentStudy(const UserChoices& choices, const std::string& path) {
    std::vector<std::string> paths = OtherRecentStudies(choices, path);
    paths.insert(paths.begin(), path);
    return Places(paths);
}

UserChoices WithoutRecentStudy(const UserChoices& choices, const std::string& path) {
    return Places(OtherRecentStudies(choices, path));
}

UserChoices WithoutRecentStudies() { return Places({}); }

}  // namespace vantor
