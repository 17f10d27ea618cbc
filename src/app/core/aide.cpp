#include "app/core/aide.h"

#include "language/chaines.h"
#include "language/etat.h"

#include <QFileInfo>

namespace {

QString Echappe(const QString& t) { return t.toHtmlEscaped(); }

// The topic of a syntax row: that of its first keyword ("COM" and "SUITE" are
// general, 5000; the "%" row is 2500 as every word starting with "%").
int SujetRangee(const RangeeSyntaxe& r) {
    if (r.Syntaxe == 248) return 2500;
    return SujetAide(QString::fromLatin1(r.Mots).section(u' ', 0, 0));
}

// A parameter description as a list of its parameters and its notes,
// "$" shown as "§".
QString HtmlDescription(const QString& description) {
    const DescriptionParametres d = DecoupeDescription(description);
    const QString& tete = d.Tete;
    const QString& notes = d.Commentaire;
    const QStringList champs = tete.split(u';');
    QString h = QStringLiteral("<p><b>") + Echappe(champs.value(0)) + QStringLiteral("</b></p>");
    if (champs.size() > 1) {
        h += QStringLiteral("<ol>");
        for (int i = 1; i < champs.size(); ++i) {
            QString p = champs[i];
            p.replace(u'$', QStringLiteral(" § "));
            h += QStringLiteral("<li>") + Echappe(p) + QStringLiteral("</li>");
        }
        h += QStringLiteral("</ol>");
    }
    if (!notes.isEmpty())
        h += QStringLiteral("<p>") + Echappe(notes).replace(u'\n', QStringLiteral("<br>")) +
             QStringLiteral("</p>");
    return h;
}

QString Entete(const TableChaines& t, int d) {
    return QStringLiteral("<html><body><h1>Mirel</h1><p><i>") + Echappe(t.Texte(6 + d)) +
           QStringLiteral("</i></p>");
}

} // namespace

DescriptionParametres DecoupeDescription(const QString& description) {
    DescriptionParametres r;
    QStringList tete, commentaire;
    bool dansCommentaire = false;
    for (const QString& l : description.split(u'\n')) {
        if (l.startsWith(QLatin1String("@I "))) {
            r.Image = l.mid(3);
            break;
        }
        if (l.startsWith(QLatin1String("@C "))) {
            r.Gras = l.mid(3, 2);
            dansCommentaire = true;
            continue;
        }
        (dansCommentaire ? commentaire : tete) << l;
    }
    r.Tete = tete.join(u'\n');
    r.Commentaire = commentaire.join(u'\n');
    return r;
}

const QVector<RangeeSyntaxe>& RangeesSyntaxe() {
    static const QVector<RangeeSyntaxe> r = {
        {201, 301, "COM"}, {202, 302, "SUITE"}, {203, 303, "ARC"}, {204, 304, "CADRE CADREP"},
        {205, 305, "CADREA CADREAP"}, {206, 306, "CENTREE CENTREEI"}, {207, 307, "CENTREI"},
        {208, 308, "CERCLE CERCLEI CERCLEP CERCLEPI"}, {209, 363, "REFCUR"}, {210, 310, "COULEUR"},
        {211, 311, "CT"}, {212, 312, "DECAL"}, {213, 313, "DEMILUNE DEMILUNEP"}, {214, 314, "DROITE"},
        {215, 315, "DROITEV"}, {216, 316, "EPAIST"}, {217, 317, "EXPOSANT"},
        {218, 364, "BEZIER BEZIERP"}, {219, 319, "FICHIER"}, {220, 320, "FLECHE FLECHEP"},
        {221, 321, "FORMATI"}, {222, 322, "GRAD"}, {223, 323, "GRAD1"}, {224, 324, "INVERSION"},
        {225, 325, "PERCER PERCERX"}, {226, 326, "PLUS +"}, {227, 327, "POLICE"},
        {228, 328, "POLY POLYP"}, {229, 329, "SECT SECTP"}, {230, 330, "SEPARATEUR"},
        {231, 331, "STOP !"}, {232, 332, "TAILLEP"}, {233, 333, "TEXTE"}, {234, 334, "TEXTEC"},
        {235, 335, "TRAIT"}, {236, 336, "VAL VALR VALD"}, {237, 337, "VAL1 VAL1R VAL1D"},
        {238, 338, "VOYANT"}, {239, 339, "X"}, {240, 340, "?"}, {242, 365, "BEZIER_AGR"},
        {243, 343, "QA QA1 QA2 QA12"}, {244, 344, "IMAGE"}, {245, 345, "ZOOMINI ZOOMINII"},
        {246, 346, "PALCOUL PALCOUL2 PALCOUL3"}, {247, 347, "IF"}, {248, 348, "%"},
        {249, 349, "GOTO"}, {250, 350, "LISTEVAR"}, {251, 351, "INPUT"}, {252, 352, "OPEN"},
        {253, 353, "LVAR"}, {254, 354, "NPAGE"}, {255, 355, "CHAIN"}, {256, 356, "PLOT PLOTP PLOTS"},
        {257, 366, "ANGROT"}, {258, 367, "POLYR POLYRP"}, {259, 368, "COTE"}, {260, 360, "IFT"},
        {261, 361, "ELSE ELSEIF ELSEIFT"}, {262, 362, "ENDIF"}, {263, 369, "OPENA"},
        {264, 370, "PRINTA"}};
    return r;
}

int RangSyntaxe(const QString& mot) {
    if (mot.startsWith(u'%')) return 248;
    for (const RangeeSyntaxe& r : RangeesSyntaxe())
        if (QString::fromLatin1(r.Mots).split(u' ').contains(mot)) return r.Syntaxe;
    return 241; // the unknown command
}

QString AncreSujet(int sujet) { return QStringLiteral("s") + QString::number(sujet); }

namespace {

// The body of the contents: a section for each help topic, in order.
QString CorpsContenu(const TableChaines& t, int d) {
    QString h;
    for (int sujet : SujetsAide()) {
        QStringList mots;
        QString corps;
        for (const RangeeSyntaxe& r : RangeesSyntaxe()) {
            if (SujetRangee(r) != sujet) continue;
            mots << QString::fromLatin1(r.Mots).split(u' ');
            corps += QStringLiteral("<pre>") + Echappe(t.Texte(r.Syntaxe + d)) + QStringLiteral("</pre>") +
                     HtmlDescription(t.Texte(r.Description + d));
        }
        if (corps.isEmpty()) continue;
        h += QStringLiteral("<h2><a name=\"") + AncreSujet(sujet) + QStringLiteral("\"></a>") +
             Echappe(mots.join(QStringLiteral(", "))) + QStringLiteral("</h2>") + corps + QStringLiteral("<hr>");
    }
    return h;
}

const QString Fin = QStringLiteral("</body></html>");

} // namespace

const QStringList& PremierCadran() {
    static const QStringList lignes = {
        QStringLiteral("CentreEI = 100, 80"), QStringLiteral("Arc = 40, 140, 60"),
        QStringLiteral("Grad = 50, 3"), QStringLiteral("Grad = 10, 6"),
        QStringLiteral("Val = 10, 0, 100, 11")};
    return lignes;
}

namespace {

// Row 396: the title, then paragraphs; the dial sits after the first one,
// each line beside its explanation (row 397, one a line).
QString PremiersPas(const TableChaines& t, int d) {
    const QStringList textes = t.Texte(396 + d).split(u'\n');
    const QStringList notes = t.Texte(397 + d).split(u'\n');
    QString h = QStringLiteral("<h2><a name=\"debut\"></a>") + Echappe(textes.value(0)) + QStringLiteral("</h2>");
    if (textes.size() > 1) h += QStringLiteral("<p>") + Echappe(textes[1]) + QStringLiteral("</p>");
    h += QStringLiteral("<table cellpadding=\"3\">");
    for (int i = 0; i < PremierCadran().size(); ++i)
        h += QStringLiteral("<tr><td><tt><b>") + Echappe(PremierCadran()[i]) + QStringLiteral("</b></tt></td><td>") +
             Echappe(notes.value(i)) + QStringLiteral("</td></tr>");
    h += QStringLiteral("</table>");
    for (int i = 2; i < textes.size(); ++i) h += QStringLiteral("<p>") + Echappe(textes[i]) + QStringLiteral("</p>");
    return h + QStringLiteral("<hr><h1>") + Echappe(t.Texte(399 + d)) + QStringLiteral("</h1>");
}

} // namespace

QString PageContenu(const TableChaines& t, int d) {
    return Entete(t, d) + PremiersPas(t, d) + CorpsContenu(t, d) + Fin;
}

QString PageNouveautes(const TableChaines& t, int d) {
    const QStringList l = t.Texte(398 + d).split(u'\n');
    QString h = Entete(t, d) + QStringLiteral("<h2>") + Echappe(l.value(0)) + QStringLiteral("</h2><ul>");
    for (int i = 1; i < l.size(); ++i) h += QStringLiteral("<li>") + Echappe(l[i]) + QStringLiteral("</li>");
    return h + QStringLiteral("</ul>") + Fin;
}

QString PageResume(const TableChaines& t, int d) {
    QString h = Entete(t, d) + QStringLiteral("<table>");
    for (const RangeeSyntaxe& r : RangeesSyntaxe())
        h += QStringLiteral("<tr><td><a href=\"#") + AncreSujet(SujetRangee(r)) + QStringLiteral("\">") +
             Echappe(QString::fromLatin1(r.Mots).section(u' ', 0, 0)) + QStringLiteral("</a></td><td><tt>") +
             Echappe(t.Texte(r.Syntaxe + d)) + QStringLiteral("</tt></td></tr>");
    // The contents follow, so that the links lead somewhere.
    return h + QStringLiteral("</table><hr>") + CorpsContenu(t, d) + Fin;
}

PageAide PageDe(CommandeAide commande, const Reglages& r, const QString& mot) {
    const TableChaines& t = TableChaines::Standard();
    switch (commande) {
    case CommandeAide::Aide25: return {PageContenu(t, r.LangueMasque), {}};
    case CommandeAide::ResumeSyntaxes: return {PageResume(t, r.LangueMenus), {}};
    case CommandeAide::AideMot: return {PageContenu(t, r.LangueMenus), AncreSujet(SujetAide(mot))};
    case CommandeAide::MAJ_Aide: return {PageNouveautes(t, r.LangueMasque), {}};
    default: return {PageContenu(t, r.LangueMenus), {}};
    }
}

QString FichierAideExterne(CommandeAide commande, const Reglages& r) {
    if (commande != CommandeAide::MAJ_Aide && commande != CommandeAide::Non_Doc) return {};
    const TableChaines& t = TableChaines::Standard();
    const QString f = AideDe(commande, {}, r.DossierProgramme, t.Texte(8 + r.LangueMenus),
                             t.Texte(8 + r.LangueMasque)).Fichier;
    return QFileInfo(f).isFile() ? f : QString();
}
