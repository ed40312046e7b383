#include <talvo/values/TalvoAttributeList.h>

#include <talvo/containers/TalvoHandle.h>

namespace {

TalvoAttribute* attributeOf(const TalvoListCell* cell) {
    return static_cast<TalvoAttribute*>(cell->getItem());
}

// The two masks a bulk operation selects attributes with.
struct Masks {
    unsigned privacy;
    unsigned locality;

    bool match(const TalvoAttribute* a) const {
        return a && a->doesPrivacyMatch(privacy) && a->doesLocalityMatch(locality);
    }
};

// Compare call-back for compareAndDeleteItems: 0 (remove) for a match.
int mismatch(void* attribute, void* masks) {
    return static_cast<Masks*>(masks)->match(static_cast<TalvoAttribute*>(attribute)) ? 0 : 1;
}

}  // namespace

TalvoAttributeList::TalvoAttributeList() = default;

TalvoAttributeList::~TalvoAttributeList() { deleteItems(TalvoAttribute::free); }

TalvoAttribute* TalvoAttributeList::_append(TalvoAttribute* attribute) {
    if (attribute)
        insertItemLast(attribute);
    return attribute;
}

// --- Look-up

TalvoAttribute* TalvoAttributeList::findAttribute(const char* name) const {
    for (const TalvoListCell* cell = _first; cell; cell = cell->getNext()) {
        TalvoAttribute* attribute = attributeOf(cell);
        if (attribute && TalvoHandle::compareKeyStrings(attribute->getName(), name) == 0)
            return attribute;
    }
    return nullptr;
}

bool TalvoAttributeList::hasAttribute(const char* name) const { return findAttribute(name) != nullptr; }

bool TalvoAttributeList::hasPublicAttribute() const {
    for (const TalvoListCell* cell = _first; cell; cell = cell->getNext())
        if (attributeOf(cell) && attributeOf(cell)->isPublic())
            return true;
    return false;
}

#define TALVO_TYPE_TEST(name, test)                                  \
    bool TalvoAttributeList::name(const char* attributeName) const { \
        TalvoAttribute* a = findAttribute(attributeName);            \
        return a && a->test();                                       \
    }
TALVO_TYPE_TEST(isNilAttribute, isNil)
TALVO_TYPE_TEST(isBoolAttribute, isBool)
TALVO_TYPE_TEST(isIntAttribute, isInt)
TALVO_TYPE_TEST(isDoubleAttribute, isDouble)
TALVO_TYPE_TEST(isStringAttribute, isString)
TALVO_TYPE_TEST(isPointerAttribute, isPointer)
#undef TALVO_TYPE_TEST

// --- Getters

TalvoConstant* TalvoAttributeList::getValueOfAttribute(const char* name) const {
    TalvoAttribute* a = findAttribute(name);
    return a ? a->getValue() : nullptr;
}

bool TalvoAttributeList::getValueOfAttributeAsBool(const char* name, bool defaultValue) const {
    TalvoAttribute* a = findAttribute(name);
    return a ? a->getValueAsBool() : defaultValue;
}

int TalvoAttributeList::getValueOfAttributeAsInt(const char* name, int defaultValue) const {
    TalvoAttribute* a = findAttribute(name);
    return a ? a->getValueAsInt() : defaultValue;
}

double TalvoAttributeList::getValueOfAttributeAsDouble(const char* name, double defaultValue) const {
    TalvoAttribute* a = findAttribute(name);
    return a ? a->getValueAsDouble() : defaultValue;
}

const char* TalvoAttributeList::getValueOfAttributeAsString(const char* name, const char* defaultValue) const {
    TalvoAttribute* a = findAttribute(name);
    return a ? a->getValueAsString() : defaultValue;
}

void* TalvoAttributeList::getValueOfAttributeAsPointer(const char* name, void* defaultValue) const {
    TalvoAttribute* a = findAttribute(name);
    return a ? a->getValueAsPointer() : defaultValue;
}

void* TalvoAttributeList::getValueOfAttributeAsPointerOfCode(const char* name, int code, void*) const {
    TalvoAttribute* a = findAttribute(name);
    return a ? a->getValueAsPointerOfCode(code) : nullptr;
}

// --- Setters

TalvoAttribute* TalvoAttributeList::setValueOfAttribute(const char* name) {
    TalvoAttribute* a = findAttribute(name);
    if (!a)
        return _append(new TalvoAttribute(name));
    a->setValue();
    return a;
}

#define TALVO_SETTER(Kind)                                                                  \
    TalvoAttribute* TalvoAttributeList::setValueOfAttribute(const char* name, Kind value) { \
        TalvoAttribute* a = findAttribute(name);                                            \
        if (!a)                                                                             \
            return _append(new TalvoAttribute(name, value));                                \
        a->setValue(value);                                                                 \
        return a;                                                                           \
    }
TALVO_SETTER(bool)
TALVO_SETTER(int)
TALVO_SETTER(double)
TALVO_SETTER(const char*)
TALVO_SETTER(const TalvoConstant*)
#undef TALVO_SETTER

TalvoAttribute* TalvoAttributeList::setValueOfAttribute(const char* name, void* pointer, TalvoFreeFunction free,
                                                        int code) {
    TalvoAttribute* a = findAttribute(name);
    if (!a)
        return _append(new TalvoAttribute(name, pointer, free, code));
    a->setValue(pointer, free, code);
    return a;
}

// Both the increments and the decrements create an absent attribute with the
// amount itself; `change` is what happens to an existing one.
#define TALVO_CHANGER(operation, Kind, change)                                          \
    TalvoAttribute* TalvoAttributeList::operation(const char* name, Kind amount) {      \
        TalvoAttribute* a = findAttribute(name);                                        \
        if (!a)                                                                         \
            return _append(new TalvoAttribute(name, amount));                           \
        a->change(amount);                                                              \
        return a;                                                                       \
    }
TALVO_CHANGER(incrementValueOfAttribute, int, incrementValue)
TALVO_CHANGER(incrementValueOfAttribute, double, incrementValue)
TALVO_CHANGER(incrementValueOfAttribute, const TalvoConstant*, incrementValue)
TALVO_CHANGER(decrementValueOfAttribute, int, decrementValue)
TALVO_CHANGER(decrementValueOfAttribute, double, incrementValue)
TALVO_CHANGER(decrementValueOfAttribute, const TalvoConstant*, incrementValue)
#undef TALVO_CHANGER

// --- Bulk operations

void TalvoAttributeList::resetValueOfAttribute(const char* name) {
    TalvoAttribute* a = findAttribute(name);
    if (!a)
        return;
    removeItem(a);
    TalvoAttribute::free(a);
}

void TalvoAttributeList::setValuesOfAttributes(const TalvoAttributeList* other) {
    if (!other)
        return;
    for (const TalvoListCell* cell = other->_first; cell; cell = cell->getNext()) {
        TalvoAttribute* source = attributeOf(cell);
        if (!source)
            continue;
        TalvoAttribute* target = setValueOfAttribute(source->getName(), source->getValue());
        if (target) {
            target->setPrivacy(source->getPrivacy());
            target->setLocality(source->getLocality());
        }
    }
}

void TalvoAttributeList::resetValuesOfAttributes(unsigned privacyMask, unsigned localityMask) {
    Masks masks{privacyMask, localityMask};
    compareAndDeleteItems(mismatch, &masks, TalvoAttribute::free);
}

void TalvoAttributeList::collectAttributes(TalvoList* list, unsigned privacyMask, unsigned localityMask) const {
    if (!list)
        return;
    Masks masks{privacyMask, localityMask};
    // Stop at the cell that was last on entry: `list` may be this very list.
    const TalvoListCell* last = _last;
    for (const TalvoListCell* cell = _first; cell; cell = cell->getNext()) {
        if (masks.match(attributeOf(cell)))
            list->insertItemLast(attributeOf(cell));
        if (cell == last)
            break;
    }
}
