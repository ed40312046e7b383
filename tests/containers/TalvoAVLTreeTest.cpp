#include "support/TalvoTest.h"

#include <talvo/containers/TalvoAVLTree.h>
#include <talvo/containers/TalvoList.h>
#include <talvo/foundation/TalvoInteger.h>

#include <algorithm>
#include <deque>
#include <random>
#include <string>
#include <vector>

namespace {

// An Item with a sort key and an identity tag, so equal keys can be told apart.
struct Keyed {
    int key;
    int tag;
};

int compareKeys(void* a, void* b) {
    int x = static_cast<Keyed*>(a)->key;
    int y = static_cast<Keyed*>(b)->key;
    return x < y ? -1 : (x > y ? 1 : 0);
}

int keyOf(const TalvoAVLTreeNode* node) { return static_cast<Keyed*>(node->getItem())->key; }
int heightOf(const TalvoAVLTreeNode* node) { return node ? node->getHeight() : 0; }

// The tags a cursor meets from the first Item to the last; deletes the cursor.
std::vector<int> tagsOf(TalvoCursor* c) {
    std::vector<int> tags;
    for (c->resetOnFirstItem(); !c->isAfterLastItem(); c->increment())
        tags.push_back(static_cast<Keyed*>(c->getItem())->tag);
    delete c;
    return tags;
}

std::vector<int> tagsInOrder(TalvoAVLTree* tree) { return tagsOf(tree->newCursor()); }

// The shape as "key(left,right)", a leaf as its key alone.
std::string shapeOf(const TalvoAVLTreeNode* node) {
    if (!node)
        return "";
    std::string shape = std::to_string(keyOf(node));
    if (node->getLeft() || node->getRight())
        shape += "(" + shapeOf(node->getLeft()) + "," + shapeOf(node->getRight()) + ")";
    return shape;
}

// Checks every parent link and height below `node`; returns the node count.
// Balance is not asserted: a tie rotation after a removal may leave a node
// two levels off, on purpose.
int checkLinks(const TalvoAVLTreeNode* node, const TalvoAVLTreeNode* parent) {
    if (!node)
        return 0;
    EXPECT_EQ(node->getParent(), parent);
    EXPECT_EQ(node->getHeight(), 1 + std::max(heightOf(node->getLeft()), heightOf(node->getRight())));
    return 1 + checkLinks(node->getLeft(), node) + checkLinks(node->getRight(), node);
}

void checkTree(TalvoAVLTree* tree) { EXPECT_EQ(checkLinks(tree->getRoot(), nullptr), tree->getNumberOfItems()); }

TalvoAVLTree* treeOf(std::vector<Keyed>& keyed, int (*compare)(void*, void*) = compareKeys) {
    TalvoAVLTree* tree = new TalvoAVLTree(compare);
    for (Keyed& k : keyed)
        tree->insertItem(&k);
    return tree;
}

int compareTags(void* a, void* b) { return static_cast<Keyed*>(a)->tag - static_cast<Keyed*>(b)->tag; }

std::vector<int> freedTags;
void recordFree(void* item) { freedTags.push_back(static_cast<Keyed*>(item)->tag); }

}  // namespace

// A height tie in the heavy child takes the double rotation: removing 7 from
// 5(3(2,4),7) brings 4 up, not 3.
TEST(TalvoAVLTree, Shapes_AfterInsertionsAndOneRemoval) {
    struct { std::vector<int> keys; int removed; const char* shape; } table[] = {
        {{5, 3, 7, 2, 4}, 7, "4(3(2,),5)"},   // left tie
        {{3, 1, 5, 4, 6}, 1, "4(3,5(,6))"},   // right tie
        {{5, 3, 7, 2, 4}, 5, "4(3(2,),7)"},   // the largest of the left subtree takes the root's place
    };
    for (auto& row : table) {
        std::vector<Keyed> k;
        for (int key : row.keys)
            k.push_back({key, 0});
        TalvoAVLTree* tree = treeOf(k);
        Keyed probe = {row.removed, 0};  // an equal key, not the Item itself
        tree->removeItem(&probe);
        EXPECT_EQ(shapeOf(tree->getRoot()), row.shape);
        checkTree(tree);
        delete tree;
    }
}

// getNthItem takes 1 to count; the cursor also takes -1 to -count from the
// end, and leaves 0 and out-of-range positions alone.
TEST(TalvoAVLTree, Positions_Bounds) {
    std::vector<Keyed> k = {{4, 0}, {1, 0}, {3, 0}, {2, 0}, {5, 0}};
    TalvoAVLTree* tree = treeOf(k);
    struct { int n; int key; } table[] = {{0, -1}, {6, -1}, {-1, -1}, {1, 1}, {5, 5}};
    for (auto& row : table) {
        void* item = tree->getNthItem(row.n);
        EXPECT_EQ(item ? static_cast<Keyed*>(item)->key : -1, row.key) << "n=" << row.n;
    }
    TalvoAVLTreeCursor* c = tree->newCursor();
    struct { int position; int key; } cursorTable[] = {{-1, 5}, {-5, 1}, {2, 2}, {0, 2}, {6, 2}, {-6, 2}};
    for (auto& row : cursorTable) {
        c->resetInPosition(row.position);
        EXPECT_EQ(static_cast<Keyed*>(c->getItem())->key, row.key) << "p=" << row.position;
    }
    delete c;
    delete tree;
}

TEST(TalvoAVLTree, NullInputs_EmptyTreeAndNullCompare) {
    TalvoAVLTree* tree = new TalvoAVLTree(compareKeys);
    EXPECT_EQ(tree->removeLastItem(), nullptr);
    TalvoAVLTreeCursor* c = tree->newCursor();
    c->resetOnFirstItem();
    EXPECT_TRUE(c->isBeforeFirstItem() && c->isAfterLastItem());
    EXPECT_EQ(c->removeItemAndIncrement(), nullptr);
    delete c;
    delete tree;
    // A null compare call-back ranks all Items equal: insertion order.
    std::vector<Keyed> k = {{3, 0}, {1, 1}, {2, 2}, {0, 3}};
    tree = treeOf(k, nullptr);
    EXPECT_EQ(tagsInOrder(tree), (std::vector<int>{0, 1, 2, 3}));
    delete tree;
}

// Membership, positions and the cursor's resetOnItem go by identity: a twin
// with an equal key is not in the tree. removeNthItem removes the Item at
// that position, not the first equal one met from the root.
TEST(TalvoAVLTree, ContainsAndPositions_AreByIdentityAmongEqualItems) {
    std::vector<Keyed> k = {{3, 0}, {2, 0}, {2, 1}, {2, 2}, {1, 5}};
    Keyed twin = {2, 7};
    TalvoAVLTree* tree = treeOf(k);
    EXPECT_FALSE(tree->contains(&twin));
    EXPECT_EQ(tree->getItemPosition(&k[3]), 4);
    EXPECT_EQ(tree->getItemPosition(&twin), 0);
    EXPECT_EQ(tree->lookForItem(&twin), &k[1]);  // first equal Item in order
    TalvoAVLTreeCursor* c = tree->newCursor();
    c->resetOnItem(&twin);
    EXPECT_TRUE(c->getItem() == nullptr && c->isAfterLastItem() && !c->isBeforeFirstItem());
    delete c;
    EXPECT_EQ(tree->removeNthItem(3), &k[2]);
    EXPECT_EQ(tree->removeNthItem(5), nullptr);
    EXPECT_EQ(tagsInOrder(tree), (std::vector<int>{5, 0, 2, 0}));
    delete tree;
}

// Removing through the cursor visits every remaining Item in order, also
// among equal Items and when the removed node has two children; removing
// backwards from the last Item then empties the tree in reverse order.
TEST(TalvoAVLTree, CursorRemoveItem_VisitsRemainingInOrder) {
    std::vector<Keyed> k;
    for (int tag = 0; tag < 24; tag++)
        k.push_back({(tag * 7) % 5, tag});
    TalvoAVLTree* tree = treeOf(k);
    std::vector<int> before = tagsInOrder(tree), visited, kept;
    TalvoAVLTreeCursor* c = tree->newCursor();
    c->resetOnFirstItem();
    for (int i = 0; !c->isAfterLastItem(); i++) {
        void* item = c->getItem();
        visited.push_back(static_cast<Keyed*>(item)->tag);
        if (i % 2 == 0) {
            EXPECT_EQ(c->removeItemAndIncrement(), item);
        } else {
            kept.push_back(visited.back());
            c->increment();
        }
        checkTree(tree);
    }
    EXPECT_EQ(visited, before);
    EXPECT_EQ(tagsInOrder(tree), kept);
    std::vector<int> removed;
    for (c->resetOnLastItem(); !c->isBeforeFirstItem();)
        removed.insert(removed.begin(), static_cast<Keyed*>(c->removeItemAndDecrement())->tag);
    EXPECT_EQ(removed, kept);
    EXPECT_TRUE(tree->isEmpty());
    delete c;
    delete tree;
}

namespace {
int nullCompares = 0;
// Orders boxed ints; a null Item compares equal to the box holding 0.
int compareBoxesNullAsZero(void* a, void* b) {
    int x = a ? *static_cast<int*>(a) : 0;
    int y = b ? *static_cast<int*>(b) : 0;
    nullCompares += (b == nullptr);
    return x < y ? -1 : (x > y ? 1 : 0);
}
}  // namespace

TEST(TalvoAVLTree, CursorRemoveOffItem_StillRemovesByCompareWithNull) {
    int zero = 0, one = 1;
    TalvoAVLTree* tree = new TalvoAVLTree(compareBoxesNullAsZero);
    for (int* box : {&one, &zero})
        tree->insertItem(box);
    TalvoAVLTreeCursor* c = tree->newCursor();
    nullCompares = 0;
    EXPECT_EQ(c->removeItemAndIncrement(), nullptr);
    EXPECT_TRUE(nullCompares > 0 && !tree->contains(&zero) && tree->getNumberOfItems() == 1);
    delete c;
    delete tree;
}

namespace {

// The balancing rules written out recursively, one node per Item, removal
// copying the largest Item of the left subtree up: a reference for shapes.
// kid[0] is the left child, kid[1] the right one; the deque owns every node.
struct Model {
    void* item;
    Model* kid[2] = {nullptr, nullptr};
    int height = 1;
};

std::deque<Model> modelNodes;

int heightOf(Model* m) { return m ? m->height : 0; }

Model* fix(Model* m) { return m->height = 1 + std::max(heightOf(m->kid[0]), heightOf(m->kid[1])), m; }

// Brings the child on `side` up (side 0: a right rotation).
Model* rotate(Model* n, int side) {
    Model* c = n->kid[side];
    n->kid[side] = c->kid[1 - side];
    c->kid[1 - side] = fix(n);
    return fix(c);
}

Model* balance(Model* n) {
    for (int side = 0; side < 2; side++) {
        Model* heavy = n->kid[side];
        if (heightOf(heavy) == heightOf(n->kid[1 - side]) + 2) {
            if (heightOf(heavy->kid[side]) <= heightOf(heavy->kid[1 - side]))  // ties too
                n->kid[side] = rotate(heavy, 1 - side);
            return rotate(n, side);
        }
    }
    return fix(n);
}

Model* insert(Model* n, void* item) {
    if (!n)
        return &modelNodes.emplace_back(Model{item});
    Model*& kid = n->kid[compareKeys(n->item, item) > 0 ? 0 : 1];
    kid = insert(kid, item);
    return balance(n);
}

Model* removeMaximum(Model* n, void*& item) {
    if (!n->kid[1])
        return item = n->item, n->kid[0];
    n->kid[1] = removeMaximum(n->kid[1], item);
    return balance(n);
}

Model* remove(Model* n, void* item) {
    if (!n)
        return n;
    int r = compareKeys(n->item, item);
    if (r == 0 && !(n->kid[0] && n->kid[1]))
        return n->kid[0] ? n->kid[0] : n->kid[1];
    Model*& kid = n->kid[r < 0 ? 1 : 0];
    kid = r == 0 ? removeMaximum(kid, n->item) : remove(kid, item);
    return balance(n);
}

bool sameShape(Model* m, const TalvoAVLTreeNode* n) {
    if (!m || !n)
        return !m && !n;
    return m->item == n->getItem() && m->height == n->getHeight() && sameShape(m->kid[0], n->getLeft()) &&
           sameShape(m->kid[1], n->getRight());
}

}  // namespace

// Random insertions and removals by key, with many equal keys, give the same
// shape as the recursive rules (tie rotations and all).
TEST(TalvoAVLTree, RandomChanges_MatchRecursiveRules) {
    std::mt19937 random(11);
    std::vector<Keyed> pool(4000);
    TalvoAVLTree* tree = new TalvoAVLTree(compareKeys);
    Model* model = nullptr;
    for (int i = 0; i < 4000; i++) {
        pool[i] = {static_cast<int>(random() % 300), i};
        bool inserting = random() % 5 < 3;
        inserting ? tree->insertItem(&pool[i]) : tree->removeItem(&pool[i]);
        model = inserting ? insert(model, &pool[i]) : remove(model, &pool[i]);
        if (i % 97 == 0 || i == 3999) {
            ASSERT_TRUE(sameShape(model, tree->getRoot())) << "after step " << i;
            checkTree(tree);
        }
    }
    modelNodes.clear();
    delete tree;
}

// The ends of a run of equals are its first and last inserted Items; the
// full scans ignore the tree's order; removeFirstItem takes the first node,
// not the first equal one met from the root.
TEST(TalvoAVLTree, Access_EndsScansAndCursorEnds) {
    std::vector<Keyed> k = {{2, 0}, {1, 1}, {1, 2}, {3, 3}, {3, 4}};
    TalvoAVLTree* tree = treeOf(k);
    EXPECT_TRUE(tree->getFirstItem() == &k[1] && tree->getLastItem() == &k[4]);
    Keyed tag3 = {0, 3};
    EXPECT_EQ(tree->searchItem(compareTags, &tag3), &k[3]);
    TalvoComparator byAddress;
    EXPECT_EQ(tree->searchItemWithComparator(&byAddress, &k[2]), &k[2]);
    TalvoAVLTreeCursor* c = tree->newCursor();
    c->resetInPosition(2);  // the second of the two 1s
    EXPECT_FALSE(c->isOnFirstItem());
    c->decrement();
    EXPECT_TRUE(c->isOnFirstItem() && !c->isOnLastItem());
    c->resetInPosition(-2);
    EXPECT_FALSE(c->isOnLastItem());
    c->increment();
    EXPECT_TRUE(c->isOnLastItem());
    delete c;
    EXPECT_EQ(tree->removeFirstItem(), &k[1]);
    EXPECT_EQ(tree->getFirstItem(), &k[2]);
    TalvoAVLTree::free(tree);
}

// A list removes one node per occurrence in it, by identity; the compare
// forms remove every match; deleteItems(list) also frees every Item of the
// list, held here or not, and empties it.
TEST(TalvoAVLTree, Removals_OnePerListItemOrEveryMatch) {
    std::vector<Keyed> k = {{1, 0}, {2, 1}, {2, 2}, {3, 3}, {4, 4}};
    TalvoAVLTree* tree = new TalvoAVLTree(compareKeys);
    for (int i : {0, 1, 1, 2, 3, 3, 4})
        tree->insertItem(&k[i]);
    TalvoList list(2, &k[1], &k[3]);
    tree->removeItems(&list);
    EXPECT_EQ(tagsInOrder(tree), (std::vector<int>{0, 1, 2, 3, 4}));
    Keyed two = {2, 9};
    tree->compareAndRemoveItems(compareKeys, &two);  // both 2s
    TalvoComparator byAddress;
    tree->compareAndRemoveItems(&byAddress, &k[4]);
    freedTags.clear();
    tree->compareAndDeleteItems(compareKeys, &k[3], recordFree);
    tree->compareAndDeleteItems(&byAddress, &k[0], recordFree);
    for (int i = 0; i < 2; i++)
        tree->insertItem(&k[1]);
    TalvoList held(2, &k[2], &k[1]);
    tree->deleteItems(&held, recordFree);
    EXPECT_TRUE(tree->getNumberOfItems() == 1 && held.isEmpty());
    EXPECT_EQ(freedTags, (std::vector<int>{3, 0, 2, 1}));
    tree->removeItems();
    EXPECT_TRUE(tree->isEmpty());
    delete tree;
}

// Repeats survive the copies and the built trees and count in the numbers
// (by identity); equal Items added later go after the ones already there.
TEST(TalvoAVLTree, CopiesAndSetOperations_KeepOrderAndRepeats) {
    std::vector<Keyed> k = {{1, 0}, {2, 1}, {2, 2}, {3, 3}, {4, 4}};
    TalvoAVLTree *a = new TalvoAVLTree(compareKeys), *b = new TalvoAVLTree(compareKeys);
    for (int i : {3, 1, 0, 1})
        a->insertItem(&k[i]);
    for (int i : {4, 2, 1, 4})
        b->insertItem(&k[i]);
    EXPECT_EQ(a->getNumberOfItemsOfIntersection(b), 2);
    EXPECT_EQ(a->getNumberOfItemsOfDifference(b), 2);
    EXPECT_EQ(a->getNumberOfItemsOfUnion(b), 6);
    TalvoAVLTree* copy = a->copy();
    EXPECT_EQ(shapeOf(copy->getRoot()), shapeOf(a->getRoot()));
    TalvoList* list = a->copyAsList();
    a->collectItems(list);
    EXPECT_EQ(tagsOf(list->newCursor()), (std::vector<int>{0, 1, 1, 3, 0, 1, 1, 3}));
    delete list;
    struct { TalvoAVLTree* built; std::vector<int> tags; } table[] = {
        {a->buildUnion(b), {0, 1, 1, 2, 3, 4}}, {a->buildIntersection(b), {1, 1}}, {a->buildDifference(b), {0, 3}}};
    for (auto& row : table) {
        EXPECT_EQ(tagsInOrder(row.built), row.tags);
        delete row.built;
    }
    copy->subtraction(b);
    EXPECT_EQ(tagsInOrder(copy), (std::vector<int>{0, 1, 3}));
    copy->selection(b);
    copy->addition(b);
    EXPECT_EQ(tagsInOrder(copy), (std::vector<int>{1, 2, 4}));
    for (TalvoAVLTree* t : {a, b, copy})
        delete t;
    TalvoAVLTree* boxes = new TalvoAVLTree(nullptr);
    boxes->insertItem(TalvoInteger::allocate(2));
    TalvoAVLTree* deep = boxes->copyWithItems(TalvoInteger::copy);
    EXPECT_TRUE(deep->getFirstItem() != boxes->getFirstItem() && *static_cast<int*>(deep->getFirstItem()) == 2);
    deep->deleteWithItems(TalvoInteger::free);
    boxes->deleteWithItems(TalvoInteger::free);
}
