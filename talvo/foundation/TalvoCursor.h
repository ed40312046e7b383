/// @file
/// TalvoCursor: the abstract base of the container cursors.
///
/// It has no data; the list, AVL tree, hash table and dictionary cursors
/// override all thirteen operations below, kept in this slot order. The base
/// bodies answer as an empty container would. The base does not touch the
/// allocation balance: each derived cursor traces itself.
#pragma once

#include <talvo/foundation/TalvoExport.h>

/// A position in a container; each container's cursor overrides every operation.
class TALVO_API TalvoCursor {
public:
    /// A cursor with no container.
    TalvoCursor() = default;
    /// Copies nothing: the base has no data.
    TalvoCursor(const TalvoCursor&) = default;
    /// Assigns nothing: the base has no data.
    TalvoCursor& operator=(const TalvoCursor&) = default;
    /// Releases the cursor only, never its container.
    virtual ~TalvoCursor();

    /// True when the cursor is before the first Item. Base: true.
    virtual bool isBeforeFirstItem();
    /// True when the cursor is after the last Item. Base: true.
    virtual bool isAfterLastItem();
    /// True when the cursor is on the container's first Item. Base: true.
    virtual bool isOnFirstItem();
    /// True when the cursor is on the container's last Item. Base: true.
    virtual bool isOnLastItem();
    /// Moves onto the first Item (before and after it when the container is
    /// empty). Base: nothing.
    virtual void resetOnFirstItem();
    /// Moves onto the last Item (before and after it when the container is
    /// empty). Base: nothing.
    virtual void resetOnLastItem();
    /// Moves onto the Item at 1-based `position`; each container says where an
    /// out-of-range position leaves the cursor. Base: nothing.
    virtual void resetInPosition(int position);
    /// Moves onto the Item that is this very pointer; each container says
    /// where an absent Item leaves the cursor. Base: nothing.
    virtual void resetOnItem(void* item);
    /// Moves to the next Item, or after the last one. Base: nothing.
    virtual void increment();
    /// Moves to the previous Item, or before the first one. Base: nothing.
    virtual void decrement();
    /// The current Item; null when not on an Item. Base: null.
    virtual void* getItem();
    /// Removes the current Item from the container, moves on as increment
    /// does and returns the Item (not released); null and no change when not
    /// on an Item. Base: null.
    virtual void* removeItemAndIncrement();
    /// Removes the current Item, moves back as decrement does and returns the
    /// Item (not released); null and no change when not on an Item. Base: null.
    virtual void* removeItemAndDecrement();
};
