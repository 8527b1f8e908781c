#pragma once

#include "core/ports/FileSystem.h"
#include "core/ports/RecordSet.h"

namespace vantor {

/// Databases of Jet 3 and Jet 4, read through libmdb. Columns of yes/no (-1 or 0), byte, integer, long, currency,
/// decimal, single (9 significant digits), double (17), date and text convert; one of another type fails with error 13
/// when it holds a value. A file is checked before libmdb sees it, and a table that yields fewer records than it counts
/// ends with error 13: damage is reported, not passed over.
class MdbDatabase : public DatabaseEngine {
public:
    /// `files` looks for the database and checks it; the folders of a path must be written as they are stored.
    explicit MdbDatabase(const FileSystem& files) : files_(files) {}

    std::unique_ptr<RecordSet> OpenTable(const std::string& path, const std::string& table) const override;

private:
    const FileSystem& files_;
};

}  // namespace vantor
