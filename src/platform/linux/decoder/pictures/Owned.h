#pragma once

#include <glib-object.h>
#include <memory>

namespace amberquill::desktop {

struct Unref {
    void operator()(gpointer object) const { ::g_object_unref(object); }
};

// A GObject that somebody else made for us.
template<typename T>
using Owned = std::unique_ptr<T, Unref>;

} // namespace amberquill::desktop
