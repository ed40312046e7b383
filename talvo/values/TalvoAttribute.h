// TalvoAttribute: a named TalvoConstant with privacy and locality flags.
//
// Layout, in order: the name (a private copy owned by the attribute), the
// value (a TalvoConstant held inside the attribute and traced on its own),
// the privacy and the locality. The name must stay the first member: the
// class is standard-layout so that TalvoHandle's key comparisons read it
// through an untyped pointer, as they read a handle's key.
//
// Privacy and locality are bit sets selected by masks (doesPrivacyMatch,
// doesLocalityMatch). A new attribute is local, and public unless its value
// is a pointer, which makes it private.
#pragma once

#include <talvo/values/TalvoConstant.h>

class TALVO_API TalvoAttribute : public TalvoObject<TalvoAttribute> {
public:
    static constexpr const char* ClassName = "TalvoAttribute";

    enum Privacy { Public = 1, Private = 2 };
    enum Locality { Local = 1, Inherited = 2, Synthesized = 4 };

    // Each copies the name; the value is nil or the given value (a string is
    // copied, a pointer is taken over, a constant is copied by set).
    explicit TalvoAttribute(const char* name);
    TalvoAttribute(const char* name, bool value);
    TalvoAttribute(const char* name, int value);
    TalvoAttribute(const char* name, double value);
    TalvoAttribute(const char* name, const char* value);
    TalvoAttribute(const char* name, void* pointer, TalvoFreeFunction free, int code);  // private
    TalvoAttribute(const char* name, const TalvoConstant* value);  // private for a pointer value
    TalvoAttribute(const TalvoAttribute&) = delete;
    TalvoAttribute& operator=(const TalvoAttribute&) = delete;
    // Releases the name and the value.
    ~TalvoAttribute();

    // Destroys an attribute given as an Item; null is ignored.
    static void free(void* attribute);

    // The name itself (not a copy), owned by the attribute.
    char* getName() const { return _name; }
    // A new copy of the name, owned by the caller.
    char* copyName() const;

    // --- Type tests and getters: the value's tests and conversions.

    bool isNil() const { return _value.isNil(); }
    bool isBool() const { return _value.isBool(); }
    bool isInt() const { return _value.isInt(); }
    bool isDouble() const { return _value.isDouble(); }
    bool isNum() const { return _value.isNum(); }
    bool isString() const { return _value.isString(); }
    bool isPointer() const { return _value.isPointer(); }
    // The embedded constant itself, owned by the attribute.
    TalvoConstant* getValue() { return &_value; }
    bool getValueAsBool() const { return _value.toBool(); }
    int getValueAsInt() const { return _value.toInt(); }
    double getValueAsDouble() const { return _value.toDouble(); }
    // The stored string (not a copy) of a string value; null otherwise.
    char* getValueAsString() const { return _value.toString(); }
    void* getValueAsPointer() { return _value.toPointer(); }
    void* getValueAsPointerOfCode(int code) const { return _value.toPointerOfCode(code); }

    // --- Setters: the constant's set family; privacy and locality unchanged.

    void setValue() { _value.set(); }
    void setValue(bool value) { _value.set(value); }
    void setValue(int value) { _value.set(value); }
    void setValue(double value) { _value.set(value); }
    void setValue(const char* value) { _value.set(value); }
    void setValue(void* pointer, TalvoFreeFunction free, int code) { _value.set(pointer, free, code); }
    void setValue(const TalvoConstant* value) { _value.set(value); }

    // The constant's inc family: an int or double value grows, others stay.
    void incrementValue(int amount) { _value.inc(amount); }
    void incrementValue(double amount) { _value.inc(amount); }
    void incrementValue(const TalvoConstant* amount) { _value.inc(amount); }
    // Only the int overload subtracts; the double and constant overloads add,
    // exactly as incrementValue does. Callers rely on this asymmetry.
    void decrementValue(int amount) { _value.dec(amount); }
    void decrementValue(double amount) { _value.inc(amount); }
    void decrementValue(const TalvoConstant* amount) { _value.inc(amount); }

    // --- Comparisons: negative, zero or positive.

    int compareValue(bool value) const { return _value.compare(value); }
    int compareValue(int value) const { return _value.compare(value); }
    int compareValue(double value) const { return _value.compare(value); }
    int compareValue(const char* value) const { return _value.compare(value); }
    int compareValue(void* value) const { return _value.compare(value); }
    int compareValue(const TalvoConstant* value) const { return _value.compare(value); }
    // Own value against other's (against nil for a null other).
    int compareValues(const TalvoAttribute* other) const;
    // By name with the key rule (null first, unsigned bytes), then by value.
    int compare(const TalvoAttribute* other) const;
    static int compare(void* a, void* b);

    // --- Flags. The tests read single bits.

    Privacy getPrivacy() const { return _privacy; }
    bool isPublic() const { return (_privacy & Public) != 0; }
    bool isPrivate() const { return (_privacy & Private) != 0; }
    void setPrivacy(Privacy privacy) { _privacy = privacy; }
    Locality getLocality() const { return _locality; }
    bool isLocal() const { return (_locality & Local) != 0; }
    bool isInherited() const { return (_locality & Inherited) != 0; }
    bool isSynthesized() const { return (_locality & Synthesized) != 0; }
    void setLocality(Locality locality) { _locality = locality; }
    // True when the flags and `mask` have a bit in common.
    bool doesPrivacyMatch(unsigned mask) const { return (static_cast<unsigned>(_privacy) & mask) != 0; }
    bool doesLocalityMatch(unsigned mask) const { return (static_cast<unsigned>(_locality) & mask) != 0; }

private:
    char* _name;    // first member: read by TalvoHandle::keyOf
    TalvoConstant _value;
    Privacy _privacy;
    Locality _locality;
};
