#include "bitbase/erzeugung.h"

#include <chrono>
#include <cstdio>
#include <fstream>

#include "bitbase/index.h"
#include "bitbase/retrograd.h"
#include "bitbase/schreiber.h"

namespace {

bool Vorhanden(const std::string& datei) { return std::ifstream(datei, std::ios::binary).good(); }

std::string Sekunden(std::chrono::steady_clock::time_point seit) {
    const double s = std::chrono::duration<double>(std::chrono::steady_clock::now() - seit).count();
    char text[32];
    std::snprintf(text, sizeof text, "%.1f s", s);
    return text;
}

// Writes one file and reads it back: every bit that matters must come back.
bool SchreibeUndKontrolliere(const std::string& verzeichnis, const std::string& name, const Bitfeld_t& bits,
                             const Bitfeld_t& egal, const Meldung_t& meldung, uint64_t& groesse) {
    const std::string datei = BitbaseDatei(verzeichnis, name);
    if (!SchreibeBitbase(datei, bits.Bytes(), egal.Bytes(), bits.anzahl, &groesse)) {
        meldung("info string Fehler beim Schreiben von " + datei);
        return false;
    }
    std::vector<uint8_t> gelesen;
    if (!LeseBitbase(datei, bits.anzahl, gelesen)) {
        meldung("info string Fehler beim Lesen von " + datei);
        return false;
    }
    const uint8_t* soll = bits.Bytes();
    const uint8_t* frei = egal.Bytes();
    const uint64_t bytes = (bits.anzahl + 7) / 8;
    for (uint64_t i = 0; i < bytes; ++i) {
        uint8_t maske = static_cast<uint8_t>(~frei[i]);
        if (i == bytes - 1 && (bits.anzahl & 7)) maske &= static_cast<uint8_t>((1u << (bits.anzahl & 7)) - 1);
        if (i >= gelesen.size() || ((gelesen[i] ^ soll[i]) & maske)) {
            meldung("info string " + datei + " gibt die Bits nicht wieder (Byte " + std::to_string(i) + ")");
            return false;
        }
    }
    return true;
}

KindLader_t DateiLader(const std::string& verzeichnis) {
    return [verzeichnis](const std::string& name, uint64_t positionen, std::vector<uint8_t>& bits) {
        return LeseBitbase(BitbaseDatei(verzeichnis, name), positionen, bits);
    };
}

// The name to work on, or "" after a message.
std::string PruefeName(const std::string& name, const Meldung_t& meldung) {
    Bitbase_t b;
    if (!b.SetzeSignatur(name.c_str())) {
        meldung("info string Bitbase " + name + ": keine Signatur (K, Steine aus DTLSB, K, Steine)");
        return "";
    }
    const std::string kanonisch = KanonischeSignatur(name);
    if (kanonisch != name) {
        meldung("info string Bitbase " + name + ": Steine nach fallendem Wert ordnen (" + kanonisch + ")");
        return "";
    }
    if (b.anzahlSteine > 5) {
        meldung("info string Bitbase " + name + ": mehr als fuenf Steine werden nicht erzeugt");
        return "";
    }
    return name;
}

}  // namespace

std::string BitbaseDatei(const std::string& verzeichnis, const std::string& name) {
    return (verzeichnis.empty() ? std::string(".") : verzeichnis) + "/" + name + ".kbb";
}

bool ErzeugeBitbase(const std::string& eingabe, int threads, const std::string& verzeichnis, const Meldung_t& meldung) {
    const std::string name = PruefeName(eingabe, meldung);
    if (name.empty()) return false;
    char zwilling[BitbaseSteineMax + 1];
    GespiegelteSignatur(name.c_str(), zwilling);

    // The bare kings first: a probe after the last capture asks for them, and a
    // missing file would switch all probing off.
    if (name != "KK" && !Vorhanden(BitbaseDatei(verzeichnis, "KK")) && !ErzeugeBitbase("KK", threads, verzeichnis, meldung))
        return false;
    for (const std::string& kind : Kindsignaturen(name)) {
        char kindZwilling[BitbaseSteineMax + 1];
        GespiegelteSignatur(kind.c_str(), kindZwilling);
        if (Vorhanden(BitbaseDatei(verzeichnis, kind)) && Vorhanden(BitbaseDatei(verzeichnis, kindZwilling))) continue;
        if (!ErzeugeBitbase(kind, threads, verzeichnis, meldung)) return false;
    }

    const auto start = std::chrono::steady_clock::now();
    Loesung_t l;
    std::string fehler;
    if (!LoeseSignatur(name, threads, DateiLader(verzeichnis), l, fehler)) {
        meldung("info string Bitbase " + name + ": " + fehler);
        return false;
    }
    meldung("info string Bitbase " + name + ": " + std::to_string(l.bits.anzahl) + " Positionen, " +
            std::to_string(l.legal) + " legal, Weiss gewinnt " + std::to_string(l.weissGewinnt) +
            ", Schwarz gewinnt " + std::to_string(l.schwarzGewinnt) + ", " + std::to_string(l.durchlaeufe) +
            " Durchlaeufe, " + std::to_string(threads) + " Threads, " + Sekunden(start));

    uint64_t groesse = 0, groesseZwilling = 0;
    if (!SchreibeUndKontrolliere(verzeichnis, name, l.bits, l.egal, meldung, groesse)) return false;
    std::string text = "info string " + name + ".kbb " + std::to_string(groesse) + " Bytes";
    if (!l.zwilling.empty()) {
        if (!SchreibeUndKontrolliere(verzeichnis, l.zwilling, l.bitsZwilling, l.egalZwilling, meldung, groesseZwilling))
            return false;
        text += ", " + l.zwilling + ".kbb " + std::to_string(groesseZwilling) + " Bytes";
    }
    const uint64_t roh = (l.bits.anzahl + 7) / 8 + (l.zwilling.empty() ? 0 : (l.bitsZwilling.anzahl + 7) / 8);
    meldung(text + " (roh " + std::to_string(roh) + " Bytes), gelesen und verglichen, " + Sekunden(start));
    return true;
}

bool PruefeBitbase(const std::string& eingabe, int threads, const std::string& verzeichnis, const Meldung_t& meldung) {
    const std::string name = PruefeName(eingabe, meldung);
    if (name.empty()) return false;
    const auto start = std::chrono::steady_clock::now();
    Pruefbericht_t bericht;
    std::string fehler;
    if (!PruefeSignatur(name, threads, DateiLader(verzeichnis), bericht, fehler)) {
        meldung("info string Pruefung " + name + ": " + fehler);
        return false;
    }
    std::string text = "info string Pruefung " + name + ": " + std::to_string(bericht.geprueft) + " Positionen, " +
                       std::to_string(bericht.fehler) + " Fehler";
    if (!bericht.beispiel.empty()) text += " (" + bericht.beispiel + ")";
    meldung(text + ", " + Sekunden(start));
    return bericht.fehler == 0;
}
