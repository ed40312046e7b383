/// @file
/// TalvoAVLTree: Items kept sorted by a compare call-back in a height-balanced
/// search tree, with TalvoAVLTreeNode nodes and the in-order TalvoAVLTreeCursor.
///
/// Layout: each node holds one Item, its two children, its parent and its
/// height (a leaf has height 1, an absent child counts as 0). The tree keeps
/// the compare call-back fixed at construction, the root and the count.
///
/// Invariants: the in-order walk gives the Items ascending by compare(a, b),
/// and equal Items in insertion order (an equal Item always descends to the
/// right); every height is 1 + the larger child height. Every node on the path
/// of a change is balanced (a child height difference of exactly 2 is rotated
/// away). A height tie in the heavy child takes the double rotation on
/// purpose; after a removal that can leave a node beside the path two levels
/// off balance until a later change passes through it, so the height stays
/// logarithmic in practice but is not strictly AVL-bounded. The tree never
/// owns its Items; only the operations taking a free call-back release them.
///
/// Node identity: a node always keeps the Item it was made for. Removing a
/// node with two children moves the node of the largest Item of its left
/// subtree into its place (the shape is that of copying the Item up), so a
/// removal never frees or changes any node but the removed one. Cursors rely
/// on this.
///
/// Membership (`contains`, `getItemPosition`, the set operations, the removals
/// taking a list) is by identity, as for TalvoList; the identity search uses
/// the compare call-back to reach the run of equal Items, so an Item must not
/// change its sort key while it is in the tree. No operation recurses.
#pragma once

#include <talvo/foundation/TalvoCallbacks.h>
#include <talvo/foundation/TalvoComparator.h>
#include <talvo/foundation/TalvoCursor.h>
#include <talvo/foundation/TalvoObject.h>

class TalvoAVLTree;
class TalvoAVLTreeCursor;
class TalvoList;

/// One node of a tree: an Item, its two children and its parent. Read-only
/// to callers: only the tree creates, links and deletes nodes.
class TALVO_API TalvoAVLTreeNode : public TalvoObject<TalvoAVLTreeNode> {
public:
    static constexpr const char* ClassName = "TalvoAVLTreeNode";  ///< Name in the allocation trace.

    /// The Item held, not owned by the node.
    void* getItem() const { return item; }
    /// The left child (smaller or equal Items); null when none.
    const TalvoAVLTreeNode* getLeft() const { return left; }
    /// The right child (greater or equal Items); null when none.
    const TalvoAVLTreeNode* getRight() const { return right; }
    /// The parent; null for the root.
    const TalvoAVLTreeNode* getParent() const { return parent; }
    /// The height of the subtree rooted here: 1 for a leaf.
    int getHeight() const { return height; }

private:
    friend class TalvoAVLTree;
    friend class TalvoAVLTreeCursor;

    explicit TalvoAVLTreeNode(void* item);
    ~TalvoAVLTreeNode() = default;

    static int heightOf(const TalvoAVLTreeNode* node) { return node ? node->height : 0; }
    void updateHeight();
    /// Rotations and balancing return the new root of this node's subtree;
    /// parent pointers inside the subtree are kept right, the new root's
    /// parent is this node's former parent (the caller relinks it there).
    TalvoAVLTreeNode* rotateRight();
    TalvoAVLTreeNode* rotateLeft();
    TalvoAVLTreeNode* balance(bool& tie);

    TalvoAVLTreeNode* leftmost();
    TalvoAVLTreeNode* rightmost();
    /// In-order neighbours through the parent pointers; null at either end.
    TalvoAVLTreeNode* next();
    TalvoAVLTreeNode* previous();

    void* item;
    TalvoAVLTreeNode* left;
    TalvoAVLTreeNode* right;
    TalvoAVLTreeNode* parent;
    int height;
};

/// A balanced binary search tree of untyped Items, which it never owns.
class TALVO_API TalvoAVLTree : public TalvoObject<TalvoAVLTree> {
public:
    static constexpr const char* ClassName = "TalvoAVLTree";  ///< Name in the allocation trace.

    /// An empty tree ordered by `compare` (called as compare(item in tree, other)).
    /// A null call-back ranks all Items equal: they stay in insertion order.
    explicit TalvoAVLTree(TalvoCompareFunction compare);
    /// Deletes every node; the Items are untouched. O(n), no recursion.
    ~TalvoAVLTree();
    /// Copies the three fields only: both trees then share the nodes
    /// (kept as for every container; `copy` is the way to duplicate).
    TalvoAVLTree& operator=(const TalvoAVLTree&) = default;

    /// Deletes the tree when `tree` is not null.
    static void free(void* tree);
    /// Calls `free` on every Item in order, then deletes the tree.
    void deleteWithItems(TalvoFreeFunction free);
    /// A new tree with the same compare call-back, shape and Items; the caller
    /// owns it. O(n).
    TalvoAVLTree* copy();
    /// The same with copy(item) for each Item, called in order; null for a
    /// null call-back.
    TalvoAVLTree* copyWithItems(TalvoCopyFunction copy);

    /// True when the tree holds no Item.
    bool isEmpty() const { return count == 0; }
    /// The number of Items.
    int getNumberOfItems() const { return count; }
    /// The compare call-back the tree orders by.
    TalvoCompareFunction getCompare() const { return compare; }
    /// The root node, for inspecting the shape; null when empty.
    const TalvoAVLTreeNode* getRoot() const { return root; }

    /// Inserts the Item after the Items that compare equal to it. O(log n).
    void insertItem(void* item);
    /// Removes the first node met on the path from the root whose Item
    /// compares equal (0) to `item`; nothing when none. O(log n).
    void removeItem(void* item);

    /// The n-th Item in order (1-based); null when n < 1 or n > count. O(n).
    void* getNthItem(int n);
    /// The smallest Item (the first of equals), null when empty. O(log n).
    void* getFirstItem();
    /// The largest Item (the last of equals), null when empty. O(log n).
    void* getLastItem();

    /// True when some node holds that very pointer. O(log n + equal Items).
    bool contains(void* item);
    /// The first Item in order for which the tree's compare(item, key) is 0;
    /// null when none. O(log n).
    void* lookForItem(void* key);
    /// The same with another call-back, compare(item, key), which must order
    /// the Items as the tree's own does (such as an Item against a bare key).
    void* lookForItem(TalvoCompareFunction compare, void* key);
    /// The first Item in order for which compare(item, key) is 0, null when
    /// none: a full scan for call-backs unrelated to the order. O(n).
    /// A null call-back finds nothing.
    void* searchItem(TalvoCompareFunction compare, void* key);
    /// The same with comparator->compareItems(item, key); null for a null
    /// comparator. O(n).
    void* searchItemWithComparator(TalvoComparator* comparator, void* key);
    /// The 1-based position of that very pointer in order, 0 when absent. O(n).
    int getItemPosition(void* item);

    /// Removes and returns the first Item in order; null when empty. O(log n).
    void* removeFirstItem();
    /// Removes and returns the last Item in order; null when empty. O(log n).
    void* removeLastItem();
    /// Removes and returns the n-th Item (as in getNthItem); null and no
    /// change when n < 1 or n > count. O(n).
    void* removeNthItem(int n);
    /// Removes every node; Items untouched.
    void removeItems();
    /// Same as subtraction: removes one node holding each Item of the list
    /// (by identity). The list is unchanged; null does nothing.
    void removeItems(TalvoList* list);
    /// Calls `free` (when not null) on every Item in order and removes every node.
    void deleteItems(TalvoFreeFunction free);
    /// Empties `list` from its first cell; each Item taken off it loses one
    /// node here (by identity, when present) and is then passed to `free`
    /// whether or not the tree held it (a null `free` releases nothing). A
    /// null list does nothing.
    void deleteItems(TalvoList* list, TalvoFreeFunction free);
    /// Removes every node whose Item gives compare(item, key) == 0; a null
    /// call-back removes nothing. O(n + removed log n).
    void compareAndRemoveItems(TalvoCompareFunction compare, void* key);
    /// The same with comparator->compareItems(item, key); a null comparator
    /// removes nothing.
    void compareAndRemoveItems(TalvoComparator* comparator, void* key);
    /// Removes every node whose Item gives compare(item, key) == 0, calling
    /// `free` (when not null) on the Item before its node goes; a null compare
    /// removes nothing. O(n + removed log n).
    void compareAndDeleteItems(TalvoCompareFunction compare, void* key, TalvoFreeFunction free);
    /// The same with comparator->compareItems(item, key); a null comparator
    /// removes nothing.
    void compareAndDeleteItems(TalvoComparator* comparator, void* key, TalvoFreeFunction free);

    /// A new TalvoList of the Items in order, owned by the caller. O(n).
    TalvoList* copyAsList();
    /// Appends the Items in order at the end of `list`; null does nothing. O(n).
    void collectItems(TalvoList* list);

    /// @name Set operations by identity
    /// This tree is the first operand, `other` is never changed. A null
    /// `other` changes nothing and builds nothing (null). Each costs
    /// O(m log n) for m Items met, plus the equal runs searched.
    /// @{

    /// Inserts each Item of other, in order, that this tree does not yet hold.
    void addition(TalvoAVLTree* other);
    /// Removes one node here holding each Item of other.
    void subtraction(TalvoAVLTree* other);
    /// Removes every node here whose Item other does not hold.
    void selection(TalvoAVLTree* other);
    /// A new tree (same compare, owned by the caller): copy() then addition(other).
    TalvoAVLTree* buildUnion(TalvoAVLTree* other);
    /// A new tree (same compare, owned by the caller) of the Items here, with
    /// repetitions, that other holds.
    TalvoAVLTree* buildIntersection(TalvoAVLTree* other);
    /// A new tree (same compare, owned by the caller) of the Items here, with
    /// repetitions, that other does not hold.
    TalvoAVLTree* buildDifference(TalvoAVLTree* other);
    /// other's count plus the Items here not in other (with repetitions); 0
    /// for a null other.
    int getNumberOfItemsOfUnion(TalvoAVLTree* other);
    /// The Items here, with repetitions, that other holds; 0 for a null other.
    int getNumberOfItemsOfIntersection(TalvoAVLTree* other);
    /// The Items here, with repetitions, that other does not hold; 0 for a
    /// null other.
    int getNumberOfItemsOfDifference(TalvoAVLTree* other);
    /// @}

    /// A new cursor on this tree, before the first and after the last Item;
    /// the caller owns it.
    TalvoAVLTreeCursor* newCursor();

private:
    friend class TalvoAVLTreeCursor;
    friend class TalvoDictionary;  // searches, inserts and removes in one descent

    void _relink(TalvoAVLTreeNode* parent, TalvoAVLTreeNode* from, TalvoAVLTreeNode* to);
    void _rebalanceUpFrom(TalvoAVLTreeNode* node);
    void _removeNode(TalvoAVLTreeNode* node);
    void _removeAllNodes();
    TalvoAVLTreeNode* _lowerBound(TalvoCompareFunction compare, void* key);
    // The first node met on the descent from the root whose Item gives
    // compare(item, key) == 0 (the one removeItem removes), or null.
    TalvoAVLTreeNode* _equalNode(TalvoCompareFunction compare, void* key);
    // _lowerBound that also gives the last node of its descent and the side
    // it would go on (null for an empty tree). When no Item compares equal to
    // `key`, that is where insertItem attaches an Item ordered like `key`.
    TalvoAVLTreeNode* _lowerBoundWithLeaf(TalvoCompareFunction compare, void* key, TalvoAVLTreeNode*& leaf,
                                          bool& left);
    // insertItem's second half: a new node for `item` as the `left` or right
    // child of `leaf` (the root when leaf is null), then rebalancing.
    void _attachLeaf(void* item, TalvoAVLTreeNode* leaf, bool left);
    TalvoAVLTreeNode* _findNode(void* item);
    TalvoAVLTreeNode* _nthNode(int n);
    bool _removeOneOccurrence(void* item);
    template <class Matches>
    void _removeMatching(Matches matches, TalvoFreeFunction free);
    template <class Keep>
    TalvoAVLTree* _buildFiltered(Keep keep);
    int _countContainedIn(TalvoAVLTree* other);
    static bool _attachTwin(TalvoAVLTreeNode* parent, TalvoAVLTreeNode*& slot, int& made);
    TalvoAVLTreeNode* _cloneNodes(TalvoCopyFunction copy, int& made);
    TalvoAVLTree* _cloneWith(TalvoCopyFunction copy);

    TalvoCompareFunction compare;
    TalvoAVLTreeNode* root;
    int count;
    /// True once a tie rotation may have left a node off balance.
    bool offBalance;
};

/// In-order cursor. States: on a node; before the first Item; after the last
/// Item (on an empty tree both flags are set).
///
///     TalvoAVLTreeCursor* c = tree->newCursor();
///     for (c->resetOnFirstItem(); !c->isAfterLastItem(); c->increment())
///         use(c->getItem());
///     delete c;
///
/// The cursor survives every removal except that of its own node, in
/// particular removeItemAndIncrement / removeItemAndDecrement, which remove
/// the cursor's own node and leave it on the next / previous Item. Insertion
/// keeps it valid too (rotations relink nodes, never move Items).
class TALVO_API TalvoAVLTreeCursor : public TalvoCursor, public TalvoObject<TalvoAVLTreeCursor> {
public:
    static constexpr const char* ClassName = "TalvoAVLTreeCursor";  ///< Name in the allocation trace.

    /// A cursor on `tree` (not owned), before the first and after the last
    /// Item. A null tree behaves as an empty one for the reset operations.
    explicit TalvoAVLTreeCursor(TalvoAVLTree* tree);
    /// Releases the cursor only.
    ~TalvoAVLTreeCursor() override;
    /// Copies the tree, the node and both flags.
    TalvoAVLTreeCursor& operator=(const TalvoAVLTreeCursor&) = default;

    bool isBeforeFirstItem() override;
    bool isAfterLastItem() override;
    /// True when on the leftmost node. O(log n).
    bool isOnFirstItem() override;
    /// True when on the rightmost node. O(log n).
    bool isOnLastItem() override;
    void resetOnFirstItem() override;
    void resetOnLastItem() override;
    /// 1..count: the p-th Item; -1..-count: the (-p)-th from the end; any other
    /// position leaves the cursor unchanged. O(|p| + log n).
    void resetInPosition(int position) override;
    /// On the node holding that very pointer, else after the last Item.
    void resetOnItem(void* item) override;
    /// To the next Item in order, or after the last; nothing when not on an Item.
    void increment() override;
    /// To the previous Item in order, or before the first; nothing when not on
    /// an Item.
    void decrement() override;
    /// The current Item; null when not on an Item.
    void* getItem() override;
    /// Removes the current Item's node, moving to the next Item, and returns
    /// the Item. Not on an Item: returns null, and on a non-empty tree still
    /// calls removeItem(null), whose compare call-back receives null (kept:
    /// the tree removes a node comparing equal to null, if any).
    void* removeItemAndIncrement() override;
    /// The same moving to the previous Item.
    void* removeItemAndDecrement() override;

private:
    void _step(bool forward);
    void* _removeAndStep(bool forward);

    TalvoAVLTree* tree;
    TalvoAVLTreeNode* node;
    bool beforeFirst;
    bool afterLast;
};
