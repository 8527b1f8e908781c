#pragma once

#include <memory>
#include <string>

#include "FuzzInput.h"
#include "gpsobd/FieldLog.h"

namespace vantor {

/// Ways to read a log that is a plain file.
class FileSources : DatabaseEngine, DeviceDatabase, Clock {
public:
    explicit FileSources(const FileSystem& files) : All{files, *this, *this, *this} {}
    LogSources All;

private:
    std::unique_ptr<RecordSet> OpenTable(const std::string& path, const std::string&) const override {
        throw NoSuchTable(path);
    }
    std::unique_ptr<RecordSet> Open(const std::string& path, const std::string&) const override {
        throw NoSuchTable(path);
    }
    Date Now() const override { return {}; }
};

}  // namespace vantor
