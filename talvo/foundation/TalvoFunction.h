/// @file
/// TalvoFunction: ready-made call-backs that fit the container interfaces.
#pragma once

#include <talvo/foundation/TalvoExport.h>

/// Static call-backs for containers; the class has no state.
class TALVO_API TalvoFunction {
public:
    /// Assigns nothing: the class has no state.
    TalvoFunction& operator=(const TalvoFunction&) { return *this; }

    /// Access call-back that maps an item to itself (the context is ignored).
    static void* selfAccess(void* item, void* context);
    /// Compares two addresses as unsigned numbers: -1, 0 or 1.
    static int compareAddress(void* a, void* b);
    /// Free call-back that releases nothing, for items a container must not free.
    static void doNothing(void* item);
    /// Appends `text` to "trace.txt" in the current directory; silent when the
    /// file cannot be opened or the text is null.
    static void traceMessage(const char* text);
};
