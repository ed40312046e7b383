#include <talvo/text/TalvoUTF8Char.h>

namespace {

const unsigned kAsciiLimit = 0x80;
const unsigned kHighNibble = 0xF0;
const unsigned kTwoByteLead = 0xC0;
const unsigned kThreeByteLead = 0xE0;
const unsigned kFourByteLead = 0xF0;
const unsigned kContinuationMask = 0xC0;
const unsigned kContinuation = 0x80;
const unsigned kLowSixBits = 0x3F;

bool isContinuation(unsigned char b) {
    return (b & kContinuationMask) == kContinuation;
}

}  // namespace

TalvoUTF8Char::TalvoUTF8Char() : _bytes{0, 0, 0, 0} {}

TalvoUTF8Char::TalvoUTF8Char(char c) : _bytes{0, 0, 0, 0} {
    unsigned char b = static_cast<unsigned char>(c);
    if (b < kAsciiLimit) {
        _bytes[0] = b;
        return;
    }
    _bytes[0] = static_cast<unsigned char>(kTwoByteLead | (b >> 6));
    _bytes[1] = static_cast<unsigned char>(kContinuation | (b & kLowSixBits));
}

TalvoUTF8Char::TalvoUTF8Char(unsigned char b0, unsigned char b1, unsigned char b2, unsigned char b3)
    : _bytes{0xEF, 0xBF, 0xBD, 0} {  // U+FFFD unless the bytes are accepted
    if (isValidUTF8ByteSequence(b0, b1, b2, b3)) {
        _bytes[0] = b0;
        _bytes[1] = b1;
        _bytes[2] = b2;
        _bytes[3] = b3;
    }
}

bool TalvoUTF8Char::isValidUTF8ByteSequence(unsigned char b0, unsigned char b1, unsigned char b2,
                                            unsigned char b3) {
    if (b0 < kAsciiLimit)
        return b1 == 0 && b2 == 0 && b3 == 0;
    switch (b0 & kHighNibble) {
    case kTwoByteLead:
        return isContinuation(b1) && b2 == 0 && b3 == 0;
    case kThreeByteLead:
        return isContinuation(b1) && isContinuation(b2) && b3 == 0;
    case kFourByteLead:
        return isContinuation(b1) && isContinuation(b2) && isContinuation(b3);
    default:
        return false;
    }
}

int TalvoUTF8Char::getNumberOfBytes(int leadByte) {
    if (leadByte < static_cast<int>(kAsciiLimit))
        return 1;
    switch (static_cast<unsigned>(leadByte) & kHighNibble) {
    case kTwoByteLead:
        return 2;
    case kThreeByteLead:
        return 3;
    case kFourByteLead:
        return 4;
    default:
        return 0;
    }
}

int TalvoUTF8Char::getNumberOfBytes() const {
    return getNumberOfBytes(_bytes[0]);
}

unsigned char TalvoUTF8Char::getByte(int i) const {
    return i >= 0 && i < kMaxBytes ? _bytes[i] : 0;
}
