// Text files on disk: command files and the settings file.
//
// Command files and "Mirel.cfg" are read as UTF-8 when they are valid UTF-8,
// otherwise as Windows-1252, and written back in the encoding they were read
// in. Every line end becomes CR LF. Writing goes through a temporary file
// beside the target that is renamed over it (QSaveFile), so that a failed
// write keeps the old file.
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>
#include <utility>

enum class Encodage {
    Utf8,        // UTF-8 without a byte order mark (also plain ASCII)
    Utf8Bom,     // UTF-8 that started with the mark EF BB BF, written back with it
    Windows1252, // 8-bit files written before UTF-8 was used
    Windows1252Bom, // 8-bit text behind a UTF-8 mark (an 8-bit edit of a marked file), written back so
    Utf16Le,     // UTF-16 that started with its byte order mark FF FE ("Unicode" text), written back so
    Utf16Be,     // the same with the mark FE FF
};

// Windows-1252 byte to character and back. The five bytes that code page
// leaves undefined (81, 8D, 8F, 90, 9D) map to U+0081..., the usual convention, so
// every byte has a character and every such character a byte.
QChar CarWindows1252(unsigned char octet);
// The byte of a character; none when the character is not in Windows-1252.
std::optional<unsigned char> OctetWindows1252(QChar c);

QString DecodeWindows1252(const QByteArray& octets);
// None when some character of the text is outside Windows-1252.
std::optional<QByteArray> EncodeWindows1252(const QString& texte);

// Reads bytes: UTF-16 after its byte order mark; else UTF-8 when valid,
// otherwise Windows-1252 (a leading UTF-8 mark is dropped and noted either
// way). `encodage` receives the choice.
QString DecodeOctets(const QByteArray& octets, Encodage& encodage);
// Writes text in an encoding. A text that Windows-1252 cannot hold (a
// character typed since the file was read) is written in UTF-8 rather than
// losing characters: `encodage` then becomes Utf8, or Utf8Bom behind a mark.
QByteArray EncodeTexte(const QString& texte, Encodage& encodage);

// CR LF, a lone CR and a lone LF all become CR LF, the line end of command
// files and of the editor's text.
QString NormaliseFinsDeLigne(const QString& texte);

// Reads a whole file. None on failure, with the system's error text.
std::optional<QByteArray> LitOctets(const QString& chemin, QString* erreur = nullptr);
// Writes a whole file through a temporary file beside it, renamed over the
// target only once everything is written (QSaveFile): a failure leaves the old
// file as it was. False on failure, with the system's error text.
bool EcritOctets(const QString& chemin, const QByteArray& octets, QString* erreur = nullptr);
// The message of a file that could not be written: "cannot write NAME", and
// the reason behind ": " when one is known.
QString TexteNonEcrit(const QString& nom, const QString& raison = {});
// Several files, each written whole under a temporary name before any is
// renamed over its old file: a write that fails (a full disk) leaves every
// old file as it was. False with the system's reason in `erreur` and the file
// that failed in `enFaute`.
bool EcritFichiers(const QList<std::pair<QString, QByteArray>>& fichiers, QString* erreur = nullptr,
                   QString* enFaute = nullptr);

// The lenient number reading of settings, version headers and the patch box:
// blanks, tabs and line feeds are dropped, then the longest leading number is
// read ("&H" and "&O" forms included); 0 when none.
double ValVb(const QString& texte);
