// UTF-8 text driven by an edit script.
//
// One TalvoUTF8Buffer and a few TalvoUTF8String slots receive appends,
// inserts, removals, clears and getChar at fuzzed indexes; strings are also
// copied into other slots (sharing a buffer) and deleted. A model keeps each
// text as a vector of encoded characters: the buffer's bytes are compared
// with it after every step, and every string's characters at the end.
#include "FuzzSupport.h"

#include <talvo/text/TalvoUTF8Buffer.h>
#include <talvo/text/TalvoUTF8Char.h>
#include <talvo/text/TalvoUTF8String.h>

#include <vector>

namespace {

const int kSlotCount = 4;
const int kMaxSteps = 200;
const std::size_t kMaxTextLength = 16;
// Indexes stray this far outside the text, to reach the refusals.
const int kIndexSlack = 3;
// Self-appends stop doubling beyond this many characters.
const int kMaxDoubledLength = 256;

typedef std::vector<std::string> Model;  // one encoded character per entry

void check(bool condition, const char* what) {
    if (!condition) {
        std::fprintf(stderr, "utf8 check failed: %s\n", what);
        std::abort();
    }
}

std::string encode(const TalvoUTF8Char& c) {
    std::string bytes;
    for (int i = 0, n = c.getNumberOfBytes(); i < n; ++i)
        bytes.push_back(static_cast<char>(c.getByte(i)));
    return bytes;
}

std::string encodeLatin1(char c) { return encode(TalvoUTF8Char(c)); }

// The model's side of insert(index, text): bytes before position 0 are lost.
void modelInsertText(Model& m, int index, const std::string& text) {
    std::size_t skip = 0;
    while (index < 0 && skip < text.size()) {
        ++index;
        ++skip;
    }
    if (skip == text.size() || index > static_cast<int>(m.size()))
        return;
    for (std::size_t k = skip; k < text.size(); ++k)
        m.insert(m.begin() + index++, encodeLatin1(text[k]));
}

void checkChars(const TalvoUTF8String& s, const Model& m) {
    check(s.getLength() == static_cast<int>(m.size()), "string length");
    for (std::size_t i = 0; i < m.size(); ++i)
        check(encode(s.getChar(static_cast<int>(i))) == m[i], "string character");
    check(s.getChar(static_cast<int>(m.size())).getByte(0) == 0, "getChar past the end");
}

void checkBytes(const TalvoUTF8Buffer& b, const Model& m) {
    std::string expected;
    for (const std::string& c : m)
        expected += c;
    check(b.getLength() == static_cast<int>(m.size()), "buffer length");
    check(b.getByteLength() == static_cast<int>(expected.size()), "buffer byte length");
    if (!expected.empty())
        check(std::memcmp(b.getBytes(), expected.data(), expected.size()) == 0, "buffer bytes");
}

// One edit, applied alike to a buffer or a string and to its model.
template <class Text>
void edit(Text& t, Model& m, FuzzedDataProvider& input) {
    int length = static_cast<int>(m.size());
    int index = input.ConsumeIntegralInRange(-kIndexSlack, length + kIndexSlack);
    bool inside = index >= 0 && index <= length;
    switch (input.ConsumeIntegralInRange(0, 8)) {
    case 0: {
        char c = input.ConsumeIntegral<char>();
        t.append(c);
        m.push_back(encodeLatin1(c));
        break;
    }
    case 1: {
        std::string text = talvo_fuzz::takeText(input, kMaxTextLength);
        t.append(text.c_str());
        modelInsertText(m, length, text);
        break;
    }
    case 2: {
        unsigned char b[4];
        for (unsigned char& x : b)
            x = input.ConsumeIntegral<unsigned char>();
        TalvoUTF8Char c(b[0], b[1], b[2], b[3]);
        check(TalvoUTF8Char::isValidUTF8ByteSequence(c.getByte(0), c.getByte(1), c.getByte(2), c.getByte(3)),
              "a character always holds a valid sequence");
        t.insert(index, c);
        if (inside)
            m.insert(m.begin() + index, encode(c));
        break;
    }
    case 3: {
        char c = input.ConsumeIntegral<char>();
        t.insert(index, c);
        if (inside)
            m.insert(m.begin() + index, encodeLatin1(c));
        break;
    }
    case 4: {
        std::string text = talvo_fuzz::takeText(input, kMaxTextLength);
        t.insert(index, text.c_str());
        modelInsertText(m, index, text);
        break;
    }
    case 5:
        t.remove(index);
        if (index >= 0 && index < length)
            m.erase(m.begin() + index);
        break;
    case 6:
        t.clear();
        m.clear();
        break;
    case 7: {
        TalvoUTF8Char c = t.getChar(index);
        check(encode(c) == (index >= 0 && index < length ? m[index] : encode(TalvoUTF8Char())), "getChar");
        break;
    }
    default: {
        if (length > kMaxDoubledLength)
            break;
        t.append(t);  // appending itself doubles the text
        Model copy = m;
        m.insert(m.end(), copy.begin(), copy.end());
        break;
    }
    }
}

struct Slot {
    TalvoUTF8String* string = nullptr;
    Model model;
};

void stringStep(Slot* slots, FuzzedDataProvider& input) {
    Slot& a = slots[input.ConsumeIntegralInRange(0, kSlotCount - 1)];
    Slot& b = slots[input.ConsumeIntegralInRange(0, kSlotCount - 1)];
    switch (input.ConsumeIntegralInRange(0, 3)) {
    case 0:  // a new empty string, or an edit of an existing one
        if (!a.string) {
            a.string = new TalvoUTF8String();
            a.model.clear();
        } else {
            edit(*a.string, a.model, input);
            check(a.string->getLength() == static_cast<int>(a.model.size()), "edited length");
            check(a.string->getReferenceCounter() >= 1, "reference counter");
        }
        break;
    case 1:  // b becomes a copy of a, sharing its buffer
        if (a.string && &a != &b) {
            delete b.string;
            b.string = new TalvoUTF8String(*a.string);
            b.model = a.model;
        }
        break;
    case 2:  // assignment over a string that alone holds its share
        // (a share still seen by others is kept on purpose and would outlive them)
        if (a.string && b.string && &a != &b && b.string->getReferenceCounter() == 1) {
            *b.string = *a.string;
            b.model = a.model;
        }
        break;
    default:
        delete a.string;
        a.string = nullptr;
        a.model.clear();
        break;
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    long start = TalvoMemoryManager::getAllocationBalance();
    FuzzedDataProvider input(data, size);
    {
        TalvoUTF8Buffer* buffer = new TalvoUTF8Buffer();
        Model bufferModel;
        Slot slots[kSlotCount];
        for (int step = 0; step < kMaxSteps && input.remaining_bytes() > 0; ++step) {
            if (input.ConsumeBool()) {
                edit(*buffer, bufferModel, input);
                checkBytes(*buffer, bufferModel);
            } else {
                stringStep(slots, input);
            }
        }
        for (Slot& slot : slots) {
            if (slot.string)
                checkChars(*slot.string, slot.model);
            TalvoUTF8String::free(slot.string);
        }
        TalvoUTF8Buffer::free(buffer);
    }
    talvo_fuzz::requireBalance(start, "UTF-8 script");
    return 0;
}
