// The help pages, without widgets.
//
// The help menu's viewer is a `QTextBrowser` fed with pages generated from
// the string table, so the help always matches the commands and languages
// shipped: the one-line syntax of each command (rows 201 to 264) and its
// parameter description (rows 301 to 370, in the command dialog's grammar),
// grouped by the topics of `Mnu_AideMot` (2100 to 3200, 5000).
#pragma once

#include "app/core/config.h"

#include <QString>
#include <QStringList>

class TableChaines;

// The syntax rows: each row's keywords, in upper case, as the help lookup
// of a keyword finds them.
struct RangeeSyntaxe {
    int Syntaxe;      // 201 to 264
    int Description;  // its parameter description, 301 to 370 (`Masque` table)
    const char* Mots; // the keywords, separated by blanks
};
const QVector<RangeeSyntaxe>& RangeesSyntaxe();

// The syntax row of a keyword in upper case: 248 for a "%" variable, 241 (the
// unknown command) for a keyword without a row.
int RangSyntaxe(const QString& mot);

// The anchor of a topic in the contents page ("s2700").
QString AncreSujet(int sujet);

// The contents page in the language section `decalage`: every command under
// its topic, with its syntax line and its parameters.
QString PageContenu(const TableChaines& table, int decalage);
// The summary page: every syntax line, each linked to its topic.
QString PageResume(const TableChaines& table, int decalage);

// What the viewer shows for a help command: the page and the anchor to show.
// `Aide25` is in the command dialog's language, the others in the menus'.
struct PageAide {
    QString Html;
    QString Ancre; // empty: the top
};
PageAide PageDe(CommandeAide commande, const Reglages& r, const QString& mot = {});
