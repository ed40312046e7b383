#include "support/TalvoTest.h"

#include <talvo/containers/TalvoDictionary.h>
#include <talvo/containers/TalvoList.h>
#include <talvo/values/TalvoAttribute.h>

#include <string>

namespace {

// The keys in cursor order, "(null)" for the null key, joined by commas.
std::string keysInOrder(TalvoDictionary& dictionary) {
    std::string result;
    TalvoDictionaryCursor* cursor = dictionary.newCursor();
    for (cursor->resetOnFirstItem(); !cursor->isAfterLastItem(); cursor->increment()) {
        const char* key = cursor->getKey();
        result += (result.empty() ? "" : ",") + std::string(key ? key : "(null)");
    }
    delete cursor;
    return result;
}

}  // namespace

TEST(TalvoDictionary, EntriesAndKeys_OrderByUnsignedBytesWithNullFirst) {
    TalvoDictionary dictionary;
    const char* keys[] = {"b", "\xE9t\xE9", "ab", "", "a", nullptr, "z"};
    for (const char* key : keys)
        dictionary.setEntry(key, "x");
    EXPECT_EQ(keysInOrder(dictionary), "(null),,a,ab,b,z,\xE9t\xE9");
    TalvoList* names = dictionary.getKeys();  // the entries' own names, in key order
    EXPECT_EQ(names->getNthItem(4), dictionary.getAttribute("ab")->getName());
    delete names;
    dictionary.reset();
    dictionary.setEntry("a", "again");
    EXPECT_EQ(keysInOrder(dictionary), "a");
}

TEST(TalvoDictionary, SetEntry_OnAnExistingKeyReplacesTheDefinition) {
    TalvoDictionary dictionary;
    char definition[] = "first";
    dictionary.setEntry("k", definition);
    definition[0] = 'F';
    EXPECT_STREQ(dictionary.getEntry("k"), "first");  // a private copy
    dictionary.setEntry("k", dictionary.getEntry("k"));  // its own string
    EXPECT_EQ(dictionary.getNumberOfEntries(), 1);
    EXPECT_STREQ(dictionary.getEntry("k"), "first");
}

TEST(TalvoDictionary, EmptyOrNonStringEntry_AnswersNull) {
    TalvoDictionary dictionary;
    EXPECT_FALSE(dictionary.hasEntry(nullptr));
    EXPECT_EQ(dictionary.getEntry("a"), nullptr);
    dictionary.removeEntry("a");
    TalvoDictionaryCursor* cursor = dictionary.newCursor();
    cursor->resetOnFirstItem();
    EXPECT_EQ(cursor->getKey(), nullptr);
    cursor->setDefinition("ignored");
    delete cursor;
    TalvoDictionary::free(nullptr);
    // A value that is not a string answers null while the entry exists.
    dictionary.setEntry("n", "1");
    dictionary.getAttribute("n")->setValue(1);
    EXPECT_TRUE(dictionary.hasEntry("n"));
    EXPECT_EQ(dictionary.getEntry("n"), nullptr);
    cursor = dictionary.newCursor();
    cursor->resetOnFirstItem();
    EXPECT_EQ(cursor->getDefinition(), nullptr);
    dictionary.setEntry("o", "2");
    cursor->increment();
    EXPECT_STREQ(cursor->getDefinition(), "2");
    delete cursor;
}
