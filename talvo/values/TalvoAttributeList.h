// TalvoAttributeList: a TalvoList of TalvoAttribute items that it owns.
//
// Attributes keep their insertion order. Names need not be unique, but every
// operation below acts on the first attribute of a name (names compare as
// bytes; a null name matches only a null name). The getters take a default
// for an absent attribute; the setters append a new attribute at the end when
// the name is absent. Look-ups walk the list: O(n) each.
//
// The list's own operations (insertion, removal, sorting, cursors) stay
// available; whatever attribute they remove is the caller's to destroy.
// TalvoList's destructor is not virtual: delete an attribute list as a
// TalvoAttributeList (not through TalvoList::free) so its attributes go too.
#pragma once

#include <talvo/containers/TalvoList.h>
#include <talvo/values/TalvoAttribute.h>

class TALVO_API TalvoAttributeList : public TalvoList, public TalvoTracedAs<TalvoAttributeList> {
public:
    static constexpr const char* ClassName = "TalvoAttributeList";

    // An empty list.
    TalvoAttributeList();
    TalvoAttributeList(const TalvoAttributeList&) = delete;
    TalvoAttributeList& operator=(const TalvoAttributeList&) = delete;
    // Destroys every attribute, then the cells.
    ~TalvoAttributeList();

    // --- Look-up

    // The first attribute named `name`; null when none.
    TalvoAttribute* findAttribute(const char* name) const;
    bool hasAttribute(const char* name) const;
    // True when some attribute has the public bit.
    bool hasPublicAttribute() const;
    // False for an absent attribute, else the value's type test.
    bool isNilAttribute(const char* name) const;
    bool isBoolAttribute(const char* name) const;
    bool isIntAttribute(const char* name) const;
    bool isDoubleAttribute(const char* name) const;
    bool isStringAttribute(const char* name) const;
    bool isPointerAttribute(const char* name) const;

    // --- Getters

    // The attribute's own constant; null when absent.
    TalvoConstant* getValueOfAttribute(const char* name) const;
    // `defaultValue` when absent, else the value's conversion.
    bool getValueOfAttributeAsBool(const char* name, bool defaultValue) const;
    int getValueOfAttributeAsInt(const char* name, int defaultValue) const;
    double getValueOfAttributeAsDouble(const char* name, double defaultValue) const;
    // `defaultValue` when absent; the stored string (not a copy) of a string
    // value; null for any other value, whatever the default.
    const char* getValueOfAttributeAsString(const char* name, const char* defaultValue) const;
    void* getValueOfAttributeAsPointer(const char* name, void* defaultValue) const;
    // The pointer of a pointer value of `code`; null otherwise, and null for
    // an absent attribute too: the default is never returned (kept as is).
    void* getValueOfAttributeAsPointerOfCode(const char* name, int code, void* defaultValue) const;

    // --- Setters: replace the value of the first attribute of the name
    // (privacy and locality unchanged) or append a new attribute made by the
    // matching constructor. Each returns the attribute (null only when a new
    // one cannot be allocated).

    TalvoAttribute* setValueOfAttribute(const char* name);
    TalvoAttribute* setValueOfAttribute(const char* name, bool value);
    TalvoAttribute* setValueOfAttribute(const char* name, int value);
    TalvoAttribute* setValueOfAttribute(const char* name, double value);
    TalvoAttribute* setValueOfAttribute(const char* name, const char* value);
    TalvoAttribute* setValueOfAttribute(const char* name, void* pointer, TalvoFreeFunction free, int code);
    TalvoAttribute* setValueOfAttribute(const char* name, const TalvoConstant* value);

    // An existing attribute is incremented as by incrementValue; an absent
    // one is appended with the amount itself as its value (a constant is copied).
    TalvoAttribute* incrementValueOfAttribute(const char* name, int amount);
    TalvoAttribute* incrementValueOfAttribute(const char* name, double amount);
    TalvoAttribute* incrementValueOfAttribute(const char* name, const TalvoConstant* amount);
    // The int overload subtracts from an existing int or double value; an
    // absent attribute is appended with the amount itself, not its negation.
    // The double and constant overloads add and create exactly as the
    // increments do: only the int overload subtracts (kept on purpose).
    TalvoAttribute* decrementValueOfAttribute(const char* name, int amount);
    TalvoAttribute* decrementValueOfAttribute(const char* name, double amount);
    TalvoAttribute* decrementValueOfAttribute(const char* name, const TalvoConstant* amount);

    // --- Bulk operations

    // Removes and destroys the first attribute of that name; nothing when absent. O(n).
    void resetValueOfAttribute(const char* name);
    // For each attribute of `other` in order: setValueOfAttribute with its
    // name and a copy of its value, then copies its privacy and locality.
    // A null other does nothing. O(n * other).
    void setValuesOfAttributes(const TalvoAttributeList* other);
    // Removes and destroys every attribute whose privacy has a bit in common
    // with `privacyMask` and whose locality has one with `localityMask`. O(n).
    void resetValuesOfAttributes(unsigned privacyMask, unsigned localityMask);
    // Appends to `list` every attribute matching both masks, in order; they
    // stay owned by this list. A null list does nothing. O(n).
    void collectAttributes(TalvoList* list, unsigned privacyMask, unsigned localityMask) const;

private:
    // Appends `attribute` unless its allocation failed; returns it.
    TalvoAttribute* _append(TalvoAttribute* attribute);
};
