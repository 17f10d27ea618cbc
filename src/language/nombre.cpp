// Numbers as text: the language's printed form of a number and its reading back.
#include "language/nombre.h"

#include "language/erreur.h"
#include "language/vb.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <string>

namespace {

// Digits kept of the exact expansion: a 32-bit float has at most 105
// significant decimal digits, so 120 give it exactly, and the digit that
// decides the rounding is always the true one.
constexpr int ChiffresExacts = 120;

// The printed form of a value with `precision` significant digits: the plain
// form for -4 <= X < precision, the exponent form otherwise (see nombre.h).
QString FormeStr(double valeur, int precision) {
    if (valeur == 0) return QStringLiteral("0");
    if (std::isnan(valeur)) return QStringLiteral("-1.#IND");
    if (std::isinf(valeur)) return valeur < 0 ? QStringLiteral("-1.#INF") : QStringLiteral("1.#INF");

    char tampon[ChiffresExacts + 32];
    const auto r = std::to_chars(tampon, tampon + sizeof tampon - 1, std::fabs(valeur),
                                 std::chars_format::scientific, ChiffresExacts);
    *r.ptr = '\0';
    // tampon: d.ddd...e±XX
    std::string chiffres(1, tampon[0]);
    chiffres.append(tampon + 2, tampon + 2 + ChiffresExacts);
    int exposant = std::atoi(tampon + 3 + ChiffresExacts);

    // Rounding at the last kept digit, a half away from zero.
    std::string m = chiffres.substr(0, precision);
    if (chiffres[precision] >= '5') {
        int i = precision - 1;
        while (i >= 0 && m[i] == '9') m[i--] = '0';
        if (i >= 0) {
            ++m[i];
        } else {
            m.insert(m.begin(), '1');
            m.pop_back();
            ++exposant;
        }
    }
    while (m.size() > 1 && m.back() == '0') m.pop_back();

    std::string s = valeur < 0 ? "-" : "";
    if (exposant < -4 || exposant >= precision) {
        s += m[0];
        if (m.size() > 1) s += '.' + m.substr(1);
        s += exposant < 0 ? "E-" : "E+";
        const int a = std::abs(exposant);
        if (a < 10) s += '0';
        s += std::to_string(a);
    } else if (exposant >= 0) {
        const size_t entiers = size_t(exposant) + 1;
        if (m.size() <= entiers) {
            s += m + std::string(entiers - m.size(), '0');
        } else {
            s += m.substr(0, entiers) + '.' + m.substr(entiers);
        }
    } else {
        s += '.' + std::string(size_t(-exposant - 1), '0') + m;
    }
    return QString::fromLatin1(s);
}

bool EstBlancVal(QChar c) { return c == u' ' || c == u'\t' || c == u'\n'; }

} // namespace

QString StrF(float valeur) { return FormeStr(double(valeur), 7); }

QString StrD(double valeur) { return FormeStr(valeur, 15); }

double ValNombre(const QString& texte) {
    // The characters of the number, blanks taken out, in the form
    // [sign] digits [. digits] [E [sign] digits].
    std::string mantisse, exposant;
    bool negatif = false, signeVu = false, pointVu = false, dansExposant = false;
    for (const QChar c : texte) {
        if (EstBlancVal(c)) continue;
        const char a = c.toLatin1();
        if (dansExposant) {
            if ((a == '+' || a == '-') && exposant.empty()) {
                exposant += a;
            } else if (a >= '0' && a <= '9') {
                exposant += a;
            } else {
                break;
            }
        } else if ((a == '+' || a == '-') && !signeVu && mantisse.empty() && !pointVu) {
            signeVu = true;
            negatif = a == '-';
        } else if (a >= '0' && a <= '9') {
            mantisse += a;
        } else if (a == '.' && !pointVu) {
            pointVu = true;
            mantisse += a;
        } else if ((a == 'E' || a == 'e' || a == 'D' || a == 'd') && !mantisse.empty()) {
            dansExposant = true;
        } else {
            break;
        }
    }
    if (mantisse.find_first_of("0123456789") == std::string::npos) return 0;
    std::string nombre = mantisse;
    if (!exposant.empty() && exposant.find_first_of("0123456789") != std::string::npos)
        nombre += 'e' + exposant;

    double v = 0;
    const auto r = std::from_chars(nombre.data(), nombre.data() + nombre.size(), v);
    if (r.ec == std::errc::result_out_of_range) {
        // Below the range reads as 0; above it is an overflow.
        if (!exposant.empty() && exposant[0] == '-') return 0;
        throw ErreurExecution("Overflow");
    }
    return negatif ? -v : v;
}

std::optional<double> DecimalSimple(QStringView t, bool virgule) {
    t = vb::TrimVue(t);
    bool negatif = false, point = false;
    if (!t.isEmpty() && (t.front() == u'-' || t.front() == u'+')) {
        negatif = t.front() == u'-';
        t = t.sliced(1);
    }
    // Up to 15 digits, the digits and the power of ten are exact doubles and
    // their quotient is the correctly rounded value; longer numbers go to
    // the language's reader.
    constexpr double Puissances[] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                     1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
    int chiffres = 0, decimales = 0;
    std::int64_t entier = 0;
    for (const QChar c : t) {
        if (c >= u'0' && c <= u'9') {
            if (++chiffres > 15) return {};
            entier = 10 * entier + (c.unicode() - u'0');
            decimales += point;
        } else if ((c == u'.' || (virgule && c == u',')) && !point) {
            point = true;
        } else {
            return {};
        }
    }
    if (chiffres == 0) return {};
    const double v = double(entier) / Puissances[decimales];
    return negatif ? -v : v;
}
