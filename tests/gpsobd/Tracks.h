#pragma once

#include <cstdio>
#include <string>

namespace vantor {

/// A drive with a point every second from 4 March 2026, `minute` past 15:00 UTC: `steps` of 0.00012 degrees, about 30
/// mph, to the north or to the east.
struct Drive {
    int Minute = 0;
    int Steps = 60;
    bool IsNorth = true;
    int JumpAt = 0;  ///< the step that leads a kilometre further; 0 for none
};

inline std::string TimeText(const Drive& drive, int step) {
    char text[32];
    std::snprintf(text, sizeof(text), "2026-03-04T15:%02d:%02dZ", drive.Minute + step / 60, step % 60);
    return text;
}
inline double Way(const Drive& drive, int step) {
    return 0.00012 * step + (drive.JumpAt > 0 && step >= drive.JumpAt ? 0.009 : 0);
}

inline std::string Gpx(const Drive& drive) {
    std::string text = "<gpx version=\"1.1\"><trk><trkseg>";
    for (int step = 0; step <= drive.Steps; ++step)
        text += "<trkpt lat=\"" + std::to_string(42 + (drive.IsNorth ? Way(drive, step) : 0)) + "\" lon=\"" +
                std::to_string(-83 + (drive.IsNorth ? 0 : Way(drive, step))) + "\"><time>" + TimeText(drive, step) +
                "</time></trkpt>";
    return text + "</trkseg></trk></gpx>";
}

/// The same with the heads of the columns as given, and speeds of 50.
inline std::string Csv(const std::string& head, const Drive& drive) {
    std::string text = head + "\n";
    for (int step = 0; step <= drive.Steps; ++step)
        text += TimeText(drive, step) + ";" + std::to_string(42 + Way(drive, step)) + ";-83.0;50\n";
    return text;
}

}  // namespace vantor
