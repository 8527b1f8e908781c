#pragma once

#include "core/ports/Programs.h"

namespace vantor {

/// Programs that the search path finds.
class QtPrograms : public Programs {
public:
    std::unique_ptr<RunningProgram> Start(const std::string& name, const std::vector<std::string>& arguments,
                                          const ProgramLimits& limits) const override;
};

}  // namespace vantor
