/// @file
/// TalvoRawString: operations on plain NUL-terminated 8-bit strings.
///
/// A raw string handed out by the library is a separately allocated,
/// zero-filled block traced as "TalvoRawString"; the caller releases it with
/// TalvoRawString::free, which is also the free call-back for containers of
/// strings. Bytes compare as unsigned characters and a null string sorts
/// before every other.
///
/// The pattern operations at the end are implemented by the regular-expression
/// subsystem (talvo/regex/); each compiles its pattern for one call.
#pragma once

#include <talvo/foundation/TalvoExport.h>

class TalvoList;

/// Static operations on NUL-terminated strings; results are new raw strings.
class TALVO_API TalvoRawString {
public:
    /// Assigns nothing: the class has no state.
    TalvoRawString& operator=(const TalvoRawString&) { return *this; }

    /// @name Allocation and building
    /// Every result is new and owned by the caller.
    /// @{

    /// A zero-filled block of `size` bytes (the caller counts the terminator);
    /// a size below 1 allocates one byte.
    static char* allocate(int size);
    /// Releases a raw string. The release is counted before the null test, so
    /// freeing null still lowers the balance (and is reported to the dump file).
    static void free(void* string);
    /// A new copy of `string`; null for null.
    static char* copy(const char* string);
    /// a followed by b (a null part counts as empty).
    static char* concat(const char* a, const char* b);
    /// a, b and c in turn (a null part counts as empty).
    static char* concat(const char* a, const char* b, const char* c);
    /// Bytes before the terminator; 0 for null.
    static int getLength(const char* string);
    /// Copies `source` with its terminator over `destination`, which must have
    /// room. Nothing happens when either is null.
    static void overwrite(char* destination, const char* source);
    /// @}

    /// @name Conversions
    /// @{

    /// The value formatted with "%d".
    static char* toString(int value);
    /// The value formatted with "%g" (six significant digits).
    static char* toString(double value);
    /// atoi's reading: white space, optional sign, digits; 0 when none or null.
    /// Values beyond the int range saturate.
    static int toInt(const char* string);
    /// True exactly when "%d" of toInt(string) reproduces the string.
    static bool isInt(const char* string);
    /// atof's reading; 0 for null.
    static double toDouble(const char* string);
    /// True when atof reads non-zero (or not-a-number); when it reads zero,
    /// true only for exactly "0", "0.0" or "0.00". Lenient on purpose.
    static bool isDouble(const char* string);
    /// @}

    /// @name Compare call-backs on two Items that are raw strings
    /// @{

    /// -1, 0 or 1 by unsigned bytes; null sorts first, two nulls are equal.
    static int compare(void* a, void* b);
    /// compare(b, a), with null sorting last.
    static int reverseCompare(void* a, void* b);
    /// 1, 0 or -1 by atof of both; -1 also when either reads as not-a-number.
    /// A null string reads as 0.
    static int compareNumerically(void* a, void* b);
    /// compareNumerically(b, a).
    static int reverseCompareNumerically(void* a, void* b);
    /// @}

    /// @name Predicates
    /// Null sorts before everything and two nulls are equal.
    /// @{

    /// True when compare(a, b) is 0.
    static bool isEqual(const char* a, const char* b);
    /// True when compare(a, b) is not 0.
    static bool isDifferent(const char* a, const char* b);
    /// True when compare(a, b) is negative.
    static bool isLessThan(const char* a, const char* b);
    /// True when compare(a, b) is not positive.
    static bool isLessOrEqual(const char* a, const char* b);
    /// True when compare(a, b) is positive.
    static bool isGreaterThan(const char* a, const char* b);
    /// True when compare(a, b) is not negative.
    static bool isGreaterOrEqual(const char* a, const char* b);

    /// True when `string` starts with `prefix`; the empty prefix always is.
    /// False when either is null.
    static bool isPrefix(const char* prefix, const char* string);
    /// True when `string` ends with `suffix`; the empty suffix always is.
    /// False when either is null.
    static bool isSuffix(const char* suffix, const char* string);
    /// @}

    /// @name Pattern operations
    /// Subject first, then the pattern.
    /// @{

    /// Byte offset of the first match, -1 when none (or the pattern is bad).
    static int matchPattern(const char* string, const char* pattern);
    /// A new copy of the first match; null when there is none.
    static char* extractPattern(const char* string, const char* pattern);
    /// A new list of new strings: the pieces between the matches. The caller
    /// owns the list and its strings.
    static TalvoList* splitWithPattern(const char* string, const char* pattern);
    /// A new string with the first match replaced (back references expanded).
    static char* substitutePattern(const char* string, const char* pattern, const char* replacement);
    /// A new string with every match replaced.
    static char* substitutePatterns(const char* string, const char* pattern, const char* replacement);
    /// @}
};
