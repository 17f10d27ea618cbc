// Meter import. The first line of a `.mtr` file describes the plate, the
// pointer and the texts in 22 blank-separated fields; each further line is
// one scale. Each scale becomes `Exposant`, `Arc`, two `Grad`, a `Val` line
// and its label, in the order a hand-written dial program would have them.
#include "app/core/meter.h"

#include "app/core/config.h"
#include "drawing/val.h"
#include "language/chaines.h"
#include "language/etat.h"
#include "language/nombre.h"

#include <QRegularExpression>

#include <cmath>
#include <optional>

namespace {

constexpr double DegRad = 0.017453293;
const QString Fin = QStringLiteral("\r\n");

// Messages of a malformed file, rows of the string table.
enum : int { MsgIllisible = 380, MsgNombre = 381, MsgChamps = 382, MsgGeometrie = 383 };

// A malformed file: the reason, with the line number.
struct Malforme {
    QString texte;
};

// The fields of a line: blank-separated, several blanks as one.
QStringList Champs(const QString& ligne) {
    return ligne.split(QRegularExpression(QStringLiteral("[ \t]+")), Qt::SkipEmptyParts);
}

// The runs of blanks behind the line's first field.
int BlancsApresChamps(const QString& ligne) {
    static const QRegularExpression blancs(QStringLiteral("[ \t]+"));
    const QString t = ligne.mid(ligne.indexOf(QRegularExpression(QStringLiteral("[^ \t]"))));
    int n = 0;
    for (auto i = blancs.globalMatch(t); i.hasNext(); i.next()) ++n;
    return n;
}

// A number as the program writes it.
QString N(double v) { return StrF(float(v)); }

// The fields of one line and the reading of its numbers, with the line's
// rank for the messages.
class Ligne {
public:
    Ligne(const QString& texte, int rang, int langue) : champs_(Champs(texte)), rang_(rang), langue_(langue) {}
    int Taille() const { return int(champs_.size()); }
    // Field i (1-based) as text; empty when missing.
    QString Texte(int i) const { return champs_.value(i - 1); }
    // The rest of the line from field i on, one blank between fields.
    QString Reste(int i) const { return champs_.mid(i - 1).join(u' '); }
    // Field i as a number; a field that is not one makes the file unreadable.
    double Nombre(int i) const {
        bool ok = false;
        const double v = Texte(i).toDouble(&ok);
        if (!ok || !std::isfinite(v)) Echec(MsgNombre, u'"' + Texte(i) + u'"');
        return v;
    }
    void Exige(int n) const {
        if (Taille() < n) Echec(MsgChamps, QString());
    }
    [[noreturn]] void Echec(int message, const QString& detail) const {
        throw Malforme{LoadResString(MsgIllisible + langue_) + QString::number(rang_) +
                       LoadResString(message + langue_) + detail};
    }

private:
    QStringList champs_;
    int rang_;
    int langue_;
};

// A field that holds a letter, in either case.
bool Contient(const QString& champ, QChar lettre) { return champ.contains(lettre, Qt::CaseInsensitive); }

// The plate, the holes, the title and the pointer's offset.
QString Entete(const Ligne& l, const QString& chemin, QSizeF page, int langue) {
    const double F1 = l.Nombre(1), F2 = l.Nombre(2), F3 = l.Nombre(3), F4 = l.Nombre(4),
                 F5 = l.Nombre(5), F7 = l.Nombre(7), F11 = l.Nombre(11), F12 = l.Nombre(12),
                 F13 = l.Nombre(13), F14 = l.Nombre(14), F15 = l.Nombre(15);
    QString t;
    t += u'\'' + LoadResString(116 + langue) + Fin + u'\'' + chemin + Fin + Fin;
    t += QStringLiteral("ZoomIni = 1  '") + LoadResString(117 + langue) + Fin + Fin;
    t += QStringLiteral("CentreE = ") + N(std::max(50.0, F1 / 2 + 10)) + QStringLiteral(", 50, bleu") + Fin;
    t += QStringLiteral("CentreI = ") + FormatNombrePoint(page.width() / 2, QStringLiteral("###")) +
         QStringLiteral(", ") + FormatNombrePoint(page.height() / 2 - (F2 - F3) / 2, QStringLiteral("###")) +
         QStringLiteral(", bleu") + Fin;
    t += QStringLiteral("Cadre = -") + N(F1 / 2) + QStringLiteral(", -") + N(F3) + QStringLiteral(", ") +
         N(F1 / 2) + QStringLiteral(", ") + N(F2 - F3) + QStringLiteral(", cyan") + Fin;
    t += QStringLiteral("Cercle = -") + N(F5 / 2) + QStringLiteral(", ") + N(F4 - F3) +
         QStringLiteral(", 1,,, cyan") + Fin;
    t += QStringLiteral("Cercle = ") + N(F5 / 2) + QStringLiteral(", ") + N(F4 - F3) +
         QStringLiteral(", 1,,, cyan") + Fin + Fin;
    t += QStringLiteral("'Police = Arial") + Fin;
    t += QStringLiteral("TailleP = ") + FormatNombrePoint(2 * (F11 + F12), QStringLiteral("###")) +
         QStringLiteral("G   'Change taille tous textes") + Fin;
    t += QStringLiteral("Texte = ") + N(F14 - F1 / 2) + QStringLiteral(", ") + N(F13 - F3) +
         QStringLiteral(",, *") + N(F15) + QStringLiteral("GX, ") + l.Reste(22) + Fin + Fin;
    t += QStringLiteral("Decal = -") + N(F7) + QStringLiteral(", rouge") + Fin + Fin;
    t += QStringLiteral("TailleP = *0.8G") + Fin + Fin;
    return t;
}

// One scale line, the n-th.
QString LigneEchelle(const Ligne& en, const Ligne& s, int n) {
    s.Exige(8);
    const double F3 = en.Nombre(3), F6 = en.Nombre(6), F7 = en.Nombre(7), F9 = en.Nombre(9),
                 F10 = en.Nombre(10), F16 = en.Nombre(16), F17 = en.Nombre(17), F18 = en.Nombre(18);
    const double S1 = s.Nombre(1), S4 = s.Nombre(4), S6 = s.Nombre(6), S7 = s.Nombre(7), S8 = s.Nombre(8);
    // The radius of the arc that the pointer's end sweeps, seen from the
    // offset centre.
    const double sA = std::sin((180 - F6 / 2) * DegRad);
    const double D = F7 + S7 - F3;
    const double t = F7 * sA / D;
    const double R = t == 0 ? D : F7 * std::sin(F6 / 2 * DegRad - std::asin(t)) / t;
    const double exposant = 1 / S6, mineures = S4 / S8;
    for (const double v : {R, exposant, mineures})
        if (!std::isfinite(v)) s.Echec(MsgGeometrie, QString());
    const QString c = Contient(en.Texte(8), u'N') ? QStringLiteral("n") : QStringLiteral("Noir");
    QString r;
    r += QStringLiteral("Exposant = ") + N(exposant) + Fin;
    r += QStringLiteral("Arc = ") + N(90 - F6 / 2) + QStringLiteral(", ") + N(90 + F6 / 2) +
         QStringLiteral(", ") + FormatNombrePoint(R, QStringLiteral("#.#")) + QStringLiteral(", ") + c + Fin;
    r += QStringLiteral("Grad = ") + N(S1) + QStringLiteral(", ") + N(F10) + QStringLiteral(", , , ") +
         N(F16) + QStringLiteral("mm, noir") + Fin;
    r += QStringLiteral("Grad = ") + N(mineures) + QStringLiteral(", ") + N(F9) + QStringLiteral(", , , ") +
         N(F17) + QStringLiteral("mm, noir") + Fin;
    // A scale without values reads neither their count of divisions nor their end.
    if (!Contient(en.Texte(19), u'Y')) {
        const double S2 = s.Nombre(2), S5 = s.Nombre(5), valeurs = S1 / S2;
        if (!std::isfinite(valeurs)) s.Echec(MsgGeometrie, QString());
        const float A = float(S4);
        const float B = float(S5 + A);
        const QString f21 = en.Texte(21);
        const QString suffixe = Contient(f21, u'V') ? QStringLiteral("D")
                                : Contient(f21, u'B') ? QStringLiteral("R")
                                                      : QString();
        r += suffixe.isEmpty() ? QStringLiteral("Val = ") : QStringLiteral("Val") + suffixe + QStringLiteral(" = , ");
        r += N(valeurs) + QStringLiteral(", ") + N(A) + QStringLiteral(", ") + N(B) + QStringLiteral(", ") +
             N(2 * F9) + Fin;
    }
    r += QStringLiteral("Texte = 0, ") + N(S8 - F3) + QStringLiteral(", , *1GX, ") + s.Reste(9) + Fin;
    r += Fin;
    if (n < F18) r += QStringLiteral("Inversion") + Fin;
    return r;
}

} // namespace

ImportMeter ImporteMeter(const QString& contenu, const QString& chemin, QSizeF page, int langue) {
    const QStringList lignes = contenu.split(QRegularExpression(QStringLiteral("\r\n|\n|\r")));
    ImportMeter r;
    // A first line with 20 blanks or fewer between and after its fields (a
    // run of blanks counting as one) is no meter description: nothing is
    // imported, silently. 21 fields and a blank make a plate without a title.
    const Ligne entete(lignes.value(0), 1, langue);
    if (BlancsApresChamps(lignes.value(0)) <= 20) return r;
    try {
        QString t = Entete(entete, chemin, page, langue);
        int n = 0;
        for (int i = 1; i < lignes.size(); ++i) {
            const Ligne s(lignes[i], i + 1, langue);
            if (s.Taille() == 0) continue;
            t += LigneEchelle(entete, s, ++n);
        }
        r.Texte = t;
    } catch (const Malforme& m) {
        r.Erreur = m.texte;
    }
    return r;
}

bool ChargeSelonType(EtatFichiers& e, const Reglages& r, FenetreFichiers& f, const QString& chemin,
                     bool visualiser) {
    return EstFichierMeter(chemin) ? ChargeMeter(e, r, f, chemin, visualiser)
                                   : ChargeFichier(e, f, chemin, visualiser);
}

bool ChargeMeter(EtatFichiers& e, const Reglages& r, FenetreFichiers& f, const QString& chemin,
                 bool visualiser) {
    QString erreur;
    const auto lu = LitFic(chemin, &erreur);
    ImportMeter im;
    if (lu) im = ImporteMeter(lu->Texte, chemin, f.PageImprimante(), r.LangueMessages);
    if (!lu || !im.Erreur.isEmpty()) {
        f.Message(lu ? im.Erreur : erreur, Boutons::Ok);
        return false;
    }
    e.DossierFichier = DossierDe(chemin);
    f.ChangeDossier(e.DossierFichier);
    f.Occupe(true);
    DonneTexte(e, f, chemin, TexteLu{im.Texte, Encodage::Utf8, 1.0f}, visualiser);
    return true;
}

bool Mnu_OuvrirMeter(EtatFichiers& e, const Reglages& r, FenetreFichiers& f) {
    if (!DemandeSauvegarde(e, r, f)) return false;
    const QString filtre =
        LoadResString(109 + r.LangueMessages) + QStringLiteral(" (*.mtr)|*.mtr|") + FiltreListe(r.LangueMessages);
    const QString nom = f.DialogueOuvrir(e.DossierFichier, filtre);
    if (nom.isEmpty()) return false;
    return ChargeMeter(e, r, f, nom);
}
