// TalvoConstant: the library's dynamically typed value.
//
// A constant is a type tag plus one 8-byte value slot read according to it:
// nil, a bool, a 32-bit int, a double, an owned string (always a private
// copy), or a pointer value made of an untyped pointer, the free call-back
// that releases it and a signed 32-bit code kept in the slot. Orders between
// types follow the tags: nil < bool < int, double < string < pointer.
//
// Invariant: the string of a string constant and the pointer of a pointer
// constant belong to the constant; `_freeValue` releases them before every
// change of value and in the destructor.
//
// The arithmetic, logic, relation and mathematical operations write their
// result into the constant they are called on; an operand of a kind the
// operation does not accept (or a null operand) turns that target into nil.
// The target may be one of the operands. Int arithmetic is 32-bit and wraps
// as two's complement.
//
// `and`, `or` and `not` are alternative tokens in C++ and cannot name
// functions, so those three operations are spelled `and_`, `or_` and `not_`.
#pragma once

#include <talvo/foundation/TalvoCallbacks.h>
#include <talvo/foundation/TalvoObject.h>

class TalvoStream;

class TALVO_API TalvoConstant : public TalvoObject<TalvoConstant> {
public:
    static constexpr const char* ClassName = "TalvoConstant";

    // The type tags, in their ordering.
    enum Type { NilType = 0, BoolType = 1, IntType = 2, DoubleType = 3, StringType = 4, PointerType = 5 };

    // --- Construction and destruction.

    TalvoConstant();                       // nil
    explicit TalvoConstant(bool value);
    explicit TalvoConstant(int value);
    explicit TalvoConstant(double value);
    // A private copy of `value`; a null string stays null.
    explicit TalvoConstant(const char* value);
    // Takes `pointer`, released later by `free` (which must not be null).
    TalvoConstant(void* pointer, TalvoFreeFunction free, int code);
    // A copy made by set(other); a null `other` gives nil.
    explicit TalvoConstant(const TalvoConstant* other);
    TalvoConstant(const TalvoConstant&) = delete;
    TalvoConstant& operator=(const TalvoConstant&) = delete;
    ~TalvoConstant();

    // Destroys a constant given as an Item; null is ignored.
    static void free(void* constant);

    // --- Type tests.

    int getType() const { return _type; }
    bool isNil() const { return _type == NilType; }
    bool isBool() const { return _type == BoolType; }
    bool isInt() const { return _type == IntType; }
    bool isDouble() const { return _type == DoubleType; }
    bool isNum() const { return _type == IntType || _type == DoubleType; }
    bool isString() const { return _type == StringType; }
    bool isPointer() const { return _type == PointerType; }
    bool isPointerOfCode(int code) const { return _type == PointerType && _value.code == code; }

    // --- Conversions; the constant is unchanged.

    // nil false; int/double non-zero (NaN is true); string: its atoi non-zero,
    // so "true" is false; pointer: non-null.
    bool toBool() const;
    // double: floor of the value (out-of-range values saturate, NaN gives 0);
    // string: atoi; pointer: its address cut to 32 bits.
    int toInt() const;
    // string: atof; pointer: its address as a number.
    double toDouble() const;
    // The stored string itself (not a copy, still owned by the constant) of a
    // string; null for every other type.
    char* toString() const;
    // bool/int/double: the address of the value slot; string: the stored
    // string; pointer: the pointer; nil: null.
    void* toPointer();
    // The pointer when this is a pointer of `code`, else null.
    void* toPointerOfCode(int code) const;

    // --- Assignment; each first releases the old value.

    void set();                            // nil
    void set(bool value);
    void set(int value);
    void set(double value);
    void set(const char* value);           // stores a copy
    void set(void* pointer, TalvoFreeFunction free, int code);
    // Copies other's type and value: a string is copied, a pointer and its
    // free call-back are shared (both constants would free it: callers must
    // not let that happen). Null gives nil; set(this) changes nothing.
    void set(const TalvoConstant* other);

    // --- Comparison: negative, zero or positive.

    // Not a bool: type tag - 1; else toInt() - value.
    int compare(bool value) const;
    // Not a number: type tag - 2; else the sign of toDouble() - value.
    int compare(int value) const;
    // Not a number: type tag - 3; else the sign of toDouble() - value (0 for NaN).
    int compare(double value) const;
    // Not a string: type tag - 4; else the key rule (null first, unsigned bytes; -1, 0, 1).
    int compare(const char* value) const;
    // Not a pointer: type tag - 5; else the stored pointer minus `value` as
    // addresses (saturated to the int range when the distance does not fit).
    int compare(void* value) const;
    // By other's type: nil gives this constant's tag; otherwise the matching
    // compare with other's value. A null `other` compares as nil.
    int compare(const TalvoConstant* other) const;
    // a->compare(b): the compare call-back for containers of constants.
    static int compare(void* a, void* b);
    // The sign of toDouble() - other->toDouble(), whatever the types (0 for null).
    int compareNumbers(const TalvoConstant* other) const;
    static int compareNumbers(void* a, void* b);

    // True only for a bool constant equal to `value`.
    bool is(bool value) const;
    // True when the matching compare gives 0.
    bool is(int value) const;
    bool is(double value) const;
    bool is(const char* value) const;
    bool is(void* value) const;
    bool is(const TalvoConstant* other) const;

    // --- Arithmetic. Numbers only, else nil. Two ints give an int, anything
    // else a double of the toDouble values.

    void add(const TalvoConstant* a, const TalvoConstant* b);
    void sub(const TalvoConstant* a, const TalvoConstant* b);
    void mul(const TalvoConstant* a, const TalvoConstant* b);
    // Nil for a zero divisor; two ints truncate toward zero.
    void div(const TalvoConstant* a, const TalvoConstant* b);
    // Two ints: the signed remainder (nil for a zero divisor rather than the
    // machine's fault); otherwise the double fmod (NaN for a zero divisor).
    void mod(const TalvoConstant* a, const TalvoConstant* b);

    // In place: this = this op operand, as the two-operand forms.
    void setAdd(const TalvoConstant* operand);
    void setSub(const TalvoConstant* operand);
    void setMul(const TalvoConstant* operand);
    void setDiv(const TalvoConstant* operand);
    // An int stays an int, a double stays a double; other types give nil.
    void setAdd(int operand);
    void setSub(int operand);
    void setMul(int operand);
    void setDiv(int operand);              // nil for 0
    // Always a double for a number; other types give nil.
    void setAdd(double operand);
    void setSub(double operand);
    void setMul(double operand);
    void setDiv(double operand);           // nil for 0.0

    // Never give nil: an int or double grows by `amount`; other types, and
    // operands that are not numbers, are left alone. inc(double) turns an int
    // into the double sum. dec mirrors inc, subtracting.
    void inc(int amount);
    void inc(double amount);
    void inc(const TalvoConstant* amount);
    void dec(int amount);
    void dec(double amount);
    void dec(const TalvoConstant* amount);

    // An int negated stays an int (INT_MIN wraps to itself), a double stays a double.
    void neg(const TalvoConstant* x);

    // --- Logic: bool operands only, else nil.

    void and_(const TalvoConstant* a, const TalvoConstant* b);
    void or_(const TalvoConstant* a, const TalvoConstant* b);
    void not_(const TalvoConstant* a);
    // True when a is false, else b.
    void imply(const TalvoConstant* a, const TalvoConstant* b);
    // The constant itself must be a bool.
    void setAnd(const TalvoConstant* operand);
    void setAnd(bool operand);
    void setOr(const TalvoConstant* operand);
    void setOr(bool operand);

    // --- Minimum and maximum of two numbers, else nil. The operand chosen
    // keeps its type; on a numeric tie both take the second operand.

    void inf(const TalvoConstant* a, const TalvoConstant* b);
    void sup(const TalvoConstant* a, const TalvoConstant* b);
    void setInf(const TalvoConstant* operand);
    void setInf(int operand);
    void setInf(double operand);
    void setSup(const TalvoConstant* operand);
    void setSup(int operand);
    void setSup(double operand);

    // --- Mathematical functions of numbers; nil for any other operand. The
    // result is a double, except for ceil and floor (an int).

    void abs(const TalvoConstant* x);
    void acos(const TalvoConstant* x);
    void asin(const TalvoConstant* x);
    void atan(const TalvoConstant* x);
    void atan2(const TalvoConstant* y, const TalvoConstant* x);
    void cos(const TalvoConstant* x);
    void cosh(const TalvoConstant* x);
    void sin(const TalvoConstant* x);
    void sinh(const TalvoConstant* x);
    void tan(const TalvoConstant* x);
    void tanh(const TalvoConstant* x);
    void exp(const TalvoConstant* x);
    void pow(const TalvoConstant* x, const TalvoConstant* y);
    // The next four need a value strictly above 0, else nil (the square root
    // of 0 is nil on purpose).
    void log(const TalvoConstant* x);
    void log10(const TalvoConstant* x);
    void sqrt(const TalvoConstant* x);
    void ceil(const TalvoConstant* x);     // an int
    void floor(const TalvoConstant* x);    // an int

    // --- Relations: a bool, or nil for operands of unlike or unfit kinds.
    // Bools compare as 0 < 1, numbers by their double values, strings by
    // TalvoRawString::compare; nil and pointers always give nil.

    void eq(const TalvoConstant* a, const TalvoConstant* b);
    void df(const TalvoConstant* a, const TalvoConstant* b);
    void lt(const TalvoConstant* a, const TalvoConstant* b);
    void gt(const TalvoConstant* a, const TalvoConstant* b);
    void leq(const TalvoConstant* a, const TalvoConstant* b);
    void geq(const TalvoConstant* a, const TalvoConstant* b);

    // Appends other's text ("true"/"false", "%d", "%g", a string as it is) to
    // this string constant. Nil when this is not a string or other is nil, a
    // pointer or null.
    void concat(const TalvoConstant* other);

    // Writes the value on `stream` with no newline, then flushes it: "nil",
    // "true"/"false", "%d", "%g", a string byte for byte (no escapes
    // interpreted), a pointer as its code with "%d". A null stream does nothing.
    void dump(TalvoStream* stream) const;

private:
    // Releases an owned string or pointer; the caller then rewrites the type.
    void _freeValue();
    // Stores `string`, already a private copy, as the new value.
    void _takeString(char* string);

    int _type;
    union Value {
        bool boolean;
        int integer;
        double real;
        char* string;
        int code;           // of a pointer value
    } _value;
    void* _pointer;
    TalvoFreeFunction _free;
};
