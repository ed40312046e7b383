/// @file
/// TalvoComparator: a comparison object, accepted wherever a compare call-back is.
///
/// Derive from it and override `compareItems`; containers call it through the
/// virtual slot (quickSort with a comparator, searchItemWithComparator, ...).
#pragma once

#include <talvo/foundation/TalvoObject.h>

/// A comparison object: override compareItems to order Items.
class TALVO_API TalvoComparator : public TalvoObject<TalvoComparator> {
public:
    static constexpr const char* ClassName = "TalvoComparator";  ///< Name in the allocation trace.

    /// A comparator that orders Items by address.
    TalvoComparator() = default;
    /// Releases nothing but the comparator itself.
    virtual ~TalvoComparator();

    /// Negative, zero or positive. The base compares the two pointer values:
    /// the signed 32-bit difference a - b.
    virtual int compareItems(void* a, void* b);
};
