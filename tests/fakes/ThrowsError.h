#pragma once

#include <gtest/gtest.h>

#include <optional>

#include "core/RunTimeError.h"

namespace vantor {

/// The number of the run-time error that an action ends with; nothing when it ends well.
template <class Action>
std::optional<ErrorNumber> ErrorOf(Action&& action) {
    try {
        action();
    } catch (const RunTimeError& error) {
        return error.Number();
    }
    return std::nullopt;
}

}  // namespace vantor

/// The statement ends with that run-time error, for example EXPECT_ERROR(Overflow, Round16(40000)).
#define EXPECT_ERROR(number, statement) \
    EXPECT_EQ(::vantor::ErrorOf([&] { static_cast<void>(statement); }), ::vantor::ErrorNumber::number) << #statement
