/// @file
/// TalvoAttributeList: a TalvoList of TalvoAttribute items that it owns.
///
/// Attributes keep their insertion order. Names need not be unique, but every
/// operation below acts on the first attribute of a name (names compare as
/// bytes; a null name matches only a null name). The getters take a default
/// for an absent attribute; the setters append a new attribute at the end when
/// the name is absent. Look-ups walk the list: O(n) each.
///
/// The list's own operations (insertion, removal, sorting, cursors) stay
/// available; whatever attribute they remove is the caller's to destroy.
/// TalvoList's destructor is not virtual: delete an attribute list as a
/// TalvoAttributeList (not through TalvoList::free) so its attributes go too.
#pragma once

#include <talvo/containers/TalvoList.h>
#include <talvo/values/TalvoAttribute.h>

/// A list of attributes it owns, looked up by name.
class TALVO_API TalvoAttributeList : public TalvoList, public TalvoTracedAs<TalvoAttributeList> {
public:
    static constexpr const char* ClassName = "TalvoAttributeList";  ///< Name in the allocation trace.

    /// An empty list.
    TalvoAttributeList();
    /// Not copyable: the list owns its attributes.
    TalvoAttributeList(const TalvoAttributeList&) = delete;
    /// Not assignable: the list owns its attributes.
    TalvoAttributeList& operator=(const TalvoAttributeList&) = delete;
    /// Destroys every attribute, then the cells.
    ~TalvoAttributeList();

    /// @name Look-up
    /// @{

    /// The first attribute named `name`; null when none.
    TalvoAttribute* findAttribute(const char* name) const;
    /// True when an attribute is named `name`.
    bool hasAttribute(const char* name) const;
    /// True when some attribute has the public bit.
    bool hasPublicAttribute() const;
    /// True when the attribute exists and its value is nil.
    bool isNilAttribute(const char* name) const;
    /// True when the attribute exists and its value is a bool.
    bool isBoolAttribute(const char* name) const;
    /// True when the attribute exists and its value is an int.
    bool isIntAttribute(const char* name) const;
    /// True when the attribute exists and its value is a double.
    bool isDoubleAttribute(const char* name) const;
    /// True when the attribute exists and its value is a string.
    bool isStringAttribute(const char* name) const;
    /// True when the attribute exists and its value is a pointer.
    bool isPointerAttribute(const char* name) const;
    /// @}

    /// @name Getters
    /// @{

    /// The attribute's own constant; null when absent.
    TalvoConstant* getValueOfAttribute(const char* name) const;
    /// `defaultValue` when absent, else the value's TalvoConstant::toBool.
    bool getValueOfAttributeAsBool(const char* name, bool defaultValue) const;
    /// `defaultValue` when absent, else the value's TalvoConstant::toInt.
    int getValueOfAttributeAsInt(const char* name, int defaultValue) const;
    /// `defaultValue` when absent, else the value's TalvoConstant::toDouble.
    double getValueOfAttributeAsDouble(const char* name, double defaultValue) const;
    /// `defaultValue` when absent; the stored string (not a copy) of a string
    /// value; null for any other value, whatever the default.
    const char* getValueOfAttributeAsString(const char* name, const char* defaultValue) const;
    /// `defaultValue` when absent, else the value's TalvoConstant::toPointer
    /// (owned by the attribute).
    void* getValueOfAttributeAsPointer(const char* name, void* defaultValue) const;
    /// The pointer of a pointer value of `code`; null otherwise, and null for
    /// an absent attribute too: the default is never returned (kept as is).
    void* getValueOfAttributeAsPointerOfCode(const char* name, int code, void* defaultValue) const;
    /// @}

    /// @name Setters
    /// Replace the value of the first attribute of the name (privacy and
    /// locality unchanged) or append a new attribute made by the matching
    /// constructor. Each returns the attribute (null only when a new one cannot
    /// be allocated).
    /// @{

    /// Sets nil.
    TalvoAttribute* setValueOfAttribute(const char* name);
    /// Sets a bool.
    TalvoAttribute* setValueOfAttribute(const char* name, bool value);
    /// Sets an int.
    TalvoAttribute* setValueOfAttribute(const char* name, int value);
    /// Sets a double.
    TalvoAttribute* setValueOfAttribute(const char* name, double value);
    /// Sets a copy of the string.
    TalvoAttribute* setValueOfAttribute(const char* name, const char* value);
    /// Sets a pointer value, taken over with its free call-back and code.
    TalvoAttribute* setValueOfAttribute(const char* name, void* pointer, TalvoFreeFunction free, int code);
    /// Sets a copy of the constant (nil for null).
    TalvoAttribute* setValueOfAttribute(const char* name, const TalvoConstant* value);

    /// An existing attribute is incremented as by incrementValue; an absent
    /// one is appended with the amount itself as its value.
    TalvoAttribute* incrementValueOfAttribute(const char* name, int amount);
    /// The same with a double amount.
    TalvoAttribute* incrementValueOfAttribute(const char* name, double amount);
    /// The same with a constant amount (an absent attribute gets a copy of it).
    TalvoAttribute* incrementValueOfAttribute(const char* name, const TalvoConstant* amount);
    /// Subtracts from an existing int or double value; an absent attribute is
    /// appended with the amount itself, not its negation. Only this overload
    /// subtracts (kept on purpose).
    TalvoAttribute* decrementValueOfAttribute(const char* name, int amount);
    /// ADDS and creates exactly as incrementValueOfAttribute does (kept on purpose).
    TalvoAttribute* decrementValueOfAttribute(const char* name, double amount);
    /// ADDS and creates exactly as incrementValueOfAttribute does (kept on purpose).
    TalvoAttribute* decrementValueOfAttribute(const char* name, const TalvoConstant* amount);
    /// @}

    /// @name Bulk operations
    /// @{

    /// Removes and destroys the first attribute of that name; nothing when absent. O(n).
    void resetValueOfAttribute(const char* name);
    /// For each attribute of `other` in order: setValueOfAttribute with its
    /// name and a copy of its value, then copies its privacy and locality.
    /// A null other does nothing. O(n * other).
    void setValuesOfAttributes(const TalvoAttributeList* other);
    /// Removes and destroys every attribute whose privacy has a bit in common
    /// with `privacyMask` and whose locality has one with `localityMask`. O(n).
    void resetValuesOfAttributes(unsigned privacyMask, unsigned localityMask);
    /// Appends to `list` every attribute matching both masks, in order; they
    /// stay owned by this list. A null list does nothing. O(n).
    void collectAttributes(TalvoList* list, unsigned privacyMask, unsigned localityMask) const;
    /// @}

private:
    /// Appends `attribute` unless its allocation failed; returns it.
    TalvoAttribute* _append(TalvoAttribute* attribute);
};
