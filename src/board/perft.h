// Perft and divide: counting the leaves of the legal move tree.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "board/stellung.h"

// Leaves of the legal tree of depth `tiefe` (>= 1), with an optional table of
// 2^k 24-byte entries; `tabelleMb` 0 means no table.
uint64_t Perft(const Stellung_t& st, int tiefe, unsigned tabelleMb);

// Runs the "perft" command text (depth N, Hash M, divide) on a copy of the
// position and sends each output line to `zeile`. The lines carry printf's
// fixed-width fields; the output object squeezes their blanks.
void PerftBefehl(const Stellung_t& st, const char* text, const std::function<void(const std::string&)>& zeile);
