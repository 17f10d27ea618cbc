// Failures of a command program. Each one reaches the handler of the running
// level, which shows it; there is no resumption: the level ends.
#pragma once

#include <cmath>
#include <stdexcept>
#include <string>

// `ErreurProvoquee`: the deliberate run-time failure that a routine raises after
// leaving its text in `TexteErreur`. The handler of the running `Interprete`
// catches it, as it catches every other failure below.
struct ErreurProvoquee : std::runtime_error {
    explicit ErreurProvoquee(const std::string& quoi = "ErreurProvoquee")
        : std::runtime_error(quoi) {}
};

// A run-time failure of the language itself: an overflow of a 16-bit
// position, a bad conversion, an index out of range.
// It reaches the same handler; only the name differs, for diagnostics.
struct ErreurExecution : ErreurProvoquee {
    explicit ErreurExecution(const std::string& quoi) : ErreurProvoquee(quoi) {}
};

// Printer failure (error number 482): the box says "Erreur d'imprimante".
struct ErreurImprimante : ErreurProvoquee {
    ErreurImprimante() : ErreurProvoquee("Erreur d'imprimante") {}
};

// A keyword that no routine answers: the command error (string 124).
// It is not a run-time failure: the loop is left and the end of level runs.
struct ErreurCommande : std::runtime_error {
    ErreurCommande() : std::runtime_error("ErreurCommande") {}
};

// The stop of a run (Esc, the time limit, the limit of operations) reached
// inside a command that draws for long: the command ends there and its level
// ends as at its next line, without a box.
struct ArretExecution : std::runtime_error {
    ArretExecution() : std::runtime_error("ArretExecution") {}
};

// The checked 16-bit integers of the language: positions in texts and counters
// overflow above 32767, and that overflow is a run-time failure.
inline int Entier16(long long v) {
    if (v > 32767 || v < -32768) throw ErreurExecution("Overflow");
    return int(v);
}

// A number rounded to the nearest integer, a half to the even neighbour, as a
// checked 16-bit integer: beyond it the line fails as an overflow, never wraps.
inline int Entier16Arrondi(double v) {
    if (!(std::fabs(v) < 1e9)) throw ErreurExecution("Overflow");
    return Entier16((long long)std::nearbyint(v));
}

// A count held as a checked 32-bit integer, the fraction dropped: beyond it,
// or not a number, the line fails as an overflow.
inline int32_t Entier32(double v) {
    if (!(v > -2147483649.0 && v < 2147483648.0)) throw ErreurExecution("Overflow");
    return int32_t(v);
}

// A value held as a 32-bit float. Beyond the float's range (where it would
// round to infinity), or not a number, it is an overflow.
inline float Float32(double v) {
    if (!(std::fabs(v) < 0x1.ffffffp+127)) throw ErreurExecution("Overflow");
    return float(v);
}
