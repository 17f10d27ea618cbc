// The command line: the window, `render`, `dump`, `print`.
#include "cli/cli.h"

#include "app/boites.h"
#include "app/core/aide.h"
#include "app/core/config.h"
#include "app/core/dump.h"
#include "app/core/encodage.h"
#include "app/core/fichiers.h"
#include "app/core/meter.h"
#include "app/core/externes.h"
#include "app/core/inclusion.h"
#include "app/core/installation.h"
#include "app/core/rendu.h"
#include "app/core/session.h"
#include "app/editeur.h"
#include "app/fenetre.h"
#include "app/impression.h"
#include "app/secours.h"
#include "language/chaines.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QJsonDocument>
#include <QLocale>
#include <QPrinter>
#include <QPrinterInfo>
#include <QSaveFile>
#include <QSet>
#include <QTemporaryFile>
#include <QTextDocument>
#include <QTimer>

#include <cstdio>
#include <memory>

#include <unistd.h>

namespace {

const char* const Aide =
    "Mirel: scales of analogue meters, dials and front panels, drawn from a command text.\n"
    "\n"
    "Usage:\n"
    "  mirel [FILE.dat|FILE.mtr]        open the main window\n"
    "  mirel --screenshot OUT.png [--timeout SECONDS] [FILE.dat]\n"
    "                                   open the window, run FILE, save the window as\n"
    "                                   OUT.png and quit\n"
    "  mirel render FILE.dat|FILE.mtr -o OUT.pdf|OUT.svg|OUT.png [--dpi N] [--page A4|A3|A5|Letter|Legal|WxH]\n"
    "                                   [--landscape] [--text-as-paths] [common options]\n"
    "                                   --text-as-paths: SVG text as outlines (laser engravers)\n"
    "  mirel dump FILE.dat|FILE.mtr [--printer] [--pane WxH] [--zoom Z] [--page P] [--landscape]\n"
    "                                   [common options]\n"
    "  mirel print FILE.dat|FILE.mtr [--printer NAME] [--zoom Z] [--copies N] [--listing] [-o OUT.pdf]\n"
    "                                   [common options]\n"
    "                                   prints at true size (times Z) on the printer\n"
    "                                   (default: the system's default printer), or into\n"
    "                                   a PDF file; --listing prints the code instead\n"
    "  mirel reference [--lang fr|en|de|es]\n"
    "                                   prints the language reference of the help\n"
    "                                   window: a first dial, then every command\n"
    "  mirel --help | --version\n"
    "\n"
    "Common options:\n"
    "  --lang fr|en|de|es    language of messages (default fr)\n"
    "  --input TEXT          answers an Input prompt (repeat for several, in order)\n"
    "  --answer ok|cancel|yes|no   answers a message box (repeat, in order; default OK/Yes)\n"
    "  --locale NAME         locale of numbers in texts (default C)\n"
    "  --timeout SECONDS     stops a run that takes longer, as Esc does in the\n"
    "                        window (default 60, 0 for none)\n"
    "\n"
    "Exit status: 0 no error box, 1 an error box of the program was shown,\n"
    "2 usage error, unreadable input or unwritable output, no such printer or a\n"
    "refused print job, 3 the run was stopped\n"
    "before its end (time limit, or a program that draws without end); what was\n"
    "drawn is still written.\n";

void Ecrit(FILE* f, const QString& t) {
    const QByteArray b = t.toUtf8();
    std::fwrite(b.constData(), 1, size_t(b.size()), f);
}

// A box of the run on stderr. Its text may quote a line of a file that is no
// text: control characters, which a terminal would obey, are shown as "?".
void EcritBoite(const QString& boite) {
    QString t = boite;
    for (QChar& c : t)
        if (c.category() == QChar::Other_Control && c != u'\n' && c != u'\r' && c != u'\t') c = u'?';
    Ecrit(stderr, t + QStringLiteral("\n\n"));
}

int Usage(const QString& pourquoi) {
    Ecrit(stderr, QStringLiteral("mirel: %1\n\n").arg(pourquoi));
    Ecrit(stderr, QString::fromUtf8(Aide));
    return 2;
}

int DecalageLangue(const QString& code) {
    static const char* const codes[] = {"fr", "en", "de", "es"};
    for (int i = 0; i < 4; ++i)
        if (code == QLatin1String(codes[i])) return 400 * i;
    return -1;
}

struct Arguments {
    QString commande, fichier, sortie, nomImprimante;
    int copies = 1;
    bool imprimante = false, paysage = false, listing = false, zoomDonne = false, contours = false;
    bool aide = false; // "--help" where an option stands: the usage, nothing run
    QSizeF pane = QSizeF(297, 210), page = QSizeF(210, 297);
    double zoom = 1, dpi = 300, delai = 60;
    int langue = 0;
    QString locale = QStringLiteral("C");
    QStringList saisies, reponses;
};

// None when the option is taken by this command (or by all of them); else
// the command it belongs to, empty when it is no option at all.
std::optional<QString> CommandeDeOption(const QString& commande, const QString& option) {
    static const QStringList communes = {"--lang", "--input", "--answer", "--locale", "--timeout"};
    static const std::pair<const char*, QStringList> propres[] = {
        {"render", {"-o", "--output", "--dpi", "--page", "--landscape", "--text-as-paths"}},
        {"dump", {"--printer", "--pane", "--zoom", "--page", "--landscape"}},
        {"print", {"--printer", "--zoom", "--copies", "--listing", "-o", "--output"}}};
    if (communes.contains(option)) return std::nullopt;
    for (const auto& [c, options] : propres)
        if (commande == QLatin1String(c) && options.contains(option)) return std::nullopt;
    for (const auto& [c, options] : propres)
        if (options.contains(option)) return QString::fromLatin1(c);
    return QString();
}

// Reads the options after "render", "dump" or "print"; an empty text when they are good.
QString LitArguments(const QStringList& a, Arguments& r) {
    for (int i = 2; i < a.size(); ++i) {
        const QString& o = a[i];
        if (o == QLatin1String("--help") || o == QLatin1String("-h")) {
            r.aide = true;
            return QString();
        }
        if (o.startsWith(u'-')) {
            if (const std::optional<QString> autre = CommandeDeOption(r.commande, o)) {
                if (autre->isEmpty()) return QStringLiteral("unknown option: %1").arg(o);
                return QStringLiteral("%1 does not apply to %2").arg(o, r.commande);
            }
        }
        auto valeur = [&](QString& v) {
            if (i + 1 >= a.size()) return false;
            v = a[++i];
            return true;
        };
        QString v;
        bool ok = true;
        if (o == QLatin1String("-o") || o == QLatin1String("--output")) {
            if (!valeur(r.sortie)) return QStringLiteral("-o needs a file");
        } else if (o == QLatin1String("--printer") && r.commande == QLatin1String("print")) {
            if (!valeur(r.nomImprimante)) return QStringLiteral("--printer needs a printer's name");
        } else if (o == QLatin1String("--printer")) {
            r.imprimante = true;
        } else if (o == QLatin1String("--copies")) {
            if (!valeur(v)) return QStringLiteral("--copies needs a number");
            r.copies = v.toInt(&ok);
            // A slip of the keyboard must not send a printer ten thousand sheets.
            if (!ok || r.copies < 1 || r.copies > 999) return QStringLiteral("bad number of copies: %1 (1 to 999)").arg(v);
        } else if (o == QLatin1String("--listing")) {
            r.listing = true;
        } else if (o == QLatin1String("--landscape")) {
            r.paysage = true;
        } else if (o == QLatin1String("--text-as-paths")) {
            r.contours = true;
        } else if (o == QLatin1String("--pane") || o == QLatin1String("--page")) {
            if (!valeur(v)) return o + QStringLiteral(" needs a size");
            const QSizeF t = TaillePage(v);
            if (!t.isValid()) return QStringLiteral("bad size: %1 (%2 or WxH in mm, each from %3 to %4)")
                                       .arg(v, NomsPages().join(", "))
                                       .arg(PageMin)
                                       .arg(PageMax);
            (o == QLatin1String("--pane") ? r.pane : r.page) = t;
        } else if (o == QLatin1String("--zoom")) {
            if (!valeur(v)) return QStringLiteral("--zoom needs a number");
            r.zoom = v.toDouble(&ok);
            if (!ok || r.zoom <= 0) return QStringLiteral("bad zoom: %1").arg(v);
            r.zoomDonne = true;
        } else if (o == QLatin1String("--dpi")) {
            if (!valeur(v)) return QStringLiteral("--dpi needs a number");
            r.dpi = v.toDouble(&ok);
            if (!ok || r.dpi < 10 || r.dpi > 2400) return QStringLiteral("bad dpi: %1 (10 to 2400)").arg(v);
        } else if (o == QLatin1String("--lang")) {
            if (!valeur(v) || (r.langue = DecalageLangue(v)) < 0)
                return QStringLiteral("--lang takes fr, en, de or es");
        } else if (o == QLatin1String("--input")) {
            if (!valeur(v)) return QStringLiteral("--input needs a text");
            r.saisies << v;
        } else if (o == QLatin1String("--answer")) {
            if (!valeur(v)) return QStringLiteral("--answer needs ok, cancel, yes or no");
            for (const QString& m : v.split(u',', Qt::SkipEmptyParts)) {
                if (!QStringList{"ok", "cancel", "yes", "no"}.contains(m.trimmed().toLower()))
                    return QStringLiteral("bad answer: %1").arg(m);
                r.reponses << m.trimmed();
            }
        } else if (o == QLatin1String("--timeout")) {
            if (!valeur(v)) return QStringLiteral("--timeout needs a number of seconds");
            r.delai = v.toDouble(&ok);
            if (!ok || r.delai < 0) return QStringLiteral("bad timeout: %1").arg(v);
        } else if (o == QLatin1String("--locale")) {
            if (!valeur(r.locale)) return QStringLiteral("--locale needs a name");
        } else if (r.fichier.isEmpty()) {
            r.fichier = o;
        } else {
            return QStringLiteral("one program file only");
        }
    }
    if (r.fichier.isEmpty()) return QStringLiteral("which program file?");
    if (r.commande == QLatin1String("render") && r.sortie.isEmpty())
        return QStringLiteral("render needs -o OUT.pdf, OUT.svg or OUT.png");
    return QString();
}

// The help window's contents page as plain text, for those who work without
// the window: "mirel reference --lang en | less".
int Reference(const QStringList& args) {
    int langue = 0;
    for (int i = 2; i < args.size(); ++i) {
        if (args[i] != QLatin1String("--lang")) return Usage(QStringLiteral("reference takes --lang only"));
        if (++i >= args.size() || (langue = DecalageLangue(args[i])) < 0)
            return Usage(QStringLiteral("--lang takes fr, en, de or es"));
    }
    QTextDocument page;
    page.setHtml(PageContenu(TableChaines::Standard(), langue));
    Ecrit(stdout, page.toPlainText() + u'\n');
    return 0;
}

Reglages ReglagesDe(const Arguments& a) {
    Reglages r;
    r.LangueMessages = r.LangueMenus = r.LangueAide = r.LangueMasque = a.langue;
    // The folders of the file lookup and the external commands:
    // the program's data folder, the working one, and the program file's own.
    auto barre = [](const QString& d) { return d.endsWith(u'/') ? d : d + u'/'; };
    r.DossierProgramme = DossierDonnees(QCoreApplication::applicationDirPath());
    r.DossierTravail = barre(QDir::currentPath());
    r.DossierFichier = DossierDe(QFileInfo(a.fichier).absoluteFilePath());
    ChargeCommandesExternes(r);
    return r;
}

int Dump(const Arguments& a, const QString& texte) {
    QSizeF page = a.page;
    bool paysage = a.paysage;
    PapierEtOrientation(page, paysage);
    Session s(texte, a.pane, page);
    s.regl = ReglagesDe(a);
    s.delai = a.delai;
    s.etat.FichierPrincipal = QFileInfo(a.fichier).absoluteFilePath();
    s.hote.Reponses = a.reponses;
    s.hote.Saisies = a.saisies;
    s.etat.Repere.OrientationImprimante = paysage ? 2 : 1;
    if (a.imprimante) s.ExecuteImprimante();
    else s.Execute(float(a.zoom));
    Ecrit(stdout, QString::fromUtf8(QJsonDocument(DumpJson(s)).toJson(QJsonDocument::Indented)));
    const QString arret = s.Arret();
    if (!arret.isEmpty()) {
        Ecrit(stderr, QStringLiteral("mirel: %1\n").arg(arret));
        return 3;
    }
    return s.etat.ErreursAffichees > 0 ? 1 : 0;
}

int Render(const Arguments& a, const QString& texte) {
    OptionsRendu o;
    o.dpi = a.dpi;
    o.page = a.page;
    o.paysage = a.paysage;
    o.texteEnContours = a.contours;
    o.reponses = a.reponses;
    o.saisies = a.saisies;
    o.delai = a.delai;
    const ResultatRendu r =
        RendProgramme(texte, QFileInfo(a.fichier).absoluteFilePath(), a.sortie, o, ReglagesDe(a));
    for (const QString& m : r.messages) EcritBoite(m);
    for (const QString& m : {r.avertissement, r.arret, r.erreur})
        if (!m.isEmpty()) Ecrit(stderr, QStringLiteral("mirel: %1\n").arg(m));
    return r.statut;
}

// The PDF of `print -o`: printed into a temporary file, then written whole
// over the name asked for, so that a print that fails (a full disk) neither
// leaves a cut file nor loses the one that was there.
class SortiePdf {
public:
    explicit SortiePdf(const QString& nom) : nom_(nom) {}
    // The temporary file, or the reason why it or the file asked for cannot
    // be written; told before the program runs.
    QString Ouvre() {
        QSaveFile essai(nom_);
        if (!essai.open(QIODevice::WriteOnly)) return Raison(essai.errorString());
        essai.cancelWriting();
        if (!temporaire_.open()) return Raison(temporaire_.errorString());
        temporaire_.close();
        return {};
    }
    QString Temporaire() const { return temporaire_.fileName(); }
    // The whole PDF written under its name; else the reason.
    QString Remplace() {
        QString raison;
        const std::optional<QByteArray> pdf = LitOctets(temporaire_.fileName(), &raison);
        if (!pdf) return Raison(raison);
        if (!pdf->right(1024).contains("%%EOF")) return Raison(QStringLiteral("the PDF was cut short"));
        return EcritOctets(nom_, *pdf, &raison) ? QString() : Raison(raison);
    }

private:
    QString Raison(const QString& pourquoi) const { return TexteNonEcrit(nom_, pourquoi); }
    QString nom_;
    QTemporaryFile temporaire_;
};

// `mirel print`: the window's print path, to a CUPS queue or a PDF file.
int Imprime(const Arguments& a, const QString& texte) {
    QPrinter p(QPrinter::HighResolution);
    std::optional<SortiePdf> pdf;
    if (!a.sortie.isEmpty()) {
        if (!a.sortie.endsWith(QLatin1String(".pdf"), Qt::CaseInsensitive))
            return Usage(QStringLiteral("print -o writes a PDF file: %1").arg(a.sortie));
        pdf.emplace(a.sortie);
        if (const QString faute = pdf->Ouvre(); !faute.isEmpty()) {
            Ecrit(stderr, QStringLiteral("mirel: %1\n").arg(faute));
            return 2;
        }
        p.setOutputFormat(QPrinter::PdfFormat);
        p.setOutputFileName(pdf->Temporaire());
    } else {
        const QPrinterInfo info = a.nomImprimante.isEmpty() ? QPrinterInfo::defaultPrinter()
                                                            : QPrinterInfo::printerInfo(a.nomImprimante);
        if (info.isNull()) {
            Ecrit(stderr, a.nomImprimante.isEmpty()
                              ? QStringLiteral("mirel: no printer is installed\n")
                              : QStringLiteral("mirel: no such printer: %1\n").arg(a.nomImprimante));
            return 2;
        }
        p.setPrinterName(info.printerName());
    }
    p.setCopyCount(a.copies);
    const QString chemin = QFileInfo(a.fichier).absoluteFilePath();
    OptionsImpression o;
    o.delai = a.delai;
    o.zoom = a.zoomDonne ? float(a.zoom) : 0;
    o.reponses = a.reponses;
    o.saisies = a.saisies;
    ResultatImpression r =
        a.listing ? ImprimeListingProgramme(texte, chemin, p) : ImprimeProgramme(texte, chemin, p, ReglagesDe(a), o);
    if (pdf) {
        const QString faute = r.statut == 2 ? TexteNonEcrit(a.sortie) : pdf->Remplace();
        if (!faute.isEmpty()) std::tie(r.statut, r.erreur) = std::pair(2, faute);
    }
    for (const QString& m : r.messages) EcritBoite(m);
    for (const QString& m : {r.arret, r.erreur})
        if (!m.isEmpty()) Ecrit(stderr, QStringLiteral("mirel: %1\n").arg(m));
    return r.statut;
}

// `mirel [FILE.dat]`: the main window. With --screenshot, the window
// is saved as a PNG once it has been shown and has run its file, then the
// program ends (the smoke test of the CI under Xvfb).
int Fenetre(int argc, char** argv, const QStringList& args) {
    QString capture;
    QStringList reste;
    double delai = 60;
    for (int i = 1; i < args.size(); ++i) {
        if (args[i] == QLatin1String("--screenshot")) {
            if (i + 1 >= args.size()) return Usage(QStringLiteral("--screenshot needs a file"));
            capture = args[++i];
        } else if (args[i] == QLatin1String("--timeout")) {
            bool ok = false;
            delai = args.value(++i).toDouble(&ok);
            if (!ok || delai < 0) return Usage(QStringLiteral("bad timeout: %1").arg(args.value(i)));
        } else if (args[i].startsWith(QLatin1String("--"))) {
            return Usage(QStringLiteral("unknown option: %1").arg(args[i]));
        } else {
            reste << args[i];
        }
    }
    const QString fichier = reste.join(u' ');
    // A first word that names no file, with more behind it, is a command
    // mistyped ("mirel rendre f.dat -o f.pdf"), not a file to open.
    if (reste.size() > 1 && !QFileInfo::exists(fichier) && !QFileInfo::exists(reste[0]) &&
        !reste[0].contains(u'.') && !reste[0].contains(u'/'))
        return Usage(QStringLiteral("unknown command: %1").arg(reste[0]));
    if (!capture.isEmpty() && !fichier.isEmpty() && !QFileInfo(fichier).isFile()) {
        Ecrit(stderr, QStringLiteral("mirel: cannot read %1: no such file\n").arg(fichier));
        return 2;
    }
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") && qEnvironmentVariableIsEmpty("DISPLAY") &&
        qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")) {
        Ecrit(stderr, QStringLiteral("mirel: no display to open the window on; without one, render, dump "
                                     "and print work (mirel --help)\n"));
        return 2;
    }
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Mirel"));
    // The real settings file and the real command files on disk.
    ConfigFichier config;
    ServicesFenetre services;
    services.config = &config;
    // A screenshot is taken with nobody at the window: no box waits for an
    // answer, and a run that does not end is stopped as Esc stops it.
    BoitesSansPersonne sansPersonne;
    if (!capture.isEmpty()) services.boites = &sansPersonne;
    // Unsaved text is kept for the next start; a screenshot types nothing.
    if (capture.isEmpty()) services.dossierSecours = DossierSecoursStandard();
    Form1 f(services);
    bool arrete = false; // a run was stopped by the time limit
    if (!capture.isEmpty() && delai > 0)
        QTimer::singleShot(int(delai * 1000), &f, [&f, &arrete] {
            arrete = f.e.ExecutionEnCours;
            f.e.ArretDemande = true;
        });
    if (!f.Demarrer(fichier)) return 1;
    int statut = 0;
    if (!capture.isEmpty()) {
        QTimer::singleShot(700, &f, [&] {
            // The read-out as a mouse resting a third into the drawing shows it.
            const int largeur = f.zone->width() - (f.RTB1->isVisible() ? f.RTB1->width() : 0);
            f.Lecture(QPointF(largeur / 3.0, f.zone->height() / 3.0), Qt::NoButton, Qt::NoModifier);
            const QImage im = f.grab().toImage();
            if (im.isNull() || !im.save(capture)) {
                Ecrit(stderr, QStringLiteral("mirel: %1\n").arg(TexteNonEcrit(capture)));
                statut = 2;
            } else {
                // A window's picture: a real size and more than a few colours.
                QSet<QRgb> couleurs;
                for (int y = 0; y < im.height(); y += 4)
                    for (int x = 0; x < im.width(); x += 4) couleurs.insert(im.pixel(x, y));
                Ecrit(stdout, QStringLiteral("screenshot %1x%2, %3 colours sampled\n")
                                  .arg(im.width()).arg(im.height()).arg(couleurs.size()));
                if (im.width() < 600 || im.height() < 400 || couleurs.size() < 8) statut = 1; // a blank window
            }
            for (const QString& m : sansPersonne.Vues) EcritBoite(m);
            if (arrete && statut == 0) {
                Ecrit(stderr, QStringLiteral("mirel: %1\n").arg(RaisonArret(true, false, delai)));
                statut = 3;
            } else if (statut == 0 && f.e.ErreursAffichees > 0) {
                statut = 1; // the run showed an error box
            }
            f.hide();
            app.quit();
        });
    }
    const int r = app.exec();
    return statut ? statut : r;
}

} // namespace

int MirelMain(int argc, char** argv) {
    QStringList args;
    for (int i = 0; i < argc; ++i) args << QString::fromLocal8Bit(argv[i]);
    const QString premier = args.value(1);
    const bool aide = premier == QLatin1String("help") && args.size() == 2 && !QFileInfo::exists(premier);
    auto afficheAide = [] {
        Ecrit(stdout, QString::fromUtf8(Aide));
        return 0;
    };
    if (premier == QLatin1String("--help") || premier == QLatin1String("-h") || aide) return afficheAide();
    if (premier == QLatin1String("--version")) {
        Ecrit(stdout, QStringLiteral("Mirel V%1\n").arg(TexteVersionProgramme().trimmed()));
        return 0;
    }
    if (premier != QLatin1String("render") && premier != QLatin1String("dump") &&
        premier != QLatin1String("print") && premier != QLatin1String("reference"))
        return Fenetre(argc, argv, args);

    // Headless: no display is needed.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    if (qEnvironmentVariableIsEmpty("XDG_RUNTIME_DIR")) {
        const QByteArray dir = QDir::tempPath().toLocal8Bit() + "/mirel-runtime-" + QByteArray::number(getuid());
        QDir().mkpath(QString::fromLocal8Bit(dir));
        QFile::setPermissions(QString::fromLocal8Bit(dir), QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
        qputenv("XDG_RUNTIME_DIR", dir);
    }
    QGuiApplication app(argc, argv);
    if (premier == QLatin1String("reference")) return Reference(args);
    Arguments a;
    a.commande = premier;
    const QString faute = LitArguments(args, a);
    if (!faute.isEmpty()) return Usage(faute);
    if (a.aide) return afficheAide(); // as in "mirel render --help"
    QLocale::setDefault(QLocale(a.locale));
    QString erreur;
    const std::optional<TexteLu> lu = LitFic(a.fichier, &erreur);
    if (!lu) {
        Ecrit(stderr, QStringLiteral("mirel: cannot read %1: %2\n").arg(a.fichier, erreur));
        return 2;
    }
    QString texte = lu->Texte;
    // A meter file is imported first, as the window imports it.
    if (EstFichierMeter(a.fichier)) {
        const QSizeF page = a.paysage ? a.page.transposed() : a.page;
        const ImportMeter im =
            ImporteMeter(texte, QFileInfo(a.fichier).absoluteFilePath(), page, a.langue);
        if (!im.Erreur.isEmpty()) {
            Ecrit(stderr, QStringLiteral("mirel: %1: %2\n").arg(a.fichier, im.Erreur));
            return 2;
        }
        texte = im.Texte;
    }
    if (premier == QLatin1String("print")) return Imprime(a, texte);
    return premier == QLatin1String("dump") ? Dump(a, texte) : Render(a, texte);
}
