#pragma once

#include "core/ports/FileSystem.h"
#include "core/ports/RecordSet.h"

namespace vantor {

/// Databases in the public Palm database container: a big-endian header of 78 bytes, an entry of 8 bytes a record, the
/// records. A record is nine texts in Windows-1252, each ended by a NUL byte; records marked as deleted are passed
/// over. The container is checked before it is trusted: opening fails with error 13 and the reason for one with another
/// name (NoSuchTable), of another kind, cut short before its second record, or with entries that do not lie in order;
/// so does reading a record that is not nine texts. Of one that was cut later the whole records are read. A database
/// without records is an empty record set.
class PalmDatabase : public DeviceDatabase {
public:
    explicit PalmDatabase(const FileSystem& files) : files_(files) {}

    std::unique_ptr<RecordSet> Open(const std::string& path, const std::string& name) const override;

private:
    const FileSystem& files_;
};

}  // namespace vantor
