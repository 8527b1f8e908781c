#pragma once

#include <memory>
#include <string>

namespace vantor {

/// The records of one table, in storage order, their fields by position from 0. Before the first record at first.
class RecordSet {
public:
    virtual ~RecordSet() = default;
    virtual int FieldCount() const = 0;
    /// False after the last record.
    virtual bool Next() = 0;
    /// A field of the current record as text: a number with all its digits and a point, a date and time as
    /// "MM/DD/YYYY HH:MM:SS", an empty field as "". UTF-8.
    virtual std::string Text(int position) const = 0;
};

/// Reads databases of the desktop's database engine (".mdb").
class DatabaseEngine {
public:
    virtual ~DatabaseEngine() = default;
    /// Error 53 for a missing file, 13 with the reason for one that is no database or has no such table.
    virtual std::unique_ptr<RecordSet> OpenTable(const std::string& path, const std::string& table) const = 0;
};

/// Reads databases as they are copied from the handheld (".pdb").
class DeviceDatabase {
public:
    virtual ~DeviceDatabase() = default;
    /// Errors as of OpenTable; `name` is that of the database in the file.
    virtual std::unique_ptr<RecordSet> Open(const std::string& path, const std::string& name) const = 0;
};

}  // namespace vantor
