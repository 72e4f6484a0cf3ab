// A searcher that does not search: a random legal move, or in mate mode the
// first mate in one when there is one. A sparring partner for testing.
#pragma once

#include "search/sucher.h"

class SucheZufall_t : public Sucher_t {
public:
    explicit SucheZufall_t(bool mattModus);
    ~SucheZufall_t() override;

    void suchen() override;

    // The first root move that mates, or 0.
    static Zug_t MattInEins(const Stellung_t& st, const uint32_t* zuege, int anzahl);

private:
    uint8_t mattModus;
};
