#pragma once

#include <QStringView>

namespace PanelKestrin {

// The result of reading a number at the start of a text.
struct NumberScan {
    int consumed = 0;       // characters that form the number (0 when there is none)
    double value = 0.0;
    bool overflow = false;  // the number is too large for a Double (or a hex/octal Long)
};

// Reads the longest number at the start of text with the classic grammar: an optional sign,
// digits with at most one "." and an optional exponent ("E" or "D", optional sign, digits),
// or "&H" hexadecimal / "&O" octal digits. Hex and octal values of up to 16 bits are signed
// Integers (&HFFFF is -1) and up to 32 bits signed Longs. The point is always ".".
NumberScan scanNumber(QStringView text);

// The whole text (spaces around it allowed) is one number; false for "" and for trailing
// characters. On overflow the result is true and *overflow is set.
bool parseNumberText(QStringView text, double *value, bool *overflow);

} // namespace PanelKestrin
