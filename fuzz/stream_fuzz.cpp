// Memory streams and character buffers driven by an edit script.
//
// The input is a text to read, then a script: each step reads, gives back or
// asks isAtEnd on a reading stream over the text, writes arbitrary bytes with
// put(const char*) and the number puts on a small writing stream that drains
// through its flush call-back, or edits a character buffer. The written text
// is checked against the buffer size and the read characters against the text.
#include "FuzzSupport.h"

#include <talvo/foundation/TalvoRawString.h>
#include <talvo/text/TalvoCharBuffer.h>
#include <talvo/text/TalvoRawStringStream.h>

#include <cstring>
#include <vector>

namespace {

const std::size_t kMaxTextLength = 512;
const std::size_t kMaxPutLength = 64;
const int kMaxWriteSize = 64;
const int kMaxSteps = 256;

// Everything the writing stream drained; the call-back has no context.
std::string gDrained;

void drain(char** buffer, int* size) {
    gDrained.append(*buffer, std::strlen(*buffer));
    (*buffer)[0] = '\0';
    (void)size;
}

void check(bool condition, const char* what) {
    if (!condition) {
        std::fprintf(stderr, "stream check failed: %s\n", what);
        std::abort();
    }
}

enum Step { kGet, kGiveBack, kAtEnd, kPutString, kPutChar, kPutNumber, kFlush, kBufferEdit, kStepCount };

void editBuffer(TalvoCharBuffer* buffer, FuzzedDataProvider& input) {
    switch (input.ConsumeIntegralInRange(0, 5)) {
    case 0: buffer->append(input.ConsumeIntegral<char>()); break;
    case 1: buffer->append(talvo_fuzz::takeText(input, kMaxPutLength).c_str()); break;
    case 2: buffer->append(input.ConsumeIntegral<int>()); break;
    case 3: buffer->append(input.ConsumeFloatingPoint<double>()); break;
    case 4: buffer->popChar(); break;
    default: buffer->reset(); break;
    }
    check(buffer->getLength() >= 0, "buffer length");
    buffer->computeKey();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    long start = TalvoMemoryManager::getAllocationBalance();
    FuzzedDataProvider input(data, size);
    std::string text = talvo_fuzz::takeText(input, kMaxTextLength);
    std::vector<char> readBuffer(text.begin(), text.end());
    readBuffer.push_back('\0');
    int writeSize = input.ConsumeIntegralInRange(1, kMaxWriteSize);
    std::vector<char> writeBuffer(static_cast<std::size_t>(writeSize) + 1, '\0');
    gDrained.clear();

    TalvoRawStringStream* reader = new TalvoRawStringStream(true, readBuffer.data(), static_cast<int>(text.size()));
    TalvoRawStringStream* writer = new TalvoRawStringStream(false, writeBuffer.data(), writeSize, drain);
    TalvoCharBuffer* buffer = new TalvoCharBuffer(input.ConsumeIntegralInRange(0, 8));
    std::string givenBack;  // characters given back and not yet read again

    for (int step = 0; step < kMaxSteps && input.remaining_bytes() > 0; ++step) {
        switch (input.ConsumeIntegralInRange(0, kStepCount - 1)) {
        case kGet: {
            char c = reader->getChar();
            if (!givenBack.empty()) {
                check(c == givenBack.back(), "give-backs are read last in, first out");
                givenBack.pop_back();
            } else {
                check(c == 0 || std::memchr(text.data(), c, text.size()) != nullptr, "read a byte of the text");
            }
            break;
        }
        case kGiveBack: {
            char c = input.ConsumeIntegral<char>();
            reader->unGetChar(c);
            givenBack.push_back(c);
            break;
        }
        case kAtEnd: check(reader->isAtEnd() == 0 || reader->isAtEnd() == 1, "isAtEnd"); break;
        case kPutString: writer->put(talvo_fuzz::takeText(input, kMaxPutLength).c_str()); break;
        case kPutChar: writer->put(input.ConsumeIntegral<char>()); break;
        case kPutNumber:
            writer->setSignificantDigitNumber(input.ConsumeIntegralInRange(-2, 40));
            writer->put(input.ConsumeFloatingPoint<double>());
            writer->put(input.ConsumeIntegral<int>());
            writer->put(input.ConsumeIntegral<long>());
            break;
        case kFlush: writer->flush(); break;
        default: editBuffer(buffer, input); break;
        }
        check(std::strlen(writeBuffer.data()) <= static_cast<std::size_t>(writeSize), "writing stays in the buffer");
    }
    writer->close();
    check(writer->isAtEnd() == -1 && reader->isAtEnd() >= 0, "isAtEnd after close");

    TalvoCharBuffer* copy = buffer->copy();
    check(copy->compare(buffer) == 0 && buffer->compare(copy) == 0, "a copy compares equal");
    // Freeing null would count a release, so only a real copy is freed.
    if (char* text = copy->copyString())
        TalvoRawString::free(text);
    delete copy;
    delete buffer;
    delete writer;
    delete reader;
    talvo_fuzz::requireBalance(start, "stream script");
    return 0;
}
