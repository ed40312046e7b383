/// @file
/// TalvoInteger and TalvoDouble: boxed numbers used as container items.
///
/// A box is a separately allocated int or double, traced as "TalvoInteger" or
/// "TalvoDouble". The two classes give `geq` and `leq` opposite senses on
/// purpose: TalvoInteger::geq is positive when the first value is greater,
/// TalvoDouble::geq when the first value is smaller.
#pragma once

#include <talvo/foundation/TalvoExport.h>

/// Boxed int: static operations on a separately allocated int.
class TALVO_API TalvoInteger {
public:
    /// Assigns nothing: the class has no state.
    TalvoInteger& operator=(const TalvoInteger&) { return *this; }

    /// A new box holding `value`, owned by the caller (release with `free`).
    /// Null after "Memory overflow." in the dump file.
    static int* allocate(int value);
    /// Releases a box. The release is counted before the null test, so freeing
    /// null still lowers the balance.
    static void free(void* box);
    /// A new box with the same value; null for a null box.
    static void* copy(void* box);
    /// *a - *b, wrapping in 32 bits. A null box reads as 0.
    static int geq(void* a, void* b);
    /// *b - *a, wrapping in 32 bits. A null box reads as 0.
    static int leq(void* a, void* b);
};

/// Boxed double: static operations on a separately allocated double.
class TALVO_API TalvoDouble {
public:
    /// Assigns nothing: the class has no state.
    TalvoDouble& operator=(const TalvoDouble&) { return *this; }

    /// A new box holding `value`, owned by the caller (release with `free`);
    /// null when the allocation fails.
    static double* allocate(double value);
    /// Releases a box; freeing null still lowers the balance.
    static void free(void* box);
    /// A new box with the same value; null for a null box.
    static void* copy(void* box);
    /// 1 when *a < *b, -1 when *a > *b, 0 when equal or unordered. A null box
    /// reads as 0.
    static int geq(void* a, void* b);
    /// -1 when *a < *b, 1 when *a > *b, 0 when equal or unordered. A null box
    /// reads as 0.
    static int leq(void* a, void* b);
};
