#pragma once

#include <string>

namespace vantor {

/// What made a file unusable.
struct FatalFormatFault {
    std::string File;
    int Record = 0;  ///< from 1
    std::string Expected;
};

/// The end of the program at once, with exit status 3: the intended reaction to a file that cannot be a counter
/// file and to lost data on the serial line.
class ApplicationEnd {
public:
    virtual ~ApplicationEnd() = default;
    [[noreturn]] virtual void EndAtOnce(const FatalFormatFault& fault) = 0;
};

}  // namespace vantor
