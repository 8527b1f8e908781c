#pragma once

#include <glib-object.h>

#include <memory>

namespace vantor {

struct UnrefGObject {
    void operator()(void* object) const { g_object_unref(object); }
};

/// The owner of one reference to an object of the GLib kind.
template <class T>
using GObjectPointer = std::unique_ptr<T, UnrefGObject>;

}  // namespace vantor
