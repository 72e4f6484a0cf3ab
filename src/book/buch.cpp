#include "book/buch.h"

#include <algorithm>

namespace {

uint64_t Mische(uint64_t schluessel, Zug_t zug) {
    uint64_t x = schluessel ^ (uint64_t{zug} * 0x9e3779b97f4a7c15ULL);
    x ^= x >> 31;
    x *= 0xbf58476d1ce4e5b9ULL;
    return x ^ (x >> 29);
}

template <typename T>
T SaettigendPlus(T a, uint64_t b, uint64_t max) {
    return static_cast<T>(a >= max || b > max - a ? max : a + b);
}

}  // namespace

Buch_t::Buch_t() : slots(1024) {}

size_t Buch_t::Slot(uint64_t schluessel, Zug_t zug) const {
    const size_t maske = slots.size() - 1;
    size_t i = Mische(schluessel, zug) & maske;
    while (slots[i].zug != 0 && (slots[i].schluessel != schluessel || slots[i].zug != zug)) i = (i + 1) & maske;
    return i;
}

void Buch_t::Wachsen() {
    std::vector<Buchzug_t> alt(slots.size() * 2);
    alt.swap(slots);
    for (const Buchzug_t& z : alt)
        if (z.zug != 0) slots[Slot(z.schluessel, z.zug)] = z;
}

void Buch_t::Hinzufuegen(uint64_t schluessel, Zug_t zug, uint32_t partien, uint32_t punkte, uint64_t gewicht) {
    if (zug == 0) return;
    // At most half full, so the probe sequences stay short.
    if (2 * (anzahl + 1) > slots.size()) Wachsen();
    Buchzug_t& z = slots[Slot(schluessel, zug)];
    if (z.zug == 0) {
        z.schluessel = schluessel;
        z.zug = zug;
        ++anzahl;
    }
    z.partien = SaettigendPlus(z.partien, partien, UINT32_MAX);
    z.punkte = SaettigendPlus(z.punkte, punkte, UINT32_MAX);
    z.gewicht = SaettigendPlus(z.gewicht, gewicht, GewichtMax);
}

const Buchzug_t* Buch_t::Finde(uint64_t schluessel, Zug_t zug) const {
    const Buchzug_t& z = slots[Slot(schluessel, zug)];
    return z.zug != 0 ? &z : nullptr;
}

std::vector<Buchzug_t> Buch_t::Sortiert() const {
    std::vector<Buchzug_t> alle;
    alle.reserve(anzahl);
    for (const Buchzug_t& z : slots)
        if (z.zug != 0) alle.push_back(z);
    std::sort(alle.begin(), alle.end(), VorImBuch);
    return alle;
}

std::vector<Buchzug_t> Auswahl(std::vector<Buchzug_t> zuege, double schwelleProzent, int breite) {
    long double summe = 0;
    for (const Buchzug_t& z : zuege) summe += static_cast<long double>(z.gewicht);
    const long double grenze = summe * std::max(schwelleProzent, 0.0) / 100.0L;
    std::erase_if(zuege, [&](const Buchzug_t& z) {
        return z.gewicht == 0 || static_cast<long double>(z.gewicht) < grenze;
    });
    std::stable_sort(zuege.begin(), zuege.end(),
                     [](const Buchzug_t& a, const Buchzug_t& b) { return a.gewicht > b.gewicht; });
    if (zuege.size() > static_cast<size_t>(std::max(breite, 0))) zuege.resize(static_cast<size_t>(std::max(breite, 0)));
    return zuege;
}
