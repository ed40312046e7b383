/// @file
/// TalvoAttribute: a named TalvoConstant with privacy and locality flags.
///
/// Layout, in order: the name (a private copy owned by the attribute), the
/// value (a TalvoConstant held inside the attribute and traced on its own),
/// the privacy and the locality. The name must stay the first member: the
/// class is standard-layout so that TalvoHandle's key comparisons read it
/// through an untyped pointer, as they read a handle's key.
///
/// Privacy and locality are bit sets selected by masks (doesPrivacyMatch,
/// doesLocalityMatch). A new attribute is local, and public unless its value
/// is a pointer, which makes it private.
#pragma once

#include <talvo/values/TalvoConstant.h>

/// A named TalvoConstant with privacy and locality flags.
class TALVO_API TalvoAttribute : public TalvoObject<TalvoAttribute> {
public:
    static constexpr const char* ClassName = "TalvoAttribute";  ///< Name in the allocation trace.

    /// Privacy bits: Public, or Private (the default for a pointer value).
    enum Privacy { Public = 1, Private = 2 };
    /// Locality bits: Local (the default), Inherited or Synthesized.
    enum Locality { Local = 1, Inherited = 2, Synthesized = 4 };

    /// Each constructor copies the name (null stays null) and makes a local
    /// attribute. This one holds nil and is public.
    explicit TalvoAttribute(const char* name);
    /// A public bool attribute.
    TalvoAttribute(const char* name, bool value);
    /// A public int attribute.
    TalvoAttribute(const char* name, int value);
    /// A public double attribute.
    TalvoAttribute(const char* name, double value);
    /// A public string attribute holding a copy of `value`.
    TalvoAttribute(const char* name, const char* value);
    /// A private pointer attribute that takes over `pointer`, released later
    /// by `free` (which must not be null).
    TalvoAttribute(const char* name, void* pointer, TalvoFreeFunction free, int code);
    /// An attribute holding a copy of `value` made by TalvoConstant::set
    /// (nil for null); private for a pointer value, public otherwise.
    TalvoAttribute(const char* name, const TalvoConstant* value);
    /// Not copyable: the attribute owns its name and value.
    TalvoAttribute(const TalvoAttribute&) = delete;
    /// Not assignable: the attribute owns its name and value.
    TalvoAttribute& operator=(const TalvoAttribute&) = delete;
    /// Releases the name and the value.
    ~TalvoAttribute();

    /// Destroys an attribute given as an Item; null is ignored.
    static void free(void* attribute);

    /// The name itself (not a copy), owned by the attribute.
    char* getName() const { return _name; }
    /// A new copy of the name, owned by the caller.
    char* copyName() const;

    /// @name Type tests and getters
    /// The value's tests and conversions.
    /// @{

    /// True when the value is nil.
    bool isNil() const { return _value.isNil(); }
    /// True when the value is a bool.
    bool isBool() const { return _value.isBool(); }
    /// True when the value is an int.
    bool isInt() const { return _value.isInt(); }
    /// True when the value is a double.
    bool isDouble() const { return _value.isDouble(); }
    /// True when the value is an int or a double.
    bool isNum() const { return _value.isNum(); }
    /// True when the value is a string.
    bool isString() const { return _value.isString(); }
    /// True when the value is a pointer.
    bool isPointer() const { return _value.isPointer(); }
    /// The embedded constant itself, owned by the attribute.
    TalvoConstant* getValue() { return &_value; }
    /// The value's TalvoConstant::toBool.
    bool getValueAsBool() const { return _value.toBool(); }
    /// The value's TalvoConstant::toInt.
    int getValueAsInt() const { return _value.toInt(); }
    /// The value's TalvoConstant::toDouble.
    double getValueAsDouble() const { return _value.toDouble(); }
    /// The stored string (not a copy) of a string value; null otherwise.
    char* getValueAsString() const { return _value.toString(); }
    /// The value's TalvoConstant::toPointer (still owned by the attribute).
    void* getValueAsPointer() { return _value.toPointer(); }
    /// The pointer when the value is a pointer of `code`, else null.
    void* getValueAsPointerOfCode(int code) const { return _value.toPointerOfCode(code); }
    /// @}

    /// @name Setters
    /// The constant's set family; privacy and locality unchanged.
    /// @{

    /// Sets the value to nil.
    void setValue() { _value.set(); }
    /// Sets a bool value.
    void setValue(bool value) { _value.set(value); }
    /// Sets an int value.
    void setValue(int value) { _value.set(value); }
    /// Sets a double value.
    void setValue(double value) { _value.set(value); }
    /// Sets a string value: a copy of `value`.
    void setValue(const char* value) { _value.set(value); }
    /// Sets a pointer value, taking over `pointer` (released later by `free`).
    void setValue(void* pointer, TalvoFreeFunction free, int code) { _value.set(pointer, free, code); }
    /// Sets a copy of `value` made by TalvoConstant::set (nil for null).
    void setValue(const TalvoConstant* value) { _value.set(value); }

    /// TalvoConstant::inc: an int or double value grows, others stay.
    void incrementValue(int amount) { _value.inc(amount); }
    /// TalvoConstant::inc: a double grows, an int becomes the double sum,
    /// others stay.
    void incrementValue(double amount) { _value.inc(amount); }
    /// TalvoConstant::inc by a number constant; others and null change nothing.
    void incrementValue(const TalvoConstant* amount) { _value.inc(amount); }
    /// Subtracts `amount` from an int or double value; others stay. Only this
    /// overload subtracts: the double and constant overloads add, exactly as
    /// incrementValue does. Callers rely on this asymmetry.
    void decrementValue(int amount) { _value.dec(amount); }
    /// ADDS `amount`, as incrementValue(double) does (kept, see above).
    void decrementValue(double amount) { _value.inc(amount); }
    /// ADDS `amount`, as incrementValue(const TalvoConstant*) does (kept, see above).
    void decrementValue(const TalvoConstant* amount) { _value.inc(amount); }
    /// @}

    /// @name Comparisons
    /// Negative, zero or positive.
    /// @{

    /// The value's TalvoConstant::compare(bool).
    int compareValue(bool value) const { return _value.compare(value); }
    /// The value's TalvoConstant::compare(int).
    int compareValue(int value) const { return _value.compare(value); }
    /// The value's TalvoConstant::compare(double).
    int compareValue(double value) const { return _value.compare(value); }
    /// The value's TalvoConstant::compare(const char*).
    int compareValue(const char* value) const { return _value.compare(value); }
    /// The value's TalvoConstant::compare(void*).
    int compareValue(void* value) const { return _value.compare(value); }
    /// The value's TalvoConstant::compare(const TalvoConstant*); null compares as nil.
    int compareValue(const TalvoConstant* value) const { return _value.compare(value); }
    /// Own value against other's (against nil for a null other).
    int compareValues(const TalvoAttribute* other) const;
    /// By name with the key rule (null first, unsigned bytes), then by value.
    int compare(const TalvoAttribute* other) const;
    /// a->compare(b): the compare call-back for containers of attributes; a
    /// null `a` sorts first, two nulls are equal.
    static int compare(void* a, void* b);
    /// @}

    /// @name Flags
    /// The tests read single bits.
    /// @{

    /// The privacy bits.
    Privacy getPrivacy() const { return _privacy; }
    /// True when the Public bit is set.
    bool isPublic() const { return (_privacy & Public) != 0; }
    /// True when the Private bit is set.
    bool isPrivate() const { return (_privacy & Private) != 0; }
    /// Replaces the privacy bits.
    void setPrivacy(Privacy privacy) { _privacy = privacy; }
    /// The locality bits.
    Locality getLocality() const { return _locality; }
    /// True when the Local bit is set.
    bool isLocal() const { return (_locality & Local) != 0; }
    /// True when the Inherited bit is set.
    bool isInherited() const { return (_locality & Inherited) != 0; }
    /// True when the Synthesized bit is set.
    bool isSynthesized() const { return (_locality & Synthesized) != 0; }
    /// Replaces the locality bits.
    void setLocality(Locality locality) { _locality = locality; }
    /// True when the privacy bits and `mask` have a bit in common.
    bool doesPrivacyMatch(unsigned mask) const { return (static_cast<unsigned>(_privacy) & mask) != 0; }
    /// True when the locality bits and `mask` have a bit in common.
    bool doesLocalityMatch(unsigned mask) const { return (static_cast<unsigned>(_locality) & mask) != 0; }
    /// @}

private:
    char* _name;    ///< first member: read by TalvoHandle::keyOf
    TalvoConstant _value;
    Privacy _privacy;
    Locality _locality;
};
