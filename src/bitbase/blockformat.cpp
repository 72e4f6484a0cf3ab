#include "bitbase/blockformat.h"

#include "bitbase/dekoder.h"

bool BlockEntpacken(const uint8_t* eingabe, size_t laenge, uint8_t* ausgabe, size_t* verbraucht) {
    size_t n = 0;
    const bool ok = Dekodiere(eingabe, laenge, ausgabe, n, KeinBeobachter_t{});
    if (verbraucht != nullptr) *verbraucht = n;
    return ok;
}
