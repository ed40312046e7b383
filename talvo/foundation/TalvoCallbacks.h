/// @file
/// Call-back types shared by the containers and the other subsystems.
///
/// Containers hold untyped Items (void*) and learn how to order, release,
/// copy or hash them through these plain function pointers.
#pragma once

/// Orders two Items: negative, zero or positive.
typedef int (*TalvoCompareFunction)(void* a, void* b);

/// Releases one Item. Every item class offers a static `free` of this shape.
typedef void (*TalvoFreeFunction)(void* item);

/// Returns a new, independently owned copy of an Item.
typedef void* (*TalvoCopyFunction)(void* item);

/// Maps an Item (and a caller's context) to the key a sort compares.
typedef void* (*TalvoAccessFunction)(void* item, void* context);

/// Reads the caller's own mark on an Item: non-zero when set.
typedef int (*TalvoTestFunction)(void* item);

/// Sets the caller's own mark on an Item to `flag`.
typedef void (*TalvoMarkFunction)(void* item, int flag);

/// Hashes an Item to a signed 32-bit value.
typedef int (*TalvoHashFunction)(void* item);

// --- Text and streams.

/// Drains or refills the buffer of a memory stream; may replace the buffer
/// pointer and its size through the two addresses.
typedef void (*TalvoStreamFlushFunction)(char** buffer, int* size);
