#pragma once

#include <QObject>
#include <exception>
#include <new>
#include <string>
#include <type_traits>
#include <utility>

#include "core/RunTimeError.h"
#include "core/ports/MessageBoxes.h"

namespace vantor {

/// The one boundary around what a user starts: a run-time error, or memory that does not suffice, is shown in a message
/// box, the operation is abandoned and the program goes on. True where nothing had to be shown.
template <class Action>
bool Guarded(MessageBoxes& messages, Action&& action) {
    try {
        std::forward<Action>(action)();
        return true;
    } catch (const RunTimeError& error) {
        messages.Tell(error.Message(), MessageIcon::Critical);
    } catch (const std::bad_alloc&) {
        messages.Tell(OutOfMemoryError().Message(), MessageIcon::Critical);
    } catch (const std::exception& error) {
        messages.Tell(std::string("This was abandoned: ") + error.what(), MessageIcon::Critical);
    }
    return false;
}

/// Calls an action with a signal's arguments, or without them where it takes none.
template <class Action, class... Arguments>
void CallWith(Action& action, Arguments&&... arguments) {
    if constexpr (std::is_invocable_v<Action&, Arguments...>)
        action(std::forward<Arguments>(arguments)...);
    else
        action();
}

/// Connects a signal to an action that runs guarded, for as long as `owner` lives. The action takes the signal's
/// arguments or none.
template <class Sender, class Signal, class Action>
void Connect(Sender* sender, Signal signal, QObject* owner, MessageBoxes& messages, Action action) {
    QObject::connect(sender, signal, owner, [&messages, action = std::move(action)](auto&&... arguments) mutable {
        Guarded(messages, [&] { CallWith(action, std::forward<decltype(arguments)>(arguments)...); });
    });
}

}  // namespace vantor
