// `Plot`, `PlotP`, `PlotS`: a curve, a filled surface or symbols from the
// columns of a text data file, scaled onto plain, logarithmic or exponential
// axes, turned about 0,0 and placed through the frame like every command.
#include "drawing/plot.h"

#include "drawing/repere.h"
#include "drawing/styles.h"
#include "drawing/surface.h"
#include "language/chaines.h"
#include "language/commandes.h"
#include "language/erreur.h"
#include "language/es.h"
#include "language/etat.h"
#include "language/expr.h"
#include "language/hote.h"
#include "language/nombre.h"
#include "language/para.h"
#include "language/variables.h"
#include "language/vb.h"
#include "shapes/cercle.h"
#include "shapes/image.h"
#include "shapes/poly.h"
#include "shapes/texte.h"

#include <QFile>
#include <QRegularExpression>
#include <QScopeGuard>

#include <cmath>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

using namespace vb;

namespace {

enum class Genre { Ligne, Surface, Symbole };

QString Chaine(const Etat& e, int n) {
    return LoadResString(n + (e.Regl ? e.Regl->LangueMessages : 0));
}

// One axis of the plot: its kind, factor, positions and limits in user units.
struct Axe {
    QChar genre;          // 0 plain, 'L' logarithmic, 'E' exponential
    double s = 0;         // factor in mm per unit, base of the logarithm, or log10
    bool parTaille = false;
    double P0 = 0, P1 = 100;
    std::optional<double> min, max; // limits given in user units
    bool sansLimite = false;        // an "N" maximum: no clipping on this axis
    double offset = 0;
};

QString Sous(Etat& e, const QString& p, int n) { return Trim(Piece(p, n, e.Separateur2)); }


// "[{L,E}]factor[§size§start§min§max]" with its offset parameter.
Axe LitAxe(Etat& e, const QString& p, const QString& offset) {
    Axe a;
    QString f = Sous(e, p, 1);
    if (!f.isEmpty() && (f.front().toUpper() == u'L' || f.front().toUpper() == u'E')) {
        a.genre = f.front().toUpper();
        f = f.mid(1);
    }
    a.s = ValeurChamp(e, f, 0);
    // An exponential axis keeps the decimal logarithm of its number.
    if (a.genre == u'E') a.s = std::log(a.s) / 2.302585;
    const QString taille = Sous(e, p, 2);
    a.P0 = ValeurChamp(e, Sous(e, p, 3), 0);
    if (!taille.isEmpty()) {
        a.parTaille = true;
        a.P1 = a.P0 + ValeurChamp(e, taille, 100);
    } else if (a.genre.isNull() && a.s == 0) {
        a.parTaille = true;
        a.P1 = a.P0 + 100;
    }
    const QString mn = Sous(e, p, 4), mx = Sous(e, p, 5);
    if (!mn.isEmpty()) a.min = ValeurChamp(e, mn, 0);
    if (mx.toUpper() == QLatin1String("N")) a.sansLimite = true;
    else if (!mx.isEmpty()) a.max = ValeurChamp(e, mx, 0);
    a.offset = ValeurChamp(e, offset, 0);
    return a;
}

// An axis with the limits mn, mx of one block: the position in mm of a
// value, and whether it lies within the limits. What is the same for every
// point of the block is worked out once.
struct Placement {
    const Axe& a;
    double mn, etendue, bas, haut;
    double s = 0, o = 0, lnBase = 0, puissance = 0;
    Placement(const Axe& axe, double min, double max)
        : a(axe), mn(min), etendue(max - min), bas(min - std::abs(min) * 0.00001),
          haut(max + std::abs(max) * 0.00001) {
        if (a.genre == u'L') lnBase = std::log(a.s);
        else if (a.genre == u'E') puissance = std::pow(10.0, a.s);
        else if (a.parTaille && etendue != 0) {
            s = (a.P1 - a.P0) / etendue;
            o = a.P0 / s;
        }
    }
    bool Dedans(double v) const { return a.sansLimite || (v >= bas && v <= haut); }
    // `avant` is kept when a logarithmic axis can't place the value.
    double Position(double v, double avant) const {
        if (a.genre == u'L') {
            const double t = etendue == 0 ? 1 : (v - mn) * (a.s - 1) / etendue + 1;
            if (t <= 0) return avant;
            return a.P0 + (a.P1 - a.P0) * std::log(t) / lnBase;
        }
        if (a.genre == u'E') {
            const double t = etendue == 0 ? 0 : (v - mn) * a.s / etendue;
            return a.P0 + std::pow(10.0, t) * (a.P1 - a.P0) / puissance;
        }
        if (a.parTaille) return etendue == 0 ? a.P0 : (v + o - mn) * s;
        return v * a.s; // the offset is already in the value
    }
};

// A data line cut at its separator, as `split` cuts it, without a string for
// each field: whether it has a field, and the field `col` (from 1) it has.
// Where the point is the separator, the decimal commas turn into separators
// too, so the line is read from a copy with its commas made points.
struct Champs {
    QStringView ligne;
    QChar sep;
    QString copie;
    Champs(QStringView l, QChar s) : ligne(l), sep(s) {
        if (s != u'.' || !l.contains(u',')) return;
        copie = l.toString().replace(u',', u'.');
        ligne = copie;
    }
    // Whether the line has field `col`.
    bool A(int col) const {
        qsizetype debut = 0;
        for (int k = 1; k < col; ++k) debut = Separateur(debut) + 1;
        return col >= 1 && debut <= ligne.size();
    }
    QStringView operator[](int col) const {
        qsizetype debut = 0;
        for (int k = 1; k < col; ++k) debut = Separateur(debut) + 1;
        return ligne.sliced(debut, Separateur(debut) - debut);
    }
    // The next separator from `debut`, or the end of the line. Data lines are
    // short: a plain loop is quicker than a search.
    qsizetype Separateur(qsizetype debut) const {
        while (debut < ligne.size() && ligne[debut] != sep) ++debut;
        return debut;
    }
};

bool CommenceParMot(const QString& ligneMaj, std::initializer_list<const char*> mots) {
    for (const char* m : mots)
        if (ligneMaj.startsWith(QLatin1String(m))) return true;
    return false;
}

} // namespace

double ValeurDonnee(QStringView vue, double precedent, bool* relatif) {
    if (relatif) *relatif = false;
    if (const std::optional<double> v = DecimalSimple(vue, true)) return *v;
    QString t = TrimVue(vue).toString();
    t.replace(u',', u'.');
    const bool r = t.contains(u'R', Qt::CaseInsensitive);
    if (r) t.remove(QChar(u'R'), Qt::CaseInsensitive);
    if (relatif) *relatif = r;
    const double v = ValNombre(t);
    return r ? precedent + v : v;
}

bool LigneHorsPoints(QStringView ligne) {
    const QString maj = TrimVue(ligne).toString().toUpper();
    return maj.isEmpty() || maj.startsWith(u'\'') || CommenceParMot(maj, {"STOP", "EPAIST", "COULEUR", "BEZIER"});
}

namespace {

// A line of the data file that is a drawing command, run as in a program.
void ExecuteLigneCommande(Etat& e, const QString& ligne) {
    const int egal = ligne.indexOf(u'=');
    const QString mot = Trim(egal < 0 ? ligne : ligne.left(egal)).toUpper();
    const Commande* c = TrouveCommande(mot);
    if (!c) return;
    const QString garde = e.LigneCourante;
    e.LigneCourante = egal < 0 ? QString() : ligne.mid(egal + 1);
    try {
        c->routine(e);
    } catch (...) {
        e.LigneCourante = garde;
        throw;
    }
    e.LigneCourante = garde;
}

// The values of column `col` (1-based) of the data lines of a file, in order,
// past `saut` lines: for the other file of X and the reference curve.
QVector<double> Colonne(Etat& e, const QString& nom, int col, int saut, QChar sep) {
    QVector<double> r;
    QString texte;
    std::vector<QStringView> lignes;
    if (!LitLignesDonnees(FichierDeCommande(e, nom, QStringLiteral(".txt")), texte, lignes)) return r;
    double avant = 0;
    for (size_t k = saut; k < lignes.size(); ++k) {
        const QStringView l = TrimVue(lignes[k]);
        if (l.startsWith(u'\'')) {
            if (l.startsWith(QLatin1String("'EOD"), Qt::CaseInsensitive)) break;
            continue;
        }
        if (l.isEmpty()) continue;
        const Champs champs(l, sep);
        if (champs.A(col)) avant = ValeurDonnee(champs[col], avant);
        r.append(avant);
    }
    return r;
}

// One block of points with the drawing commands met between them.
struct Bloc {
    std::vector<double> x, y; // a plain array: tens of thousands of points
    QVector<std::pair<int, QString>> commandes; // before point index
    double sommeX = 0, sommeY = 0;
    double xBrut = 0, yBrut = 0; // the last values as read, for relative ones
    bool ferme = true; // an "'EOD NP" leaves a PlotP surface open
};

// The symbol text of `PlotS`: `%CMDSYMB`, or the default when it is empty
// or is itself a Plot (directly or through the file it includes).
QString TexteSymbole(Etat& e) {
    QString t;
    if (!LitVar(e, e.NiveauCourant, QStringLiteral("%CMDSYMB"), t) || Trim(t).isEmpty())
        return SymboleDefaut;
    const QString maj = Trim(t).toUpper();
    bool refus = maj.startsWith(QLatin1String("PLOT"));
    if (!refus && maj.startsWith(QLatin1String("FICHIER"))) {
        const int egal = t.indexOf(u'=');
        const QString nom = Trim(Piece(t.mid(egal + 1), 1, e.Separateur1));
        QFile f(ChercheFichier(e, nom));
        if (f.open(QIODevice::ReadOnly)) {
            static const QRegularExpression plot(QStringLiteral("(^|\\n)\\s*PLOT"),
                                                 QRegularExpression::CaseInsensitiveOption);
            refus = QString::fromUtf8(f.readAll()).contains(plot);
        }
    }
    if (!refus) return t;
    if (e.Host)
        e.Host->Message(TitrePlot,
                        QStringLiteral("Pas de commande Plot dans %CmdSymb\r\nNo Plot command in "
                                       "%CmdSymb\r\nKeine Plot Kommando in %CmdSymb"),
                        Boutons::Ok);
    return SymboleDefaut;
}

// The symbol text and lists of `PlotS`.
struct Symboles {
    QString texte;
    QStringList liste, liste2;
};

// The symbol at one point (mm from the origin). The symbol lists are read at
// the point's index in its block, counted from 1, modulo their length: the
// first point takes the second element.
void Symbole(Etat& e, const Symboles& s, double x, double y, int i) {
    // The point is already turned by the Plot's rotation: the symbol stands
    // on it, so AngRot is not applied to it a second time.
    EtatRepere& r = e.Repere;
    const float angRot = r.AngRotDefaut;
    r.AngRotDefaut = 0;
    const auto rend = qScopeGuard([&] { r.AngRotDefaut = angRot; });
    QString texte = s.texte;
    if (!s.liste2.isEmpty()) texte.replace(QLatin1String("#SYMB2"), s.liste2[i % s.liste2.size()], Qt::CaseInsensitive);
    if (!s.liste.isEmpty()) texte.replace(QLatin1String("#SYMB"), s.liste[i % s.liste.size()], Qt::CaseInsensitive);
    texte.replace(QLatin1String("#X"), StrD(x), Qt::CaseInsensitive);
    texte.replace(QLatin1String("#Y"), StrD(y), Qt::CaseInsensitive);
    const int egal = texte.indexOf(u'=');
    const QString mot = Trim(egal < 0 ? texte : texte.left(egal)).toUpper();
    QString p = egal < 0 ? QString() : texte.mid(egal + 1);
    // The symbol's variables are the caller's, whatever the command.
    if (RemplaceVar(e, p) != 0) {
        static const QRegularExpression nom(QStringLiteral("%[^\\s,;=§()+*/-]*"));
        EchecNonInitialisee(e, nom.match(p).captured());
    }
    const bool cercle = mot == QLatin1String("CERCLE") || mot == QLatin1String("CERCLEP");
    if (cercle || mot == QLatin1String("IMAGE")) {
        if (cercle) Cercle(e, mot, p);
        else Image(e, p);
        return;
    }
    if (egal >= 0) texte = texte.left(egal + 1) + p;
    if (AppelSymbole(e, e.NiveauCourant, texte, QStringLiteral("Symbole, 0, 0")) < 0)
        e.FinNiveauDemandee = true;
}

// The moving average over 2 Half + 1 values, the ends held at the first and
// last values.
void MoyenneMobile(std::vector<double>& v, int demi) {
    const int n = int(v.size());
    if (demi <= 0 || n == 0) return;
    if (n < 2 * demi + 1) demi = (n - 1) / 2;
    if (demi <= 0) return;
    const int largeur = 2 * demi + 1;
    std::vector<double> r(n);
    for (int i = 0; i < n; ++i) {
        double s = 0;
        for (int k = i - demi; k <= i + demi; ++k) s += v[std::clamp(k, 0, n - 1)];
        r[i] = s / largeur;
    }
    v = r;
}

// "0.0#": one decimal at least, two at most.
QString Format00(double v) {
    QString t = QString::number(v, 'f', 2);
    if (t.endsWith(u'0')) t.chop(1);
    if (t == QLatin1String("-0.0")) t = QStringLiteral("0.0");
    return t;
}

// The "OFFSET" form: the file rewritten with its coordinates moved; the
// `saut` lines skipped at its top are copied as they stand.
void EcritOffset(Etat& e, const std::vector<QStringView>& lignes, int saut, int colX, int colY, QChar sep,
                 double dx, double dy) {
    QStringList sortie;
    for (size_t k = 0; k < lignes.size(); ++k) {
        const QString brute = lignes[k].toString();
        const QString l = Trim(brute);
        const QString maj = l.toUpper();
        if (k < size_t(saut) || LigneHorsPoints(l)) {
            sortie.append(brute);
            continue;
        }
        if (maj.startsWith(QLatin1String("CERCLE"))) continue;
        const Champs champs(l, sep);
        auto champ = [&](int col, double decal) -> QString {
            if (!champs.A(col)) return QString();
            bool rel = false;
            const double v = ValeurDonnee(champs[col], 0, &rel);
            return rel ? Format00(v) + u'r' : Format00(v + decal);
        };
        QStringList c;
        if (colX > 0) c.append(champ(colX, dx));
        c.append(champ(colY, dy));
        sortie.append(c.join(u';'));
    }
    if (!sortie.isEmpty() && sortie.back().isEmpty()) sortie.removeLast(); // the final line end
    if (!EcritureAccordee(e)) return;
    QFile f(DossierCourant(e) + NomPlotOffset);
    if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate)) throw ErreurExecution("Path/File access error");
    f.write(sortie.join(QStringLiteral("\r\n")).toUtf8());
    f.write("\r\n");
}

// What a Plot line asks for. Its parameters are read in their order, as
// each may substitute variables or fail.
struct Demande {
    QString nom;          // the data file
    QChar sep;            // the column separator
    QString nomRef;       // the file of the reference curve, and its column
    int colRef = 0;
    int colX = 0;         // 0: the points are numbered from 1
    QString nomX;         // another file whose column gives x
    int colY = 0;
    int ma = 0;           // half width of the moving average
    int pas = 1;          // one point in `pas` is drawn
    double ca = 1, cb = 0, cc = -1; // y is ca y + cb + cc times the reference
    int nbLignes = 0;     // lines skipped at the top, shown in a box when negative
    QString varLignes;    // the variable that receives the skipped lines
    int maxPoints = 0;
    Axe ax, ay;
    QString varX, varY;   // statistics instead of a drawing
    QString varNb;        // the count of points of each block
    double rotation = 0;
};

Demande LitDemande(Etat& e, const QString& l) {
    Demande d;
    const QString p1 = ParaN(e, l, 1), p2 = ParaN(e, l, 2), p3 = ParaN(e, l, 3);
    const QString p4 = ParaN(e, l, 4), p4brut = ParaBrut(e, l, 4);
    d.nom = Sous(e, p1, 1);
    const int code = int(ValeurChamp(e, Sous(e, p1, 2), 44));
    d.sep = QChar(code > 0 ? code : 44);
    d.nomRef = Sous(e, p1, 3);
    d.colRef = int(ValeurChamp(e, Sous(e, p1, 4), 0));
    d.colX = int(ValeurChamp(e, Sous(e, p2, 1), 0));
    d.nomX = Sous(e, p2, 2);
    d.colY = int(ValeurChamp(e, Sous(e, p3, 1), 0));
    d.ma = int(std::abs(ValeurChamp(e, Sous(e, p3, 2), 0)));
    d.pas = std::max(1, int(ValeurChamp(e, Sous(e, p3, 3), 1)));
    d.ca = ValeurChamp(e, Sous(e, p3, 4), 1);
    if (d.ca == 0) d.ca = 1;
    d.cb = ValeurChamp(e, Sous(e, p3, 5), 0);
    d.cc = ValeurChamp(e, Sous(e, p3, 6), -1);
    d.nbLignes = int(ValeurChamp(e, Sous(e, p4, 1), 0));
    d.varLignes = Sous(e, p4brut, 2);
    d.maxPoints = int(ValeurChamp(e, Sous(e, p4, 3), e.Ctx().MaxPlot));
    d.ax = LitAxe(e, ParaN(e, l, 5), ParaN(e, l, 6));
    d.ay = LitAxe(e, ParaN(e, l, 7), ParaN(e, l, 8));
    d.varX = Trim(ParaBrut(e, l, 9));
    d.varY = Trim(ParaBrut(e, l, 10));
    d.varNb = Trim(ParaBrut(e, l, 11));
    double rx = 0, ry = 0;
    LitRotation(e, QStringLiteral("0") + e.Separateur2 + Trim(ParaN(e, l, 12)), rx, ry);
    d.rotation = e.Repere.RotationCmd;
    return d;
}

// The lines skipped at the top of the file, shown in a box (a negative
// count) and kept in the variable the line names.
void LignesPassees(Etat& e, const Demande& d, const std::vector<QStringView>& lignes, int saut) {
    if (saut == 0 || (d.nbLignes >= 0 && d.varLignes.isEmpty())) return;
    QStringList passees;
    for (int k = 0; k < saut; ++k) passees.append(lignes[k].toString());
    const QString tete = passees.join(QStringLiteral("\r\n"));
    if (d.nbLignes < 0 && e.Host) e.Host->Message(TitrePlot, tete, Boutons::Ok);
    if (!d.varLignes.isEmpty()) EcritVarTxt(e, e.NiveauCourant, d.varLignes, tete);
}

// The blocks of points of the data lines after the skipped ones: "'EOD"
// between blocks, "STOP" ending all; the drawing commands met between the
// points are kept with the index of the point they come before.
QVector<Bloc> LitBlocs(Etat& e, const Demande& d, const std::vector<QStringView>& lignes, int saut) {
    const QVector<double> xAutre = d.nomX.isEmpty() ? QVector<double>() : Colonne(e, d.nomX, d.colX, saut, d.sep);
    const QVector<double> yRef = d.nomRef.isEmpty() ? QVector<double>() : Colonne(e, d.nomRef, d.colRef, saut, d.sep);
    QVector<Bloc> blocs(1);
    int indexDonnee = 0;
    for (size_t k = saut; k < lignes.size(); ++k) {
        if ((k - saut) % 10000 == 9999 && e.Host) e.Host->PompeEvenements();
        const QStringView ligne = TrimVue(lignes[k]);
        if (ligne.isEmpty()) continue;
        // Only comments and command lines start with a letter or an apostrophe.
        const bool mot = ligne.front().isLetter() || ligne.front() == u'\'';
        const QString maj = mot ? ligne.toString().toUpper() : QString();
        if (ligne.startsWith(u'\'')) {
            if (maj.startsWith(QLatin1String("'EOD"))) {
                blocs.back().ferme = !maj.mid(4).contains(QLatin1String("NP"));
                blocs.append(Bloc());
            }
            continue;
        }
        if (mot && maj.startsWith(QLatin1String("STOP"))) break;
        if (mot && CommenceParMot(maj, {"COULEUR", "EPAIST", "CERCLE", "BEZIER"})) {
            blocs.back().commandes.append({int(blocs.back().x.size()), ligne.toString()});
            continue;
        }
        Bloc& b = blocs.back();
        const Champs champs(ligne, d.sep);
        // A line too short for the columns asked for is passed over.
        if (!champs.A(std::max(d.colX, d.colY)) || d.colY < 1) continue;
        const int n = int(b.y.size());
        if (n >= d.maxPoints) continue;
        if (n >= e.Ctx().MaxPlot) throw ErreurExecution("Subscript out of range");
        double y = ValeurDonnee(champs[d.colY], b.yBrut);
        b.yBrut = y;
        const double ref = indexDonnee < yRef.size() ? yRef[indexDonnee] : 0;
        y = d.ca * y + d.cb + (d.nomRef.isEmpty() ? 0 : d.cc * ref) + d.ay.offset;
        double x = n + 1;
        if (!xAutre.isEmpty()) x = (indexDonnee < xAutre.size() ? xAutre[indexDonnee] : 0) + d.ax.offset;
        else if (d.colX > 0) {
            b.xBrut = ValeurDonnee(champs[d.colX], b.xBrut);
            x = b.xBrut + d.ax.offset;
        }
        ++indexDonnee;
        if (b.x.empty()) {
            const size_t reste = std::min(lignes.size() - k, size_t(std::max(d.maxPoints, 0)));
            b.x.reserve(reste);
            b.y.reserve(reste);
        }
        b.x.push_back(x);
        b.y.push_back(y);
        b.sommeX += x;
        b.sommeY += y;
    }
    // An "'EOD" with no data behind it opens no block.
    while (blocs.size() > 1 && blocs.back().x.empty() && blocs.back().commandes.isEmpty()) blocs.removeLast();
    return blocs;
}

// The least and the greatest of the values, 0 and 0 for none.
std::pair<double, double> Etendue(const std::vector<double>& v) {
    double mn = v.empty() ? 0 : v[0], mx = mn;
    for (double t : v) mn = std::min(mn, t), mx = std::max(mx, t);
    return {mn, mx};
}

// A block's statistics, in the variables the line names instead of a
// drawing: x's least, greatest and mean ("1, n, n/2" for numbered points),
// and y's.
void EcritStatistiques(Etat& e, const Demande& d, const Bloc& b) {
    const int n = int(b.y.size());
    const double nn = std::max(n, 1);
    const auto [xmn, xmx] = Etendue(b.x);
    const auto [ymn, ymx] = Etendue(b.y);
    if (!d.varX.isEmpty())
        EcritVarTxt(e, e.NiveauCourant, d.varX,
                    d.colX == 0 ? QStringLiteral("1, %1, %2").arg(n).arg(StrF(float(n / 2.0)))
                                : StrF(float(xmn)) + QStringLiteral(", ") + StrF(float(xmx)) +
                                      QStringLiteral(", ") + StrF(float(b.sommeX / nn)));
    if (!d.varY.isEmpty())
        EcritVarTxt(e, e.NiveauCourant, d.varY,
                    StrF(float(ymn)) + QStringLiteral(", ") + StrF(float(ymx)) + QStringLiteral(", ") +
                        StrF(float(b.sommeY / nn)));
}

// The closed outline of a `PlotP` block, filled in the current colour and stroked.
void RemplitSurface(Etat& e, const QVector<QPointF>& pixels, const QVector<QPointF>& contour) {
    const int couleur = e.Styles.CouleurDefaut;
    MarquePage(e, couleur);
    PSetHorsPage(e, couleur);
    PolygoneRempli(e, pixels, couleur);
    e.Surf->FillStyle = 1;
    for (int i = 0; i < contour.size(); ++i) {
        const QPointF a = contour[i], c = contour[(i + 1) % contour.size()];
        TraitRot(e, a.x(), a.y(), c.x(), c.y(), 0, couleur);
    }
}

// One block drawn on its axes, limited to the block's own values where the
// line gives no limits: a curve between the points within the limits, a
// filled surface, or a symbol at each point within them. The block's
// commands run before the points they came before.
void TraceBloc(Etat& e, const Demande& d, Genre genre, Bloc& b, const Symboles& symboles) {
    const int n = int(b.y.size());
    auto [xmn, xmx] = Etendue(b.x);
    auto [ymn, ymx] = Etendue(b.y);
    if (d.colX == 0) xmn = 1, xmx = n;
    const Placement placeX(d.ax, d.ax.min.value_or(xmn), d.ax.max.value_or(xmx));
    const Placement placeY(d.ay, d.ay.min.value_or(ymn), d.ay.max.value_or(ymx));
    MoyenneMobile(b.y, d.ma);
    if (d.colX != 0) MoyenneMobile(b.x, d.ma);

    QVector<QPointF> pixels, contour;
    int prochaine = 0;
    bool avantDedans = false;
    double px = 0, py = 0, sx = 0, sy = 0;
    auto commandesJusqua = [&](int i) {
        while (prochaine < b.commandes.size() && b.commandes[prochaine].first <= i)
            ExecuteLigneCommande(e, b.commandes[prochaine++].second);
    };
    // With a step above 1 the last point is taken as well. The interface
    // is let through at every multiple of 10000 steps.
    const int pas = d.pas;
    auto suivant = [&](qint64 i) { return i + pas < n || i == n - 1 ? i + pas : n - 1; };
    const qint64 tous = 10000LL * pas;
    for (qint64 i = 0, pompe = tous; i < n; i = suivant(i)) {
        if (i == pompe) {
            if (e.Host) e.Host->PompeEvenements();
            pompe += tous;
        }
        if (prochaine < b.commandes.size()) commandesJusqua(int(i));
        const double bx = b.x[i], by = b.y[i];
        const bool dedans = placeX.Dedans(bx) && placeY.Dedans(by);
        px = placeX.Position(bx, px);
        py = placeY.Position(by, py);
        double x = px, y = py;
        Tourne(d.rotation, x, y);
        const double vx = VersSurfaceX(e, x), vy = VersSurfaceY(e, y);
        if (genre == Genre::Symbole) {
            if (dedans) Symbole(e, symboles, x, y, int(i + 1));
        } else if (genre == Genre::Surface && b.ferme) {
            pixels.append(PixelDevice(e, vx, vy));
            contour.append({vx, vy});
        } else if (i > 0 && dedans && avantDedans && e.Surf) {
            TraitRot(e, sx, sy, vx, vy, 0, e.Styles.CouleurDefaut);
        }
        avantDedans = dedans;
        sx = vx, sy = vy;
    }
    commandesJusqua(n);
    if (genre == Genre::Surface && b.ferme && e.Surf && pixels.size() > 2 && e.Styles.CouleurDefaut != -1)
        RemplitSurface(e, pixels, contour);
    if (Surface* s = e.Surf) {
        s->CurrentX = sx;
        s->CurrentY = sy;
    }
}

void Plot(Etat& e, Genre genre) {
    QString l = e.LigneCourante;
    e.EtatOrdre |= 64;
    // The "OFFSET" form rewrites the file instead of drawing it.
    const QString marque = e.Separateur2 + QStringLiteral("OFFSET");
    const bool offset = Trim(l).endsWith(marque, Qt::CaseInsensitive);
    if (offset) l = Trim(l).chopped(marque.size());
    const Demande d = LitDemande(e, l);

    // The file, read whole; the skipped lines shown or kept.
    const QString chemin = FichierDeCommande(e, d.nom, QStringLiteral(".txt"));
    QString texte;
    std::vector<QStringView> lignes;
    const int saut = std::abs(d.nbLignes);
    if (!LitLignesDonnees(chemin, texte, lignes) || lignes.size() < size_t(saut)) {
        ++e.ErreursAffichees; // the run goes on, but the exit status tells of the box
        if (e.Host) e.Host->Message(QStringLiteral("Mirel"), Chaine(e, 126) + QStringLiteral(": ") + chemin, Boutons::Ok);
        EpaisRestaure(e);
        return;
    }
    if (offset) {
        EcritOffset(e, lignes, saut, d.colX, d.colY, d.sep, d.ax.offset, d.ay.offset);
        EpaisRestaure(e);
        return;
    }
    LignesPassees(e, d, lignes, saut);
    QVector<Bloc> blocs = LitBlocs(e, d, lignes, saut);

    const bool statistiques = !d.varX.isEmpty() || !d.varY.isEmpty();
    Symboles symboles;
    if (genre == Genre::Symbole && !statistiques) symboles.texte = TexteSymbole(e);
    if (genre == Genre::Symbole) {
        QString v;
        if (LitVar(e, e.NiveauCourant, QStringLiteral("%SYMB"), v)) symboles.liste = v.split(e.Separateur1);
        if (LitVar(e, e.NiveauCourant, QStringLiteral("%SYMB2"), v)) symboles.liste2 = v.split(e.Separateur1);
    }
    QStringList comptes;
    for (Bloc& b : blocs) {
        comptes.append(QString::number(b.y.size()));
        if (statistiques) EcritStatistiques(e, d, b);
        else TraceBloc(e, d, genre, b, symboles);
    }
    if (!d.varNb.isEmpty()) EcritVarTxt(e, e.NiveauCourant, d.varNb, comptes.join(u'+'));
    EpaisRestaure(e);
    MajPointCourant(e, d.rotation);
}

} // namespace

void CmdPlot(Etat& e) { Plot(e, Genre::Ligne); }
void CmdPlotP(Etat& e) { Plot(e, Genre::Surface); }
void CmdPlotS(Etat& e) { Plot(e, Genre::Symbole); }
