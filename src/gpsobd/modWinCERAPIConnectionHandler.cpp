#include "gpsobd/modWinCERAPIConnectionHandler.h"

#include "core/RunTimeError.h"

namespace vantor {
namespace {

bool Answers(RemoteApi& api, RemoteApi::RapiInit& record) {
    constexpr std::uint32_t LongestWait = 10000;  // milliseconds
    record = {};
    return api.CeRapiInitEx(record) == 0 && record.InitResult == 0 &&
           api.WaitForSingleObject(record.InitEvent, LongestWait) == RemoteApi::WaitResult::Signalled &&
           record.InitResult == 0;
}

/// The attempt is ended at once where it fails, with an error or without.
bool Connects(RemoteApi& api, RemoteApi::RapiInit& record) {
    bool answers = false;
    try {
        answers = Answers(api, record);
    } catch (const RunTimeError&) {
        answers = false;
    }
    if (!answers) api.CeRapiUninit();
    return answers;
}

}  // namespace

bool Initialize(HandheldState& state, RemoteApi& api) {
    if (state.ConnectionOpen) return false;
    try {
        state.ConnectionOpen = Connects(api, state.InitRecord);
    } catch (const RunTimeError&) {
        return false;
    }
    return state.ConnectionOpen;
}

void Terminate(HandheldState& state, RemoteApi& api) {
    if (!state.ConnectionOpen) return;
    state.ConnectionOpen = false;
    api.CeRapiUninit();
}

void DelayXMsec(std::int16_t milliseconds, const std::function<double()>& timer,
                const std::function<void()>& processEvents) {
    const auto target = static_cast<float>(timer() + milliseconds / 1000.0);
    do {
        processEvents();
    } while (!(timer() > target));
}

}  // namespace vantor
