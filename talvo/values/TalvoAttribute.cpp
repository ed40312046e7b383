#include <talvo/values/TalvoAttribute.h>

#include <talvo/containers/TalvoHandle.h>
#include <talvo/foundation/TalvoRawString.h>

#include <cstddef>
#include <type_traits>

TalvoAttribute::TalvoAttribute(const char* name)
    : _name(TalvoRawString::copy(name)), _value(), _privacy(Public), _locality(Local) {}

TalvoAttribute::TalvoAttribute(const char* name, bool value)
    : _name(TalvoRawString::copy(name)), _value(value), _privacy(Public), _locality(Local) {}

TalvoAttribute::TalvoAttribute(const char* name, int value)
    : _name(TalvoRawString::copy(name)), _value(value), _privacy(Public), _locality(Local) {}

TalvoAttribute::TalvoAttribute(const char* name, double value)
    : _name(TalvoRawString::copy(name)), _value(value), _privacy(Public), _locality(Local) {}

TalvoAttribute::TalvoAttribute(const char* name, const char* value)
    : _name(TalvoRawString::copy(name)), _value(value), _privacy(Public), _locality(Local) {}

TalvoAttribute::TalvoAttribute(const char* name, void* pointer, TalvoFreeFunction free, int code)
    : _name(TalvoRawString::copy(name)), _value(pointer, free, code), _privacy(Private), _locality(Local) {}

TalvoAttribute::TalvoAttribute(const char* name, const TalvoConstant* value)
    : _name(TalvoRawString::copy(name)),
      _value(value),
      _privacy(value && value->isPointer() ? Private : Public),
      _locality(Local) {}

TalvoAttribute::~TalvoAttribute() {
    // TalvoHandle::keyOf reads the name as the first member of this class.
    static_assert(std::is_standard_layout<TalvoAttribute>::value, "the name must be readable as the first member");
    static_assert(offsetof(TalvoAttribute, _name) == 0, "the name must be the first member");
    if (_name)
        TalvoRawString::free(_name);
    else
        TalvoMemoryManager::deleteCell(nullptr);  // the null-pointer report, no count
}

void TalvoAttribute::free(void* attribute) {
    if (attribute)
        delete static_cast<TalvoAttribute*>(attribute);
}

char* TalvoAttribute::copyName() const { return TalvoRawString::copy(_name); }

int TalvoAttribute::compareValues(const TalvoAttribute* other) const {
    return _value.compare(other ? &other->_value : nullptr);
}

int TalvoAttribute::compare(const TalvoAttribute* other) const {
    int byName = TalvoHandle::compareKeyStrings(_name, other ? other->_name : nullptr);
    return byName != 0 ? byName : compareValues(other);
}

int TalvoAttribute::compare(void* a, void* b) {
    if (!a)
        return b ? -1 : 0;
    return static_cast<TalvoAttribute*>(a)->compare(static_cast<const TalvoAttribute*>(b));
}
