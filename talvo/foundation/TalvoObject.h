/// @file
/// The allocation convention every class of the library follows.
///
/// A class gets it with one base:
///
///     class TALVO_API TalvoList : public TalvoObject<TalvoList> {
///     public:
///         static constexpr const char* ClassName = "TalvoList";
///         ...
///
/// `new` then takes zero-filled storage from TalvoMemoryManager::newCell (a
/// failed allocation gives null and skips the constructor), `delete` releases
/// it through deleteCell, and construction and destruction are reported to
/// traceNew / traceDelete under the class's own name. The base is empty and
/// has no virtual function, so it adds neither data nor a vtable.
///
/// A class that derives from another traced class adds TalvoTracedAs<Self> to
/// report its own name as well, as each constructor of the hierarchy does:
///
///     class TALVO_API TalvoFileStream : public TalvoStream,
///                                       public TalvoTracedAs<TalvoFileStream> {
///
/// Copy construction is traced too, so copies keep the balance even.
#pragma once

#include <talvo/foundation/TalvoMemoryManager.h>

#include <cstddef>

/// Reports construction and destruction of `Self` under Self::ClassName.
template <class Self>
class TalvoTracedAs {
protected:
    /// Counts the new object under Self::ClassName.
    // The empty base shares its address with the object in single inheritance;
    // casting down to Self here would read an object not yet constructed.
    TalvoTracedAs() noexcept { TalvoMemoryManager::traceNew(this, Self::ClassName); }
    /// Counts a copy as a new object, so copies keep the balance even.
    TalvoTracedAs(const TalvoTracedAs&) noexcept { TalvoMemoryManager::traceNew(this, Self::ClassName); }
    /// Assignment changes nothing: the object stays counted once.
    TalvoTracedAs& operator=(const TalvoTracedAs&) noexcept { return *this; }
    /// Counts the release of the object under Self::ClassName.
    ~TalvoTracedAs() { TalvoMemoryManager::traceDelete(this, Self::ClassName); }
};

/// Zero-filled, traced storage for a root class of the library.
template <class Self>
class TalvoObject : public TalvoTracedAs<Self> {
public:
    /// Zero-filled storage from TalvoMemoryManager::newCell; null when the
    /// allocation fails, and the constructor is then skipped.
    static void* operator new(std::size_t size) noexcept { return TalvoMemoryManager::newCell(size); }
    /// Returns storage from `new` to TalvoMemoryManager::deleteCell.
    static void operator delete(void* pointer) noexcept { TalvoMemoryManager::deleteCell(pointer); }
    /// Placement form for callers that manage storage themselves.
    static void* operator new(std::size_t, void* place) noexcept { return place; }
    /// Placement delete: releases nothing.
    static void operator delete(void*, void*) noexcept {}

protected:
    /// The base holds no data; TalvoTracedAs counts the object.
    TalvoObject() noexcept = default;
    /// Copies nothing; TalvoTracedAs counts the copy.
    TalvoObject(const TalvoObject&) noexcept = default;
    /// Assigns nothing.
    TalvoObject& operator=(const TalvoObject&) noexcept = default;
    /// Releases nothing; TalvoTracedAs counts the release.
    ~TalvoObject() = default;
};
