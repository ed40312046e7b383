/// @file
/// TalvoConstant: the library's dynamically typed value.
///
/// A constant is a type tag plus one 8-byte value slot read according to it:
/// nil, a bool, a 32-bit int, a double, an owned string (always a private
/// copy), or a pointer value made of an untyped pointer, the free call-back
/// that releases it and a signed 32-bit code kept in the slot. Orders between
/// types follow the tags: nil < bool < int, double < string < pointer.
///
/// Invariant: the string of a string constant and the pointer of a pointer
/// constant belong to the constant; `_freeValue` releases them before every
/// change of value and in the destructor.
///
/// The arithmetic, logic, relation and mathematical operations write their
/// result into the constant they are called on; an operand of a kind the
/// operation does not accept (or a null operand) turns that target into nil.
/// The target may be one of the operands. Int arithmetic is 32-bit and wraps
/// as two's complement.
///
/// `and`, `or` and `not` are alternative tokens in C++ and cannot name
/// functions, so those three operations are spelled `and_`, `or_` and `not_`.
#pragma once

#include <talvo/foundation/TalvoCallbacks.h>
#include <talvo/foundation/TalvoObject.h>

class TalvoStream;

/// A dynamically typed value: nil, bool, int, double, owned string or owned pointer.
class TALVO_API TalvoConstant : public TalvoObject<TalvoConstant> {
public:
    static constexpr const char* ClassName = "TalvoConstant";  ///< Name in the allocation trace.

    /// The type tags, in their ordering: nil, bool, 32-bit int, double, owned
    /// string, owned pointer (with its free call-back and a code).
    enum Type { NilType = 0, BoolType = 1, IntType = 2, DoubleType = 3, StringType = 4, PointerType = 5 };

    /// @name Construction and destruction
    /// @{

    TalvoConstant();                       ///< nil
    /// A bool constant.
    explicit TalvoConstant(bool value);
    /// An int constant.
    explicit TalvoConstant(int value);
    /// A double constant.
    explicit TalvoConstant(double value);
    /// A private copy of `value`; a null string stays null.
    explicit TalvoConstant(const char* value);
    /// Takes `pointer`, released later by `free` (which must not be null).
    TalvoConstant(void* pointer, TalvoFreeFunction free, int code);
    /// A copy made by set(other); a null `other` gives nil.
    explicit TalvoConstant(const TalvoConstant* other);
    /// Not copyable: a copy would free the same value twice; use set(other).
    TalvoConstant(const TalvoConstant&) = delete;
    /// Not assignable: use set(other).
    TalvoConstant& operator=(const TalvoConstant&) = delete;
    /// Releases an owned string or pointer (the pointer through its free call-back).
    ~TalvoConstant();

    /// Destroys a constant given as an Item; null is ignored.
    static void free(void* constant);
    /// @}

    /// @name Type tests
    /// @{

    /// The type tag, a Type value.
    int getType() const { return _type; }
    /// True for nil.
    bool isNil() const { return _type == NilType; }
    /// True for a bool.
    bool isBool() const { return _type == BoolType; }
    /// True for an int.
    bool isInt() const { return _type == IntType; }
    /// True for a double.
    bool isDouble() const { return _type == DoubleType; }
    /// True for an int or a double.
    bool isNum() const { return _type == IntType || _type == DoubleType; }
    /// True for a string (even a null one).
    bool isString() const { return _type == StringType; }
    /// True for a pointer value.
    bool isPointer() const { return _type == PointerType; }
    /// True for a pointer value with that code.
    bool isPointerOfCode(int code) const { return _type == PointerType && _value.code == code; }
    /// @}

    /// @name Conversions
    /// The constant is unchanged.
    /// @{

    /// nil false; int/double non-zero (NaN is true); string: its atoi non-zero,
    /// so "true" is false; pointer: non-null.
    bool toBool() const;
    /// double: floor of the value (out-of-range values saturate, NaN gives 0);
    /// string: atoi; pointer: its address cut to 32 bits.
    int toInt() const;
    /// nil 0; bool 0 or 1; int and double their value; string: atof (0 for
    /// null); pointer: its address as a number.
    double toDouble() const;
    /// The stored string itself (not a copy, still owned by the constant) of a
    /// string; null for every other type.
    char* toString() const;
    /// bool/int/double: the address of the value slot; string: the stored
    /// string; pointer: the pointer; nil: null.
    void* toPointer();
    /// The pointer when this is a pointer of `code`, else null.
    void* toPointerOfCode(int code) const;
    /// @}

    /// @name Assignment
    /// Each first releases the old value.
    /// @{

    void set();                            ///< nil
    /// A bool.
    void set(bool value);
    /// An int.
    void set(int value);
    /// A double.
    void set(double value);
    void set(const char* value);           ///< stores a copy (null stays null)
    /// Takes `pointer`, released later by `free` (which must not be null),
    /// with `code`.
    void set(void* pointer, TalvoFreeFunction free, int code);
    /// Copies other's type and value: a string is copied, a pointer and its
    /// free call-back are shared (both constants would free it: callers must
    /// not let that happen). Null gives nil; set(this) changes nothing.
    void set(const TalvoConstant* other);
    /// @}

    /// @name Comparison
    /// Negative, zero or positive.
    /// @{

    /// Not a bool: type tag - 1; else toInt() - value.
    int compare(bool value) const;
    /// Not a number: type tag - 2; else the sign of toDouble() - value.
    int compare(int value) const;
    /// Not a number: type tag - 3; else the sign of toDouble() - value (0 for NaN).
    int compare(double value) const;
    /// Not a string: type tag - 4; else the key rule (null first, unsigned bytes; -1, 0, 1).
    int compare(const char* value) const;
    /// Not a pointer: type tag - 5; else the stored pointer minus `value` as
    /// addresses (saturated to the int range when the distance does not fit).
    int compare(void* value) const;
    /// By other's type: nil gives this constant's tag; otherwise the matching
    /// compare with other's value. A null `other` compares as nil.
    int compare(const TalvoConstant* other) const;
    /// a->compare(b): the compare call-back for containers of constants.
    static int compare(void* a, void* b);
    /// The sign of toDouble() - other->toDouble(), whatever the types (0 for null).
    int compareNumbers(const TalvoConstant* other) const;
    /// a->compareNumbers(b): a compare call-back; 0 when a is null.
    static int compareNumbers(void* a, void* b);

    /// True only for a bool constant equal to `value`.
    bool is(bool value) const;
    /// True when compare(value) gives 0.
    bool is(int value) const;
    /// True when compare(value) gives 0.
    bool is(double value) const;
    /// True when compare(value) gives 0.
    bool is(const char* value) const;
    /// True when compare(value) gives 0.
    bool is(void* value) const;
    /// True when compare(other) gives 0 (a null other compares as nil).
    bool is(const TalvoConstant* other) const;
    /// @}

    /// @name Arithmetic
    /// Numbers only, else nil. Two ints give an int, anything else a double of
    /// the toDouble values.
    /// @{

    /// a + b.
    void add(const TalvoConstant* a, const TalvoConstant* b);
    /// a - b.
    void sub(const TalvoConstant* a, const TalvoConstant* b);
    /// a * b.
    void mul(const TalvoConstant* a, const TalvoConstant* b);
    /// a / b; nil for a zero divisor; two ints truncate toward zero.
    void div(const TalvoConstant* a, const TalvoConstant* b);
    /// Two ints: the signed remainder (nil for a zero divisor rather than the
    /// machine's fault); otherwise the double fmod (NaN for a zero divisor).
    void mod(const TalvoConstant* a, const TalvoConstant* b);

    /// add(this, operand).
    void setAdd(const TalvoConstant* operand);
    /// sub(this, operand).
    void setSub(const TalvoConstant* operand);
    /// mul(this, operand).
    void setMul(const TalvoConstant* operand);
    /// div(this, operand).
    void setDiv(const TalvoConstant* operand);
    /// this + operand: an int stays an int, a double stays a double; other
    /// types give nil.
    void setAdd(int operand);
    /// this - operand, as setAdd(int).
    void setSub(int operand);
    /// this * operand, as setAdd(int).
    void setMul(int operand);
    /// this / operand, as setAdd(int); nil for 0.
    void setDiv(int operand);
    /// this + operand: always a double for a number; other types give nil.
    void setAdd(double operand);
    /// this - operand, as setAdd(double).
    void setSub(double operand);
    /// this * operand, as setAdd(double).
    void setMul(double operand);
    /// this / operand, as setAdd(double); nil for 0.0.
    void setDiv(double operand);

    /// Adds `amount` to an int (wrapping) or a double; other types are left
    /// alone. Never gives nil.
    void inc(int amount);
    /// Adds `amount` to a double, or turns an int into the double sum; other
    /// types are left alone.
    void inc(double amount);
    /// inc by an int or double `amount`; any other or null amount changes nothing.
    void inc(const TalvoConstant* amount);
    /// Subtracts `amount` from an int (wrapping) or a double; other types are
    /// left alone. Never gives nil.
    void dec(int amount);
    /// Subtracts `amount` from a double, or turns an int into the double
    /// difference; other types are left alone.
    void dec(double amount);
    /// dec by an int or double `amount`; any other or null amount changes nothing.
    void dec(const TalvoConstant* amount);

    /// An int negated stays an int (INT_MIN wraps to itself), a double stays a double.
    void neg(const TalvoConstant* x);
    /// @}

    /// @name Logic
    /// Bool operands only, else nil.
    /// @{

    /// a and b.
    void and_(const TalvoConstant* a, const TalvoConstant* b);
    /// a or b.
    void or_(const TalvoConstant* a, const TalvoConstant* b);
    /// not a.
    void not_(const TalvoConstant* a);
    /// True when a is false, else b.
    void imply(const TalvoConstant* a, const TalvoConstant* b);
    /// and_(this, operand): the constant itself must be a bool, else nil.
    void setAnd(const TalvoConstant* operand);
    /// this and operand; nil when the constant is not a bool.
    void setAnd(bool operand);
    /// or_(this, operand): the constant itself must be a bool, else nil.
    void setOr(const TalvoConstant* operand);
    /// this or operand; nil when the constant is not a bool.
    void setOr(bool operand);
    /// @}

    /// @name Minimum and maximum of two numbers, else nil
    /// The operand chosen keeps its type; on a numeric tie both take the second
    /// operand.
    /// @{

    /// The smaller of a and b.
    void inf(const TalvoConstant* a, const TalvoConstant* b);
    /// The larger of a and b.
    void sup(const TalvoConstant* a, const TalvoConstant* b);
    /// inf(this, operand).
    void setInf(const TalvoConstant* operand);
    /// The smaller of this and `operand`.
    void setInf(int operand);
    /// The smaller of this and `operand`.
    void setInf(double operand);
    /// sup(this, operand).
    void setSup(const TalvoConstant* operand);
    /// The larger of this and `operand`.
    void setSup(int operand);
    /// The larger of this and `operand`.
    void setSup(double operand);
    /// @}

    /// @name Mathematical functions of numbers
    /// Nil for any other operand. The result is a double, except for ceil and
    /// floor (an int).
    /// @{

    /// |x|.
    void abs(const TalvoConstant* x);
    /// acos(x).
    void acos(const TalvoConstant* x);
    /// asin(x).
    void asin(const TalvoConstant* x);
    /// atan(x).
    void atan(const TalvoConstant* x);
    /// atan2(y, x).
    void atan2(const TalvoConstant* y, const TalvoConstant* x);
    /// cos(x).
    void cos(const TalvoConstant* x);
    /// cosh(x).
    void cosh(const TalvoConstant* x);
    /// sin(x).
    void sin(const TalvoConstant* x);
    /// sinh(x).
    void sinh(const TalvoConstant* x);
    /// tan(x).
    void tan(const TalvoConstant* x);
    /// tanh(x).
    void tanh(const TalvoConstant* x);
    /// e to the power x.
    void exp(const TalvoConstant* x);
    /// x to the power y.
    void pow(const TalvoConstant* x, const TalvoConstant* y);
    /// ln(x); x must be strictly above 0, else nil.
    void log(const TalvoConstant* x);
    /// log10(x); x must be strictly above 0, else nil.
    void log10(const TalvoConstant* x);
    /// The square root of x; x must be strictly above 0, else nil (the square
    /// root of 0 is nil on purpose).
    void sqrt(const TalvoConstant* x);
    /// The smallest int not below x, saturated to the int range; x must be
    /// strictly above 0, else nil.
    void ceil(const TalvoConstant* x);
    /// The largest int not above x, saturated to the int range; x must be
    /// strictly above 0, else nil.
    void floor(const TalvoConstant* x);
    /// @}

    /// @name Relations
    /// A bool, or nil for operands of unlike or unfit kinds. Bools compare as
    /// 0 below 1, numbers by their double values, strings by
    /// TalvoRawString::compare; nil and pointers always give nil.
    /// @{

    /// a equal to b.
    void eq(const TalvoConstant* a, const TalvoConstant* b);
    /// a different from b.
    void df(const TalvoConstant* a, const TalvoConstant* b);
    /// a less than b.
    void lt(const TalvoConstant* a, const TalvoConstant* b);
    /// a greater than b.
    void gt(const TalvoConstant* a, const TalvoConstant* b);
    /// a less than or equal to b.
    void leq(const TalvoConstant* a, const TalvoConstant* b);
    /// a greater than or equal to b.
    void geq(const TalvoConstant* a, const TalvoConstant* b);

    /// Appends other's text ("true"/"false", "%d", "%g", a string as it is) to
    /// this string constant. Nil when this is not a string or other is nil, a
    /// pointer or null.
    void concat(const TalvoConstant* other);

    /// Writes the value on `stream` with no newline, then flushes it: "nil",
    /// "true"/"false", "%d", "%g", a string byte for byte (no escapes
    /// interpreted), a pointer as its code with "%d". A null stream does nothing.
    void dump(TalvoStream* stream) const;
    /// @}

private:
    /// Releases an owned string or pointer; the caller then rewrites the type.
    void _freeValue();
    /// Stores `string`, already a private copy, as the new value.
    void _takeString(char* string);

    int _type;
    union Value {
        bool boolean;
        int integer;
        double real;
        char* string;
        int code;           ///< of a pointer value
    } _value;
    void* _pointer;
    TalvoFreeFunction _free;
};
