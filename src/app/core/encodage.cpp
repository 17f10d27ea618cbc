#include "app/core/encodage.h"

#include <QFile>
#include <QSaveFile>
#include <QStringDecoder>
#include <QStringEncoder>

#include <array>
#include <cstdlib>
#include <memory>
#include <vector>

namespace {

// Characters of the bytes 80 to 9F of Windows-1252; the undefined ones map to
// themselves (U+0081, U+008D, U+008F, U+0090, U+009D).
constexpr std::array<char16_t, 32> Cp1252_80_9F = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

const QByteArray& MarqueUtf8() {
    static const QByteArray marque("\xEF\xBB\xBF", 3);
    return marque;
}

} // namespace

QChar CarWindows1252(unsigned char octet) {
    if (octet >= 0x80 && octet <= 0x9F) return QChar(Cp1252_80_9F[octet - 0x80]);
    return QChar(char16_t(octet));
}

std::optional<unsigned char> OctetWindows1252(QChar c) {
    const char16_t u = c.unicode();
    if (u < 0x80 || (u >= 0xA0 && u <= 0xFF)) return static_cast<unsigned char>(u);
    for (int i = 0; i < 32; ++i)
        if (Cp1252_80_9F[i] == u) return static_cast<unsigned char>(0x80 + i);
    return std::nullopt;
}

QString DecodeWindows1252(const QByteArray& octets) {
    QString s;
    s.resize(octets.size());
    for (qsizetype i = 0; i < octets.size(); ++i)
        s[i] = CarWindows1252(static_cast<unsigned char>(octets[i]));
    return s;
}

std::optional<QByteArray> EncodeWindows1252(const QString& texte) {
    QByteArray b;
    b.resize(texte.size());
    for (qsizetype i = 0; i < texte.size(); ++i) {
        const auto o = OctetWindows1252(texte[i]);
        if (!o) return std::nullopt;
        b[i] = static_cast<char>(*o);
    }
    return b;
}

namespace {

// The two UTF-16 encodings, each known by its byte order mark.
struct MarqueUtf16 {
    Encodage encodage;
    QByteArray marque;
    QStringConverter::Encoding format;
};
const std::array<MarqueUtf16, 2>& MarquesUtf16() {
    static const std::array<MarqueUtf16, 2> m = {
        MarqueUtf16{Encodage::Utf16Le, QByteArray("\xFF\xFE", 2), QStringConverter::Utf16LE},
        MarqueUtf16{Encodage::Utf16Be, QByteArray("\xFE\xFF", 2), QStringConverter::Utf16BE}};
    return m;
}

} // namespace

QString DecodeOctets(const QByteArray& octets, Encodage& encodage) {
    for (const auto& [enc, marque, format] : MarquesUtf16()) {
        if (!octets.startsWith(marque)) continue;
        encodage = enc;
        return QStringDecoder(format, QStringDecoder::Flag::Stateless).decode(octets.mid(2));
    }
    const bool marque = octets.startsWith(MarqueUtf8());
    const QByteArray corps = marque ? octets.mid(3) : octets;
    QStringDecoder dec(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString s = dec.decode(corps);
    if (!dec.hasError()) {
        encodage = marque ? Encodage::Utf8Bom : Encodage::Utf8;
        return s;
    }
    encodage = marque ? Encodage::Windows1252Bom : Encodage::Windows1252;
    return DecodeWindows1252(corps);
}

QByteArray EncodeTexte(const QString& texte, Encodage& encodage) {
    for (const auto& [enc, marque, format] : MarquesUtf16())
        if (encodage == enc) return marque + QByteArray(QStringEncoder(format).encode(texte));
    if (encodage == Encodage::Windows1252 || encodage == Encodage::Windows1252Bom) {
        const bool marque = encodage == Encodage::Windows1252Bom;
        if (auto b = EncodeWindows1252(texte)) return marque ? MarqueUtf8() + *b : *b;
        encodage = marque ? Encodage::Utf8Bom : Encodage::Utf8;
    }
    QByteArray b = texte.toUtf8();
    if (encodage == Encodage::Utf8Bom) b.prepend(MarqueUtf8());
    return b;
}

QString NormaliseFinsDeLigne(const QString& texte) {
    QString r;
    r.reserve(texte.size() + texte.size() / 16);
    for (qsizetype i = 0; i < texte.size(); ++i) {
        const QChar c = texte[i];
        if (c == u'\r') {
            r += u"\r\n";
            if (i + 1 < texte.size() && texte[i + 1] == u'\n') ++i;
        } else if (c == u'\n') {
            r += u"\r\n";
        } else {
            r += c;
        }
    }
    return r;
}

std::optional<QByteArray> LitOctets(const QString& chemin, QString* erreur) {
    QFile f(chemin);
    if (!f.open(QIODevice::ReadOnly)) {
        if (erreur) *erreur = f.errorString();
        return std::nullopt;
    }
    QByteArray b = f.readAll();
    if (f.error() != QFileDevice::NoError) {
        if (erreur) *erreur = f.errorString();
        return std::nullopt;
    }
    return b;
}

namespace {

// The bytes into the temporary file of `f`, unbuffered, so that a failing
// write reports the system's error at once; a short write is retried, so that
// the failing call leaves the system's text. False with that text.
bool EcritTemporaire(QSaveFile& f, const QByteArray& octets, QString* erreur) {
    f.setDirectWriteFallback(false);
    if (!f.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) {
        if (erreur) *erreur = f.errorString();
        return false;
    }
    qint64 fait = 0;
    while (fait < octets.size()) {
        const qint64 n = f.write(octets.constData() + fait, octets.size() - fait);
        if (n <= 0) break;
        fait += n;
    }
    if (fait == octets.size()) return true;
    if (erreur) *erreur = f.errorString();
    f.cancelWriting();
    return false;
}

} // namespace

bool EcritFichiers(const QList<std::pair<QString, QByteArray>>& fichiers, QString* erreur, QString* enFaute) {
    std::vector<std::unique_ptr<QSaveFile>> f;
    auto echec = [&](const QString& chemin) {
        if (enFaute) *enFaute = chemin;
        for (const auto& g : f) g->cancelWriting(); // the temporary files go, the old files stay
        return false;
    };
    for (const auto& [chemin, octets] : fichiers) {
        f.push_back(std::make_unique<QSaveFile>(chemin));
        if (!EcritTemporaire(*f.back(), octets, erreur)) return echec(chemin);
    }
    // Every file is whole on disk: each now takes its name.
    for (size_t i = 0; i < f.size(); ++i) {
        if (f[i]->commit()) continue;
        if (erreur) *erreur = f[i]->errorString();
        return echec(fichiers[int(i)].first);
    }
    return true;
}

QString TexteNonEcrit(const QString& nom, const QString& raison) {
    const QString t = QStringLiteral("cannot write %1").arg(nom);
    return raison.isEmpty() ? t : t + QStringLiteral(": ") + raison;
}

bool EcritOctets(const QString& chemin, const QByteArray& octets, QString* erreur) {
    return EcritFichiers({{chemin, octets}}, erreur);
}

double ValVb(const QString& texte) {
    QByteArray s;
    s.reserve(texte.size());
    for (const QChar c : texte) {
        if (c == u' ' || c == u'\t' || c == u'\n') continue;
        s += c.unicode() < 128 ? char(c.unicode()) : '\x7F';
    }
    if (s.size() >= 2 && s[0] == '&') {
        const char k = char(s[1] | 0x20);
        const int base = k == 'h' ? 16 : k == 'o' ? 8 : 0;
        if (base) return double(std::strtoll(s.constData() + 2, nullptr, base));
    }
    // The longest prefix of the form [+-]digits[.digits][(E|D)[+-]digits].
    qsizetype i = 0;
    QByteArray n;
    if (i < s.size() && (s[i] == '+' || s[i] == '-')) n += s[i++];
    bool chiffres = false;
    while (i < s.size() && s[i] >= '0' && s[i] <= '9') { n += s[i++]; chiffres = true; }
    if (i < s.size() && s[i] == '.') {
        n += s[i++];
        while (i < s.size() && s[i] >= '0' && s[i] <= '9') { n += s[i++]; chiffres = true; }
    }
    if (!chiffres) return 0;
    if (i < s.size() && (s[i] == 'E' || s[i] == 'e' || s[i] == 'D' || s[i] == 'd')) {
        qsizetype j = i + 1;
        QByteArray ex = "e";
        if (j < s.size() && (s[j] == '+' || s[j] == '-')) ex += s[j++];
        bool exChiffres = false;
        while (j < s.size() && s[j] >= '0' && s[j] <= '9') { ex += s[j++]; exChiffres = true; }
        if (exChiffres) n += ex;
    }
    return n.toDouble(); // locale-independent, "." decimal point
}
