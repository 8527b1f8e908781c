#pragma once

#include <string>

#include "core/Paths.h"
#include "fakes/MemoryFileSystem.h"

/// Counter files as text, and what a test reads on the disk.
namespace vantor {

inline const std::string FieldData = "/start/Field Data Files/";
inline const std::string Groups = "/start/Study Groups/";
inline const std::string Temp = "/start/Temp/";
inline const std::string DumpEnd(20, ':');

/// A record that begins with these three fields; `data` are its data words with their commas and line ends.
inline std::string Record(const std::string& begin, const std::string& data = "",
                          const std::string& trailer = "00000") {
    return begin + ",SITE0001,0653,031108,01000\r\n" + data + trailer + "\r\n";
}

/// Two runs of a study, and one of another.
inline const std::string TwoStudies = Record("T,001,001", "012 001\r\n") + Record("T,001,002") +
                                      "T,002,001,MAINSTNB,1730,123199,01246\r\n00000\r\n" + DumpEnd;

/// What is told of a name that no file can have.
inline std::string UnsafeName(const std::string& name) {
    return "\"" + name +
           "\" cannot be used as a name.\nLeave out \"..\" and the characters / \\ : * ? \" < > | and try again.";
}

/// The files of a folder with what stands in them: "A=text of A, B=text of B".
inline std::string TextsIn(const MemoryFileSystem& files, const std::string& folder) {
    std::string texts;
    for (const FileInfo& info : files.List(folder)) {
        const auto bytes = *files.Bytes(folder + info.Name);
        texts += (texts.empty() ? "" : ", ") + BaseName(info.Name) + "=" +
                 std::string(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    }
    return texts;
}

}  // namespace vantor
