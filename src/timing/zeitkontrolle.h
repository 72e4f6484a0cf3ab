// The time-control record: filled by "go", read by the search.
// (The allocation itself arrives with the clock; for now it carries the search start.)
#pragma once

#include <cstdint>

struct Zeitkontrolle_t {
    int64_t startzeit = 0;  // wall clock in milliseconds when the search started
};

// Wall-clock time in milliseconds.
int64_t Millisekunden();
