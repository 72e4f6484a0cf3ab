#include "book/buchdatei.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>

#include "board/stellung.h"

namespace Buchdatei {

namespace {

struct DateiZu {
    void operator()(std::FILE* f) const { std::fclose(f); }
};
using Datei_t = std::unique_ptr<std::FILE, DateiZu>;

void Schreibe(unsigned char* p, uint64_t wert, int bytes) {
    for (int i = 0; i < bytes; ++i) p[i] = static_cast<unsigned char>(wert >> (8 * i));
}

uint64_t Lies(const unsigned char* p, int bytes) {
    uint64_t wert = 0;
    for (int i = bytes - 1; i >= 0; --i) wert = (wert << 8) | p[i];
    return wert;
}

constexpr uint64_t FnvStart = 0xcbf29ce484222325ULL;

uint64_t Fnv(uint64_t h, const unsigned char* p, size_t n) {
    for (size_t i = 0; i < n; ++i) h = (h ^ p[i]) * 0x100000001b3ULL;
    return h;
}

struct Kopf_t {
    uint16_t flags = 0;
    uint64_t anzahl = 0;
    uint64_t pruefsumme = 0;
};

// Opens the file and checks header and length.
Status OeffneUndPruefe(const std::string& datei, Datei_t& f, Kopf_t& kopf) {
    f.reset(std::fopen(datei.c_str(), "rb"));
    if (!f) return Status::NichtDa;
    std::error_code fehler;
    const uint64_t groesse = std::filesystem::file_size(datei, fehler);
    unsigned char k[KopfGroesse];
    if (fehler || groesse < KopfGroesse || std::fread(k, 1, KopfGroesse, f.get()) != KopfGroesse) return Status::Fremd;
    if (std::memcmp(k, Kennung, sizeof Kennung) != 0) return Status::Fremd;
    if (Lies(k + 8, 2) != Version || Lies(k + 12, 2) != SatzGroesse || Lies(k + 14, 2) != KopfGroesse)
        return Status::Fassung;
    if (Lies(k + 16, 8) != Schluesselsignatur()) return Status::Schluessel;
    kopf.flags = static_cast<uint16_t>(Lies(k + 10, 2));
    kopf.anzahl = Lies(k + 24, 8);
    kopf.pruefsumme = Lies(k + 32, 8);
    if (kopf.anzahl > (groesse - KopfGroesse) / SatzGroesse || groesse != KopfGroesse + kopf.anzahl * SatzGroesse)
        return Status::Abgeschnitten;
    return Status::Ok;
}

}  // namespace

const char* StatusText(Status s) {
    switch (s) {
        case Status::Ok: return "ok";
        case Status::NichtDa: return "cannot open file";
        case Status::Fremd: return "not a Kelvaran book";
        case Status::Fassung: return "unknown book version";
        case Status::Schluessel: return "book made with other position keys";
        case Status::Abgeschnitten: return "book file truncated";
        case Status::Pruefsumme: return "book file damaged";
        case Status::Unsortiert: return "book records out of order";
        case Status::Schreibfehler: return "cannot write file";
    }
    return "";
}

uint64_t Schluesselsignatur() {
    Stellung_t st;
    Stellungsdaten_t daten;
    SetzeStellung(st, daten, nullptr);
    return daten.schluessel;
}

void KodiereSatz(const Buchzug_t& z, unsigned char* p) {
    Schreibe(p, z.schluessel, 8);
    Schreibe(p + 8, z.zug, 2);
    Schreibe(p + 10, std::min(z.gewicht, Buch_t::GewichtMax), 6);
    Schreibe(p + 16, z.partien, 4);
    Schreibe(p + 20, z.punkte, 4);
}

Buchzug_t DekodiereSatz(const unsigned char* p) {
    Buchzug_t z;
    z.schluessel = Lies(p, 8);
    z.zug = static_cast<Zug_t>(Lies(p + 8, 2));
    z.gewicht = Lies(p + 10, 6);
    z.partien = static_cast<uint32_t>(Lies(p + 16, 4));
    z.punkte = static_cast<uint32_t>(Lies(p + 20, 4));
    return z;
}

Status Schreiben(const std::string& datei, const std::vector<Buchzug_t>& saetze, uint16_t flags) {
    const std::string neu = datei + ".neu";
    Datei_t f(std::fopen(neu.c_str(), "wb"));
    if (!f) return Status::Schreibfehler;

    std::vector<unsigned char> daten(saetze.size() * SatzGroesse);
    for (size_t i = 0; i < saetze.size(); ++i) KodiereSatz(saetze[i], daten.data() + i * SatzGroesse);
    unsigned char k[KopfGroesse] = {};
    std::memcpy(k, Kennung, sizeof Kennung);
    Schreibe(k + 8, Version, 2);
    Schreibe(k + 10, flags, 2);
    Schreibe(k + 12, SatzGroesse, 2);
    Schreibe(k + 14, KopfGroesse, 2);
    Schreibe(k + 16, Schluesselsignatur(), 8);
    Schreibe(k + 24, saetze.size(), 8);
    Schreibe(k + 32, Fnv(FnvStart, daten.data(), daten.size()), 8);

    bool gut = std::fwrite(k, 1, KopfGroesse, f.get()) == KopfGroesse &&
               (daten.empty() || std::fwrite(daten.data(), 1, daten.size(), f.get()) == daten.size());
    gut = std::fclose(f.release()) == 0 && gut;
    std::error_code fehler;
    if (gut) std::filesystem::rename(neu, datei, fehler);
    if (!gut || fehler) {
        std::remove(neu.c_str());
        return Status::Schreibfehler;
    }
    return Status::Ok;
}

Status Lesen(const std::string& datei, std::vector<Buchzug_t>& saetze, uint16_t& flags) {
    Datei_t f;
    Kopf_t kopf;
    if (const Status s = OeffneUndPruefe(datei, f, kopf); s != Status::Ok) return s;
    std::vector<unsigned char> daten(kopf.anzahl * SatzGroesse);
    if (!daten.empty() && std::fread(daten.data(), 1, daten.size(), f.get()) != daten.size())
        return Status::Abgeschnitten;
    if (Fnv(FnvStart, daten.data(), daten.size()) != kopf.pruefsumme) return Status::Pruefsumme;
    std::vector<Buchzug_t> gelesen(kopf.anzahl);
    for (size_t i = 0; i < gelesen.size(); ++i) {
        gelesen[i] = DekodiereSatz(daten.data() + i * SatzGroesse);
        // Strictly rising: the binary search depends on it, and a move is there once.
        if (gelesen[i].zug == 0 || (i > 0 && !VorImBuch(gelesen[i - 1], gelesen[i]))) return Status::Unsortiert;
    }
    saetze.swap(gelesen);
    flags = kopf.flags;
    return Status::Ok;
}

Status Suchen(const std::string& datei, uint64_t schluessel, std::vector<Buchzug_t>& zuege) {
    zuege.clear();
    Datei_t f;
    Kopf_t kopf;
    if (const Status s = OeffneUndPruefe(datei, f, kopf); s != Status::Ok) return s;

    unsigned char satz[SatzGroesse];
    auto lies = [&](uint64_t i) {
        return std::fseek(f.get(), static_cast<long>(KopfGroesse + i * SatzGroesse), SEEK_SET) == 0 &&
               std::fread(satz, 1, SatzGroesse, f.get()) == SatzGroesse;
    };
    // The first record whose key is not below the one sought.
    uint64_t unten = 0, oben = kopf.anzahl;
    while (unten < oben) {
        const uint64_t mitte = unten + (oben - unten) / 2;
        if (!lies(mitte)) return Status::Abgeschnitten;
        if (Lies(satz, 8) < schluessel) unten = mitte + 1;
        else oben = mitte;
    }
    for (uint64_t i = unten; i < kopf.anzahl; ++i) {
        if (!lies(i)) return Status::Abgeschnitten;
        const Buchzug_t z = DekodiereSatz(satz);
        if (z.schluessel != schluessel) break;
        zuege.push_back(z);
    }
    return Status::Ok;
}

bool IstBuchdatei(const std::string& datei) {
    Datei_t f(std::fopen(datei.c_str(), "rb"));
    char k[sizeof Kennung];
    return f && std::fread(k, 1, sizeof k, f.get()) == sizeof k && std::memcmp(k, Kennung, sizeof k) == 0;
}

}  // namespace Buchdatei
