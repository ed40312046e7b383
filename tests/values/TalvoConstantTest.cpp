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

// Describes a constant as "<type>:<value>" so that tables compare one string.
std::string show(TalvoConstant& c) {
    switch (c.getType()) {
        case TalvoConstant::NilType: return "nil";
        case TalvoConstant::BoolType: return c.toBool() ? "bool:true" : "bool:false";
        case TalvoConstant::IntType: return "int:" + std::to_string(c.toInt());
        case TalvoConstant::DoubleType: {
            if (std::isnan(c.toDouble()))
                return "double:nan";
            char text[32];
            std::snprintf(text, sizeof text, "double:%g", c.toDouble());
            return text;
        }
        case TalvoConstant::StringType: return std::string("string:") + (c.toString() ? c.toString() : "(null)");
        default: return "pointer";
    }
}

// The operands used across the operation matrices.
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
    TalvoConstant nil, yes(true), seven(7), negative(-1.5), nan(std::nan("")), trueText("true");
    TalvoConstant oneText("1"), number(" 42abc"), realText("2.5"), nullText(static_cast<const char*>(nullptr));
    EXPECT_FALSE(nil.toBool());
    EXPECT_EQ(nil.toInt(), 0);
    EXPECT_EQ(nil.toPointer(), nullptr);
    EXPECT_TRUE(yes.toBool());
    EXPECT_EQ(yes.toInt(), 1);
    EXPECT_EQ(yes.toDouble(), 1.0);
    EXPECT_EQ(seven.toDouble(), 7.0);
    EXPECT_TRUE(negative.toBool());
    EXPECT_EQ(negative.toInt(), -2);  // floor, not truncation
    EXPECT_TRUE(nan.toBool());
    EXPECT_FALSE(trueText.toBool());  // atoi("true") is 0
    EXPECT_TRUE(oneText.toBool());
    EXPECT_EQ(number.toInt(), 42);
    EXPECT_EQ(realText.toDouble(), 2.5);
    EXPECT_EQ(nullText.toString(), nullptr);
    EXPECT_TRUE(nullText.isString());
    TalvoConstant big(1e12), small(-1e12);  // doubles outside the int range saturate
    EXPECT_EQ(big.toInt(), INT_MAX);
    EXPECT_EQ(small.toInt(), INT_MIN);
    EXPECT_EQ(nan.toInt(), 0);
}

TEST(TalvoConstant, ToStringAndToPointer_OnlyGiveStoredValues) {
    TalvoConstant seven(7), text("abc");
    int marker = 0;
    TalvoConstant pointer(&marker, TalvoFunction::doNothing, 3);
    EXPECT_EQ(seven.toString(), nullptr);  // numbers have no string form
    EXPECT_STREQ(text.toString(), "abc");
    EXPECT_EQ(text.toPointer(), text.toString());
    EXPECT_EQ(*static_cast<int*>(seven.toPointer()), 7);  // the value slot
    EXPECT_EQ(pointer.toPointer(), &marker);
    EXPECT_EQ(pointer.toPointerOfCode(3), &marker);
    EXPECT_EQ(pointer.toPointerOfCode(4), nullptr);
    EXPECT_TRUE(pointer.isPointerOfCode(3));
    EXPECT_TRUE(pointer.toBool());
}

TEST(TalvoConstant, SetAndFree_ReleaseTheOldValueAndCopyStrings) {
    char buffer[] = "abc";
    TalvoConstant c(buffer);
    buffer[0] = 'x';
    EXPECT_STREQ(c.toString(), "abc");
    c.set(c.toString());  // its own string
    EXPECT_STREQ(c.toString(), "abc");
    c.set(TalvoInteger::allocate(1), TalvoInteger::free, 5);
    c.set(2.5);
    EXPECT_EQ(show(c), "double:2.5");
    TalvoConstant copy(&c);
    EXPECT_EQ(show(copy), "double:2.5");
    c.set(&c);
    EXPECT_EQ(show(c), "double:2.5");
    c.set(static_cast<const TalvoConstant*>(nullptr));
    EXPECT_TRUE(c.isNil());
    TalvoConstant::free(new TalvoConstant("item"));
    TalvoConstant::free(nullptr);
}

TEST(TalvoConstant, Compare_OrdersByTypeTagThenValue) {
    Operands o;
    TalvoConstant other("4");
    struct {
        const char* name;
        int actual;
        int expected;
    } cases[] = {
        {"nil vs nil", o.nil.compare(&o.nil), 0},
        {"string vs nil", o.text.compare(&o.nil), 4},
        {"string vs int", o.text.compare(&o.three), 2},          // 4 - 2
        {"nil vs bool", o.nil.compare(&o.yes), -1},
        {"int vs string", o.three.compare(&o.text), -2},
        {"pointer vs double", o.pointer.compare(&o.half), 2},
        {"int 3 vs double 3.0", o.three.compare(&o.threeAsDouble), 0},
        {"int 2 vs int 3", o.two.compare(&o.three), -1},
        {"double 0.5 vs int 0", o.half.compare(&o.zero), 1},
        {"true vs false", o.yes.compare(&o.no), 1},
        {"false vs true", o.no.compare(&o.yes), -1},
        {"string 3 vs string 4", o.text.compare(&other), -1},
        {"string vs null string", o.text.compare(static_cast<const char*>(nullptr)), 1},
        {"bool vs int value", o.yes.compare(5), -1},              // 1 - 2
        {"int vs double value", o.two.compare(2.5), -1},
        {"static compare", TalvoConstant::compare(&o.two, &o.three), -1},
        {"compareNumbers ignores types", o.yes.compareNumbers(&o.half), 1},
        {"static compareNumbers", TalvoConstant::compareNumbers(&o.half, &o.three), -1},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.actual, c.expected) << c.name;
}

TEST(TalvoConstant, ComparePointer_GivesTheAddressDistance) {
    int cells[4] = {0, 0, 0, 0};
    TalvoConstant c(&cells[2], TalvoFunction::doNothing, 0);
    EXPECT_EQ(c.compare(static_cast<void*>(&cells[0])), static_cast<int>(2 * sizeof(int)));
    EXPECT_EQ(c.compare(static_cast<void*>(&cells[3])), -static_cast<int>(sizeof(int)));
    EXPECT_TRUE(c.is(static_cast<void*>(&cells[2])));
}

TEST(TalvoConstant, Is_OfBoolNeedsABool) {
    TalvoConstant one(1), yes(true), three(3), threeAsDouble(3.0), text("a");
    EXPECT_FALSE(one.is(true));   // compare(true) would be 2 - 1 anyway
    EXPECT_TRUE(yes.is(true));
    EXPECT_FALSE(yes.is(false));
    EXPECT_TRUE(three.is(3.0));
    EXPECT_TRUE(threeAsDouble.is(3));
    EXPECT_TRUE(three.is(&threeAsDouble));
    EXPECT_TRUE(text.is("a"));
    EXPECT_FALSE(text.is("b"));
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
        {"double+int", &TalvoConstant::add, &Operands::half, &Operands::two, "double:2.5"},
        {"int+string", &TalvoConstant::add, &Operands::two, &Operands::text, "nil"},
        {"int+bool", &TalvoConstant::add, &Operands::two, &Operands::yes, "nil"},
        {"nil+int", &TalvoConstant::add, &Operands::nil, &Operands::two, "nil"},
        {"pointer+int", &TalvoConstant::add, &Operands::pointer, &Operands::two, "nil"},
        {"int-int", &TalvoConstant::sub, &Operands::two, &Operands::three, "int:-1"},
        {"int*double", &TalvoConstant::mul, &Operands::three, &Operands::half, "double:1.5"},
        {"int/double", &TalvoConstant::div, &Operands::three, &Operands::half, "double:6"},
        {"int/int 0", &TalvoConstant::div, &Operands::three, &Operands::zero, "nil"},
        {"int/double 0", &TalvoConstant::div, &Operands::three, &Operands::zeroAsDouble, "nil"},
        {"int%int", &TalvoConstant::mod, &Operands::three, &Operands::two, "int:1"},
        {"int%int 0", &TalvoConstant::mod, &Operands::three, &Operands::zero, "nil"},
        {"double%int", &TalvoConstant::mod, &Operands::threeAsDouble, &Operands::two, "double:1"},
        {"int%double 0", &TalvoConstant::mod, &Operands::three, &Operands::zeroAsDouble, "double:nan"},
        {"bool%int", &TalvoConstant::mod, &Operands::yes, &Operands::two, "nil"},
        {"int pow int", &TalvoConstant::pow, &Operands::two, &Operands::three, "double:8"},
        {"int atan2 string", &TalvoConstant::atan2, &Operands::two, &Operands::text, "nil"},
        // Logic takes bools only.
        {"true and false", &TalvoConstant::and_, &Operands::yes, &Operands::no, "bool:false"},
        {"true and true", &TalvoConstant::and_, &Operands::yes, &Operands::yes, "bool:true"},
        {"true and int", &TalvoConstant::and_, &Operands::yes, &Operands::two, "nil"},
        {"false or true", &TalvoConstant::or_, &Operands::no, &Operands::yes, "bool:true"},
        {"false or false", &TalvoConstant::or_, &Operands::no, &Operands::no, "bool:false"},
        {"nil or true", &TalvoConstant::or_, &Operands::nil, &Operands::yes, "nil"},
        {"false imply false", &TalvoConstant::imply, &Operands::no, &Operands::no, "bool:true"},
        {"true imply false", &TalvoConstant::imply, &Operands::yes, &Operands::no, "bool:false"},
        {"true imply true", &TalvoConstant::imply, &Operands::yes, &Operands::yes, "bool:true"},
        {"true imply string", &TalvoConstant::imply, &Operands::yes, &Operands::text, "nil"},
        // Relations: two bools, two numbers in any mix or two strings.
        {"false lt true", &TalvoConstant::lt, &Operands::no, &Operands::yes, "bool:true"},
        {"true eq true", &TalvoConstant::eq, &Operands::yes, &Operands::yes, "bool:true"},
        {"int 3 eq double 3.0", &TalvoConstant::eq, &Operands::three, &Operands::threeAsDouble, "bool:true"},
        {"double 0.5 gt int 2", &TalvoConstant::gt, &Operands::half, &Operands::two, "bool:false"},
        {"int 3 leq double 3.0", &TalvoConstant::leq, &Operands::three, &Operands::threeAsDouble, "bool:true"},
        {"int df int", &TalvoConstant::df, &Operands::two, &Operands::three, "bool:true"},
        {"string eq string", &TalvoConstant::eq, &Operands::text, &Operands::text, "bool:true"},
        {"string lt string", &TalvoConstant::lt, &Operands::text, &Operands::text, "bool:false"},
        {"int eq string", &TalvoConstant::eq, &Operands::three, &Operands::text, "nil"},
        {"bool eq int", &TalvoConstant::eq, &Operands::yes, &Operands::two, "nil"},
        {"nil eq nil", &TalvoConstant::eq, &Operands::nil, &Operands::nil, "nil"},
        {"pointer eq pointer", &TalvoConstant::eq, &Operands::pointer, &Operands::pointer, "nil"},
        {"string lt high byte (unsigned)", &TalvoConstant::lt, &Operands::text, &Operands::highByte, "bool:true"},
        // inf and sup keep the chosen operand's type; ties take the second.
        {"inf tie takes second", &TalvoConstant::inf, &Operands::three, &Operands::threeAsDouble, "double:3"},
        {"inf tie takes second, reversed", &TalvoConstant::inf, &Operands::threeAsDouble, &Operands::three, "int:3"},
        {"sup tie takes second", &TalvoConstant::sup, &Operands::three, &Operands::threeAsDouble, "double:3"},
        {"inf int", &TalvoConstant::inf, &Operands::two, &Operands::half, "double:0.5"},
        {"sup int", &TalvoConstant::sup, &Operands::two, &Operands::half, "int:2"},
        {"inf string", &TalvoConstant::inf, &Operands::two, &Operands::text, "nil"},
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
        {&TalvoConstant::sub, INT_MIN, 1, INT_MAX},
        {&TalvoConstant::mul, INT_MIN, -1, INT_MIN},
        {&TalvoConstant::mul, 65536, 65536, 0},
        {&TalvoConstant::div, INT_MIN, -1, INT_MIN},
        {&TalvoConstant::div, -7, 2, -3},
        {&TalvoConstant::mod, INT_MIN, -1, 0},
        {&TalvoConstant::mod, -7, 2, -1},
    };
    for (const auto& c : cases) {
        TalvoConstant a(c.a), b(c.b), result;
        (result.*c.op)(&a, &b);
        EXPECT_EQ(show(result), "int:" + std::to_string(c.expected)) << c.a << " op " << c.b;
    }
}

TEST(TalvoConstant, Arithmetic_TargetMayBeAnOperand) {
    TalvoConstant c(20);
    c.add(&c, &c);
    EXPECT_EQ(show(c), "int:40");
    TalvoConstant d(4);
    c.setDiv(&d);
    EXPECT_EQ(show(c), "int:10");
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
        {"int setAdd double", TalvoConstant(2), [](TalvoConstant& c) { c.setAdd(3.0); }, "double:5"},
        {"double setAdd int", TalvoConstant(0.5), [](TalvoConstant& c) { c.setAdd(1); }, "double:1.5"},
        {"int setSub int wraps", TalvoConstant(INT_MIN), [](TalvoConstant& c) { c.setSub(1); }, "int:2147483647"},
        {"int setMul double", TalvoConstant(4), [](TalvoConstant& c) { c.setMul(0.25); }, "double:1"},
        {"int setDiv int", TalvoConstant(7), [](TalvoConstant& c) { c.setDiv(2); }, "int:3"},
        {"int setDiv double", TalvoConstant(7), [](TalvoConstant& c) { c.setDiv(2.0); }, "double:3.5"},
        {"int setDiv 0", TalvoConstant(7), [](TalvoConstant& c) { c.setDiv(0); }, "nil"},
        {"double setDiv 0.0", TalvoConstant(7.0), [](TalvoConstant& c) { c.setDiv(0.0); }, "nil"},
        {"string setAdd int", TalvoConstant("1"), [](TalvoConstant& c) { c.setAdd(1); }, "nil"},
        {"bool setAdd double", TalvoConstant(true), [](TalvoConstant& c) { c.setAdd(1.0); }, "nil"},
        // inc and dec never give nil: other types stay as they are.
        {"int inc int wraps", TalvoConstant(INT_MAX), [](TalvoConstant& c) { c.inc(1); }, "int:-2147483648"},
        {"int inc double", TalvoConstant(1), [](TalvoConstant& c) { c.inc(0.5); }, "double:1.5"},
        {"double inc int", TalvoConstant(0.5), [](TalvoConstant& c) { c.inc(1); }, "double:1.5"},
        {"string inc int", TalvoConstant("s"), [](TalvoConstant& c) { c.inc(1); }, "string:s"},
        {"bool inc double", TalvoConstant(true), [](TalvoConstant& c) { c.inc(1.0); }, "bool:true"},
        {"nil dec int", TalvoConstant(), [](TalvoConstant& c) { c.dec(1); }, "nil"},
        {"int dec int wraps", TalvoConstant(INT_MIN), [](TalvoConstant& c) { c.dec(1); }, "int:2147483647"},
        {"int dec double", TalvoConstant(1), [](TalvoConstant& c) { c.dec(0.5); }, "double:0.5"},
        {"int inc constant double", TalvoConstant(1), [](TalvoConstant& c) { TalvoConstant a(0.25); c.inc(&a); }, "double:1.25"},
        {"int dec constant int", TalvoConstant(1), [](TalvoConstant& c) { TalvoConstant a(5); c.dec(&a); }, "int:-4"},
        {"int inc constant string", TalvoConstant(1), [](TalvoConstant& c) { TalvoConstant a("5"); c.inc(&a); }, "int:1"},
        // Logic wants bools, bounds numbers, concat a string.
        {"not itself", TalvoConstant(true), [](TalvoConstant& c) { c.not_(&c); }, "bool:false"},
        {"true setAnd false", TalvoConstant(true), [](TalvoConstant& c) { c.setAnd(false); }, "bool:false"},
        {"false setOr true", TalvoConstant(false), [](TalvoConstant& c) { c.setOr(true); }, "bool:true"},
        {"bool setAnd int", TalvoConstant(true), [](TalvoConstant& c) { TalvoConstant x(1); c.setAnd(&x); }, "nil"},
        {"int setInf double", TalvoConstant(2), [](TalvoConstant& c) { c.setInf(1.5); }, "double:1.5"},
        {"double setSup int", TalvoConstant(1.5), [](TalvoConstant& c) { c.setSup(4); }, "int:4"},
        {"int setSup smaller double", TalvoConstant(4), [](TalvoConstant& c) { c.setSup(3.0); }, "int:4"},
        {"string setInf int", TalvoConstant("x"), [](TalvoConstant& c) { c.setInf(1); }, "nil"},
        {"concat itself", TalvoConstant("ab"), [](TalvoConstant& c) { c.concat(&c); }, "string:abab"},
        {"int concat string", TalvoConstant(1), [](TalvoConstant& c) { TalvoConstant x("ab"); c.concat(&x); }, "nil"},
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
        {"sqrt 4", &TalvoConstant::sqrt, TalvoConstant(4), "double:2"},
        {"sqrt 0", &TalvoConstant::sqrt, TalvoConstant(0), "nil"},
        {"sqrt -1", &TalvoConstant::sqrt, TalvoConstant(-1.0), "nil"},
        {"floor 2.7", &TalvoConstant::floor, TalvoConstant(2.7), "int:2"},
        {"floor -2.7", &TalvoConstant::floor, TalvoConstant(-2.7), "nil"},
        {"floor 0", &TalvoConstant::floor, TalvoConstant(0.0), "nil"},
        {"ceil 2.1", &TalvoConstant::ceil, TalvoConstant(2.1), "int:3"},
        {"ceil -0.5", &TalvoConstant::ceil, TalvoConstant(-0.5), "nil"},
        {"log 1", &TalvoConstant::log, TalvoConstant(1), "double:0"},
        {"log 0", &TalvoConstant::log, TalvoConstant(0), "nil"},
        {"log10 100", &TalvoConstant::log10, TalvoConstant(100), "double:2"},
        {"log10 -1", &TalvoConstant::log10, TalvoConstant(-1), "nil"},
        {"exp 0", &TalvoConstant::exp, TalvoConstant(0), "double:1"},
        {"acos 2 (library NaN)", &TalvoConstant::acos, TalvoConstant(2), "double:nan"},
        {"sin string", &TalvoConstant::sin, TalvoConstant("0"), "nil"},
        {"tanh bool", &TalvoConstant::tanh, TalvoConstant(true), "nil"},
        // neg keeps the type; an int's absolute value is a double.
        {"neg int", &TalvoConstant::neg, TalvoConstant(-3), "int:3"},
        {"neg INT_MIN wraps", &TalvoConstant::neg, TalvoConstant(INT_MIN), "int:-2147483648"},
        {"neg double", &TalvoConstant::neg, TalvoConstant(-0.5), "double:0.5"},
        {"neg string", &TalvoConstant::neg, TalvoConstant("1"), "nil"},
        {"abs int", &TalvoConstant::abs, TalvoConstant(-3), "double:3"},
        {"abs string", &TalvoConstant::abs, TalvoConstant("1"), "nil"},
        {"not int", &TalvoConstant::not_, TalvoConstant(1), "nil"},
        {"concat double", &TalvoConstant::concat, TalvoConstant(0.5), "string:x0.5"},
        {"concat int", &TalvoConstant::concat, TalvoConstant(-12), "string:x-12"},
        {"concat bool", &TalvoConstant::concat, TalvoConstant(true), "string:xtrue"},
        {"concat string", &TalvoConstant::concat, TalvoConstant("yz"), "string:xyz"},
        {"concat nil", &TalvoConstant::concat, TalvoConstant(), "nil"},
        {"concat pointer", &TalvoConstant::concat, TalvoConstant(TalvoInteger::allocate(1), TalvoInteger::free, 0), "nil"},
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
        {TalvoConstant(true), "true"},
        {TalvoConstant(-7), "-7"},
        {TalvoConstant(0.1), "0.1"},
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
