// The program's random generator: a multiply-add step added to xorshift128.
#pragma once

#include <cstdint>

class Zufallsgenerator_t {
public:
    explicit Zufallsgenerator_t(uint32_t saat = 0) { Saeen(saat); }

    void Saeen(uint32_t saat) {
        s0 = saat;
        x = 123456789u ^ saat;
        y = 362436069u;
        z = 521288629u;
        w = 88675123u ^ (saat * 2654435761u);
        if ((x | y | z | w) == 0) w = 1;  // xorshift must not start from all zeros
    }

    uint32_t Ziehe() {
        s0 = s0 * 56789u + 33333u;
        const uint32_t t = x ^ (x << 11);
        x = y;
        y = z;
        z = w;
        w = w ^ (w >> 19) ^ t ^ (t >> 8);
        return s0 + w;
    }

private:
    uint32_t s0, x, y, z, w;
};

// The one generator of the program, made on first use.
Zufallsgenerator_t& Zufall();
