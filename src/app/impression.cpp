#include "app/impression.h"

#include "app/core/hote_memoire.h"
#include "app/editeur.h"
#include "app/fenetre.h"
#include "app/core/session.h"
#include "drawing/repere.h"
#include "drawing/surface_peinte.h"
#include "language/etat.h"
#include "language/interprete.h"

#include <QApplication>
#include <QFileInfo>
#include <QPageLayout>
#include <QPrinter>

namespace {

QSizeF PapierMm(const QPrinter& p) {
    QSizeF mm = p.pageLayout().pageSize().size(QPageSize::Millimeter);
    if (mm.width() > mm.height()) mm.transpose();
    return mm;
}

} // namespace

QString TitreTravail(const QString& chemin) {
    return chemin.isEmpty() ? QStringLiteral("Mirel") : QFileInfo(chemin).completeBaseName();
}

void PrepareImprimante(QPrinter& p, const QString& texte, const QString& chemin,
                       const Reglages& reglages) {
    p.setDocName(TitreTravail(chemin));
    p.setFullPage(true);
    p.setPageMargins(QMarginsF(0, 0, 0, 0), QPageLayout::Millimeter);
    // FormatI turns the sheet; the page must be turned before the job opens.
    // The first run only looks for it: a program that does not end is cut
    // short here and stopped by Esc in the run that prints.
    Session essai(texte, QSizeF(297, 210), PapierMm(p));
    essai.regl = reglages;
    essai.etat.FichierPrincipal = chemin;
    essai.delai = 2;
    essai.ExecuteImprimante();
    p.setPageOrientation(essai.imprimante->Orientation() == 2 ? QPageLayout::Landscape
                                                              : QPageLayout::Portrait);
}

bool ExecuteSurImprimante(Etat& e, QPrinter& p) {
    if (!p.isValid()) return false;
    // The printer as Surface: the 600 dpi sheet of the virtual printer painted
    // on the QPrinter at its own resolution; one painter lasts the whole job.
    const QSizeF papier = PapierMm(p);
    SurfacePeinte imprimante(GenreSurface::Imprimante, papier.width() / 25.4 * DpiImprimante,
                             papier.height() / 25.4 * DpiImprimante, 25.4 / DpiImprimante,
                             [&p](int) { return static_cast<QPaintDevice*>(&p); },
                             p.resolution() / DpiImprimante, true);
    // A program that draws without end is stopped as Esc stops it.
    imprimante.LimiteOperations(MaxOperationsRun, [&e] { e.ArretDemande = true; });
    MesureImprimante(e, imprimante);
    e.Repere.OrientationImprimante = p.pageLayout().orientation() == QPageLayout::Landscape ? 2 : 1;
    LanceExecution(e, &imprimante);
    // The run's last page is ended and the job closed, even after Esc or a failure.
    imprimante.EndDoc();
    e.Surf = e.Pane;
    return !imprimante.PageRefusee() && p.printerState() != QPrinter::Error &&
           p.printerState() != QPrinter::Aborted;
}

ResultatImpression ImprimeProgramme(const QString& texte, const QString& chemin, QPrinter& p,
                                    const Reglages& reglages, double delai) {
    ResultatImpression res;
    PrepareImprimante(p, texte, chemin, reglages);
    Reglages regl = reglages;
    HoteMemoire hote(texte);
    Etat e;
    e.Regl = &regl;
    e.Host = &hote;
    e.FichierPrincipal = chemin;
    hote.Arret = &e.ArretDemande;
    if (delai > 0) hote.Echeance = QDeadlineTimer(qint64(delai * 1000));
    SurfaceEnregistree pane(GenreSurface::Ecran, 297 / 25.4 * DpiEcran, 210 / 25.4 * DpiEcran,
                            25.4 / DpiEcran);
    AttachePane(e, &pane);
    FermeFichiers(e);
    e.Repere.ZoomI = e.Repere.ZoomDepartI;
    const bool accepte = ExecuteSurImprimante(e, p);
    for (const MessageEnregistre& m : hote.Messages()) res.messages << m.titre + u'\n' + m.texte;
    if (!accepte) {
        res.statut = 2;
        res.erreur = QStringLiteral("the printer %1 refused the job").arg(p.printerName());
    } else if (e.ErreursAffichees > 0) {
        res.statut = 1;
    }
    return res;
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
    QApplication::setOverrideCursor(Qt::WaitCursor);
    qApp->processEvents();
    // 2. The view's pan is not printed.
    EtatRepere& r = e.Repere;
    const double panX = r.DecalageVueX, panY = r.DecalageVueY;
    r.DecalageVueX = r.DecalageVueY = 0;
    // 3 to 6. The run on the printer, the job named after the file.
    QPrinter propre(QPrinter::HighResolution);
    QPrinter& p = cible ? *cible : propre;
    if (!cible) p.setPrinterName(NomImprimante);
    const QString texte = RTB1->TexteCrLf();
    PrepareImprimante(p, texte, FichierCourant, regl);
    FermeFichiers(e);
    const bool accepte = ExecuteSurImprimante(e, p);
    // 7. A pan that the run set is kept; one it left at zero comes back.
    if (r.DecalageVueX == 0) r.DecalageVueX = panX;
    if (r.DecalageVueY == 0) r.DecalageVueY = panY;
    QApplication::restoreOverrideCursor();
    // 8. The screen shows the drawing again, even after Esc.
    r.PointX = r.PointY = 0;
    r.CTx = r.CTy = 0;
    e.ArretDemande = false;
    RelanceSansZoom();
    if (!accepte)
        s_.boites->Message(this, QStringLiteral("Mirel"),
                           QStringLiteral("The printer %1 refused the job.").arg(p.printerName()),
                           Boutons::Ok, Icone::Critique);
    return accepte;
}
