// Random draws summarised by a measure with quantiles, and a chronogram.
#include <talvo/talvo.h>

#include <cstdio>

static void summariseDelays() {
    TalvoCongruentialRandomizer* random = new TalvoCongruentialRandomizer(1);
    TalvoMeasure* delay = new TalvoMeasure("delay");
    delay->setQuantilizer(new TalvoQuantilizer(10, 1000));
    for (int i = 0; i < 100000; ++i)
        delay->addValue(random->exponentialDraw());
    TalvoQuantileTable* quantiles = delay->getQuantilizer()->extractQuantiles(100);
    std::printf("mean %g +- %g, median %g\n", delay->computeMean(),
                delay->computeNinetyFivePercentConfidenceSlack(), quantiles->getQuantile(49));
    delete quantiles;
    delete delay;
    delete random;
}

static void reduceHistory() {
    TalvoChronogram* queue = new TalvoChronogram("queue", 3);
    for (int t = 1; t <= 12; ++t)
        queue->appendValueToHistory(t, t < 6 ? 1 : 9);
    queue->stopHistory();  // at most 3 points, total width kept
    for (TalvoChronogramPoint* p = queue->getFirstPoint(); p; p = p->getNext())
        std::printf("x=%g width=%g\n", p->getX(), p->getWidth());
    TalvoChronogram::free(queue);
}

int main() {
    TalvoMemoryManager::start();
    summariseDelays();
    reduceHistory();
    TalvoMemoryManager::stop();
    return TalvoMemoryManager::getAllocationBalance() == 0 ? 0 : 1;
}
