#include <talvo/values/TalvoConstant.h>

#include <talvo/foundation/TalvoRawString.h>
#include <talvo/text/TalvoStream.h>

#include <climits>
#include <cmath>
#include <cstdint>
#include <cstdio>

namespace {

// Room for "%d" of any int and "%g" of any double.
const int kNumberTextSize = 32;

// --- Wrapping 32-bit arithmetic: computed on uint32_t, so no signed overflow.

int wrap(std::uint32_t value) { return static_cast<int>(value); }
int wrappingAdd(int a, int b) { return wrap(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b)); }
int wrappingSub(int a, int b) { return wrap(static_cast<std::uint32_t>(a) - static_cast<std::uint32_t>(b)); }
int wrappingMul(int a, int b) { return wrap(static_cast<std::uint32_t>(a) * static_cast<std::uint32_t>(b)); }
// Truncates toward zero; INT_MIN / -1 wraps to INT_MIN. `b` is not 0.
int wrappingDiv(int a, int b) { return b == -1 ? wrappingSub(0, a) : a / b; }
// INT_MIN % -1 is 0, as the wrapped division implies. `b` is not 0.
int wrappingMod(int a, int b) { return b == -1 ? 0 : a % b; }

// The int nearest below or equal to an already-integral double, saturated;
// NaN gives 0.
int saturatedInt(double integral) {
    if (integral != integral)
        return 0;
    if (integral >= static_cast<double>(INT_MAX))
        return INT_MAX;
    if (integral <= static_cast<double>(INT_MIN))
        return INT_MIN;
    return static_cast<int>(integral);
}

int sign(double value) { return value > 0 ? 1 : (value < 0 ? -1 : 0); }

// The key rule: null first, two nulls equal, unsigned bytes; -1, 0 or 1.
int compareKeys(const char* a, const char* b) {
    return TalvoRawString::compare(const_cast<char*>(a), const_cast<char*>(b));
}

// --- Numbers as operands: an int keeps its int, everything else is a double.

struct Number {
    bool isInt;
    int integer;
    double real;        // the value as a double, for either kind

    static Number ofInt(int value) { return {true, value, static_cast<double>(value)}; }
    static Number ofDouble(double value) { return {false, 0, value}; }
};

// Reads a number operand; false for null or a non-number.
bool readNumber(const TalvoConstant* c, Number& n) {
    if (!c || !c->isNum())
        return false;
    n = c->isInt() ? Number::ofInt(c->toInt()) : Number::ofDouble(c->toDouble());
    return true;
}

void store(TalvoConstant* target, const Number& n) {
    if (n.isInt)
        target->set(n.integer);
    else
        target->set(n.real);
}

enum class Arithmetic { Add, Sub, Mul, Div, Mod };

// target = a op b with the typing rule of the arithmetic: two ints give a
// wrapped int, any double makes it a double. A zero divisor of `div` gives
// nil; so does an int zero divisor of `mod` (the double fmod gives NaN).
void combine(TalvoConstant* target, const Number& a, const Number& b, Arithmetic op) {
    bool byZero = b.real == 0.0;
    if (byZero && (op == Arithmetic::Div || (op == Arithmetic::Mod && a.isInt && b.isInt))) {
        target->set();
        return;
    }
    if (a.isInt && b.isInt) {
        switch (op) {
            case Arithmetic::Add: target->set(wrappingAdd(a.integer, b.integer)); return;
            case Arithmetic::Sub: target->set(wrappingSub(a.integer, b.integer)); return;
            case Arithmetic::Mul: target->set(wrappingMul(a.integer, b.integer)); return;
            case Arithmetic::Div: target->set(wrappingDiv(a.integer, b.integer)); return;
            case Arithmetic::Mod: target->set(wrappingMod(a.integer, b.integer)); return;
        }
    }
    switch (op) {
        case Arithmetic::Add: target->set(a.real + b.real); return;
        case Arithmetic::Sub: target->set(a.real - b.real); return;
        case Arithmetic::Mul: target->set(a.real * b.real); return;
        case Arithmetic::Div: target->set(a.real / b.real); return;
        case Arithmetic::Mod: target->set(std::fmod(a.real, b.real)); return;
    }
}

void combine(TalvoConstant* target, const TalvoConstant* a, const TalvoConstant* b, Arithmetic op) {
    Number x, y;
    if (readNumber(a, x) && readNumber(b, y))
        combine(target, x, y, op);
    else
        target->set();
}

// target = the operand of a and b that inf (takeSmaller) or sup picks; on a
// tie the second operand wins for both.
void pick(TalvoConstant* target, const Number& a, const Number& b, bool takeSmaller) {
    bool takeB = takeSmaller ? b.real <= a.real : b.real >= a.real;
    store(target, takeB ? b : a);
}

void pick(TalvoConstant* target, const TalvoConstant* a, const TalvoConstant* b, bool takeSmaller) {
    Number x, y;
    if (readNumber(a, x) && readNumber(b, y))
        pick(target, x, y, takeSmaller);
    else
        target->set();
}

// A mathematical function of a number operand; nil for any other operand and,
// when `strictlyPositive`, for a value at or below 0.
void applyMath(TalvoConstant* target, const TalvoConstant* x, double (*f)(double), bool strictlyPositive = false) {
    Number n;
    if (!readNumber(x, n) || (strictlyPositive && !(n.real > 0))) {
        target->set();
        return;
    }
    target->set(f(n.real));
}

void applyMath(TalvoConstant* target, const TalvoConstant* x, const TalvoConstant* y, double (*f)(double, double)) {
    Number a, b;
    if (readNumber(x, a) && readNumber(y, b))
        target->set(f(a.real, b.real));
    else
        target->set();
}

// ceil and floor: a strictly positive number rounded to a (saturated) int.
void roundPositive(TalvoConstant* target, const TalvoConstant* x, double (*rounding)(double)) {
    Number n;
    if (readNumber(x, n) && n.real > 0)
        target->set(saturatedInt(rounding(n.real)));
    else
        target->set();
}

enum class Relation { Eq, Df, Lt, Gt, Leq, Geq };

template <class T>
bool holds(Relation relation, T a, T b) {
    switch (relation) {
        case Relation::Eq: return a == b;
        case Relation::Df: return a != b;
        case Relation::Lt: return a < b;
        case Relation::Gt: return a > b;
        case Relation::Leq: return a <= b;
        case Relation::Geq: return a >= b;
    }
    return false;
}

void relate(TalvoConstant* target, const TalvoConstant* a, const TalvoConstant* b, Relation relation) {
    if (!a || !b) {
        target->set();
    } else if (a->isBool() && b->isBool()) {
        target->set(holds(relation, a->toInt(), b->toInt()));
    } else if (a->isNum() && b->isNum()) {
        target->set(holds(relation, a->toDouble(), b->toDouble()));
    } else if (a->isString() && b->isString()) {
        target->set(holds(relation, compareKeys(a->toString(), b->toString()), 0));
    } else {
        target->set();
    }
}

// Bool operands: reads them, false (and nothing read) for any other.
bool readBools(const TalvoConstant* a, const TalvoConstant* b, bool& x, bool& y) {
    if (!a || !b || !a->isBool() || !b->isBool())
        return false;
    x = a->toBool();
    y = b->toBool();
    return true;
}

// Releases an owned string; a null one only goes through the memory
// manager's null-pointer report, so the balance is not lowered for a string
// that was never allocated.
void releaseString(char* string) {
    if (string)
        TalvoRawString::free(string);
    else
        TalvoMemoryManager::deleteCell(nullptr);
}

}  // namespace

// --- Construction and destruction.

TalvoConstant::TalvoConstant() : _type(NilType), _value(), _pointer(nullptr), _free(nullptr) {}

TalvoConstant::TalvoConstant(bool value) : TalvoConstant() { set(value); }

TalvoConstant::TalvoConstant(int value) : TalvoConstant() { set(value); }

TalvoConstant::TalvoConstant(double value) : TalvoConstant() { set(value); }

TalvoConstant::TalvoConstant(const char* value) : TalvoConstant() { set(value); }

TalvoConstant::TalvoConstant(void* pointer, TalvoFreeFunction free, int code) : TalvoConstant() {
    set(pointer, free, code);
}

TalvoConstant::TalvoConstant(const TalvoConstant* other) : TalvoConstant() { set(other); }

TalvoConstant::~TalvoConstant() { _freeValue(); }

void TalvoConstant::free(void* constant) {
    if (constant)
        delete static_cast<TalvoConstant*>(constant);
}

void TalvoConstant::_freeValue() {
    if (_type == StringType)
        releaseString(_value.string);
    else if (_type == PointerType && _free)
        _free(_pointer);
    _value.real = 0;
    _pointer = nullptr;
    _free = nullptr;
}

void TalvoConstant::_takeString(char* string) {
    _freeValue();
    _type = StringType;
    _value.string = string;
}

// --- Conversions.

bool TalvoConstant::toBool() const {
    switch (_type) {
        case BoolType: return _value.boolean;
        case IntType: return _value.integer != 0;
        case DoubleType: return _value.real != 0.0;  // NaN is true
        case StringType: return TalvoRawString::toInt(_value.string) != 0;
        case PointerType: return _pointer != nullptr;
        default: return false;
    }
}

int TalvoConstant::toInt() const {
    switch (_type) {
        case BoolType: return _value.boolean ? 1 : 0;
        case IntType: return _value.integer;
        case DoubleType: return saturatedInt(std::floor(_value.real));
        case StringType: return TalvoRawString::toInt(_value.string);
        case PointerType:
            return wrap(static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(_pointer)));
        default: return 0;
    }
}

double TalvoConstant::toDouble() const {
    switch (_type) {
        case BoolType: return _value.boolean ? 1.0 : 0.0;
        case IntType: return _value.integer;
        case DoubleType: return _value.real;
        case StringType: return TalvoRawString::toDouble(_value.string);
        case PointerType: return static_cast<double>(reinterpret_cast<std::uintptr_t>(_pointer));
        default: return 0.0;
    }
}

char* TalvoConstant::toString() const {
    return _type == StringType ? _value.string : nullptr;
}

void* TalvoConstant::toPointer() {
    switch (_type) {
        case NilType: return nullptr;
        case StringType: return _value.string;
        case PointerType: return _pointer;
        default: return &_value;
    }
}

void* TalvoConstant::toPointerOfCode(int code) const {
    return isPointerOfCode(code) ? _pointer : nullptr;
}

// --- Assignment.

void TalvoConstant::set() {
    _freeValue();
    _type = NilType;
}

void TalvoConstant::set(bool value) {
    _freeValue();
    _type = BoolType;
    _value.boolean = value;
}

void TalvoConstant::set(int value) {
    _freeValue();
    _type = IntType;
    _value.integer = value;
}

void TalvoConstant::set(double value) {
    _freeValue();
    _type = DoubleType;
    _value.real = value;
}

void TalvoConstant::set(const char* value) {
    // Copy before releasing: `value` may be this constant's own string.
    _takeString(TalvoRawString::copy(value));
}

void TalvoConstant::set(void* pointer, TalvoFreeFunction free, int code) {
    _freeValue();
    _type = PointerType;
    _value.code = code;
    _pointer = pointer;
    _free = free;
}

void TalvoConstant::set(const TalvoConstant* other) {
    if (other == this)
        return;
    if (!other) {
        set();
        return;
    }
    switch (other->_type) {
        case BoolType: set(other->_value.boolean); break;
        case IntType: set(other->_value.integer); break;
        case DoubleType: set(other->_value.real); break;
        case StringType: set(other->_value.string); break;
        case PointerType: set(other->_pointer, other->_free, other->_value.code); break;
        default: set(); break;
    }
}

// --- Comparison.

int TalvoConstant::compare(bool value) const {
    if (_type != BoolType)
        return _type - BoolType;
    return toInt() - (value ? 1 : 0);
}

int TalvoConstant::compare(int value) const {
    if (!isNum())
        return _type - IntType;
    return sign(toDouble() - value);
}

int TalvoConstant::compare(double value) const {
    if (!isNum())
        return _type - DoubleType;
    return sign(toDouble() - value);
}

int TalvoConstant::compare(const char* value) const {
    if (_type != StringType)
        return _type - StringType;
    return compareKeys(_value.string, value);
}

int TalvoConstant::compare(void* value) const {
    if (_type != PointerType)
        return _type - PointerType;
    // The distance between two addresses may not fit an int on a 64-bit
    // machine: it saturates, keeping its sign and whether it is zero.
    std::intptr_t distance = static_cast<std::intptr_t>(
        reinterpret_cast<std::uintptr_t>(_pointer) - reinterpret_cast<std::uintptr_t>(value));
    if (distance > INT_MAX)
        return INT_MAX;
    if (distance < INT_MIN)
        return INT_MIN;
    return static_cast<int>(distance);
}

int TalvoConstant::compare(const TalvoConstant* other) const {
    if (!other)
        return _type;
    switch (other->_type) {
        case NilType: return _type;
        case BoolType: return compare(other->_value.boolean);
        case IntType: return compare(other->_value.integer);
        case DoubleType: return compare(other->_value.real);
        case StringType: return compare(static_cast<const char*>(other->_value.string));
        case PointerType: return compare(other->_pointer);
        default: return 0;
    }
}

int TalvoConstant::compare(void* a, void* b) {
    if (!a)
        return b ? -1 : 0;
    return static_cast<TalvoConstant*>(a)->compare(static_cast<const TalvoConstant*>(b));
}

int TalvoConstant::compareNumbers(const TalvoConstant* other) const {
    return other ? sign(toDouble() - other->toDouble()) : 0;
}

int TalvoConstant::compareNumbers(void* a, void* b) {
    if (!a)
        return 0;
    return static_cast<TalvoConstant*>(a)->compareNumbers(static_cast<const TalvoConstant*>(b));
}

bool TalvoConstant::is(bool value) const { return _type == BoolType && _value.boolean == value; }
bool TalvoConstant::is(int value) const { return compare(value) == 0; }
bool TalvoConstant::is(double value) const { return compare(value) == 0; }
bool TalvoConstant::is(const char* value) const { return compare(value) == 0; }
bool TalvoConstant::is(void* value) const { return compare(value) == 0; }
bool TalvoConstant::is(const TalvoConstant* other) const { return compare(other) == 0; }

// --- Arithmetic.

void TalvoConstant::add(const TalvoConstant* a, const TalvoConstant* b) { combine(this, a, b, Arithmetic::Add); }
void TalvoConstant::sub(const TalvoConstant* a, const TalvoConstant* b) { combine(this, a, b, Arithmetic::Sub); }
void TalvoConstant::mul(const TalvoConstant* a, const TalvoConstant* b) { combine(this, a, b, Arithmetic::Mul); }
void TalvoConstant::div(const TalvoConstant* a, const TalvoConstant* b) { combine(this, a, b, Arithmetic::Div); }
void TalvoConstant::mod(const TalvoConstant* a, const TalvoConstant* b) { combine(this, a, b, Arithmetic::Mod); }

void TalvoConstant::setAdd(const TalvoConstant* operand) { add(this, operand); }
void TalvoConstant::setSub(const TalvoConstant* operand) { sub(this, operand); }
void TalvoConstant::setMul(const TalvoConstant* operand) { mul(this, operand); }
void TalvoConstant::setDiv(const TalvoConstant* operand) { div(this, operand); }

// The int and double overloads read the constant itself as the first operand.
#define TALVO_SET_ARITHMETIC(name, op, Kind, of)       \
    void TalvoConstant::name(Kind operand) {           \
        Number self;                                   \
        if (readNumber(this, self))                    \
            combine(this, self, Number::of(operand), op); \
        else                                           \
            set();                                     \
    }
TALVO_SET_ARITHMETIC(setAdd, Arithmetic::Add, int, ofInt)
TALVO_SET_ARITHMETIC(setSub, Arithmetic::Sub, int, ofInt)
TALVO_SET_ARITHMETIC(setMul, Arithmetic::Mul, int, ofInt)
TALVO_SET_ARITHMETIC(setDiv, Arithmetic::Div, int, ofInt)
TALVO_SET_ARITHMETIC(setAdd, Arithmetic::Add, double, ofDouble)
TALVO_SET_ARITHMETIC(setSub, Arithmetic::Sub, double, ofDouble)
TALVO_SET_ARITHMETIC(setMul, Arithmetic::Mul, double, ofDouble)
TALVO_SET_ARITHMETIC(setDiv, Arithmetic::Div, double, ofDouble)
#undef TALVO_SET_ARITHMETIC

void TalvoConstant::inc(int amount) {
    if (_type == IntType)
        _value.integer = wrappingAdd(_value.integer, amount);
    else if (_type == DoubleType)
        _value.real += amount;
}

void TalvoConstant::inc(double amount) {
    if (_type == IntType)
        set(_value.integer + amount);
    else if (_type == DoubleType)
        _value.real += amount;
}

void TalvoConstant::inc(const TalvoConstant* amount) {
    if (amount && amount->isInt())
        inc(amount->_value.integer);
    else if (amount && amount->isDouble())
        inc(amount->_value.real);
}

void TalvoConstant::dec(int amount) {
    if (_type == IntType)
        _value.integer = wrappingSub(_value.integer, amount);
    else if (_type == DoubleType)
        _value.real -= amount;
}

void TalvoConstant::dec(double amount) {
    if (_type == IntType)
        set(_value.integer - amount);
    else if (_type == DoubleType)
        _value.real -= amount;
}

void TalvoConstant::dec(const TalvoConstant* amount) {
    if (amount && amount->isInt())
        dec(amount->_value.integer);
    else if (amount && amount->isDouble())
        dec(amount->_value.real);
}

void TalvoConstant::neg(const TalvoConstant* x) {
    if (x && x->isInt())
        set(wrappingSub(0, x->_value.integer));
    else if (x && x->isDouble())
        set(-x->_value.real);
    else
        set();
}

// --- Logic.

void TalvoConstant::and_(const TalvoConstant* a, const TalvoConstant* b) {
    bool x, y;
    if (readBools(a, b, x, y))
        set(x && y);
    else
        set();
}

void TalvoConstant::or_(const TalvoConstant* a, const TalvoConstant* b) {
    bool x, y;
    if (readBools(a, b, x, y))
        set(x || y);
    else
        set();
}

void TalvoConstant::not_(const TalvoConstant* a) {
    if (a && a->isBool())
        set(!a->_value.boolean);
    else
        set();
}

void TalvoConstant::imply(const TalvoConstant* a, const TalvoConstant* b) {
    bool x, y;
    if (readBools(a, b, x, y))
        set(!x || y);
    else
        set();
}

void TalvoConstant::setAnd(const TalvoConstant* operand) { and_(this, operand); }
void TalvoConstant::setOr(const TalvoConstant* operand) { or_(this, operand); }

void TalvoConstant::setAnd(bool operand) {
    if (_type == BoolType)
        _value.boolean = _value.boolean && operand;
    else
        set();
}

void TalvoConstant::setOr(bool operand) {
    if (_type == BoolType)
        _value.boolean = _value.boolean || operand;
    else
        set();
}

// --- Minimum and maximum.

void TalvoConstant::inf(const TalvoConstant* a, const TalvoConstant* b) { pick(this, a, b, true); }
void TalvoConstant::sup(const TalvoConstant* a, const TalvoConstant* b) { pick(this, a, b, false); }
void TalvoConstant::setInf(const TalvoConstant* operand) { inf(this, operand); }
void TalvoConstant::setSup(const TalvoConstant* operand) { sup(this, operand); }

#define TALVO_SET_PICK(name, Kind, of, takeSmaller)    \
    void TalvoConstant::name(Kind operand) {           \
        Number self;                                   \
        if (readNumber(this, self))                    \
            pick(this, self, Number::of(operand), takeSmaller); \
        else                                           \
            set();                                     \
    }
TALVO_SET_PICK(setInf, int, ofInt, true)
TALVO_SET_PICK(setInf, double, ofDouble, true)
TALVO_SET_PICK(setSup, int, ofInt, false)
TALVO_SET_PICK(setSup, double, ofDouble, false)
#undef TALVO_SET_PICK

// --- Mathematical functions.

void TalvoConstant::abs(const TalvoConstant* x) { applyMath(this, x, [](double v) { return std::fabs(v); }); }
void TalvoConstant::acos(const TalvoConstant* x) { applyMath(this, x, [](double v) { return std::acos(v); }); }
void TalvoConstant::asin(const TalvoConstant* x) { applyMath(this, x, [](double v) { return std::asin(v); }); }
void TalvoConstant::atan(const TalvoConstant* x) { applyMath(this, x, [](double v) { return std::atan(v); }); }
void TalvoConstant::cos(const TalvoConstant* x) { applyMath(this, x, [](double v) { return std::cos(v); }); }
void TalvoConstant::cosh(const TalvoConstant* x) { applyMath(this, x, [](double v) { return std::cosh(v); }); }
void TalvoConstant::sin(const TalvoConstant* x) { applyMath(this, x, [](double v) { return std::sin(v); }); }
void TalvoConstant::sinh(const TalvoConstant* x) { applyMath(this, x, [](double v) { return std::sinh(v); }); }
void TalvoConstant::tan(const TalvoConstant* x) { applyMath(this, x, [](double v) { return std::tan(v); }); }
void TalvoConstant::tanh(const TalvoConstant* x) { applyMath(this, x, [](double v) { return std::tanh(v); }); }
void TalvoConstant::exp(const TalvoConstant* x) { applyMath(this, x, [](double v) { return std::exp(v); }); }

void TalvoConstant::atan2(const TalvoConstant* y, const TalvoConstant* x) {
    applyMath(this, y, x, [](double a, double b) { return std::atan2(a, b); });
}

void TalvoConstant::pow(const TalvoConstant* x, const TalvoConstant* y) {
    applyMath(this, x, y, [](double a, double b) { return std::pow(a, b); });
}

void TalvoConstant::log(const TalvoConstant* x) { applyMath(this, x, [](double v) { return std::log(v); }, true); }
void TalvoConstant::log10(const TalvoConstant* x) { applyMath(this, x, [](double v) { return std::log10(v); }, true); }
void TalvoConstant::sqrt(const TalvoConstant* x) { applyMath(this, x, [](double v) { return std::sqrt(v); }, true); }
void TalvoConstant::ceil(const TalvoConstant* x) { roundPositive(this, x, [](double v) { return std::ceil(v); }); }
void TalvoConstant::floor(const TalvoConstant* x) { roundPositive(this, x, [](double v) { return std::floor(v); }); }

// --- Relations.

void TalvoConstant::eq(const TalvoConstant* a, const TalvoConstant* b) { relate(this, a, b, Relation::Eq); }
void TalvoConstant::df(const TalvoConstant* a, const TalvoConstant* b) { relate(this, a, b, Relation::Df); }
void TalvoConstant::lt(const TalvoConstant* a, const TalvoConstant* b) { relate(this, a, b, Relation::Lt); }
void TalvoConstant::gt(const TalvoConstant* a, const TalvoConstant* b) { relate(this, a, b, Relation::Gt); }
void TalvoConstant::leq(const TalvoConstant* a, const TalvoConstant* b) { relate(this, a, b, Relation::Leq); }
void TalvoConstant::geq(const TalvoConstant* a, const TalvoConstant* b) { relate(this, a, b, Relation::Geq); }

// --- Concatenation.

void TalvoConstant::concat(const TalvoConstant* other) {
    if (_type != StringType || !other) {
        set();
        return;
    }
    char number[kNumberTextSize];
    const char* text = nullptr;
    switch (other->_type) {
        case BoolType: text = other->_value.boolean ? "true" : "false"; break;
        case IntType: std::snprintf(number, sizeof number, "%d", other->_value.integer); text = number; break;
        case DoubleType: std::snprintf(number, sizeof number, "%g", other->_value.real); text = number; break;
        case StringType: text = other->_value.string ? other->_value.string : ""; break;
        default: set(); return;
    }
    // Join before releasing: `other` may be this constant.
    _takeString(TalvoRawString::concat(_value.string, text));
}

// --- Printing.

void TalvoConstant::dump(TalvoStream* stream) const {
    if (!stream)
        return;
    char number[kNumberTextSize];
    switch (_type) {
        case NilType: stream->put("nil"); break;
        case BoolType: stream->put(_value.boolean ? "true" : "false"); break;
        case IntType: stream->put(_value.integer); break;
        case DoubleType:
            // "%g" itself, whatever precision the stream is set to.
            std::snprintf(number, sizeof number, "%g", _value.real);
            stream->put(static_cast<const char*>(number));
            break;
        case StringType:
            // put(char) keeps a backslash in the value as it is.
            for (const char* c = _value.string; c && *c; ++c)
                stream->put(*c);
            break;
        case PointerType: stream->put(_value.code); break;
        default: break;
    }
    stream->flush();
}
