#include <talvo/containers/TalvoAVLTree.h>

#include <talvo/containers/TalvoList.h>

namespace {

// The largest height difference a balanced node may show.
const int kMaximumImbalance = 1;

int larger(int a, int b) { return a > b ? a : b; }

// Stands in for a null compare call-back: every Item ranks the same.
int sameRank(void*, void*) { return 0; }

}  // namespace

// ---------------------------------------------------------------- nodes

TalvoAVLTreeNode::TalvoAVLTreeNode(void* item)
    : item(item), left(nullptr), right(nullptr), parent(nullptr), height(1) {}

void TalvoAVLTreeNode::updateHeight() {
    height = 1 + larger(heightOf(left), heightOf(right));
}

TalvoAVLTreeNode* TalvoAVLTreeNode::rotateRight() {
    TalvoAVLTreeNode* l = left;
    l->parent = parent;
    left = l->right;
    if (left)
        left->parent = this;
    l->right = this;
    parent = l;
    updateHeight();
    l->updateHeight();
    return l;
}

TalvoAVLTreeNode* TalvoAVLTreeNode::rotateLeft() {
    TalvoAVLTreeNode* r = right;
    r->parent = parent;
    right = r->left;
    if (right)
        right->parent = this;
    r->left = this;
    parent = r;
    updateHeight();
    r->updateHeight();
    return r;
}

// A height tie in the heavy child takes the double rotation, as required,
// although after a removal that can leave the rotated child itself two
// levels off balance; `tie` reports it. Only a difference of exactly 2 is
// corrected.
TalvoAVLTreeNode* TalvoAVLTreeNode::balance(bool& tie) {
    int hl = heightOf(left);
    int hr = heightOf(right);
    if (hl == hr + kMaximumImbalance + 1) {
        tie = heightOf(left->left) == heightOf(left->right);
        if (heightOf(left->left) <= heightOf(left->right))
            left = left->rotateLeft();
        return rotateRight();
    }
    if (hr == hl + kMaximumImbalance + 1) {
        tie = heightOf(right->left) == heightOf(right->right);
        if (heightOf(right->left) >= heightOf(right->right))
            right = right->rotateRight();
        return rotateLeft();
    }
    updateHeight();
    return this;
}

TalvoAVLTreeNode* TalvoAVLTreeNode::leftmost() {
    TalvoAVLTreeNode* n = this;
    while (n->left)
        n = n->left;
    return n;
}

TalvoAVLTreeNode* TalvoAVLTreeNode::rightmost() {
    TalvoAVLTreeNode* n = this;
    while (n->right)
        n = n->right;
    return n;
}

TalvoAVLTreeNode* TalvoAVLTreeNode::next() {
    if (right)
        return right->leftmost();
    TalvoAVLTreeNode* n = this;
    while (n->parent && n->parent->right == n)
        n = n->parent;
    return n->parent;
}

TalvoAVLTreeNode* TalvoAVLTreeNode::previous() {
    if (left)
        return left->rightmost();
    TalvoAVLTreeNode* n = this;
    while (n->parent && n->parent->left == n)
        n = n->parent;
    return n->parent;
}

// ---------------------------------------------------------------- tree: structure

TalvoAVLTree::TalvoAVLTree(TalvoCompareFunction compare)
    : compare(compare ? compare : sameRank), root(nullptr), count(0), offBalance(false) {}

TalvoAVLTree::~TalvoAVLTree() { _removeAllNodes(); }

void TalvoAVLTree::free(void* tree) {
    if (tree)
        delete static_cast<TalvoAVLTree*>(tree);
}

// Puts `to` where `from` hangs below `parent` (or at the root).
void TalvoAVLTree::_relink(TalvoAVLTreeNode* parent, TalvoAVLTreeNode* from, TalvoAVLTreeNode* to) {
    if (!parent)
        root = to;
    else if (parent->left == from)
        parent->left = to;
    else
        parent->right = to;
    if (to)
        to->parent = parent;
}

// Balances every node from `node` up to the root. While no tie rotation has
// ever run, every node is within one level of balance, so the walk may stop
// where a subtree keeps its height: balancing the nodes above would change
// nothing. Afterwards it always goes up to the root, so that a node left off
// balance gets corrected when a later path passes through it.
void TalvoAVLTree::_rebalanceUpFrom(TalvoAVLTreeNode* node) {
    while (node) {
        TalvoAVLTreeNode* parent = node->parent;
        int formerHeight = node->height;
        bool tie = false;
        TalvoAVLTreeNode* top = node->balance(tie);
        offBalance = offBalance || tie;
        if (top != node)
            _relink(parent, node, top);
        if (!offBalance && top->height == formerHeight)
            return;
        node = parent;
    }
}

// Unlinks and deletes `node`. With two children, the node of the largest
// Item of its left subtree takes its place, so that no other node is freed.
void TalvoAVLTree::_removeNode(TalvoAVLTreeNode* node) {
    TalvoAVLTreeNode* start;
    if (!node->left || !node->right) {
        start = node->parent;
        _relink(start, node, node->left ? node->left : node->right);
    } else {
        TalvoAVLTreeNode* m = node->left->rightmost();
        start = m->parent == node ? m : m->parent;
        _relink(m->parent, m, m->left);
        m->left = node->left;
        m->right = node->right;
        m->height = node->height;
        if (m->left)
            m->left->parent = m;
        m->right->parent = m;
        _relink(node->parent, node, m);
    }
    delete node;
    count--;
    if (count == 0)
        offBalance = false;
    _rebalanceUpFrom(start);
}

// Deletes every node bottom-up through the parent pointers.
void TalvoAVLTree::_removeAllNodes() {
    TalvoAVLTreeNode* n = root;
    while (n) {
        if (n->left) {
            n = n->left;
        } else if (n->right) {
            n = n->right;
        } else {
            TalvoAVLTreeNode* parent = n->parent;
            if (parent && parent->left == n)
                parent->left = nullptr;
            else if (parent)
                parent->right = nullptr;
            delete n;
            n = parent;
        }
    }
    root = nullptr;
    count = 0;
    offBalance = false;
}

// ---------------------------------------------------------------- tree: searching

// The first node in order whose Item gives compare(item, key) >= 0.
TalvoAVLTreeNode* TalvoAVLTree::_lowerBound(TalvoCompareFunction compare, void* key) {
    TalvoAVLTreeNode* bound = nullptr;
    for (TalvoAVLTreeNode* n = root; n;) {
        if (compare(n->item, key) < 0) {
            n = n->right;
        } else {
            bound = n;
            n = n->left;
        }
    }
    return bound;
}

TalvoAVLTreeNode* TalvoAVLTree::_equalNode(TalvoCompareFunction compare, void* key) {
    TalvoAVLTreeNode* n = root;
    while (n) {
        int r = compare(n->item, key);
        if (r == 0)
            return n;
        n = r > 0 ? n->left : n->right;
    }
    return nullptr;
}

TalvoAVLTreeNode* TalvoAVLTree::_lowerBoundWithLeaf(TalvoCompareFunction compare, void* key,
                                                     TalvoAVLTreeNode*& leaf, bool& left) {
    TalvoAVLTreeNode* bound = nullptr;
    leaf = nullptr;
    left = false;
    for (TalvoAVLTreeNode* n = root; n;) {
        leaf = n;
        left = compare(n->item, key) >= 0;
        if (left) {
            bound = n;
            n = n->left;
        } else {
            n = n->right;
        }
    }
    return bound;
}

// The first node in order holding that very pointer. A null pointer is
// looked for by a plain walk, so that compare never sees it here.
TalvoAVLTreeNode* TalvoAVLTree::_findNode(void* item) {
    if (!root)
        return nullptr;
    if (!item) {
        TalvoAVLTreeNode* n = root->leftmost();
        while (n && n->item)
            n = n->next();
        return n;
    }
    for (TalvoAVLTreeNode* n = _lowerBound(compare, item); n && compare(n->item, item) == 0; n = n->next()) {
        if (n->item == item)
            return n;
    }
    return nullptr;
}

// Walks from the nearer end; null outside 1..count.
TalvoAVLTreeNode* TalvoAVLTree::_nthNode(int n) {
    if (n < 1 || n > count)
        return nullptr;
    if (n <= count - n) {
        TalvoAVLTreeNode* node = root->leftmost();
        while (--n > 0)
            node = node->next();
        return node;
    }
    TalvoAVLTreeNode* node = root->rightmost();
    for (int steps = count - n; steps > 0; steps--)
        node = node->previous();
    return node;
}

void* TalvoAVLTree::getNthItem(int n) {
    TalvoAVLTreeNode* node = _nthNode(n);
    return node ? node->item : nullptr;
}

void* TalvoAVLTree::getFirstItem() { return root ? root->leftmost()->item : nullptr; }

void* TalvoAVLTree::getLastItem() { return root ? root->rightmost()->item : nullptr; }

bool TalvoAVLTree::contains(void* item) { return _findNode(item) != nullptr; }

void* TalvoAVLTree::lookForItem(void* key) { return lookForItem(compare, key); }

void* TalvoAVLTree::lookForItem(TalvoCompareFunction compare, void* key) {
    if (!compare)
        return nullptr;
    TalvoAVLTreeNode* n = _lowerBound(compare, key);
    return n && compare(n->item, key) == 0 ? n->item : nullptr;
}

void* TalvoAVLTree::searchItem(TalvoCompareFunction compare, void* key) {
    if (!compare || !root)
        return nullptr;
    for (TalvoAVLTreeNode* n = root->leftmost(); n; n = n->next()) {
        if (compare(n->item, key) == 0)
            return n->item;
    }
    return nullptr;
}

void* TalvoAVLTree::searchItemWithComparator(TalvoComparator* comparator, void* key) {
    if (!comparator || !root)
        return nullptr;
    for (TalvoAVLTreeNode* n = root->leftmost(); n; n = n->next()) {
        if (comparator->compareItems(n->item, key) == 0)
            return n->item;
    }
    return nullptr;
}

int TalvoAVLTree::getItemPosition(void* item) {
    if (!root)
        return 0;
    int position = 1;
    for (TalvoAVLTreeNode* n = root->leftmost(); n; n = n->next(), position++) {
        if (n->item == item)
            return position;
    }
    return 0;
}

// ---------------------------------------------------------------- tree: changes

void TalvoAVLTree::insertItem(void* item) {
    TalvoAVLTreeNode* fresh = new TalvoAVLTreeNode(item);
    if (!fresh)
        return;
    count++;
    if (!root) {
        root = fresh;
        return;
    }
    TalvoAVLTreeNode* n = root;
    for (;;) {
        // Equal Items go right, behind the ones already present.
        TalvoAVLTreeNode*& child = compare(n->item, item) > 0 ? n->left : n->right;
        if (!child) {
            child = fresh;
            fresh->parent = n;
            break;
        }
        n = child;
    }
    _rebalanceUpFrom(n);
}

void TalvoAVLTree::_attachLeaf(void* item, TalvoAVLTreeNode* leaf, bool left) {
    TalvoAVLTreeNode* fresh = new TalvoAVLTreeNode(item);
    if (!fresh)
        return;
    count++;
    if (!leaf) {
        root = fresh;
        return;
    }
    (left ? leaf->left : leaf->right) = fresh;
    fresh->parent = leaf;
    _rebalanceUpFrom(leaf);
}

void TalvoAVLTree::removeItem(void* item) {
    TalvoAVLTreeNode* node = _equalNode(compare, item);
    if (node)
        _removeNode(node);
}

void* TalvoAVLTree::removeFirstItem() { return removeNthItem(1); }

void* TalvoAVLTree::removeLastItem() { return removeNthItem(count); }

void* TalvoAVLTree::removeNthItem(int n) {
    TalvoAVLTreeNode* node = _nthNode(n);
    if (!node)
        return nullptr;
    void* item = node->item;
    _removeNode(node);
    return item;
}

bool TalvoAVLTree::_removeOneOccurrence(void* item) {
    TalvoAVLTreeNode* node = _findNode(item);
    if (node)
        _removeNode(node);
    return node != nullptr;
}

void TalvoAVLTree::removeItems() { _removeAllNodes(); }

void TalvoAVLTree::deleteItems(TalvoFreeFunction free) {
    if (free && root) {
        for (TalvoAVLTreeNode* n = root->leftmost(); n; n = n->next())
            free(n->item);
    }
    _removeAllNodes();
}

void TalvoAVLTree::removeItems(TalvoList* list) {
    if (!list)
        return;
    TalvoListCursor cursor(list);
    for (cursor.resetOnFirstItem(); !cursor.isAfterLastItem(); cursor.increment())
        _removeOneOccurrence(cursor.getItem());
}

void TalvoAVLTree::deleteItems(TalvoList* list, TalvoFreeFunction free) {
    if (!list)
        return;
    while (!list->isEmpty()) {
        void* item = list->removeFirstItem();
        _removeOneOccurrence(item);
        if (free)
            free(item);
    }
}

void TalvoAVLTree::deleteWithItems(TalvoFreeFunction free) {
    deleteItems(free);
    delete this;
}

// Removes (and frees, when `free` is given) every Item that `matches`.
// Removal never frees another node, so the successor taken before it stays.
template <class Matches>
void TalvoAVLTree::_removeMatching(Matches matches, TalvoFreeFunction free) {
    TalvoAVLTreeNode* n = root ? root->leftmost() : nullptr;
    while (n) {
        TalvoAVLTreeNode* following = n->next();
        if (matches(n->item)) {
            if (free)
                free(n->item);
            _removeNode(n);
        }
        n = following;
    }
}

void TalvoAVLTree::compareAndRemoveItems(TalvoCompareFunction compare, void* key) {
    if (compare)
        _removeMatching([&](void* item) { return compare(item, key) == 0; }, nullptr);
}

void TalvoAVLTree::compareAndRemoveItems(TalvoComparator* comparator, void* key) {
    if (comparator)
        _removeMatching([&](void* item) { return comparator->compareItems(item, key) == 0; }, nullptr);
}

void TalvoAVLTree::compareAndDeleteItems(TalvoCompareFunction compare, void* key, TalvoFreeFunction free) {
    if (compare)
        _removeMatching([&](void* item) { return compare(item, key) == 0; }, free);
}

void TalvoAVLTree::compareAndDeleteItems(TalvoComparator* comparator, void* key, TalvoFreeFunction free) {
    if (comparator)
        _removeMatching([&](void* item) { return comparator->compareItems(item, key) == 0; }, free);
}

// ---------------------------------------------------------------- tree: copies

// Clones the nodes in the same shape, walking source `s` and twin `t` in
// step through the parent pointers, without recursion; `copy` (when given)
// is called in order. A node that cannot be allocated is left out with its
// subtree (after "Memory overflow." in the dump file); heights are computed
// from what was made and `made` counts it.
TalvoAVLTreeNode* TalvoAVLTree::_cloneNodes(TalvoCopyFunction copy, int& made) {
    TalvoAVLTreeNode* top = root ? new TalvoAVLTreeNode(nullptr) : nullptr;
    if (!top)
        return nullptr;
    made = 1;
    TalvoAVLTreeNode* s = root;
    TalvoAVLTreeNode* t = top;
    bool descend = true;
    for (;;) {
        while (descend && s->left && _attachTwin(t, t->left, made)) {
            s = s->left;
            t = t->left;
        }
        t->item = copy ? copy(s->item) : s->item;
        if (s->right && _attachTwin(t, t->right, made)) {
            s = s->right;
            t = t->right;
            descend = true;
            continue;
        }
        // Climb past every node whose right side is done; the first one
        // reached from its left child is visited next.
        for (;;) {
            t->updateHeight();
            if (s == root)
                return top;
            bool fromLeft = s->parent->left == s;
            s = s->parent;
            t = t->parent;
            if (fromLeft)
                break;
        }
        descend = false;
    }
}

// Hangs a new empty node in `slot` below `parent`; false when allocation fails.
bool TalvoAVLTree::_attachTwin(TalvoAVLTreeNode* parent, TalvoAVLTreeNode*& slot, int& made) {
    slot = new TalvoAVLTreeNode(nullptr);
    if (!slot)
        return false;
    slot->parent = parent;
    made++;
    return true;
}

TalvoAVLTree* TalvoAVLTree::_cloneWith(TalvoCopyFunction copy) {
    TalvoAVLTree* result = new TalvoAVLTree(compare);
    if (result) {
        int made = 0;
        result->root = _cloneNodes(copy, made);
        result->count = made;
        result->offBalance = offBalance || made != count;
    }
    return result;
}

TalvoAVLTree* TalvoAVLTree::copy() { return _cloneWith(nullptr); }

TalvoAVLTree* TalvoAVLTree::copyWithItems(TalvoCopyFunction copy) {
    return copy ? _cloneWith(copy) : nullptr;
}

TalvoList* TalvoAVLTree::copyAsList() {
    TalvoList* list = new TalvoList();
    collectItems(list);
    return list;
}

void TalvoAVLTree::collectItems(TalvoList* list) {
    if (!list || !root)
        return;
    for (TalvoAVLTreeNode* n = root->leftmost(); n; n = n->next())
        list->insertItemLast(n->item);
}

// ---------------------------------------------------------------- tree: set operations

void TalvoAVLTree::addition(TalvoAVLTree* other) {
    if (!other || !other->root)
        return;
    // A tree already holds all of its own Items.
    if (other == this)
        return;
    for (TalvoAVLTreeNode* n = other->root->leftmost(); n; n = n->next()) {
        if (!contains(n->item))
            insertItem(n->item);
    }
}

void TalvoAVLTree::subtraction(TalvoAVLTree* other) {
    if (!other || !other->root)
        return;
    if (other == this) {  // every Item removes its own node
        removeItems();
        return;
    }
    for (TalvoAVLTreeNode* n = other->root->leftmost(); n; n = n->next())
        _removeOneOccurrence(n->item);
}

void TalvoAVLTree::selection(TalvoAVLTree* other) {
    if (!other || other == this)
        return;
    _removeMatching([&](void* item) { return !other->contains(item); }, nullptr);
}

template <class Keep>
TalvoAVLTree* TalvoAVLTree::_buildFiltered(Keep keep) {
    TalvoAVLTree* result = new TalvoAVLTree(compare);
    if (!result || !root)
        return result;
    for (TalvoAVLTreeNode* n = root->leftmost(); n; n = n->next()) {
        if (keep(n->item))
            result->insertItem(n->item);
    }
    return result;
}

TalvoAVLTree* TalvoAVLTree::buildUnion(TalvoAVLTree* other) {
    if (!other)
        return nullptr;
    TalvoAVLTree* result = copy();
    if (result)
        result->addition(other);
    return result;
}

TalvoAVLTree* TalvoAVLTree::buildIntersection(TalvoAVLTree* other) {
    if (!other)
        return nullptr;
    return _buildFiltered([&](void* item) { return other->contains(item); });
}

TalvoAVLTree* TalvoAVLTree::buildDifference(TalvoAVLTree* other) {
    if (!other)
        return nullptr;
    return _buildFiltered([&](void* item) { return !other->contains(item); });
}

int TalvoAVLTree::_countContainedIn(TalvoAVLTree* other) {
    int found = 0;
    if (root) {
        for (TalvoAVLTreeNode* n = root->leftmost(); n; n = n->next())
            found += other->contains(n->item) ? 1 : 0;
    }
    return found;
}

int TalvoAVLTree::getNumberOfItemsOfUnion(TalvoAVLTree* other) {
    return other ? other->count + count - _countContainedIn(other) : 0;
}

int TalvoAVLTree::getNumberOfItemsOfIntersection(TalvoAVLTree* other) {
    return other ? _countContainedIn(other) : 0;
}

int TalvoAVLTree::getNumberOfItemsOfDifference(TalvoAVLTree* other) {
    return other ? count - _countContainedIn(other) : 0;
}

TalvoAVLTreeCursor* TalvoAVLTree::newCursor() { return new TalvoAVLTreeCursor(this); }

// ---------------------------------------------------------------- cursor

TalvoAVLTreeCursor::TalvoAVLTreeCursor(TalvoAVLTree* tree)
    : tree(tree), node(nullptr), beforeFirst(true), afterLast(true) {}

TalvoAVLTreeCursor::~TalvoAVLTreeCursor() = default;

bool TalvoAVLTreeCursor::isBeforeFirstItem() { return beforeFirst; }

bool TalvoAVLTreeCursor::isAfterLastItem() { return afterLast; }

bool TalvoAVLTreeCursor::isOnFirstItem() { return node && node == tree->root->leftmost(); }

bool TalvoAVLTreeCursor::isOnLastItem() { return node && node == tree->root->rightmost(); }

void TalvoAVLTreeCursor::resetOnFirstItem() {
    node = tree && tree->root ? tree->root->leftmost() : nullptr;
    beforeFirst = afterLast = (node == nullptr);
}

void TalvoAVLTreeCursor::resetOnLastItem() {
    node = tree && tree->root ? tree->root->rightmost() : nullptr;
    beforeFirst = afterLast = (node == nullptr);
}

void TalvoAVLTreeCursor::resetInPosition(int position) {
    if (!tree)
        return;
    if (position >= 1 && position <= tree->count) {
        resetOnFirstItem();
        for (int steps = position - 1; steps > 0; steps--)
            increment();
    } else if (position <= -1 && position >= -tree->count) {
        resetOnLastItem();
        for (int steps = -position - 1; steps > 0; steps--)
            decrement();
    }
}

void TalvoAVLTreeCursor::resetOnItem(void* item) {
    if (!tree)
        return;
    node = tree->_findNode(item);
    if (node) {
        beforeFirst = afterLast = false;
    } else {
        // Where a walk from the first Item would stop: after the last one.
        beforeFirst = tree->root == nullptr;
        afterLast = true;
    }
}

void TalvoAVLTreeCursor::_step(bool forward) {
    if (!node)
        return;
    node = forward ? node->next() : node->previous();
    if (forward) {
        beforeFirst = false;
        afterLast = node == nullptr;
    } else {
        afterLast = false;
        beforeFirst = node == nullptr;
    }
}

void TalvoAVLTreeCursor::increment() { _step(true); }

void TalvoAVLTreeCursor::decrement() { _step(false); }

void* TalvoAVLTreeCursor::getItem() { return node ? node->item : nullptr; }

// The cursor's own node is removed (not merely one comparing equal), so the
// remaining Items are visited in order even among equal ones.
void* TalvoAVLTreeCursor::_removeAndStep(bool forward) {
    if (!tree)
        return nullptr;
    TalvoAVLTreeNode* current = node;
    if (!current) {
        if (tree->root)
            tree->removeItem(nullptr);
        return nullptr;
    }
    void* item = current->item;
    _step(forward);
    tree->_removeNode(current);
    return item;
}

void* TalvoAVLTreeCursor::removeItemAndIncrement() { return _removeAndStep(true); }

void* TalvoAVLTreeCursor::removeItemAndDecrement() { return _removeAndStep(false); }
