#include <talvo/xml/TalvoXMLAttribute.h>

#include <talvo/foundation/TalvoRawString.h>

#include <cstring>

namespace {
const char* const TrueText = "true";
const char* const FalseText = "false";
}  // namespace

TalvoXMLAttribute::TalvoXMLAttribute(const char* name, const char* value)
    : _name(TalvoRawString::copy(name)), _value(TalvoRawString::copy(value)) {}

TalvoXMLAttribute::TalvoXMLAttribute(const char* name, int value)
    : _name(TalvoRawString::copy(name)), _value(TalvoRawString::toString(value)) {}

TalvoXMLAttribute::TalvoXMLAttribute(const char* name, double value)
    : _name(TalvoRawString::copy(name)), _value(TalvoRawString::toString(value)) {}

TalvoXMLAttribute::~TalvoXMLAttribute() {
    // Raw-string free counts a release even for null, so only free what exists.
    if (_name)
        TalvoRawString::free(_name);
    if (_value)
        TalvoRawString::free(_value);
}

void TalvoXMLAttribute::free(void* attribute) {
    if (attribute)
        delete static_cast<TalvoXMLAttribute*>(attribute);
}

void TalvoXMLAttribute::_replaceValue(char* value) {
    if (_value)
        TalvoRawString::free(_value);
    _value = value;
}

void TalvoXMLAttribute::setValue(const char* value) {
    _replaceValue(TalvoRawString::copy(value));
}

bool TalvoXMLAttribute::isBool() const {
    return _value && (std::strcmp(_value, TrueText) == 0 || std::strcmp(_value, FalseText) == 0);
}

bool TalvoXMLAttribute::getValueAsBool() const {
    return _value && std::strcmp(_value, TrueText) == 0;
}

void TalvoXMLAttribute::setValueAsBool(bool value) {
    _replaceValue(TalvoRawString::copy(value ? TrueText : FalseText));
}

bool TalvoXMLAttribute::isInt() const { return TalvoRawString::isInt(_value); }

int TalvoXMLAttribute::getValueAsInt() const { return TalvoRawString::toInt(_value); }

void TalvoXMLAttribute::setValueAsInt(int value) { _replaceValue(TalvoRawString::toString(value)); }

bool TalvoXMLAttribute::isDouble() const { return TalvoRawString::isDouble(_value); }

double TalvoXMLAttribute::getValueAsDouble() const { return TalvoRawString::toDouble(_value); }

void TalvoXMLAttribute::setValueAsDouble(double value) {
    _replaceValue(TalvoRawString::toString(value));
}
