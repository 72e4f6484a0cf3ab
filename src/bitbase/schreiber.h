// Whole bitbase files: writing (compressing every block) and reading back.
//
// File layout: one 5-byte index entry per block (offset of the data, 32-bit
// little-endian, and a length code), then the block data in block order.
// Equal blocks share their data; all-0 and all-1 blocks store none.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

// Writes a bitbase file. bits: `positionen` bits, bit i in byte i>>3 at bit (i&7).
// egal: same layout or nullptr; a 1 marks an index whose bit does not matter (illegal or
// unreachable position), which the compressor may set either way to make the file small.
// Writes to a temporary name and renames it into place. Returns false on any I/O failure.
// groesse (optional) receives the written file size in bytes.
bool SchreibeBitbase(const std::string& dateiname, const uint8_t* bits, const uint8_t* egal,
                     uint64_t positionen, uint64_t* groesse = nullptr);

// Reads and decodes every block of a file into `bits` (positionen bits, same layout).
// False on a missing, truncated or corrupt file.
bool LeseBitbase(const std::string& dateiname, uint64_t positionen, std::vector<uint8_t>& bits);
