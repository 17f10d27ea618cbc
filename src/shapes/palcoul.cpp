// `PalCoul[2|3] = n, width, height[§angle]`: a chart of the RGB cube as a grid
// of cells, each a quadrilateral filled and outlined in its own colour, from
// the chart's origin rightward and upward, turned about 0,0 by the angle.
//
// n levels per colour are made even and at least 4. `PalCoul3` and `PalCoul`
// lay out six faces of the cube in three pairs, side by side: each face sweeps
// one component across its columns, so that the pairs run round the hues
// (red, yellow, green, cyan, blue, magenta, back to red); up a column,
// `PalCoul3` goes from black to the pure colour and on to white, `PalCoul`
// from mid grey to the pure colour. `PalCoul2` lays every one of the N x N x N
// colours as a small patch, in two blocks.
#include "shapes/palcoul.h"
#include "shapes/texte.h"

#include "drawing/repere.h"
#include "drawing/surface.h"
#include "language/erreur.h"
#include "language/etat.h"
#include "language/expr.h"
#include "language/para.h"
#include "language/vb.h"

#include <algorithm>
#include <array>
#include <cmath>

#if defined(__SSE2__) && defined(__x86_64__)
#include <emmintrin.h>
#endif

using namespace vb;

namespace {

enum class Genre { Gris, Cube, Patches };

struct Carte {
    int N = 4;
    double largeur = 180, hauteur = 180;
    double rotation = 0; // stored negated, as by LitRotation
    float coteX = 0, coteY = 0;
    // The chart's frame on the device: the point (x, y) of the chart, turned
    // and with the origins added, lies at A + x U + y V in device pixels
    // before rounding.
    QPointF A, U, V;
    QVector<QPointF> pixels = QVector<QPointF>(4);
};

// The frame of the chart on the device, from three points put through the
// turn, the origins and the device's conversion that every shape uses.
void RepereDevice(Etat& e, Carte& c) {
    auto device = [&](double x, double y) {
        Tourne(c.rotation, x, y);
        return PixelDevice(e, VersSurfaceX(e, x), VersSurfaceY(e, y), false);
    };
    c.A = device(0, 0);
    c.U = device(1, 0) - c.A;
    c.V = device(0, 1) - c.A;
}

// A number of the line; empty or 0 gives `defaut`.
double Dimension(Etat& e, const QString& texte, double defaut) {
    QString t = Trim(texte);
    if (t.isEmpty()) return defaut;
    const double v = EvalExpr(e, t).value_or(0);
    return v == 0 ? defaut : v;
}

Carte LitCarte(Etat& e) {
    const QString l = e.LigneCourante;
    Carte c;
    // Levels: rounded to a 16-bit integer, halved by integer division and
    // doubled, so odd counts drop to the even one below; at least 4.
    const double n = ParaVal0(e, l, 1);
    if (!(std::abs(n) < 1e9)) throw ErreurExecution("Overflow");
    c.N = Entier16(2LL * (Entier16((long long)std::nearbyint(n)) / 2));
    if (c.N < 4) c.N = 4;
    c.largeur = Dimension(e, ParaN(e, l, 2), 180);
    const QString p3 = ParaN(e, l, 3);
    c.hauteur = Dimension(e, Piece(p3, 1, e.Separateur2), 180);
    double x = 0, y = 0;
    LitRotation(e, p3, x, y);
    c.rotation = e.Repere.RotationCmd;
    return c;
}

// The nearest whole number, half to even, as `nearbyint` gives it in the
// default rounding mode; on x86-64 one instruction instead of a library call,
// since a chart rounds millions of corners.
inline long long ArrondiPair(double v) {
#if defined(__SSE2__) && defined(__x86_64__)
    return _mm_cvtsd_si64(_mm_set_sd(v));
#else
    return (long long)std::nearbyint(v);
#endif
}

// A point of the chart in whole device pixels, and the device outline of a
// cell: its corners (left, lower), (right, lower),
// (right, upper), (left, upper), turned with the chart, rounded to whole
// device pixels as the outlines of all shapes are.
QPointF Pixel(const Carte& c, double x, double y) {
    const QPointF q = c.A + x * c.U + y * c.V;
    return QPointF(double(ArrondiPair(q.x())), double(ArrondiPair(q.y())));
}

// Two edges of two corners each alike (whole pixels: compared exactly).
bool Memes(const QPointF* a, const QPointF* b) {
    return a[0].x() == b[0].x() && a[0].y() == b[0].y() && a[1].x() == b[1].x() && a[1].y() == b[1].y();
}

void Coins(const Carte& c, double x, double y, double w, double h, QPointF* pixels) {
    pixels[0] = Pixel(c, x, y);
    pixels[1] = Pixel(c, x + w, y);
    pixels[2] = Pixel(c, x + w, y + h);
    pixels[3] = Pixel(c, x, y + h);
}

// One cell, filled and outlined in `couleur`.
void Quad(Etat& e, Carte& c, double x, double y, double w, double h, int couleur) {
    Coins(c, x, y, w, h, c.pixels.data());
    PolygoneRempli(e, c.pixels, couleur);
}

int Arrondi(double v) { return int(std::nearbyint(v)); }

// The cells of one column: up from black to the colour and on to white
// (`PalCoul3`), or up from mid grey to the colour (`PalCoul`).
void Colonne(Etat& e, Carte& c, Genre g, int colonne, const std::array<int, 3>& C) {
    const int N = c.N;
    const double x = colonne * double(c.coteX);
    for (int j = 0; j <= N; ++j) {
        int r, v, b;
        if (g == Genre::Cube) {
            r = Arrondi(C[0] * double(j) / N);
            v = Arrondi(C[1] * double(j) / N);
            b = Arrondi(C[2] * double(j) / N);
        } else {
            auto gris = [&](int k) { return int(std::floor((k - 127) * double(j) / N + 127)); };
            r = gris(C[0]);
            v = gris(C[1]);
            b = gris(C[2]);
        }
        Quad(e, c, x, j * double(c.coteY), c.coteX, c.coteY, RGB(r, v, b));
    }
    if (g != Genre::Cube) return;
    for (int j = 1; j <= N; ++j) {
        auto blanc = [&](int k) { return Arrondi(k + (255 - k) * double(j) / N); };
        Quad(e, c, x, (N + j) * double(c.coteY), c.coteX, c.coteY,
             RGB(blanc(C[0]), blanc(C[1]), blanc(C[2])));
    }
}

// A pair of faces from column `debut`: the first sweeps component `monte`
// from 0 to 255 over N + 1 columns, the second component `descend` from 255
// down to 0 over the next N.
void Paire(Etat& e, Carte& c, Genre g, int debut, std::array<int, 3>& C, int monte, int descend) {
    const int N = c.N;
    for (int i = 0; i <= N; ++i) {
        C[monte] = i * 255 / N;
        Colonne(e, c, g, debut + i, C);
    }
    for (int i = 1; i <= N; ++i) {
        C[descend] = (N - i) * 255 / N;
        Colonne(e, c, g, debut + N + i, C);
    }
}

// The four black strokes round the chart's rectangle, turned with it.
void Entoure(Etat& e, const Carte& c) {
    std::array<QPointF, 4> coins = {QPointF(0, 0), QPointF(c.largeur, 0),
                                    QPointF(c.largeur, c.hauteur), QPointF(0, c.hauteur)};
    for (QPointF& p : coins) {
        double x = p.x(), y = p.y();
        Tourne(c.rotation, x, y);
        p = QPointF(VersSurfaceX(e, x), VersSurfaceY(e, y));
    }
    for (int i = 0; i < 4; ++i) {
        const QPointF a = coins[i], b = coins[(i + 1) % 4];
        TraitRot(e, a.x(), a.y(), b.x(), b.y(), 0, 0);
    }
}

// The level of index n among N: whole part of n x 256 / N, less 1 above 0.
int Niveau(int n, int N) {
    const int v = n * 256 / N;
    return v > 0 ? v - 1 : v;
}

// Every colour of the cube: red picks a band (the upper half of the bands in
// a second block on the right), green a row within the band, blue a column.
// A patch is as high as the step between rows, so its upper edge is the
// lower edge of the patch of the next row.
//
// At large n a patch is far thinner than a device pixel, and the patch of the
// next row often has the very same device outline: painted over it a moment
// later, it hides it whole. A target that only paints (not recording every
// operation) skips such hidden patches, which turns a million polygons into
// the few tens of thousands that can be seen.
void Patches(Etat& e, Carte& c) {
    const int N = c.N;
    const float cw = float(0.5 * c.largeur / N), ch = float(0.5 * c.hauteur / N);
    const float cs = ch / N;
    const double w = 0.9 * cw, h = 0.8 * cs;
    Quad(e, c, 0, 0, w, h, 0);
    const bool cache = e.Surf->journal() == nullptr;
    // The lower edges, two corners each, of a row of patches (blue 1 to N), of
    // the next row (the row's upper edges) and of the row after it.
    QVector<QPointF> bas(2 * N), haut(2 * N), dessus(2 * N);
    // An unturned chart: a device column depends on x alone and a device row
    // on y alone, so the columns of the two blocks are rounded once.
    const bool droit = c.U.y() == 0 && c.V.x() == 0;
    QVector<double> colonnes(4 * N);
    for (int k = 1; k <= N && droit; ++k)
        for (int bloc = 0; bloc < 2; ++bloc) {
            const double x = bloc * 0.55 * c.largeur + 0.9 * k * cw;
            colonnes[2 * N * bloc + 2 * k - 2] = Pixel(c, x, 0).x();
            colonnes[2 * N * bloc + 2 * k - 1] = Pixel(c, x + w, 0).x();
        }
    auto bords = [&](QVector<QPointF>& b, int i, int j) {
        const bool droite = i > N / 2;
        const double x0 = droite ? 0.55 * c.largeur : 0;
        const double y = (droite ? i - N / 2 - 1 : i - 1) * double(ch) + 0.8 * j * cs;
        QPointF* d = b.data();
        if (droit) {
            const double py = Pixel(c, 0, y).y();
            const double* px = colonnes.constData() + (droite ? 2 * N : 0);
            for (int n = 0; n < 2 * N; ++n) d[n] = QPointF(px[n], py);
            return;
        }
        for (int k = 1; k <= N; ++k) {
            const double x = x0 + 0.9 * k * cw;
            d[2 * k - 2] = Pixel(c, x, y);
            d[2 * k - 1] = Pixel(c, x + w, y);
        }
    };
    for (int i = 1; i <= N; ++i) {
        bords(bas, i, 1);
        bords(haut, i, 2);
        for (int j = 1; j <= N; ++j) {
            const bool apres = cache && j < N;
            if (apres) bords(dessus, i, j + 2);
            // Unturned, the patches of a row share the heights of their edges:
            // the next row hides the whole row or none of it.
            const bool ligneCachee = apres && droit && Memes(bas.constData(), haut.constData()) &&
                                     Memes(haut.constData(), dessus.constData());
            for (int k = 1; k <= N && !ligneCachee; ++k) {
                const QPointF* b = bas.constData() + 2 * k - 2;
                const QPointF* t = haut.constData() + 2 * k - 2;
                // The same outline as the next row's patch: hidden by it.
                if (apres && Memes(b, t) && Memes(t, dessus.constData() + 2 * k - 2)) continue;
                c.pixels[0] = b[0];
                c.pixels[1] = b[1];
                c.pixels[2] = t[1];
                c.pixels[3] = t[0];
                PolygoneRempli(e, c.pixels, RGB(Niveau(i, N), Niveau(j, N), Niveau(k, N)));
            }
            std::swap(bas, haut);
            if (apres) std::swap(haut, dessus);
            else if (j < N) bords(haut, i, j + 2);
        }
    }
}

void PalCoul(Etat& e, Genre g) {
    Surface* s = e.Surf;
    if (!s) return;
    Carte c = LitCarte(e);
    RepereDevice(e, c);
    // 1. Solid fills; on the printer the page's mark before the first one.
    s->FillStyle = 0;
    MarquePage(e, s->ForeColor);
    const int N = c.N;
    if (g == Genre::Patches) {
        Patches(e, c);
    } else {
        c.coteX = float(c.largeur / (6 * N + 1));
        c.coteY = float(c.hauteur / (g == Genre::Cube ? 2 * N + 1 : N + 1));
        std::array<int, 3> C = {255, 0, 0};
        Paire(e, c, g, 0, C, 1, 0);
        Paire(e, c, g, 2 * N, C, 2, 1);
        Paire(e, c, g, 4 * N, C, 0, 2);
        Entoure(e, c);
    }
    // 6. The current point does not move.
    s->FillStyle = 1;
    if (e.Styles.CouleurDefaut != -1) s->ForeColor = e.Styles.CouleurDefaut;
}

} // namespace

void CmdPalCoul(Etat& e) { PalCoul(e, Genre::Gris); }
void CmdPalCoul2(Etat& e) { PalCoul(e, Genre::Patches); }
void CmdPalCoul3(Etat& e) { PalCoul(e, Genre::Cube); }
