// The command line: `mirel dump` and `mirel render` end to end.
#include "outils.h"

#include <QFile>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>

namespace {

QString Fichier(const QTemporaryDir& d, const QString& texte, const QString& nom = "p.dat") {
    QFile f(d.filePath(nom));
    f.open(QIODevice::WriteOnly);
    f.write(texte.toUtf8());
    return f.fileName();
}

// The extent of the dark pixels of an image.
QRect Encre(const QImage& im) {
    QRect r;
    for (int y = 0; y < im.height(); ++y)
        for (int x = 0; x < im.width(); ++x)
            if (qGray(im.pixel(x, y)) < 128) r |= QRect(x, y, 1, 1);
    return r;
}

} // namespace

// 0: done; 1: the program showed a box (printed on stderr; what was drawn stays drawn);
// 2: the command line or the output is wrong.
TEST(Cli, ExitStatus) {
    QTemporaryDir d;
    const QString bon = Fichier(d, "CT = 1, 1\r\n"), png = d.filePath("o.png");
    const std::tuple<QStringList, int, QByteArray> cas[] = { // arguments, status, printed
        {{"--help"}, 0, ""},
        {{"render", "--help"}, 0, "Usage:"},
        {{"dump", "x.dat", "-h"}, 0, "Usage:"},
        {{"dump", "/nonexistent/x.dat", "--input", "-h"}, 2, ""}, // a value, not a request for help
        {{"--version"}, 0, "Mirel "},
        // The language reference without the window, in the language asked.
        {{"reference", "--lang", "en"}, 0, "Arc = 40, 140, 60\nthe scale: an arc from 40"},
        {{"reference"}, 0, "Arc = 40, 140, 60\nl'échelle"},
        {{"reference", "--lang", "it"}, 2, "--lang takes fr, en, de or es"},
        {{"dump", bon, "--zoom", "2", "--pane", "100x100"}, 0, ""},
        {{"render", Fichier(d, "CT = 1, 1\r\nInconnu\r\n", "e.dat"), "-o", png}, 1,
         "Erreur de commande dans la ligne : 2: Inconnu"},
        {{"dump"}, 2, ""},
        {{"dump", "/nonexistent/x.dat"}, 2, ""},
        {{"render", "x.dat"}, 2, ""},
        {{"dump", "x.dat", "--bogus"}, 2, ""},
        {{"render", bon, "-o", "/nonexistent/dir/o.png"}, 2, ""},
        {{"render", bon, "-o", d.filePath("o.txt")}, 2, ""},
    };
    for (const auto& [args, code, texte] : cas) {
        const SortieProcessus s = Mirel(args);
        EXPECT_EQ(s.code, code) << args.join(' ').toStdString();
        EXPECT_TRUE((s.out + s.err).contains(texte)) << s.err.toStdString();
    }
    EXPECT_TRUE(QFile::exists(png));
}

TEST(Cli, DumpGivesTheJsonOfTheRunWithItsOptions) {
    QTemporaryDir d;
    const SortieProcessus s = Mirel({"dump", Fichier(d, "CentreE = 50, 40\r\n%A = 5\r\nCT = %A, 0, ROUGE\r\n")});
    ASSERT_EQ(s.code, 0) << s.err.toStdString();
    const QJsonObject o = s.Json(), l = o["ops"].toArray().last().toObject();
    EXPECT_GE(o["ops"].toArray().size(), 4);
    EXPECT_EQ(l["op"].toString() + " " + l["color"].toString(), "line #ff0000");
    EXPECT_MM(l["x1"].toDouble(), 55);
    EXPECT_MM(l["y1"].toDouble(), 39);
    EXPECT_EQ(l["width"].toInt(), 1);
    EXPECT_EQ(o["variables"].toObject()["%A"].toString(), "5");
    EXPECT_TRUE(o["messages"].toArray().isEmpty());
    EXPECT_EQ(o["point"].toArray()[0].toDouble(), 0);
    EXPECT_FALSE(o["editor_changed"].toBool());
    // --lang, --printer, --input and --answer.
    const QString f = Fichier(d, "Inconnu = 1\r\n");
    const QJsonObject en = Mirel({"dump", f, "--lang", "en"}).Json()["messages"].toArray()[0].toObject();
    EXPECT_EQ(en["buttons"].toString() + " " + en["text"].toString(), "ok Command error in line: 1: Inconnu = 1\r\n");
    const QJsonObject de = Mirel({"dump", f, "--lang", "de"}).Json()["messages"].toArray()[0].toObject();
    EXPECT_TRUE(de["text"].toString().startsWith("Befehlsfehler in Zeile: 1: "));
    const SortieProcessus p = Mirel({"dump", Fichier(d, "CentreEI = 10, 10\r\n"), "--printer"});
    EXPECT_NEAR(p.Json()["ops"].toArray().last().toObject()["width_mm"].toDouble(), 25.4 / 600, 1e-9);
    const QJsonObject r = Mirel({"dump", Fichier(d, "Input = R?, %R\r\nListeVar = x\r\nCT = 1, 1\r\n"), "--input", "7",
                                 "--answer", "cancel"}).Json();
    EXPECT_EQ(r["variables"].toObject()["%R"].toString(), "7");
    const QJsonObject m = r["messages"].toArray()[0].toObject();
    EXPECT_EQ(m["answer"].toString() + " " + m["buttons"].toString(), "cancel okcancel");
}

// Two crosses 100 mm apart, 1 mm pen: PNG at 254 dpi (10 px a mm) and the PDF
// rasterised at the same resolution measure the same on an A4 page; FormatI
// turns the page.
TEST(Cli, RenderWritesPdfSvgAndPngAtTrueSize) {
    QTemporaryDir d;
    const QString f = Fichier(d, "CentreI = 50, 150, N\r\nEpaisT = 1mm\r\nCT = 0, 0\r\nCT = 100, 0\r\n");
    ASSERT_EQ(Mirel({"render", f, "-o", d.filePath("o.pdf")}).code, 0);
    ASSERT_EQ(Mirel({"render", f, "-o", d.filePath("o.svg")}).code, 0);
    ASSERT_EQ(Mirel({"render", f, "-o", d.filePath("o.png"), "--dpi", "254"}).code, 0);
    const QImage im(d.filePath("o.png"));
    ASSERT_EQ(im.width(), 2100);
    const QRect r = Encre(im);
    EXPECT_NEAR(r.width() / 10.0, 103, 0.3); // 100 mm apart, 2 mm crosses, 1 mm pen
    QProcess::execute("pdftoppm", {"-r", "254", "-png", "-singlefile", d.filePath("o.pdf"), d.filePath("pdf")});
    const QImage pim(d.filePath("pdf.png"));
    ASSERT_FALSE(pim.isNull());
    EXPECT_EQ(pim.width(), 2100);
    const QRect pr = Encre(pim);
    EXPECT_NEAR(pr.width() / 10.0, 103, 0.3);
    EXPECT_NEAR(pr.center().x(), r.center().x(), 3);
    EXPECT_NEAR(pr.center().y(), r.center().y(), 3);
    QFile s(d.filePath("o.svg"));
    ASSERT_TRUE(s.open(QIODevice::ReadOnly));
    EXPECT_TRUE(s.readAll().contains("width=\"210mm\""));
    const QString paysage = Fichier(d, "FormatI = Paysage\r\nCentreI = 10, 10\r\n");
    ASSERT_EQ(Mirel({"render", paysage, "-o", d.filePath("l.png"), "--dpi", "50"}).code, 0);
    const QImage l(d.filePath("l.png"));
    EXPECT_GT(l.width(), l.height());
}
