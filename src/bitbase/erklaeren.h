// "--ExplainBitbase": a text dump of a bitbase file, its index and every stored
// block code by code, for checking the compressor and corrupt files by eye.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

// One line per code of a compressed block, appended to `text`; false (after a
// "Fehler" line) when the block does not decode.
bool BlockErklaeren(const uint8_t* eingabe, size_t laenge, std::string& text);

// Reads stem + ".kbb" and writes the dump to stem + ".txt"; the signature is the
// stem's last path element. Returns the exit status (0).
int ErklaereBitbase(const char* stamm);
