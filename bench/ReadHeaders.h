#pragma once

#include <algorithm>
#include <cstdio>
#include <stdexcept>
#include <string>
#include <vector>

namespace vantor {

/// How long the plain loop takes over the run files of a folder, of which there must be so many; with "--whole" for
/// `what` it reads all of each.
inline double SecondsToReadHeaders(const std::string& folder, int runs, const std::string& what = {}) {
    double seconds = 0;
    int files = 0;
    FILE* const peer = popen((VANTOR_READ_HEADERS " " + folder + " " + what).c_str(), "r");
    const bool isRead = peer != nullptr && std::fscanf(peer, "%lf %d", &seconds, &files) == 2;
    if (peer == nullptr || pclose(peer) != 0 || !isRead || files != runs)
        throw std::runtime_error("read_headers failed");
    return seconds;
}

/// Prints the least and the median as members of a JSON object.
inline void Tell(const char* name, std::vector<double> seconds) {
    std::ranges::sort(seconds);
    std::printf(", \"%s_min\": %.6f, \"%s_median\": %.6f", name, seconds.front(), name, seconds[seconds.size() / 2]);
}

}  // namespace vantor
