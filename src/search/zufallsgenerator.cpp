#include "search/zufallsgenerator.h"

Zufallsgenerator_t& Zufall() {
    static Zufallsgenerator_t generator;
    return generator;
}
