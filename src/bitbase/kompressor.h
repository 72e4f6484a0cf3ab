// The block compressor: turns 512 bytes of bitbase (and a mask of bits that may
// be set either way) into the smallest of fill, raw and compressed form that
// the decoder reads back.
#pragma once

#include <cstdint>

#include "bitbase/blockformat.h"

struct GepackterBlock_t {
    enum Art_t { Fuellung, Roh, Komprimiert } art = Roh;
    uint8_t fuellbyte = 0;
    int laenge = 0;                       // stored bytes (0 for a fill block)
    uint8_t daten[BlockBytes + 8];        // the stored bytes
    uint8_t inhalt[BlockBytes];           // what a reader decodes: free bits resolved
};

// bits: 512 bytes; egal: 512 bytes or nullptr, a 1 bit marks a bit that does not matter.
// The result decodes to `inhalt`, which equals `bits` wherever `egal` is 0.
void BlockPacken(const uint8_t* bits, const uint8_t* egal, GepackterBlock_t& ergebnis);

// Only the compressed form with a given header (polarity and marker); the length
// of the stream, or -1 when it would not be shorter than `grenze` (`code` holds
// grenze + 3 bytes). Resolved
// output goes to `inhalt`. For tests and tuning.
int BlockKomprimieren(const uint8_t* bits, const uint8_t* egal, uint8_t kopf, uint8_t* code, int grenze,
                      uint8_t* inhalt);
