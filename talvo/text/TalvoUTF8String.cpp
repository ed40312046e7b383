#include <talvo/text/TalvoUTF8String.h>

#include <talvo/foundation/TalvoInteger.h>

TalvoUTF8String::TalvoUTF8String()
    : _referenceCounter(TalvoInteger::allocate(1)), _utf8Buffer(new TalvoUTF8Buffer()) {}

TalvoUTF8String::TalvoUTF8String(const TalvoUTF8String& other)
    : TalvoObject<TalvoUTF8String>(other),
      _referenceCounter(other._referenceCounter),
      _utf8Buffer(other._utf8Buffer) {
    if (_referenceCounter)
        ++*_referenceCounter;
}

TalvoUTF8String& TalvoUTF8String::operator=(const TalvoUTF8String& other) {
    int* oldCounter = _referenceCounter;
    TalvoUTF8Buffer* oldBuffer = _utf8Buffer;
    _referenceCounter = other._referenceCounter;
    _utf8Buffer = other._utf8Buffer;
    if (_referenceCounter)
        ++*_referenceCounter;
    // The old share is not given up while other strings can see its count;
    // a share this string alone held would only leak, so it is released.
    if (oldCounter && oldCounter != _referenceCounter && *oldCounter == 1)
        _release(oldCounter, oldBuffer);
    return *this;
}

TalvoUTF8String::~TalvoUTF8String() {
    _release(_referenceCounter, _utf8Buffer);
}

void TalvoUTF8String::free(void* string) {
    delete static_cast<TalvoUTF8String*>(string);
}

void TalvoUTF8String::_release(int* counter, TalvoUTF8Buffer* buffer) {
    if (!counter)
        return;
    if (--*counter < 1) {
        delete buffer;
        TalvoInteger::free(counter);
    }
}

void TalvoUTF8String::_privatizeBuffer() {
    if (!_referenceCounter || *_referenceCounter <= 1)
        return;
    int* counter = TalvoInteger::allocate(1);
    TalvoUTF8Buffer* buffer = new TalvoUTF8Buffer();
    if (!counter || !buffer) {
        TalvoInteger::free(counter);
        delete buffer;
        return;  // still shared: _ownBuffer then refuses the change
    }
    if (_utf8Buffer)
        buffer->append(*_utf8Buffer);  // capacity: _reserve of the byte length
    --*_referenceCounter;
    _referenceCounter = counter;
    _utf8Buffer = buffer;
}

TalvoUTF8Buffer* TalvoUTF8String::_ownBuffer() {
    _privatizeBuffer();
    return _referenceCounter && *_referenceCounter == 1 ? _utf8Buffer : nullptr;
}

TalvoUTF8String& TalvoUTF8String::append(char c) {
    if (TalvoUTF8Buffer* buffer = _ownBuffer())
        buffer->append(c);
    return *this;
}

TalvoUTF8String& TalvoUTF8String::append(const char* text) {
    if (TalvoUTF8Buffer* buffer = _ownBuffer())
        buffer->append(text);
    return *this;
}

TalvoUTF8String& TalvoUTF8String::append(const TalvoUTF8Char& c) {
    if (TalvoUTF8Buffer* buffer = _ownBuffer())
        buffer->append(c);
    return *this;
}

TalvoUTF8String& TalvoUTF8String::append(const TalvoUTF8String& other) {
    TalvoUTF8Buffer* buffer = _ownBuffer();
    if (buffer && other._utf8Buffer)
        buffer->append(*other._utf8Buffer);
    return *this;
}

TalvoUTF8String& TalvoUTF8String::insert(int index, char c) {
    if (TalvoUTF8Buffer* buffer = _ownBuffer())
        buffer->insert(index, c);
    return *this;
}

TalvoUTF8String& TalvoUTF8String::insert(int index, const char* text) {
    if (TalvoUTF8Buffer* buffer = _ownBuffer())
        buffer->insert(index, text);
    return *this;
}

TalvoUTF8String& TalvoUTF8String::insert(int index, const TalvoUTF8Char& c) {
    if (TalvoUTF8Buffer* buffer = _ownBuffer())
        buffer->insert(index, c);
    return *this;
}

TalvoUTF8String& TalvoUTF8String::remove(int index) {
    if (TalvoUTF8Buffer* buffer = _ownBuffer())
        buffer->remove(index);
    return *this;
}

TalvoUTF8String& TalvoUTF8String::clear() {
    if (TalvoUTF8Buffer* buffer = _ownBuffer())
        buffer->clear();
    return *this;
}

TalvoUTF8Char TalvoUTF8String::getChar(int index) const {
    return _utf8Buffer ? _utf8Buffer->getChar(index) : TalvoUTF8Char();
}

int TalvoUTF8String::getLength() const {
    return _utf8Buffer ? _utf8Buffer->getLength() : 0;
}

bool TalvoUTF8String::isEmpty() const {
    return getLength() == 0;
}

int TalvoUTF8String::getReferenceCounter() const {
    return _referenceCounter ? *_referenceCounter : 0;
}
