#include <chrono>

#include "timing/zeitkontrolle.h"

int64_t Millisekunden() {
    using namespace std::chrono;
    return duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count();
}
