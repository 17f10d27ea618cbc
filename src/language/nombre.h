// The number-to-text form of a 32-bit float, as the original's `Str` prints a
// single-precision number (Part 1.4, Data model; design.md §4): "." decimal
// point, no leading 0 (".5"), an exponent when needed ("1E+12"), at most 7
// significant digits, the leading blank of positives trimmed. Every Part that
// prints a number of the language calls it.
#pragma once

#include <QString>

QString StrF(float valeur);
