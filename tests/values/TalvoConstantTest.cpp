#include "support/TalvoTest.h"

#include <talvo/foundation/TalvoFunction.h>
#include <talvo/foundation/TalvoInteger.h>
#include <talvo/foundation/TalvoRawString.h>
#include <talvo/text/TalvoRawStringStream.h>
#include <talvo/values/TalvoConstant.h>

#include <climits>
#include <cmath>
#include <string>

namespace {

std::string show(TalvoConstant& c) {
    switch (c.getType()) {
        case TalvoConstant::NilType: return "nil";
        case TalvoConstant::BoolType: return c.toBool() ? "bool:true" : "bool:false";
        case TalvoConstant::IntType: return "int:" + std::to_string(c.toInt());
        case TalvoConstant::DoubleType: {
            char text[32];
            std::snprintf(text, sizeof text, "double:%g", c.toDouble());
            return std::isnan(c.toDouble()) ? "double:nan" : text;
        }
        case TalvoConstant::StringType: return std::string("string:") + (c.toString() ? c.toString() : "(null)");
        default: return "pointer";
    }
}

struct Operands {
    TalvoConstant nil;
    TalvoConstant yes{true};
    TalvoConstant no{false};
    TalvoConstant two{2};
    TalvoConstant three{3};
    TalvoConstant zero{0};
    TalvoConstant half{0.5};
    TalvoConstant threeAsDouble{3.0};
    TalvoConstant zeroAsDouble{0.0};
    TalvoConstant text{"3"};
    TalvoConstant highByte{"\xE9"};
    TalvoConstant pointer{TalvoInteger::allocate(7), TalvoInteger::free, 9};
};

using Binary = void (TalvoConstant::*)(const TalvoConstant*, const TalvoConstant*);

}  // namespace

TEST(TalvoConstant, Conversions_FollowTheTable) {
    TalvoConstant negative(-1.5), nan(std::nan("")), trueText("true"), number(" 42abc");
    TalvoConstant nullText(static_cast<const char*>(nullptr));
    EXPECT_EQ(negative.toInt(), -2);  // floor, not truncation
    EXPECT_FALSE(trueText.toBool());  // atoi("true") is 0
    EXPECT_EQ(number.toInt(), 42);
    EXPECT_EQ(nullText.toString(), nullptr);
    TalvoConstant small(-1e12);  // doubles outside the int range saturate
    EXPECT_EQ(small.toInt(), INT_MIN);
    EXPECT_EQ(nan.toInt(), 0);
    int marker = 0;
    TalvoConstant seven(7), pointer(&marker, TalvoFunction::doNothing, 3);
    EXPECT_EQ(seven.toString(), nullptr);  // numbers have no string form
    EXPECT_EQ(*static_cast<int*>(seven.toPointer()), 7);  // the value slot
    EXPECT_EQ(pointer.toPointerOfCode(4), nullptr);
    EXPECT_FALSE(TalvoConstant(1).is(true));  // is(bool) needs a bool
    EXPECT_TRUE(TalvoConstant(3.0).is(3));
    int cells[4] = {0, 0, 0, 0};  // a pointer compares by address distance
    TalvoConstant at2(&cells[2], TalvoFunction::doNothing, 0);
    EXPECT_EQ(at2.compare(static_cast<void*>(&cells[0])), static_cast<int>(2 * sizeof(int)));
    EXPECT_EQ(at2.compare(static_cast<void*>(&cells[3])), -static_cast<int>(sizeof(int)));
}

TEST(TalvoConstant, SetAndFree_ReleaseTheOldValueAndCopyStrings) {
    char buffer[] = "abc";
    TalvoConstant c(buffer);
    buffer[0] = 'x';
    EXPECT_STREQ(c.toString(), "abc");
    c.set(2.5);
    c.add(&c, &c);  // the target may be an operand
    c.set(&c);
    EXPECT_EQ(show(c), "double:5");
    c.set(static_cast<const TalvoConstant*>(nullptr));
    EXPECT_TRUE(c.isNil());
}

TEST(TalvoConstant, Compare_OrdersByTypeTagThenValue) {
    Operands o;
    struct {
        const char* name;
        int actual;
        int expected;
    } cases[] = {
        {"string vs nil", o.text.compare(&o.nil), 4},
        {"string vs int", o.text.compare(&o.three), 2},          // 4 - 2
        {"pointer vs double", o.pointer.compare(&o.half), 2},
        {"int 3 vs double 3.0", o.three.compare(&o.threeAsDouble), 0},
        {"string vs null string", o.text.compare(static_cast<const char*>(nullptr)), 1},
        {"bool vs int value", o.yes.compare(5), -1},              // 1 - 2
        {"compareNumbers ignores types", o.yes.compareNumbers(&o.half), 1},
        // Across types: this constant's tag minus the tag the operand's type asks for.
        {"nil vs bool", o.nil.compare(&o.yes), -1},
        {"true vs false", o.yes.compare(&o.no), 1},
        {"int vs bool", o.two.compare(&o.yes), 1},
        {"double 0.5 vs int 2", o.half.compare(&o.two), -1},
        {"string vs high byte (unsigned)", o.text.compare(&o.highByte), -1},
        {"int vs pointer", o.two.compare(&o.pointer), -3},
        {"pointer vs itself", o.pointer.compare(&o.pointer), 0},
        {"int vs nil", TalvoConstant::compare(&o.two, &o.nil), 2},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.actual, c.expected) << c.name;
}

// Two-operand operations, each run on a target holding a string first. The
// governing rule: operands of the wrong kinds give nil, never an error.
TEST(TalvoConstant, BinaryOperations_OperandTypeMatrix) {
    const struct {
        const char* name;
        Binary op;
        TalvoConstant Operands::*a;
        TalvoConstant Operands::*b;
        const char* expected;
    } cases[] = {
        // Two ints give an int, a double operand a double; a zero divisor nil.
        {"int+int", &TalvoConstant::add, &Operands::two, &Operands::three, "int:5"},
        {"int+double", &TalvoConstant::add, &Operands::two, &Operands::half, "double:2.5"},
        {"int+string", &TalvoConstant::add, &Operands::two, &Operands::text, "nil"},
        {"int/int 0", &TalvoConstant::div, &Operands::three, &Operands::zero, "nil"},
        {"int/double 0", &TalvoConstant::div, &Operands::three, &Operands::zeroAsDouble, "nil"},
        {"int%double 0", &TalvoConstant::mod, &Operands::three, &Operands::zeroAsDouble, "double:nan"},
        {"int pow int", &TalvoConstant::pow, &Operands::two, &Operands::three, "double:8"},
        {"double-int", &TalvoConstant::sub, &Operands::half, &Operands::two, "double:-1.5"},
        {"atan2 takes y first", &TalvoConstant::atan2, &Operands::two, &Operands::half, "double:1.32582"},
        // Logic takes bools only.
        {"true and false", &TalvoConstant::and_, &Operands::yes, &Operands::no, "bool:false"},
        {"true and int", &TalvoConstant::and_, &Operands::yes, &Operands::two, "nil"},
        {"false imply false", &TalvoConstant::imply, &Operands::no, &Operands::no, "bool:true"},
        {"false or true", &TalvoConstant::or_, &Operands::no, &Operands::yes, "bool:true"},
        // Relations: two bools, two numbers in any mix or two strings.
        {"int 3 eq double 3.0", &TalvoConstant::eq, &Operands::three, &Operands::threeAsDouble, "bool:true"},
        {"nil eq nil", &TalvoConstant::eq, &Operands::nil, &Operands::nil, "nil"},
        {"string lt high byte (unsigned)", &TalvoConstant::lt, &Operands::text, &Operands::highByte, "bool:true"},
        {"true df false", &TalvoConstant::df, &Operands::yes, &Operands::no, "bool:true"},
        {"true gt false", &TalvoConstant::gt, &Operands::yes, &Operands::no, "bool:true"},
        {"int 3 leq double 3.0", &TalvoConstant::leq, &Operands::three, &Operands::threeAsDouble, "bool:true"},
        {"pointer leq pointer", &TalvoConstant::leq, &Operands::pointer, &Operands::pointer, "nil"},
        {"false geq true", &TalvoConstant::geq, &Operands::no, &Operands::yes, "bool:false"},
        {"string geq itself", &TalvoConstant::geq, &Operands::text, &Operands::text, "bool:true"},
        // inf and sup keep the chosen operand's type; ties take the second.
        {"inf tie takes second", &TalvoConstant::inf, &Operands::three, &Operands::threeAsDouble, "double:3"},
        {"inf tie takes second, reversed", &TalvoConstant::inf, &Operands::threeAsDouble, &Operands::three, "int:3"},
        {"sup keeps the int", &TalvoConstant::sup, &Operands::two, &Operands::half, "int:2"},
    };
    Operands o;
    for (const auto& c : cases) {
        TalvoConstant result("previous");
        (result.*c.op)(&(o.*c.a), &(o.*c.b));
        EXPECT_EQ(show(result), c.expected) << c.name;
    }
}

TEST(TalvoConstant, IntArithmetic_WrapsInThirtyTwoBits) {
    struct {
        Binary op;
        int a, b;
        int expected;
    } cases[] = {
        {&TalvoConstant::add, INT_MAX, 1, INT_MIN},
        {&TalvoConstant::mul, 65536, 65536, 0},
        {&TalvoConstant::div, INT_MIN, -1, INT_MIN},
        {&TalvoConstant::div, -7, 2, -3},
        {&TalvoConstant::mod, INT_MIN, -1, 0},
    };
    for (const auto& c : cases) {
        TalvoConstant a(c.a), b(c.b), result;
        (result.*c.op)(&a, &b);
        EXPECT_EQ(show(result), "int:" + std::to_string(c.expected)) << c.a << " op " << c.b;
    }
}

// Operations on the constant itself: {start value, operation, result}.
TEST(TalvoConstant, InPlaceOperations_KeepOrWidenTheTypeOrGiveNil) {
    struct {
        const char* name;
        TalvoConstant start;
        void (*apply)(TalvoConstant&);
        const char* expected;
    } cases[] = {
        // The int overloads keep an int an int, the double ones widen it.
        {"int setAdd int", TalvoConstant(2), [](TalvoConstant& c) { c.setAdd(3); }, "int:5"},
        {"int setDiv 0", TalvoConstant(7), [](TalvoConstant& c) { c.setDiv(0); }, "nil"},
        {"int setAdd double", TalvoConstant(2), [](TalvoConstant& c) { c.setAdd(0.5); }, "double:2.5"},
        {"int setAdd string", TalvoConstant(2), [](TalvoConstant& c) { TalvoConstant a("1"); c.setAdd(&a); }, "nil"},
        {"double setSub int", TalvoConstant(1.5), [](TalvoConstant& c) { c.setSub(1); }, "double:0.5"},
        {"int setSub double", TalvoConstant(2), [](TalvoConstant& c) { c.setSub(0.5); }, "double:1.5"},
        {"int setSub int", TalvoConstant(2), [](TalvoConstant& c) { TalvoConstant a(5); c.setSub(&a); }, "int:-3"},
        {"int setMul int", TalvoConstant(3), [](TalvoConstant& c) { TalvoConstant a(4); c.setMul(&a); }, "int:12"},
        {"int setMul double", TalvoConstant(3), [](TalvoConstant& c) { c.setMul(0.5); }, "double:1.5"},
        {"string setMul int", TalvoConstant("3"), [](TalvoConstant& c) { c.setMul(2); }, "nil"},
        {"int setDiv -0.0", TalvoConstant(7), [](TalvoConstant& c) { c.setDiv(-0.0); }, "nil"},
        {"int setDiv int", TalvoConstant(-7), [](TalvoConstant& c) { TalvoConstant a(2); c.setDiv(&a); }, "int:-3"},
        // inc and dec never give nil: other types stay as they are.
        {"string inc int", TalvoConstant("s"), [](TalvoConstant& c) { c.inc(1); }, "string:s"},
        {"int dec int wraps", TalvoConstant(INT_MIN), [](TalvoConstant& c) { c.dec(1); }, "int:2147483647"},
        {"int inc constant string", TalvoConstant(1), [](TalvoConstant& c) { TalvoConstant a("5"); c.inc(&a); }, "int:1"},
        {"int dec double widens", TalvoConstant(1), [](TalvoConstant& c) { c.dec(0.25); }, "double:0.75"},
        {"dec double", TalvoConstant(1.0), [](TalvoConstant& c) { TalvoConstant a(0.25); c.dec(&a); }, "double:0.75"},
        {"dec null", TalvoConstant(0.5), [](TalvoConstant& c) { c.dec(static_cast<TalvoConstant*>(nullptr)); }, "double:0.5"},
        // Logic wants bools, bounds numbers, concat a string.
        {"not itself", TalvoConstant(true), [](TalvoConstant& c) { c.not_(&c); }, "bool:false"},
        {"true setAnd false", TalvoConstant(true), [](TalvoConstant& c) { c.setAnd(false); }, "bool:false"},
        {"true setAnd int", TalvoConstant(true), [](TalvoConstant& c) { TalvoConstant a(1); c.setAnd(&a); }, "nil"},
        {"false setOr true", TalvoConstant(false), [](TalvoConstant& c) { c.setOr(true); }, "bool:true"},
        {"setOr true", TalvoConstant(false), [](TalvoConstant& c) { TalvoConstant a(true); c.setOr(&a); }, "bool:true"},
        {"int setInf smaller double", TalvoConstant(4), [](TalvoConstant& c) { c.setInf(3.5); }, "double:3.5"},
        {"double setInf larger int", TalvoConstant(2.5), [](TalvoConstant& c) { c.setInf(3); }, "double:2.5"},
        {"double setInf int", TalvoConstant(2.5), [](TalvoConstant& c) { TalvoConstant a(2); c.setInf(&a); }, "int:2"},
        {"int setInf nil", TalvoConstant(2), [](TalvoConstant& c) { TalvoConstant a; c.setInf(&a); }, "nil"},
        {"double setSup int", TalvoConstant(1.5), [](TalvoConstant& c) { c.setSup(4); }, "int:4"},
        {"int setSup smaller double", TalvoConstant(4), [](TalvoConstant& c) { c.setSup(3.0); }, "int:4"},
        {"concat itself", TalvoConstant("ab"), [](TalvoConstant& c) { c.concat(&c); }, "string:abab"},
    };
    for (auto& c : cases) {
        c.apply(c.start);
        EXPECT_EQ(show(c.start), c.expected) << c.name;
    }
}

// One-operand operations, each run on a target holding "x": the math
// functions with their strict domains, neg, abs and not, and concat onto "x".
TEST(TalvoConstant, UnaryOperations_HaveStrictDomains) {
    struct {
        const char* name;
        void (TalvoConstant::*op)(const TalvoConstant*);
        TalvoConstant operand;
        const char* expected;
    } cases[] = {
        {"sqrt 0", &TalvoConstant::sqrt, TalvoConstant(0), "nil"},
        {"floor -2.7", &TalvoConstant::floor, TalvoConstant(-2.7), "nil"},
        {"ceil -0.5", &TalvoConstant::ceil, TalvoConstant(-0.5), "nil"},
        {"acos 2 (library NaN)", &TalvoConstant::acos, TalvoConstant(2), "double:nan"},
        {"asin 1", &TalvoConstant::asin, TalvoConstant(1), "double:1.5708"},
        {"atan 1", &TalvoConstant::atan, TalvoConstant(1), "double:0.785398"},
        {"cos 1", &TalvoConstant::cos, TalvoConstant(1), "double:0.540302"},
        {"cosh 1", &TalvoConstant::cosh, TalvoConstant(1), "double:1.54308"},
        {"sin 1.0", &TalvoConstant::sin, TalvoConstant(1.0), "double:0.841471"},
        {"sinh 1", &TalvoConstant::sinh, TalvoConstant(1), "double:1.1752"},
        {"tan 1", &TalvoConstant::tan, TalvoConstant(1), "double:1.55741"},
        {"tanh 1", &TalvoConstant::tanh, TalvoConstant(1), "double:0.761594"},
        {"exp 1", &TalvoConstant::exp, TalvoConstant(1), "double:2.71828"},
        {"sin of a bool", &TalvoConstant::sin, TalvoConstant(true), "nil"},
        {"log 10", &TalvoConstant::log, TalvoConstant(10), "double:2.30259"},
        {"log 0", &TalvoConstant::log, TalvoConstant(0), "nil"},
        {"log10 1000", &TalvoConstant::log10, TalvoConstant(1000), "double:3"},
        {"log10 0.0", &TalvoConstant::log10, TalvoConstant(0.0), "nil"},
        // neg keeps the type; an int's absolute value is a double.
        {"neg INT_MIN wraps", &TalvoConstant::neg, TalvoConstant(INT_MIN), "int:-2147483648"},
        {"abs int", &TalvoConstant::abs, TalvoConstant(-3), "double:3"},
        {"not int", &TalvoConstant::not_, TalvoConstant(1), "nil"},
        {"concat double", &TalvoConstant::concat, TalvoConstant(0.5), "string:x0.5"},
        {"concat nil", &TalvoConstant::concat, TalvoConstant(), "nil"},
    };
    for (auto& c : cases) {
        TalvoConstant result("x");
        (result.*c.op)(&c.operand);
        EXPECT_EQ(show(result), c.expected) << c.name;
    }
}

TEST(TalvoConstant, Dump_WritesTheValueWithoutNewline) {
    struct {
        TalvoConstant value;
        const char* expected;
    } cases[] = {
        {TalvoConstant(), "nil"},
        {TalvoConstant(1234567.0), "1.23457e+06"},
        {TalvoConstant("a\\nb"), "a\\nb"},  // no escape interpreted
        {TalvoConstant(TalvoInteger::allocate(0), TalvoInteger::free, 42), "42"},
    };
    for (auto& c : cases) {
        char buffer[64] = {};
        TalvoRawStringStream stream(false, buffer, sizeof buffer - 1);
        stream.setSignificantDigitNumber(12);  // dump uses "%g" whatever the stream says
        c.value.dump(&stream);
        EXPECT_STREQ(buffer, c.expected);
    }
    TalvoConstant(1).dump(nullptr);
}
