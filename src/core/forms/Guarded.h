#pragma once

#include <QObject>
#include <utility>

#include "core/RunTimeError.h"
#include "core/ports/MessageBoxes.h"

namespace vantor {

/// The one boundary around what a user starts: a run-time error is shown in a message box, the operation is
/// abandoned and the program goes on.
template <class Action>
void Guarded(MessageBoxes& messages, Action&& action) {
    try {
        std::forward<Action>(action)();
    } catch (const RunTimeError& error) {
        messages.Tell(error.Message(), MessageIcon::Critical);
    }
}

/// Connects a signal to an action that runs guarded, for as long as `owner` lives. The action may take the
/// signal's leading arguments or none.
template <class Sender, class Signal, class Action>
void Connect(Sender* sender, Signal signal, QObject* owner, MessageBoxes& messages, Action action) {
    QObject::connect(sender, signal, owner, [&messages, action = std::move(action)](auto&&... arguments) mutable {
        Guarded(messages, [&] {
            if constexpr (std::is_invocable_v<Action&, decltype(arguments)...>)
                action(std::forward<decltype(arguments)>(arguments)...);
            else
                action();
        });
    });
}

}  // namespace vantor
