#include "app/impression.h"

#include "app/core/encodage.h"
#include "app/core/fichiers.h"
#include "app/core/hote_memoire.h"
#include "app/editeur.h"
#include "app/fenetre.h"
#include "app/core/session.h"
#include "app/listing.h"
#include "language/chaines.h"
#include "drawing/repere.h"
#include "drawing/surface_peinte.h"
#include "language/etat.h"
#include "language/interprete.h"

#include <QAction>
#include <QApplication>
#include <QFileInfo>
#include <QFontDialog>
#include <QLocale>
#include <QPageLayout>
#include <QPrintDialog>
#include <QPrinter>
#include <QTextDocument>
#include <QTextDocumentFragment>

namespace {

QSizeF PapierMm(const QPrinter& p) {
    QSizeF mm = p.pageLayout().pageSize().size(QPageSize::Millimeter);
    if (mm.width() > mm.height()) mm.transpose();
    return mm;
}

// The window's printer: the one of the printer choice, else the one found at
// start-up with its default sheet.
QPrinter& ImprimanteDe(Form1& f) {
    if (!f.ImprimanteChoisie) {
        f.ImprimanteChoisie = std::make_unique<QPrinter>(QPrinter::HighResolution);
        f.ImprimanteChoisie->setPrinterName(f.NomImprimante);
    }
    return *f.ImprimanteChoisie;
}

// The listing stands upright within margins on the sheet; a print of the
// drawing sets the sheet back to its own needs.
void FeuilleListing(QPrinter& p) {
    p.setFullPage(false);
    p.setPageOrientation(QPageLayout::Portrait);
    p.setPageMargins(QMarginsF(15, 5, 10, 5), QPageLayout::Millimeter);
}

ResultatImpression Refus(const QPrinter& p) {
    ResultatImpression r;
    r.statut = 2;
    r.erreur = p.outputFormat() == QPrinter::PdfFormat
                   ? TexteNonEcrit(p.outputFileName())
                   : QStringLiteral("the printer %1 refused the job").arg(p.printerName());
    return r;
}

void MontreRefus(Boites& boites, QWidget* fenetre, const QPrinter& p, int langue) {
    boites.Message(fenetre, TitreBoite, LoadResString(379 + langue).arg(p.printerName()), Boutons::Ok,
                   Icone::Critique);
}

} // namespace

QSizeF Form1::PapierImprimante() { return PapierMm(ImprimanteDe(*this)); }

QString TitreTravail(const QString& chemin) {
    return chemin.isEmpty() ? QStringLiteral("Mirel") : QFileInfo(chemin).completeBaseName();
}

float PrepareImprimante(QPrinter& p, const QString& texte, const QString& chemin,
                        const Reglages& reglages, const EssaiImpression& options) {
    p.setDocName(TitreTravail(chemin));
    p.setPrintRange(QPrinter::AllPages); // a listing's selection is no page range
    p.setFullPage(true);
    p.setPageMargins(QMarginsF(0, 0, 0, 0), QPageLayout::Millimeter);
    // The page must be turned before the job opens. A program that does not
    // end is cut short in the trial run and stopped by Esc in the one that prints.
    Session essai(texte, QSizeF(297, 210), PapierMm(p));
    essai.regl = reglages;
    essai.etat.FichierPrincipal = chemin;
    essai.delai = options.delai;
    essai.hote.Reponses = options.reponses;
    essai.hote.Saisies = options.saisies;
    essai.hote.Veille = options.veille;
    p.setPageOrientation(essai.FiniPaysage(1) ? QPageLayout::Landscape : QPageLayout::Portrait);
    return essai.etat.Repere.ZoomDepartI;
}

bool ExecuteSurImprimante(Etat& e, QPrinter& p, bool* signalee, bool* limiteAtteinte) {
    if (signalee) *signalee = false;
    if (!p.isValid()) return false;
    // The printer as Surface: the 600 dpi sheet of the virtual printer painted
    // on the QPrinter at its own resolution; one painter lasts the whole job.
    const QSizeF papier = PapierMm(p);
    SurfacePeinte imprimante(GenreSurface::Imprimante, papier.width() / 25.4 * DpiImprimante,
                             papier.height() / 25.4 * DpiImprimante, 25.4 / DpiImprimante,
                             [&p](int) { return static_cast<QPaintDevice*>(&p); },
                             p.resolution() / DpiImprimante, true);
    imprimante.PanneEstImprimante(true);
    // A program that draws without end is stopped as Esc stops it.
    imprimante.LimiteOperations(MaxOperationsRun, [&e] { e.ArretDemande = true; });
    MesureImprimante(e, imprimante);
    e.Repere.OrientationImprimante = p.pageLayout().orientation() == QPageLayout::Landscape ? 2 : 1;
    LanceExecution(e, &imprimante);
    // A line that met the failure has shown its box and sent the run back to the pane.
    if (signalee) *signalee = imprimante.PageRefusee() && e.Surf != &imprimante;
    if (limiteAtteinte) *limiteAtteinte = imprimante.LimiteAtteinte();
    // The run's last page is ended and the job closed, even after Esc or a failure.
    imprimante.EndDoc();
    e.Surf = e.Pane;
    return !imprimante.PageRefusee() && p.printerState() != QPrinter::Error &&
           p.printerState() != QPrinter::Aborted;
}

ResultatImpression ImprimeProgramme(const QString& texte, const QString& chemin, QPrinter& p,
                                    const Reglages& reglages, const OptionsImpression& options) {
    ResultatImpression res;
    // The time limit holds for the trial that turns the page and the print together.
    const QDeadlineTimer fin = EcheanceDe(options.delai);
    EssaiImpression essai;
    essai.reponses = options.reponses;
    essai.saisies = options.saisies;
    if (options.delai > 0) essai.delai = std::min(essai.delai, options.delai / 2);
    const float zoomTexte = PrepareImprimante(p, texte, chemin, reglages, essai);
    Reglages regl = reglages;
    HoteMemoire hote(texte);
    hote.Reponses = options.reponses;
    hote.Saisies = options.saisies;
    Etat e;
    e.Regl = &regl;
    e.Host = &hote;
    e.FichierPrincipal = chemin;
    hote.Arret = &e.ArretDemande;
    hote.Echeance = fin;
    SurfaceEnregistree pane(GenreSurface::Ecran, 297 / 25.4 * DpiEcran, 210 / 25.4 * DpiEcran,
                            25.4 / DpiEcran);
    AttachePane(e, &pane);
    // A printer failure sends the run back to the pane: a program that draws
    // without end there is stopped as on the printer.
    pane.LimiteOperations(MaxOperationsRun, [&e] { e.ArretDemande = true; });
    FermeFichiers(e);
    e.Repere.ZoomI = options.zoom > 0 ? options.zoom : zoomTexte;
    bool limite = false;
    const bool accepte = ExecuteSurImprimante(e, p, nullptr, &limite);
    limite = limite || pane.LimiteAtteinte();
    for (const MessageEnregistre& m : hote.Messages()) res.messages << m.titre + u'\n' + m.texte;
    res.arret = RaisonArret(hote.Expire, limite, options.delai);
    if (!accepte) {
        const ResultatImpression refus = Refus(p);
        res.statut = refus.statut;
        res.erreur = refus.erreur;
    } else if (!res.arret.isEmpty()) {
        res.statut = 3;
    } else if (e.ErreursAffichees > 0) {
        res.statut = 1;
    }
    return res;
}

ResultatImpression ImprimeListingProgramme(const QString& texte, const QString& chemin, QPrinter& p) {
    p.setDocName(TitreTravail(chemin));
    FeuilleListing(p);
    return ImprimeListingTexte(p, texte, chemin) ? ResultatImpression() : Refus(p);
}

std::optional<float> ZoomSaisi(const QString& reponse) {
    const std::optional<double> tape = NombreTape(reponse);
    if (!tape) return std::nullopt;
    // A zoom is a 32-bit float: a value beyond its range is no zoom.
    const float z = float(*tape);
    if (!std::isfinite(z) || (z == 0 && *tape != 0)) return std::nullopt;
    return z > 0 ? z : 1.0f;
}

QString TexteSansImprimante(int langue) { return LoadResString(378 + langue); }

// --- the dialogs

bool DialoguesImpressionQt::ChoixImprimante(QWidget* parent, QPrinter& p) {
    QPrintDialog d(&p, parent);
    d.setOption(QAbstractPrintDialog::PrintPageRange, false);
    d.setOption(QAbstractPrintDialog::PrintSelection, false);
    d.setOption(QAbstractPrintDialog::PrintCurrentPage, false);
    return d.exec() == QDialog::Accepted;
}

bool DialoguesImpressionQt::ImpressionCode(QWidget* parent, QPrinter& p, bool selection) {
    QPrintDialog d(&p, parent);
    d.setOption(QAbstractPrintDialog::PrintToFile, false);
    d.setOption(QAbstractPrintDialog::PrintPageRange, false);
    d.setOption(QAbstractPrintDialog::PrintCurrentPage, false);
    d.setOption(QAbstractPrintDialog::PrintSelection, selection);
    p.setPrintRange(selection ? QPrinter::Selection : QPrinter::AllPages);
    return d.exec() == QDialog::Accepted;
}

std::optional<QFont> DialoguesImpressionQt::Police(QWidget* parent, const QFont& depart, bool ecran) {
    bool ok = false;
    const QFont f = QFontDialog::getFont(&ok, depart, parent, QString(),
                                         ecran ? QFontDialog::FontDialogOptions()
                                               : QFontDialog::ScalableFonts);
    return ok ? std::optional(f) : std::nullopt;
}

// --- the window's print

void Form1::Mnu_Imprimer_Click() {
    e.Repere.ZoomI = e.Repere.ZoomDepartI;
    Imprimer();
}

bool Form1::Imprimer(QPrinter* cible) {
    if (!Mnu_Imprimer->isEnabled() && !cible) return false;
    if (!PrepareExecution()) return false;
    // 1. The window waits; Esc still reaches the run.
    e.ArretDemande = false;
    Occupe(true);
    qApp->processEvents();
    // 2. The view's pan is not printed.
    EtatRepere& r = e.Repere;
    const double panX = r.DecalageVueX, panY = r.DecalageVueY;
    r.DecalageVueX = r.DecalageVueY = 0;
    // 3 to 6. The run on the printer, the job named after the file. The run
    // that turns the page first serves the window too: Esc there ends the
    // print before its job opens.
    QPrinter& p = cible ? *cible : ImprimanteDe(*this);
    const QString texte = RTB1->TexteCrLf();
    EssaiImpression essai;
    essai.veille = [this] {
        if (e.Host) e.Host->PompeEvenements();
        return e.ArretDemande;
    };
    PrepareImprimante(p, texte, FichierCourant, regl, essai);
    const bool annule = e.ArretDemande;
    FermeFichiers(e);
    bool signalee = false;
    const bool accepte = !annule && ExecuteSurImprimante(e, p, &signalee);
    // 7. A pan that the run set is kept; one it left at zero comes back.
    if (r.DecalageVueX == 0) r.DecalageVueX = panX;
    if (r.DecalageVueY == 0) r.DecalageVueY = panY;
    Occupe(false);
    // A close asked while the page was being turned closes the window now.
    if (FermeSiDemandee()) return accepte;
    // 8. The screen shows the drawing again, even after Esc, from the point
    // and centre 0, 0 as every run starts.
    e.ArretDemande = false;
    RelanceSansZoom();
    if (!accepte && !signalee && !annule) MontreRefus(*s_.boites, this, p, regl.LangueMessages);
    return accepte;
}

void Form1::AfficheEntreesImpression() {
    const QString sans = TexteSansImprimante(regl.LangueMenus);
    for (QAction* a : {Mnu_Imprimante, Mnu_Imprimer, Mnu_ImprimerZoom, Mnu_ImprimerCode}) {
        a->setEnabled(!ImprimantePdf);
        if (!ImprimantePdf) continue;
        // The words go ahead of the shortcut's column.
        QString t = a->text();
        const qsizetype tab = t.indexOf(u'\t');
        t.insert(tab < 0 ? t.size() : tab, u' ' + sans);
        a->setText(t);
    }
}

void Form1::Mnu_ImprimerZoom_Click() {
    if (!Mnu_ImprimerZoom->isEnabled()) return;
    const std::optional<QString> r =
        s_.boites->Saisie(this, TitreBoite, Chaine(120), QLocale::c().toString(ZoomImpression), QString());
    if (!r || r->trimmed().isEmpty()) return;
    const std::optional<float> z = ZoomSaisi(*r);
    if (!z) {
        s_.boites->Message(this, TitreBoite, QStringLiteral("Valeur non valide\nNo valid value"),
                           Boutons::Ok, Icone::Exclamation);
        return;
    }
    e.Repere.ZoomI = *z;
    Imprimer();
    ZoomImpression = *z;
}

void Form1::Mnu_Imprimante_Click() {
    QPrinter& p = ImprimanteDe(*this);
    if (!DialoguesImp->ChoixImprimante(this, p)) return;
    NomImprimante = p.printerName();
    // The printer's scale measured again, on the chosen sheet.
    const QSizeF papier = PapierMm(p);
    SurfaceEnregistree imprimante(GenreSurface::Imprimante, papier.width() / 25.4 * DpiImprimante,
                                  papier.height() / 25.4 * DpiImprimante, 25.4 / DpiImprimante);
    MesureImprimante(e, imprimante);
    if (RatioCode == 0) RatioCode = 3.3f;
    // Patch 2: choosing a printer prints at once.
    if (regl.Patchs & 2) Imprimer();
}

void Form1::Mnu_Polices_Click() {
    const bool ecran = QApplication::keyboardModifiers() & Qt::ControlModifier;
    // The window's face at the printer's font size, which start-up and every
    // printer choice set to 8 points.
    QFont depart = font();
    depart.setPointSizeF(8);
    const std::optional<QFont> f = DialoguesImp->Police(this, depart, ecran);
    if (f) RTB1->InsereTexte(f->family());
}

bool Form1::Imprime_Code() {
    if (!Mnu_ImprimerCode->isEnabled()) return false;
    const QTextCursor curseur = RTB1->textCursor();
    const bool selection = curseur.hasSelection();
    QPrinter& p = ImprimanteDe(*this);
    FeuilleListing(p);
    if (!DialoguesImp->ImpressionCode(this, p, selection)) return false;
    const bool extrait = selection && p.printRange() == QPrinter::Selection;
    QApplication::setOverrideCursor(Qt::WaitCursor);
    // The editor's lines in their colours, or those of the selection.
    QTextDocument doc;
    doc.setDefaultFont(RTB1->font());
    QTextCursor(&doc).insertFragment(extrait ? curseur.selection()
                                             : QTextDocumentFragment(RTB1->document()));
    const QString entete =
        EnteteListing(FichierCourant, extrait ? Chaine(125) : QString(), QDate::currentDate());
    p.setDocName(TitreTravail(FichierCourant));
    const bool accepte = ImprimeListing(p, doc, entete);
    QApplication::restoreOverrideCursor();
    if (!accepte) MontreRefus(*s_.boites, this, p, regl.LangueMessages);
    return accepte;
}
