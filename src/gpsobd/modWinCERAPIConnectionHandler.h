#pragma once

#include <cstdint>
#include <functional>

#include "core/ApplicationState.h"
#include "core/ports/RemoteApi.h"

namespace vantor {

/// Opens the connection to the handheld, waiting for it at most 10 seconds. False when there is none to be had, and
/// when one is open already: who wants a fresh connection calls Terminate first. Run-time errors count as no
/// connection.
bool Initialize(HandheldState& state, RemoteApi& api);

/// Ends the connection if one is open.
void Terminate(HandheldState& state, RemoteApi& api);

/// Processes events until the given time has passed by `timer`, the seconds since midnight. A wait that reaches
/// midnight does not end by itself, since the timer begins anew.
void DelayXMsec(std::int16_t milliseconds, const std::function<double()>& timer,
                const std::function<void()>& processEvents);

}  // namespace vantor
