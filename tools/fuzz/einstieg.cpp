// The libFuzzer entry of one fuzz program: KELVARAN_FUZZZIEL names its target.
#include <cstdio>
#include <cstdlib>

#include "fuzz_ziele.h"

namespace {
const FuzzZiel_t* ziel = nullptr;
}

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    FuzzVorbereiten();
    ziel = FindeFuzzZiel(KELVARAN_FUZZZIEL);
    if (ziel == nullptr) {
        std::fprintf(stderr, "unknown fuzz target %s\n", KELVARAN_FUZZZIEL);
        std::abort();
    }
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* daten, size_t groesse) { return ziel->lauf(daten, groesse); }
