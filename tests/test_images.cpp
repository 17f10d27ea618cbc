// Pictures placed by `Image`: the sizes of each form, the alignment letters,
// the turned position, the file look-up, the size in pixels, the failures,
// and the picture in the rendered PDF, SVG and PNG.
#include "outils.h"

#include "app/core/rendu.h"

#include <QFile>
#include <QImage>
#include <QRegularExpression>
#include <QTemporaryDir>

namespace {

constexpr double Px = 25.4 / 96; // one picture pixel at zoom 1, in mm

// Qt writes no GIF: a red GIF of w x h pixels, its LZW codes of 3 bits with a
// clear code before every two pixels, so that the code size never grows.
QByteArray GifRouge(int w, int h) {
    QByteArray g("GIF89a");
    auto mot = [&](int v) { g.append(char(v & 255)).append(char(v >> 8)); };
    mot(w);
    mot(h);
    g.append("\x80\0\0\xff\xff\xff\xff\0\0,", 10);
    mot(0); mot(0); mot(w); mot(h);
    g.append("\0\2", 2);
    QByteArray lzw;
    quint32 acc = 0;
    int bits = 0;
    auto code = [&](int c) {
        acc |= quint32(c) << bits;
        for (bits += 3; bits >= 8; bits -= 8, acc >>= 8) lzw.append(char(acc & 255));
    };
    for (int i = 0; i < w * h; i += 2) {
        code(4);
        code(1);
        if (i + 1 < w * h) code(1);
    }
    code(5);
    if (bits) lzw.append(char(acc & 255));
    for (int i = 0; i < lzw.size(); i += 255) g.append(char(qMin(255, int(lzw.size()) - i))).append(lzw.mid(i, 255));
    return g.append("\0;", 2);
}

// A folder holding a red picture 96 x 48 pixels wide, in the given format.
struct Dossier {
    QTemporaryDir d;
    explicit Dossier(const char* format = "PNG", const QString& nom = "logo.png") {
        if (QByteArray(format) == "GIF") {
            QFile f(d.filePath(nom));
            EXPECT_TRUE(f.open(QIODevice::WriteOnly));
            f.write(GifRouge(96, 48));
            return;
        }
        QImage im(96, 48, QImage::Format_RGB32);
        im.fill(QColor(255, 0, 0));
        EXPECT_TRUE(im.save(d.filePath(nom), format));
    }
    std::unique_ptr<Session> Lance(const QString& lignes, bool imprimante = false, float zoom = 1) {
        auto s = std::make_unique<Session>(Programme(lignes));
        s->etat.FichierPrincipal = d.filePath("panneau.dat");
        if (imprimante) s->ExecuteImprimante();
        else s->Execute(zoom);
        return s;
    }
};

struct Place {
    double x, y, w, h;
};

Place Seule(const Session& s) {
    const auto im = Ops(s, OpSurface::Image);
    EXPECT_EQ(im.size(), 1) << Messages(s).join("|").toStdString();
    if (im.size() != 1) return {};
    return {im[0].x1, im[0].y1, im[0].x2, im[0].y2};
}

} // namespace

// Each size form and each alignment: left edge, top edge, width and the
// height drawn downward from the top.
TEST(Images, SizeFormsAndLetters) {
    Dossier d;
    const double W = 96 * Px, H = 48 * Px;
    const struct {
        const char* ligne;
        Place attendu;
    } cas[] = {
        {"Image = logo.png, 10, 20", {10, 20 + H, W, -H}},
        {"Image = logo.png, 10, 20, 2", {10, 20 + 2 * H, 2 * W, -2 * H}},
        {"Image = logo.png, 10, 20, 0", {10, 20 + H, W, -H}},
        {"Image = logo.png, 10, 20, 2§§1", {10, 20 + H, 2 * W, -H}},
        {"Image = logo.png, 10, 20, x§50", {10, 45, 50, -25}},
        {"Image = logo.png, 10, 20, X§0", {10, 20 + H, W, -H}},
        {"Image = logo.png, 10, 20, Y§30", {10, 50, 60, -30}},
        {"Image = logo.png, 10, 20, Z§40§40", {10, 60, 40, -40}},
        // A wide picture in a square frame fits the width, in a flat one the height.
        {"Image = logo.png, 10, 20, A§40§40", {10, 40, 40, -20}},
        {"Image = logo.png, 10, 20, A§100§10", {10, 30, 20, -10}},
        {"Image = logo.png, 10, 20, , C", {10 - W / 2, 20 + H / 2, W, -H}},
        {"Image = logo.png, 10, 20, , cd", {10 - W / 2, 20 + H / 2, W, -H}},
        {"Image = logo.png, 10, 20, , DH", {10 - W, 20, W, -H}},
        {"Image = logo.png, 10, 20, , X", {10 - W / 2, 20 + H, W, -H}},
        {"Image = logo.png, 10, 20, , Y", {10, 20 + H / 2, W, -H}},
        // The position turns about 0,0; the picture stays upright.
        {"Image = logo.png, 10, 0§90, , H", {0, 10, W, -H}},
        {"CentreE = 100, 50, N\nImage = logo.png, 10, 20, , H", {110, 70, W, -H}},
        {"Image = logo.png, 10, 20\nImage = logo.png, 5R, 0R, , H", {15, 20 + H, W, -H}},
    };
    for (const auto& c : cas) {
        SCOPED_TRACE(c.ligne);
        auto s = d.Lance(c.ligne);
        const auto im = Ops(*s, OpSurface::Image);
        ASSERT_FALSE(im.isEmpty());
        const OpSurface& op = im.back();
        EXPECT_MM(op.x1, c.attendu.x);
        EXPECT_MM(op.y1, c.attendu.y);
        EXPECT_MM(op.x2, c.attendu.w);
        EXPECT_MM(op.y2, c.attendu.h);
    }
}

// The coefficient counts screen pixels at zoom 1, so the picture keeps its
// millimetres at any zoom and on the printer.
TEST(Images, SameSizeOnEveryTarget) {
    Dossier d;
    for (const auto& [imprimante, zoom] : {std::pair{false, 1.0f}, {false, 2.5f}, {true, 1.0f}}) {
        SCOPED_TRACE(zoom);
        auto s = d.Lance("Image = logo.png, 10, 20, 2", imprimante, zoom);
        const Place p = Seule(*s);
        EXPECT_MM(p.w, 2 * 96 * Px);
        EXPECT_MM(p.h, -2 * 48 * Px);
        EXPECT_MM(s->etat.Repere.PointX, 10);
        EXPECT_MM(s->etat.Repere.PointY, 20 + 2 * 48 * Px);
    }
}

TEST(Images, SizeInPixelsIntoVariables) {
    Dossier d;
    // The names are taken as written, even when the variable exists.
    auto s = d.Lance("%Lx = 5\nImage = logo.png, , , V§%Lx§%Ly");
    EXPECT_TRUE(Messages(*s).isEmpty()) << Messages(*s).join("|").toStdString();
    EXPECT_TRUE(Ops(*s, OpSurface::Image).isEmpty());
    EXPECT_EQ(Variable(*s, "%Lx"), "96");
    EXPECT_EQ(Variable(*s, "%Ly"), "48");
    EXPECT_EQ(s->etat.EtatOrdre & 64, 0);
    // A file that fails writes nothing.
    s = d.Lance("Image = absent.png, , , V§%Lx§%Ly");
    EXPECT_EQ(Messages(*s).size(), 1);
    EXPECT_EQ(Variable(*s, "%Lx"), "");
}

// PNG, JPEG, BMP, GIF and ICO are read, by their content.
TEST(Images, Formats) {
    for (const char* f : {"PNG", "JPEG", "BMP", "GIF", "ICO"}) {
        SCOPED_TRACE(f);
        const QString nom = QStringLiteral("logo.") + QString(f).toLower();
        Dossier d(f, nom);
        auto s = d.Lance("Image = " + nom + ", , , V§%L§%H");
        EXPECT_EQ(Variable(*s, "%L") + "x" + Variable(*s, "%H"), "96x48");
    }
}

// The name: beside the main file, variables substituted, the built-in icon
// in any case and any folder; a missing or damaged file fails its line with
// its name and no drawing.
TEST(Images, FileLookUp) {
    Dossier d;
    QFile casse(d.d.filePath("casse.png"));
    ASSERT_TRUE(casse.open(QIODevice::WriteOnly));
    casse.write("\x89PNG not a picture");
    casse.close();

    auto s = d.Lance("%N = logo.png\nImage = %N, 0, 0");
    EXPECT_EQ(Ops(*s, OpSurface::Image).value(0).fichier, d.d.filePath("logo.png"));
    // A name with a folder is taken as it is.
    s = d.Lance("%D = " + d.d.path() + "\nImage = %D/logo.png, 0, 0");
    EXPECT_EQ(Ops(*s, OpSurface::Image).value(0).fichier, d.d.filePath("logo.png"));
    for (const char* icone : {"Image = mirel.ico, 0, 0", "Image = C:\\ailleurs\\MiReL.IcO, 0, 0"}) {
        s = d.Lance(icone);
        const Place p = Seule(*s);
        EXPECT_MM(p.w, 32 * Px);
    }
    for (const char* nom : {"absent.png", "casse.png"}) {
        SCOPED_TRACE(nom);
        s = d.Lance(QStringLiteral("Image = %1, 0, 0\nCercle = 0, 0, 5").arg(nom));
        ASSERT_EQ(Messages(*s).size(), 1);
        EXPECT_TRUE(Messages(*s)[0].contains(d.d.filePath(nom) + " : fichier non trouvé [File not found]"))
            << Messages(*s)[0].toStdString();
        EXPECT_TRUE(Ops(*s, OpSurface::Image).isEmpty());
        EXPECT_TRUE(Ops(*s, OpSurface::Cercle).isEmpty());
    }
}

// The picture is in each output at its true size: 40 x 20 mm, its lower
// left corner 50 mm from the left and 100 mm from the bottom of the page.
TEST(Images, RenderedAtTrueSize) {
    Dossier d;
    const QString prog = Programme("Image = logo.png, 50, 100, X§40");
    OptionsRendu o;
    o.dpi = 100;
    const QString png = d.d.filePath("sortie.png"), svg = d.d.filePath("sortie.svg"),
                  pdf = d.d.filePath("sortie.pdf");
    for (const QString& sortie : {png, svg, pdf})
        ASSERT_EQ(RendProgramme(prog, d.d.filePath("panneau.dat"), sortie, o, Reglages()).statut, 0);

    const QImage im(png);
    auto pixel = [&](double xmm, double ymm) {
        return im.pixelColor(int(xmm / 25.4 * 100), int((297 - ymm) / 25.4 * 100));
    };
    EXPECT_EQ(pixel(51, 101), QColor(255, 0, 0));
    EXPECT_EQ(pixel(89, 119), QColor(255, 0, 0));
    EXPECT_EQ(pixel(91, 110), QColor(Qt::white));
    EXPECT_EQ(pixel(70, 121), QColor(Qt::white));

    // SVG: an embedded picture of 40 x 20 mm in the 600 dpi view box.
    QFile f(svg);
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    const QString t = QString::fromUtf8(f.readAll());
    const auto m = QRegularExpression(R"re(<image[^>]*width="([\d.]+)"[^>]*height="([\d.]+)"[^>]*href="data:image)re")
                       .match(t);
    ASSERT_TRUE(m.hasMatch());
    EXPECT_NEAR(m.captured(1).toDouble(), 40 / 25.4 * 600, 0.5);
    EXPECT_NEAR(m.captured(2).toDouble(), 20 / 25.4 * 600, 0.5);

    QFile p(pdf);
    ASSERT_TRUE(p.open(QIODevice::ReadOnly));
    EXPECT_TRUE(p.readAll().contains("/Subtype /Image"));
}
