// Faults a new user meets at the edges: jumps and values out of range, full
// turns, gradient edges, decimal halves, the version text.
#include "outils.h"

#include "app/core/config.h"
#include "app/core/encodage.h"
#include "drawing/surface_peinte.h"

#include <QFile>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>

#include <cmath>
#include <limits>

namespace {

bool Fini(const OpSurface& op) {
    bool ok = std::isfinite(op.x1) && std::isfinite(op.y1) && std::isfinite(op.x2) &&
              std::isfinite(op.y2) && std::isfinite(op.r);
    for (const QPointF& p : op.points) ok = ok && std::isfinite(p.x()) && std::isfinite(p.y());
    return ok;
}

// The extent of the points of the filled polygons of a run.
QRectF EtendueRemplie(const Session& s) {
    QRectF r;
    for (const OpSurface& op : Ops(s, OpSurface::Polygone)) r |= QPolygonF(op.points).boundingRect();
    return r;
}

} // namespace

// A numeric Goto target is a line of the editor counted from 1: rounded half
// to even, held in a 16-bit counter. Beyond the counter it is an overflow;
// below 1 it names no line and fails as an unknown label does; "Inf" is a
// label. Line 1 runs a second CentreE if a jump wraps back there, which fails
// with the order box instead of looping.
TEST(Robustesse, GotoNumberOutOfTheLinesFailsAndNeverWraps) {
    const struct { const char* cible; bool echec; double ctx; } cas[] = {
        {"3000000000", true, 0}, {"1E10", true, 0}, {"32768", true, 0}, {"0", true, 0}, {"-5", true, 0},
        {"0.5", true, 0}, {"3", false, 3}, {"3.5", false, 0}, {"6", false, 6}, {"Inf", false, 6}, {"40", false, 0}};
    for (const auto& c : cas) {
        const QString cible = QString::fromLatin1(c.cible);
        auto s = Lance("CentreE = 100, 100\nGoto " + cible + "\nCT = 3, 0\nStop\nInf:\nCT = 6, 0\n");
        const QStringList m = Messages(*s);
        ASSERT_EQ(m.size(), c.echec ? 1 : 0) << c.cible << ": " << m.join("|").toStdString();
        if (c.echec) { EXPECT_TRUE(m[0].startsWith("Erreur dans la ligne : 2: Goto " + cible)) << m[0].toStdString(); }
        EXPECT_MM(s->etat.Repere.CTx, c.ctx) << c.cible;
    }
}

// A value beyond the 32-bit float range fails its line as an overflow, whether
// written or computed; nothing infinite or NaN is ever drawn.
TEST(Robustesse, CoordinateBeyondTheFloatRangeFailsTheLine) {
    for (const char* ligne : {"CT = 1E39, 0", "Cercle = -1E308, 0, 5", "Cadre = 0, 0, 10, 1E39",
                              "Trait = 0, 0, 1E300, 0", "CT = 3E38, 0\nCT = 3E38R, 0"}) {
        auto s = Lance(QString::fromLatin1(ligne) + "\nCT = 1, 1\n");
        EXPECT_EQ(Messages(*s).size(), 1) << ligne;
        for (const OpSurface& op : s->journal) EXPECT_TRUE(Fini(op)) << ligne;
    }
    // The Surface itself refuses what is not a finite number.
    SurfaceEnregistree surf(GenreSurface::Ecran, 100, 100, 0.25);
    const double inf = std::numeric_limits<double>::infinity();
    EXPECT_THROW(surf.Line(0, 0, std::nan(""), 1, 0), ErreurExecution);
    EXPECT_THROW(surf.Circle(1, 1, inf, 0), ErreurExecution);
    EXPECT_THROW(surf.PolygonUnites({{0, 0}, {inf, 1}, {1, 1}}), ErreurExecution);
    EXPECT_NO_THROW(surf.Circle(1, 1, 3e38, 0));
}

// Circle with its start equal to its end draws the whole turn: a full-turn
// scale holds its two angles equal. Different angles still draw an arc.
TEST(Robustesse, CircleWithStartEqualToEndIsAWholeTurn) {
    const struct { double debut, fin; bool droite, gauche; } cas[] = { // ink at angle 0, at pi
        {3.142, 3.142, true, true}, {0, 0, true, true}, {-1, -1, true, true}, {0.5, 2.5, false, false},
        {2.5, 3.8, false, true}};
    for (const auto& c : cas) {
        QImage im(100, 100, QImage::Format_RGB32);
        im.fill(Qt::white);
        {
            SurfacePeinte s(GenreSurface::Ecran, 100, 100, 1, [&](int) { return &im; });
            s.DrawWidth = 3;
            s.Circle(50, 50, 40, 0, c.debut, c.fin);
        }
        EXPECT_EQ(qGray(im.pixel(90, 50)) < 128, c.droite) << c.debut << " " << c.fin;
        EXPECT_EQ(qGray(im.pixel(10, 50)) < 128, c.gauche) << c.debut << " " << c.fin;
    }
}

// On screen the bands of a gradient reach the outline as far as a plain fill.
TEST(Robustesse, GradientBandsReachTheOutlineOnScreen) {
    for (const char* forme : {"CadreP = 10, 10, 50, 30, JAUNE", "CadreAP = 10, 50, 50, 90, 5, JAUNE",
                              "CadreP = 20, 20, 61.3, 47.7, JAUNE"}) {
        const QString uni = QString::fromLatin1(forme);
        const QRectF a = EtendueRemplie(*Lance(uni + "\n"));
        const QRectF b = EtendueRemplie(*Lance(uni + QStringLiteral("§VERT\n")));
        SCOPED_TRACE(forme);
        EXPECT_MM(b.left(), a.left());
        EXPECT_MM(b.right(), a.right());
        EXPECT_MM(b.top(), a.top());
        EXPECT_MM(b.bottom(), a.bottom());
    }
}

// RNDd takes a half of the decimal value as written to the even neighbour,
// not the binary double just below or above it.
TEST(Robustesse, RndRoundsTheDecimalHalfToEven) {
    const struct { const char* expr; const char* attendu; } cas[] = {
        {"RND2(1.015)", "1.02"}, {"RND3(2.0005)", "2"}, {"RND2(1.025)", "1.02"}, {"RND2(-1.015)", "-1.02"},
        {"RND1(0.35)", ".4"}, {"RND2(1.0051)", "1.01"}, {"RND0(1234567)", "1234567"}, {"RND3(0.00001)", "0"}};
    for (const auto& c : cas) {
        auto s = Lance(QStringLiteral("%A == ") + c.expr + "\n");
        EXPECT_TRUE(Messages(*s).isEmpty()) << c.expr;
        EXPECT_EQ(Variable(*s, "%A"), QString::fromLatin1(c.attendu)) << c.expr;
    }
}

// `--version` prints the version text of the caption.
TEST(Robustesse, VersionOfTheCommandLineIsTheCaptions) {
    QProcess p;
    p.start(QStringLiteral(MIREL_BINARY), {QStringLiteral("--version")});
    ASSERT_TRUE(p.waitForFinished(60000));
    EXPECT_EQ(QString::fromUtf8(p.readAllStandardOutput()), "Mirel V" + TexteVersionProgramme().trimmed() + '\n');
}

// Bytes that are no text (a picture named .dat) fail as any bad program, and the terminal gets
// no control characters of theirs.
TEST(Robustesse, BinaryProgramShowsNoControlCharacters) {
    QTemporaryDir d;
    QFile f(d.filePath("image.dat"));
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(QByteArray("\x89PNG\x1B[2J\x07\0\x01IH\x9D\x9B" "DR\r\n", 19));
    f.close();
    const SortieProcessus r = Mirel({"render", f.fileName(), "-o", d.filePath("image.png")});
    EXPECT_EQ(r.code, 1);
    for (const QChar c : QString::fromUtf8(r.err))
        EXPECT_TRUE(c.category() != QChar::Other_Control || c == u'\n' || c == u'\r' || c == u'\t') << int(c.unicode());
}

// The VU meter example stays on its 120 x 80 mm plate: no cross is left at
// the decentred arc's centre, 60 mm below the needle's axis.
TEST(Robustesse, VuMeterExampleStaysOnItsPlate) {
    QFile f(QStringLiteral(MIREL_SOURCE_DIR "/examples/vumetre.dat"));
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    Encodage enc;
    auto s = Lance(NormaliseFinsDeLigne(DecodeOctets(f.readAll(), enc)));
    EXPECT_TRUE(Messages(*s).isEmpty()) << Messages(*s).join("|").toStdString();
    const QRectF plaque(QPointF(45 - 0.01, 100 - 0.01), QPointF(165 + 0.01, 180 + 0.01));
    for (const OpSurface& op : Lignes(*s))
        EXPECT_TRUE(plaque.contains(op.x1, op.y1) && plaque.contains(op.x2, op.y2))
            << op.x1 << "," << op.y1 << " " << op.x2 << "," << op.y2;
}
