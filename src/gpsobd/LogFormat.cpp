#include "gpsobd/LogFormat.h"

#include <algorithm>
#include <array>
#include <utility>

#include "core/Paths.h"
#include "core/RunTimeError.h"
#include "gpsobd/BattelleLog.h"
#include "gpsobd/DeviceLog.h"
#include "gpsobd/LaptopLog.h"
#include "gpsobd/LogScreens.h"
#include "gpsobd/TrackLog.h"

namespace vantor {
namespace {

/// Bytes that tell a format.
constexpr std::size_t HeadSize = 1024;

std::string HeadOf(const FileSystem& files, const std::string& path) {
    if (!files.Find(path)) return {};
    std::string head(HeadSize, '\0');
    head.resize(files.Open(path)->Read(std::as_writable_bytes(std::span(head))));
    return head;
}

}  // namespace

std::span<const LogFormat> LogFormats() {
    static const std::array formats = {
        GpsLaptopLog(),   ObdLaptopLog(),   GpsObdLog(), NmeaLog(), BattelleLog(),
        GpsHandheldLog(), ObdHandheldLog(), GpxLog(),    CsvLog(),  ConvertedLog(),
    };
    return formats;
}

const LogFormat& FormatOf(LogKind kind) {
    const auto isChosenThere = [&](const LogFormat& format) {
        return format.Screen != nullptr && format.Screen->Kind == kind;
    };
    return *std::ranges::find_if(LogFormats(), isChosenThere);
}

bool IsNamedAs(const LogFormat& format, std::string_view path) {
    return std::ranges::any_of(format.FileTypes,
                               [&](const LogFileType& type) { return HasExtension(path, type.Extension); });
}

const LogFileType& FileTypeOf(const LogFormat& format, std::string_view fileName) {
    for (const LogFileType& type : format.FileTypes)
        if (HasExtension(fileName, type.Extension)) return type;
    const std::string_view written = format.WrittenExtension == nullptr ? "" : format.WrittenExtension;
    const auto type = std::ranges::find(format.FileTypes, written, &LogFileType::Extension);
    return type == format.FileTypes.end() ? format.FileTypes.front() : *type;
}

std::vector<const LogFormat*> FormatsNamedAs(std::string_view path, std::span<const LogFormat> formats) {
    std::vector<const LogFormat*> named;
    for (const LogFormat& format : formats)
        if (IsNamedAs(format, path)) named.push_back(&format);
    return named;
}

const LogFormat& FormatOfFile(const LogSources& sources, const std::string& path, std::span<const LogFormat> formats) {
    const std::vector<const LogFormat*> named = FormatsNamedAs(path, formats);
    if (named.size() == 1) return *named.front();
    const std::string head = HeadOf(sources.Files, path);
    for (const LogFormat& format : formats)
        if ((named.empty() || IsNamedAs(format, path)) && format.Recognises != nullptr &&
            format.Recognises(sources, format, path, head))
            return format;
    if (named.empty())
        throw RunTimeError(ErrorNumber::TypeMismatch,
                           "The name is none of a log. Logs end in " + LogExtensions(" or ") + ".\n" + path);
    if (named.back()->Refusal != nullptr) throw NoSuchTable(std::string(named.back()->Refusal) + "\n" + path);
    return *named.back();
}

const LogFormat* FormatKnown(const LogSources& sources, const std::string& path) {
    try {
        return &FormatOfFile(sources, path);
    } catch (const RunTimeError&) {
        return nullptr;
    }
}

std::vector<std::string> LogExtensions() {
    std::vector<std::string> extensions;
    for (const LogFormat& format : LogFormats())
        for (const LogFileType& type : format.FileTypes)
            if (std::ranges::find(extensions, type.Extension) == extensions.end())
                extensions.emplace_back(type.Extension);
    return extensions;
}

std::string LogExtensions(std::string_view last) {
    const std::vector<std::string> extensions = LogExtensions();
    std::string text;
    for (std::size_t i = 0; i < extensions.size(); ++i) {
        if (i > 0) text += i + 1 == extensions.size() ? last : ", ";
        text += extensions[i];
    }
    return text;
}

LogHead ReadLogPoints(const LogSources& sources, const LogFormat& format, const std::string& path, const LogSink& sink,
                      const Progress& progress) {
    const auto takeRuns = [&](LogPoint&& point) {
        const std::int16_t run = format.HasGps ? point.Gps.RunNumber : point.Obd.RunNumber;
        return (run == 0 && format.HasRunNumbers) || sink(std::move(point));
    };
    return format.Read(sources, format, path, takeRuns, progress);
}

}  // namespace vantor
