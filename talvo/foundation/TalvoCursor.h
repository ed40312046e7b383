// TalvoCursor: the abstract base of the container cursors.
//
// It has no data; the list, AVL tree, hash table and dictionary cursors
// override all thirteen operations below, kept in this slot order. The base
// bodies answer as an empty container would. The base does not touch the
// allocation balance: each derived cursor traces itself.
#pragma once

#include <talvo/foundation/TalvoExport.h>

class TALVO_API TalvoCursor {
public:
    TalvoCursor() = default;
    TalvoCursor(const TalvoCursor&) = default;
    TalvoCursor& operator=(const TalvoCursor&) = default;
    virtual ~TalvoCursor();

    virtual bool isBeforeFirstItem();               // base: true
    virtual bool isAfterLastItem();                 // base: true
    virtual bool isOnFirstItem();                   // base: true
    virtual bool isOnLastItem();                    // base: true
    virtual void resetOnFirstItem();                // base: nothing
    virtual void resetOnLastItem();                 // base: nothing
    virtual void resetInPosition(int position);     // base: nothing
    virtual void resetOnItem(void* item);           // base: nothing
    virtual void increment();                       // base: nothing
    virtual void decrement();                       // base: nothing
    virtual void* getItem();                        // base: null
    virtual void* removeItemAndIncrement();         // base: null
    virtual void* removeItemAndDecrement();         // base: null
};
