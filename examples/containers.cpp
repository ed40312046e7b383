// Containers: untyped items, cursors, sorting, sorted trees.
#include <talvo/talvo.h>

#include <cstdio>
#include <initializer_list>

int main() {
    TalvoMemoryManager::start();

    TalvoList* numbers = new TalvoList(3, TalvoInteger::allocate(3), TalvoInteger::allocate(1),
                                       TalvoInteger::allocate(2));
    numbers->quickSort(TalvoInteger::geq);  // stable, ascending
    TalvoListCursor* cursor = numbers->newCursor();
    for (cursor->resetOnFirstItem(); !cursor->isAfterLastItem(); cursor->increment())
        std::printf("%d ", *static_cast<int*>(cursor->getItem()));
    std::printf("(%d items)\n", numbers->getNumberOfItems());
    delete cursor;
    numbers->deleteWithItems(TalvoInteger::free);

    TalvoAVLTree* tree = new TalvoAVLTree(TalvoInteger::geq);
    for (int v : {5, 1, 4, 1})
        tree->insertItem(TalvoInteger::allocate(v));  // equal items keep insertion order
    TalvoAVLTreeCursor* walk = tree->newCursor();
    for (walk->resetOnFirstItem(); !walk->isAfterLastItem(); walk->increment())
        std::printf("%d ", *static_cast<int*>(walk->getItem()));
    std::printf("\n");
    delete walk;
    tree->deleteWithItems(TalvoInteger::free);

    TalvoMemoryManager::stop();
    return TalvoMemoryManager::getAllocationBalance() == 0 ? 0 : 1;
}
