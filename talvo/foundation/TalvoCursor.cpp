#include <talvo/foundation/TalvoCursor.h>

TalvoCursor::~TalvoCursor() = default;

bool TalvoCursor::isBeforeFirstItem() { return true; }
bool TalvoCursor::isAfterLastItem() { return true; }
bool TalvoCursor::isOnFirstItem() { return true; }
bool TalvoCursor::isOnLastItem() { return true; }
void TalvoCursor::resetOnFirstItem() {}
void TalvoCursor::resetOnLastItem() {}
void TalvoCursor::resetInPosition(int) {}
void TalvoCursor::resetOnItem(void*) {}
void TalvoCursor::increment() {}
void TalvoCursor::decrement() {}
void* TalvoCursor::getItem() { return nullptr; }
void* TalvoCursor::removeItemAndIncrement() { return nullptr; }
void* TalvoCursor::removeItemAndDecrement() { return nullptr; }
