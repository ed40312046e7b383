// Distinct objects used from distinct threads at the same time.
//
// Built with the tsan preset this runs under ThreadSanitizer, which fails the
// test on any data race; in the other builds it checks that the shared
// allocation balance loses no update when threads allocate at once.
#include "support/TalvoTest.h"

#include <talvo/containers/TalvoHashTable.h>
#include <talvo/containers/TalvoList.h>
#include <talvo/foundation/TalvoInteger.h>
#include <talvo/foundation/TalvoRawString.h>
#include <talvo/regex/TalvoRegexManager.h>
#include <talvo/text/TalvoRawStringStream.h>
#include <talvo/xml/TalvoXMLDocument.h>
#include <talvo/xml/TalvoXMLParser.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

namespace {

const int kThreadCount = 4;
// Each thread repeats its rounds for this long: long enough for the threads
// to overlap in every subsystem, short enough for a ThreadSanitizer build.
const std::chrono::milliseconds kRunTime(2500);
const int kItemsPerRound = 200;

const char kDocument[] =
    "<?xml version=\"1.0\"?>\n"
    "<library name=\"city\" shelves=\"12\">\n"
    "  <book year=\"1999\" price=\"12.5\">A title</book>\n"
    "  <!-- a comment -->\n"
    "  <book year=\"2004\"><![CDATA[ raw <text> ]]></book>\n"
    "</library>\n";

int hashBox(void* box) { return *static_cast<int*>(box); }

// Lists: fill, sort, copy and empty again.
bool listRound(int seed) {
    TalvoList* list = new TalvoList();
    for (int i = 0; i < kItemsPerRound; ++i)
        list->insertItemLast(TalvoInteger::allocate((i * 7919 + seed) % 1000));
    list->quickSort(TalvoInteger::leq);
    TalvoList* copy = list->copyWithItems(TalvoInteger::copy);
    bool ok = copy->getNumberOfItems() == kItemsPerRound;
    copy->deleteWithItems(TalvoInteger::free);
    list->deleteWithItems(TalvoInteger::free);
    return ok;
}

// Hash tables: grow through several sizes, look up, shrink back.
bool hashTableRound(int seed) {
    TalvoHashTable* table = new TalvoHashTable(hashBox);
    std::vector<int*> boxes;
    for (int i = 0; i < kItemsPerRound; ++i) {
        boxes.push_back(TalvoInteger::allocate(i + seed));
        table->insertItem(boxes.back());
    }
    bool ok = table->getNumberOfItems() == kItemsPerRound && table->contains(boxes[kItemsPerRound / 2]);
    for (int* box : boxes) {
        table->removeItem(box);
        TalvoInteger::free(box);
    }
    ok = ok && table->getNumberOfItems() == 0;
    delete table;
    return ok;
}

void drainNowhere(char** buffer, int*) { (*buffer)[0] = '\0'; }

// XML: parse a document from memory, print it to a memory stream, delete it.
bool xmlRound() {
    FILE* file = fmemopen(const_cast<char*>(kDocument), sizeof kDocument - 1, "r");
    if (!file)
        return false;
    TalvoXMLDocument* document = new TalvoXMLDocument();
    TalvoXMLParser* parser = new TalvoXMLParser();
    bool ok = parser->parseFile(document, file) == 0 && document->findRoot("library") != nullptr;
    delete parser;
    std::fclose(file);
    char buffer[65] = {0};
    TalvoRawStringStream* stream = new TalvoRawStringStream(false, buffer, 64, drainNowhere);
    document->print(stream, 2);
    delete stream;
    delete document;
    return ok;
}

// Regular expressions: a manager per pattern, and the one-shot functions.
bool regexRound() {
    TalvoRegexManager* manager = new TalvoRegexManager("([a-z]+)@([a-z]+)\\.com");
    bool ok = manager->matchPattern("write to bob@site.com today") == 9;
    char* swapped = manager->substitutePatterns("bob@site.com, ann@host.com", "\\2:\\1");
    ok = ok && swapped && std::strcmp(swapped, "site:bob, host:ann") == 0;
    if (swapped)
        TalvoRawString::free(swapped);
    delete manager;
    TalvoList* pieces = TalvoRawString::splitWithPattern("a1b22c333d", "[0-9]+");
    ok = ok && pieces->getNumberOfItems() == 4;
    pieces->deleteWithItems(TalvoRawString::free);
    char* word = TalvoRawString::extractPattern("  hello world", "[a-z]+");
    ok = ok && word && std::strcmp(word, "hello") == 0;
    if (word)
        TalvoRawString::free(word);
    return ok;
}

// One thread's work: every kind of round until the time is up.
void work(int seed, std::atomic<int>* failures, std::atomic<long>* rounds) {
    auto end = std::chrono::steady_clock::now() + kRunTime;
    while (std::chrono::steady_clock::now() < end) {
        bool ok = listRound(seed) && hashTableRound(seed) && xmlRound() && regexRound();
        if (!ok)
            failures->fetch_add(1);
        rounds->fetch_add(1);
    }
}

}  // namespace

TEST(TalvoThreads, DistinctObjectsOnFourThreads_NoRaceAndBalanceKept) {
    long balanceBefore = TalvoMemoryManager::getAllocationBalance();
    std::atomic<int> failures(0);
    std::atomic<long> rounds(0);
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreadCount; ++i)
        threads.emplace_back(work, i * 1000, &failures, &rounds);
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(failures.load(), 0);
    EXPECT_GE(rounds.load(), kThreadCount);
    EXPECT_EQ(TalvoMemoryManager::getAllocationBalance(), balanceBefore);
}
