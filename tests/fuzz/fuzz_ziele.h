// The fuzz targets: one plain function per input the engine reads from outside.
// libFuzzer drives them in the fuzz build (tools/fuzz.sh); the test suite replays
// every committed case of tests/fuzz/korpus/<name>/ through the same functions.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

using FuzzFunktion_t = int (*)(const uint8_t* daten, size_t groesse);

struct FuzzZiel_t {
    const char* name;  // also the folder of its cases and the suffix of its fuzz program
    FuzzFunktion_t lauf;
};

// Ends with a row whose name is null.
extern const FuzzZiel_t FuzzZiele[];
const FuzzZiel_t* FindeFuzzZiel(const char* name);

// Tables every target needs, built once per process.
void FuzzVorbereiten();

int FuzzUci(const uint8_t* daten, size_t groesse);
int FuzzXboard(const uint8_t* daten, size_t groesse);
int FuzzFen(const uint8_t* daten, size_t groesse);
int FuzzZugtext(const uint8_t* daten, size_t groesse);
int FuzzPgn(const uint8_t* daten, size_t groesse);
int FuzzEpd(const uint8_t* daten, size_t groesse);
int FuzzBitbase(const uint8_t* daten, size_t groesse);
int FuzzBlock(const uint8_t* daten, size_t groesse);
int FuzzBuch(const uint8_t* daten, size_t groesse);
int FuzzPolyglot(const uint8_t* daten, size_t groesse);
int FuzzNetz(const uint8_t* daten, size_t groesse);
int FuzzZeitlog(const uint8_t* daten, size_t groesse);
int FuzzBewertungsnetz(const uint8_t* daten, size_t groesse);

// A broken invariant is a finding like a crash: it aborts, so libFuzzer keeps the input
// and the replaying test dies.
#define FUZZ_PRUEFEN(bedingung)                                                                   \
    do {                                                                                          \
        if (!(bedingung)) {                                                                       \
            std::fprintf(stderr, "%s:%d: broken invariant: %s\n", __FILE__, __LINE__, #bedingung); \
            std::abort();                                                                         \
        }                                                                                         \
    } while (0)
