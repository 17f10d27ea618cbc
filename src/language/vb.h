// 1-based string helpers with the language's semantics, in one place, and Sgn.
// The language counts positions in a text from 1; every routine that works
// with such positions uses these instead of QString's 0-based calls.
#pragma once

#include <QString>

#include <algorithm>
#include <cstdint>
#include <initializer_list>

namespace vb {

// Length of a text.
inline int Len(const QString& s) { return int(s.size()); }

// Mid(s, debut[, n]): from the 1-based position debut, n characters or to the end.
inline QString Mid(const QString& s, int debut, int n = -1) {
    if (debut < 1) debut = 1;
    if (debut > s.size()) return QString();
    return n < 0 ? s.mid(debut - 1) : s.mid(debut - 1, n);
}

inline QString Left(const QString& s, int n) { return n <= 0 ? QString() : s.left(n); }
inline QString Right(const QString& s, int n) { return n <= 0 ? QString() : s.right(n); }

// InStr(debut, s, cherche): 1-based position of cherche at or after debut, 0 if absent.
// An empty search text is found at debut when debut <= Len + 1.
inline int InStr(int debut, const QString& s, const QString& cherche,
                 Qt::CaseSensitivity cs = Qt::CaseSensitive) {
    if (debut < 1) debut = 1;
    if (cherche.isEmpty()) return debut <= s.size() + 1 ? debut : 0;
    if (debut > s.size()) return 0;
    const qsizetype i = s.indexOf(cherche, debut - 1, cs);
    return i < 0 ? 0 : int(i) + 1;
}
inline int InStr(const QString& s, const QString& cherche,
                 Qt::CaseSensitivity cs = Qt::CaseSensitive) {
    return InStr(1, s, cherche, cs);
}

// InStrRev(s, cherche[, debut]): last position at or before debut (default: the end).
inline int InStrRev(const QString& s, const QString& cherche, int debut = -1) {
    if (cherche.isEmpty()) return debut < 0 ? int(s.size()) : debut;
    const qsizetype from = debut < 0 ? -1 : debut - 1;
    if (debut == 0) return 0;
    const qsizetype i = s.lastIndexOf(cherche, from);
    return i < 0 ? 0 : int(i) + 1;
}

inline QString UCase(const QString& s) { return s.toUpper(); }

// Plain ASCII text: upper-casing it keeps its length and maps a-z to A-Z
// only, so it can be compared without an upper-cased copy.
inline bool EstAscii(QStringView s) {
    for (QChar c : s)
        if (c.unicode() >= 0x80) return false;
    return true;
}

// UCase(a) == UCase(b), in one pass without copies while both are plain
// ASCII (upper-casing other characters may change a text's length).
inline bool MemeTexteMaj(QStringView a, QStringView b) {
    auto haut = [](char16_t c) { return c >= u'a' && c <= u'z' ? char16_t(c - 32) : c; };
    if (a.size() == b.size()) {
        qsizetype i = 0;
        for (; i < a.size(); ++i) {
            const char16_t x = a[i].unicode(), y = b[i].unicode();
            if (x >= 0x80 || y >= 0x80) break;
            if (haut(x) != haut(y)) return false; // the same ASCII text up to here
        }
        if (i == a.size()) return true;
    } else if (EstAscii(a) && EstAscii(b)) {
        return false;
    }
    return a.toString().toUpper() == b.toString().toUpper();
}

// Whether UCase(s) starts with an upper-case ASCII word (other characters
// than ASCII in its first ones: the whole text is upper-cased, as that may
// change its length).
inline bool CommenceMaj(const QString& s, QLatin1String mot) {
    const QStringView tete = QStringView(s).left(mot.size());
    if (!EstAscii(tete)) return s.toUpper().startsWith(mot);
    return tete.size() == mot.size() && tete.compare(mot, Qt::CaseInsensitive) == 0;
}
inline QString LCase(const QString& s) { return s.toLower(); }

// Trim removes blanks only, not tabs or line ends.
inline QString LTrim(const QString& s) {
    int i = 0;
    while (i < s.size() && s[i] == u' ') ++i;
    return s.mid(i);
}
inline QString RTrim(const QString& s) {
    qsizetype n = s.size();
    while (n > 0 && s[n - 1] == u' ') --n;
    return s.left(n);
}
inline QString Trim(const QString& s) { return LTrim(RTrim(s)); }

// Whether UCase(s) contains one of the upper-case ASCII words (each starting
// with a letter); a plain ASCII text is searched without its upper-cased
// copy, and not at all for a word whose first letter it lacks.
inline bool ContientMaj(const QString& s, std::initializer_list<const char*> mots) {
    const bool ascii = EstAscii(s);
    uint32_t lettres = 0; // the letters of the text, A to Z
    for (QChar c : s) {
        const char16_t u = c.unicode() | 0x20; // a lower-case letter's code either way
        if (u >= u'a' && u <= u'z') lettres |= 1u << (u - u'a');
    }
    const QString haut = ascii ? QString() : s.toUpper();
    for (const char* m : mots) {
        if (ascii && !(lettres & (1u << (m[0] - 'A')))) continue; // its first letter is absent
        if (ascii ? s.contains(QLatin1String(m), Qt::CaseInsensitive) : haut.contains(QLatin1String(m)))
            return true;
    }
    return false;
}

// Trim on a view, without a copy.
inline QStringView TrimVue(QStringView s) {
    qsizetype d = 0, n = s.size();
    while (d < n && s[d] == u' ') ++d;
    while (n > d && s[n - 1] == u' ') --n;
    return s.mid(d, n - d);
}

// Replace every occurrence, case-sensitive.
inline QString Replace(const QString& s, const QString& de, const QString& par) {
    QString r = s;
    return de.isEmpty() ? r : r.replace(de, par);
}

// Sgn(v): 1, -1 or 0 (also for -0 and NaN).
inline double Sgn(double v) { return v > 0 ? 1 : (v < 0 ? -1 : 0); }

// The CR LF pair that ends every line of a command text (design.md section 5).
inline const QString& CrLf() {
    static const QString crlf = QStringLiteral("\r\n");
    return crlf;
}

} // namespace vb
