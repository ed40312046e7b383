// Constants: arithmetic, logic, relations, mathematics and conversions on
// operands decoded from the input.
//
// Four registers are loaded with decoded constants of every type (a pointer
// constant owns a raw string), then a script applies operations with fuzzed
// targets and operands, the target often being an operand itself. Copies of
// a pointer constant are never made: both copies would free the pointer.
#include "FuzzSupport.h"

#include <talvo/foundation/TalvoRawString.h>
#include <talvo/text/TalvoRawStringStream.h>
#include <talvo/values/TalvoConstant.h>

#include <cstring>
#include <vector>

namespace {

const int kRegisterCount = 4;
const int kMaxSteps = 64;
const std::size_t kMaxStringLength = 32;
const int kDumpBufferSize = 64;
const std::size_t kMaxConcatLength = 4096;

void check(bool condition, const char* what) {
    if (!condition) {
        std::fprintf(stderr, "constant check failed: %s\n", what);
        std::abort();
    }
}

void load(TalvoConstant* c, FuzzedDataProvider& input) {
    switch (input.ConsumeIntegralInRange(0, 5)) {
    case 0: c->set(); break;
    case 1: c->set(input.ConsumeBool()); break;
    case 2: c->set(input.ConsumeIntegral<int>()); break;
    case 3: c->set(input.ConsumeFloatingPoint<double>()); break;
    case 4: c->set(talvo_fuzz::takeText(input, kMaxStringLength).c_str()); break;
    default:
        c->set(TalvoRawString::copy("owned"), TalvoRawString::free, input.ConsumeIntegral<int>());
        break;
    }
}

typedef void (TalvoConstant::*Binary)(const TalvoConstant*, const TalvoConstant*);
typedef void (TalvoConstant::*Unary)(const TalvoConstant*);
typedef void (TalvoConstant::*WithConstant)(const TalvoConstant*);
typedef void (TalvoConstant::*WithInt)(int);
typedef void (TalvoConstant::*WithDouble)(double);

const Binary kBinary[] = {
    &TalvoConstant::add, &TalvoConstant::sub, &TalvoConstant::mul, &TalvoConstant::div,
    &TalvoConstant::mod, &TalvoConstant::and_, &TalvoConstant::or_, &TalvoConstant::imply,
    &TalvoConstant::inf, &TalvoConstant::sup, &TalvoConstant::atan2, &TalvoConstant::pow,
    &TalvoConstant::eq, &TalvoConstant::df, &TalvoConstant::lt, &TalvoConstant::gt,
    &TalvoConstant::leq, &TalvoConstant::geq,
};
const Unary kUnary[] = {
    &TalvoConstant::neg, &TalvoConstant::not_, &TalvoConstant::abs, &TalvoConstant::acos,
    &TalvoConstant::asin, &TalvoConstant::atan, &TalvoConstant::cos, &TalvoConstant::cosh,
    &TalvoConstant::sin, &TalvoConstant::sinh, &TalvoConstant::tan, &TalvoConstant::tanh,
    &TalvoConstant::exp, &TalvoConstant::log, &TalvoConstant::log10, &TalvoConstant::sqrt,
    &TalvoConstant::ceil, &TalvoConstant::floor,
};
const WithConstant kWithConstant[] = {
    &TalvoConstant::setAdd, &TalvoConstant::setSub, &TalvoConstant::setMul, &TalvoConstant::setDiv,
    &TalvoConstant::inc, &TalvoConstant::dec, &TalvoConstant::setAnd, &TalvoConstant::setOr,
    &TalvoConstant::setInf, &TalvoConstant::setSup, &TalvoConstant::concat,
};
const WithInt kWithInt[] = {
    &TalvoConstant::setAdd, &TalvoConstant::setSub, &TalvoConstant::setMul, &TalvoConstant::setDiv,
    &TalvoConstant::inc, &TalvoConstant::dec, &TalvoConstant::setInf, &TalvoConstant::setSup,
};
const WithDouble kWithDouble[] = {
    &TalvoConstant::setAdd, &TalvoConstant::setSub, &TalvoConstant::setMul, &TalvoConstant::setDiv,
    &TalvoConstant::inc, &TalvoConstant::dec, &TalvoConstant::setInf, &TalvoConstant::setSup,
};

template <class T, std::size_t N>
T pick(const T (&table)[N], FuzzedDataProvider& input) {
    return table[input.ConsumeIntegralInRange<std::size_t>(0, N - 1)];
}

// Conversions, compares and the dump of one constant against another.
void inspect(TalvoConstant* c, TalvoConstant* other, FuzzedDataProvider& input) {
    c->toBool();
    c->toInt();
    c->toDouble();
    c->toString();  // the stored string itself, still the constant's
    c->toPointer();
    c->toPointerOfCode(input.ConsumeIntegral<int>());
    int order = c->compare(other);  // against nil: this constant's type tag
    if (other)
        check(TalvoConstant::compare(c, other) == order, "compare call-back agrees");
    check(c->compare(c) == 0 || c->isDouble(), "a constant equals itself (NaN aside)");
    c->compareNumbers(other);
    c->is(other);
    c->compare(input.ConsumeBool());
    c->compare(input.ConsumeIntegral<int>());
    c->compare(input.ConsumeFloatingPoint<double>());
    c->compare(talvo_fuzz::takeText(input, kMaxStringLength).c_str());
    c->compare(static_cast<const char*>(nullptr));
    c->is(input.ConsumeIntegral<int>());
    c->is(input.ConsumeFloatingPoint<double>());

    std::vector<char> buffer(kDumpBufferSize + 1, '\0');
    TalvoRawStringStream* stream = new TalvoRawStringStream(false, buffer.data(), kDumpBufferSize);
    c->dump(stream);
    delete stream;
}

void step(TalvoConstant** r, FuzzedDataProvider& input) {
    TalvoConstant* target = r[input.ConsumeIntegralInRange(0, kRegisterCount - 1)];
    TalvoConstant* a = r[input.ConsumeIntegralInRange(0, kRegisterCount - 1)];
    TalvoConstant* b = input.ConsumeIntegralInRange(0, 7) == 0 ? nullptr : r[input.ConsumeIntegralInRange(0, kRegisterCount - 1)];
    switch (input.ConsumeIntegralInRange(0, 8)) {
    case 0: (target->*pick(kBinary, input))(a, b); break;
    case 1: (target->*pick(kUnary, input))(b); break;
    case 2: {
        WithConstant operation = pick(kWithConstant, input);
        if (operation == &TalvoConstant::concat && target->isString() && target->toString() &&
            std::strlen(target->toString()) > kMaxConcatLength)
            break;  // a string concatenated to itself doubles at every step
        (target->*operation)(b);
        break;
    }
    case 3: (target->*pick(kWithInt, input))(input.ConsumeIntegral<int>()); break;
    case 4: (target->*pick(kWithDouble, input))(input.ConsumeFloatingPoint<double>()); break;
    case 5: target->setAnd(input.ConsumeBool()); target->setOr(input.ConsumeBool()); break;
    case 6:
        if (!a->isPointer())
            target->set(a);  // a pointer would then be owned twice
        break;
    case 7: load(target, input); break;
    default: inspect(target, b, input); break;
    }
    check(target->getType() >= TalvoConstant::NilType && target->getType() <= TalvoConstant::PointerType,
          "a known type");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    long start = TalvoMemoryManager::getAllocationBalance();
    FuzzedDataProvider input(data, size);
    TalvoConstant* r[kRegisterCount];
    for (TalvoConstant*& c : r) {
        c = new TalvoConstant();
        load(c, input);
    }
    for (int i = 0; i < kMaxSteps && input.remaining_bytes() > 0; ++i)
        step(r, input);
    TalvoConstant* copy = r[0]->isPointer() ? new TalvoConstant() : new TalvoConstant(r[0]);
    check(copy->compare(r[0]) == 0 || r[0]->isDouble() || r[0]->isPointer(), "a copy compares equal");
    for (TalvoConstant* c : r)
        TalvoConstant::free(c);
    TalvoConstant::free(copy);
    talvo_fuzz::requireBalance(start, "constant script");
    return 0;
}
