// Making bitbase files: a signature with its colour-flipped twin, the smaller
// signatures they convert into first, each file read back and compared; and
// the rules check of files already made.
#pragma once

#include <functional>
#include <string>

using Meldung_t = std::function<void(const std::string&)>;

// Directory and signature joined to the file name ("dir/KDK.kbb").
std::string BitbaseDatei(const std::string& verzeichnis, const std::string& name);

// Writes NAME.kbb and its twin into `verzeichnis` with `threads` threads, first
// the smaller signatures whose files are missing there. Signatures up to five
// men, spelt in falling value. Progress and failures go to `meldung` as
// "info string" lines. True when every file was written and read back equal.
bool ErzeugeBitbase(const std::string& name, int threads, const std::string& verzeichnis, const Meldung_t& meldung);

// The rules check of NAME.kbb and its twin (PruefeSignatur) over the files in `verzeichnis`.
bool PruefeBitbase(const std::string& name, int threads, const std::string& verzeichnis, const Meldung_t& meldung);
