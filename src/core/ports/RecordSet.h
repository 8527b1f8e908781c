#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "core/RunTimeError.h"

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

    // Of a file that was cut short, known when Next has returned false.
    /// Bytes of an incomplete record at the end of the file.
    virtual std::uint64_t DroppedBytes() const { return 0; }
    /// Records that the file tells of and does not hold whole.
    virtual std::size_t MissingRecords() const { return 0; }
};

/// Error 13 of a sound database without the table.
class NoSuchTable : public RunTimeError {
public:
    explicit NoSuchTable(std::string place) : RunTimeError(ErrorNumber::TypeMismatch, std::move(place)) {}
};

/// Reads databases of the desktop's database engine (".mdb").
class DatabaseEngine {
public:
    virtual ~DatabaseEngine() = default;
    /// Error 53 for a missing file, 13 with the reason for one that is no database, NoSuchTable for one without it.
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
