#include "app/apercu.h"
#include "app/recherche.h"

#include "app/core/config.h"
#include "app/editeur.h"
#include "app/fenetre.h"
#include "app/hote_fenetre.h"
#include "drawing/repere.h"
#include "drawing/surface.h"
#include "language/chaines.h"
#include "language/interprete.h"

#include <algorithm>

#include <QElapsedTimer>
#include <QMenu>
#include <QMenuBar>
#include <QTextDocument>

namespace {

// A live run that takes longer than this is stopped: the program is one for F4.
constexpr int DureeMaxDirect = 500;

// The first line of a box's text.
QString PremiereLigne(const QString& t) {
    const QString s = t.trimmed();
    const qsizetype i = s.indexOf(u'\r') >= 0 ? s.indexOf(u'\r') : s.indexOf(u'\n');
    return (i < 0 ? s : s.left(i)).trimmed();
}

// The host of a live run: the window's, except that everything that would
// wait for the user, or write where the user did not ask, stops the run
// instead and leaves its reason. The run's start and end leave the menus,
// the pointer and the colouring of the line being typed alone.
//
// A live run answers the prompts and boxes of the window's last run as the
// user answered them, while they are the same; a new one, or an error box,
// stops it. A redraw of the view (a resize, the wheel, a drag, a fit) is
// such a run too, except that the error boxes of the last run are answered
// again as well, that the files and programs of that run are left as they
// are, and that it is a run of the window as to its menus, pointer, events
// and length.
class HoteApercu : public HoteFenetre {
public:
    enum class Genre { Direct, Vue };
    HoteApercu(Form1& f, Genre genre) : HoteFenetre(f), f_(f), vue_(genre == Genre::Vue) { montre_.start(); }

    QString raison;   // why the run stopped; empty when it ran to its end
    int ligne = 0;    // the editor line it stopped at

    Reponse Message(const QString& titre, const QString& texte, Boutons boutons) override {
        // An error box comes from the level's handler, which counts it
        // (every run starts from none).
        const bool erreur = f_.e.ErreursAffichees > 0;
        if (vue_ || !erreur)
            if (const ReponseGardee* r = Donnee(QuestionMessage(titre, texte, boutons))) return r->reponse;
        if (raison.isEmpty()) {
            QString r = erreur ? PremiereLigne(texte) : Mot();
            const QString cause = f_.e.TexteErreur.trimmed().isEmpty() ? RaisonNonTrouve(f_.e) : f_.e.TexteErreur;
            if (erreur && !cause.isEmpty()) r += QStringLiteral(" : ") + PremiereLigne(cause);
            Arrete(r);
        }
        // The answer that goes on least: Cancel, No, or OK on a box without
        // a choice.
        switch (boutons) {
        case Boutons::OkAnnuler:
        case Boutons::OuiNonAnnuler: return Reponse::Annuler;
        case Boutons::OuiNon: return Reponse::Non;
        case Boutons::Ok: break;
        }
        return Reponse::Ok;
    }
    std::optional<QString> Saisie(const QString& titre, const QString& invite, const QString& defaut) override {
        if (const ReponseGardee* r = Donnee(QuestionSaisie(titre, invite, defaut))) return r->saisie;
        Arrete(Mot());
        return std::nullopt;
    }
    void RemplaceTexteEditeur(int, int, const QString&) override { Arrete(Mot()); }
    int MarqueErreur(int debut, int longueur) override {
        Editeur* ed = f_.RTB1;
        const int d0 = ed->VersDocument(debut), d1 = ed->VersDocument(debut + longueur);
        // Red as F4 paints it, without moving the caret the user types at.
        ed->MarqueRouge(d0, d1 - d0, false);
        return ed->LigneDe(d0) + 1;
    }
    // A program to start, a file to open for writing or to delete, the
    // clipboard to set: nothing of them is done.
    bool Lance(const QString&, bool) override { return PasseEffet(); }
    bool EcriturePermise() override { return PasseEffet(); }
    void EcritPressePapier(const QString&) override { PasseEffet(); }
    // No events: keys typed during the live run wait for its end.
    void PompeEvenements() override {
        if (vue_) return HoteFenetre::PompeEvenements();
        if (raison.isEmpty() && montre_.elapsed() > DureeMaxDirect)
            Arrete(TextesDeVue(f_.regl.LangueMenus).Duree);
    }
    // The answers kept stay those of the window's last run.
    void DebutExecution() override {
        if (vue_) return DebutRun();
        f_.PreparePane();
    }
    void FinExecution() override {
        if (vue_) return FinRun();
        f_.FinRunPane(); // as after F4
        f_.pane->update();
    }

private:
    // The next answer kept, when it answers the same question.
    const ReponseGardee* Donnee(const QString& question) {
        if (!raison.isEmpty()) return nullptr;
        return suite_.Suivante(f_.ReponsesDuRun, question);
    }

    // An effect outside the drawing: the live run stops before it; a redraw of
    // the view passes it, as the window's last run has done it. False: not done.
    bool PasseEffet() {
        if (!vue_) Arrete(Mot());
        return false;
    }

    // The keyword of the line under way, as the level read it.
    QString Mot() const { return f_.e.ExecutionEnCours && f_.e.NiveauCourant > 0 ? f_.e.Ctx().Mot : QString(); }
    void Arrete(const QString& r) {
        if (raison.isEmpty()) {
            raison = r.isEmpty() ? QStringLiteral("?") : r;
            ligne = LigneDe(std::max(0, f_.e.PileFic[1].PosDebut - 1));
        }
        f_.e.ArretDemande = true;
    }

    Form1& f_;
    const bool vue_;
    SuiteGardee suite_;
    QElapsedTimer montre_;
};

} // namespace

TextesVue TextesDeVue(int langue) {
    const auto t = [langue](int n) { return LoadResString(n + langue); };
    return {t(371), t(372), t(373), t(374), t(375)};
}

QString TexteArretApercu(int langue, int ligne, const QString& raison) {
    return TextesDeVue(langue).Arret.arg(ligne).arg(raison);
}

Apercu::Apercu(Form1& f) : QObject(&f), f_(f) {
    setObjectName(QStringLiteral("Apercu"));
    Mnu_Vue = new QMenu(&f);
    Mnu_Vue->setObjectName(QStringLiteral("Mnu_Vue"));
    f.menuBar()->insertMenu(f.Mnu_Options->menuAction(), Mnu_Vue);
    Mnu_Ajuster = Mnu_Vue->addAction(QString());
    Mnu_Ajuster->setObjectName(QStringLiteral("Mnu_Ajuster"));
    Mnu_Ajuster->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_0));
    connect(Mnu_Ajuster, &QAction::triggered, this, [this] { AjusteDessin(); });
    Mnu_ApercuDirect = Mnu_Vue->addAction(QString());
    Mnu_ApercuDirect->setObjectName(QStringLiteral("Mnu_ApercuDirect"));
    Mnu_ApercuDirect->setCheckable(true);
    connect(Mnu_ApercuDirect, &QAction::triggered, this, &Apercu::ActiveDirect);

    Minuterie.setSingleShot(true);
    Minuterie.setInterval(DelaiDirect);
    connect(&Minuterie, &QTimer::timeout, this, &Apercu::ExecuteDirect);
    MinuterieTaille.setSingleShot(true);
    MinuterieTaille.setInterval(150);
    connect(&MinuterieTaille, &QTimer::timeout, this, &Apercu::Taille);

    // Only what the user types counts: the colouring and the loading of a
    // file change the text with ColorationActive cleared (so do undo, redo
    // and the command dialog, which tell of it by texteRemplace).
    connect(f.RTB1->document(), &QTextDocument::contentsChange, this, [this](int, int retires, int ajoutes) {
        if (f_.RTB1->ColorationActive && (retires || ajoutes)) TexteChange();
    });
    connect(f.recherche, &Recherche::texteRemplace, this, &Apercu::TexteChange);
    // A run of the window disables `Mnu_Visualiser` for its length: at its
    // start the live status and a pending live run go (F4 runs it all), after
    // its end a loaded file is fitted.
    connect(
        f.Mnu_Visualiser, &QAction::changed, this,
        [this] {
            if (f_.Mnu_Visualiser->isEnabled()) return FinDeRun();
            Minuterie.stop();
            f_.pane->EcritEtat(QString(), 0);
        },
        Qt::QueuedConnection);
    connect(f.pane, &Pane::molette, this, &Apercu::Molette);
    connect(f.pane, &Pane::glisse, this, &Apercu::Glisse);
    connect(f.pane, &Pane::tailleChangee, this, [this] {
        if (f_.NombreExecutions > 0) MinuterieTaille.start();
    });
    Legendes();
}

void Apercu::Legendes() {
    const TextesVue t = TextesDeVue(f_.regl.LangueMenus);
    Mnu_Vue->setTitle(t.Menu);
    Mnu_Ajuster->setText(t.Ajuster);
    Mnu_ApercuDirect->setText(t.Direct);
}

bool Apercu::DirectActif() const { return Mnu_ApercuDirect->isChecked(); }

void Apercu::TexteChange() {
    if (DirectActif()) Minuterie.start();
}

void Apercu::ActiveDirect(bool oui) {
    Mnu_ApercuDirect->setChecked(oui);
    if (!oui) {
        Minuterie.stop();
        f_.pane->EcritEtat(QString(), 0);
    }
    f_.s_.config->EcritConfig(CleCfg::ApercuDirect, oui ? QStringLiteral(" Oui") : QStringLiteral(" Non"));
}

// A run of the window disables `Mnu_Visualiser` from its first step to its
// last, before and after the interpreter's own flag.
bool Apercu::EnCours() const { return f_.EnExecution() || !f_.Mnu_Visualiser->isEnabled(); }

bool Apercu::Libre() const { return !EnCours() && !f_.DessinOuvert && f_.pane->surface(); }

CadreVue Apercu::Cadre() const {
    const Surface* s = f_.pane->surface();
    CadreVue c;
    c.largeurPx = s->LargeurPx();
    c.hauteurPx = s->HauteurPx();
    c.unitesParPixel = s->ScaleWidth / s->LargeurPx();
    c.editeurPx = f_.Mnu_Code->isChecked() ? f_.RTB1->width() : 0;
    c.origineX = f_.e.Repere.SourisOrigineX;
    c.origineY = f_.e.Repere.SourisOrigineY;
    return c;
}

void Apercu::Applique(const ReglageVue& r) {
    const double avant = f_.pane->EchelleVue();
    f_.pane->SetEchelleVue(avant * r.facteur);
    // At a limit of the scale the factor applied differs from the one asked.
    if (f_.pane->EchelleVue() != avant * r.facteur) return;
    f_.e.Repere.DecalageVueX = r.vueX;
    f_.e.Repere.DecalageVueY = r.vueY;
    RelanceVue();
}

void Apercu::Molette(QPointF pixel, double facteur) {
    if (Libre()) Applique(ZoomAutour(Cadre(), pixel, facteur));
}

void Apercu::Glisse(QPointF delta) {
    if (Libre()) Applique(::Glisse(Cadre(), delta));
}

void Apercu::AjusteDessin(bool agrandir) {
    if (Libre()) Applique(Ajuste(Cadre(), f_.pane->Encre(), agrandir));
}

void Apercu::Taille() {
    const Surface* s = f_.pane->surface();
    if (!s || EnCours()) return;
    if (s->LargeurPx() != f_.pane->width() || s->HauteurPx() != f_.pane->height()) RelanceVue();
}

void Apercu::ApresChargement() { ajusterApresRun_ = true; }

// A file just loaded: when its drawing is cut at the top or on the right,
// the view's scale grows about the pane's lower left corner until it shows.
// The sheet's corner stays where it was, and a view that was not panned
// stays so: the program's origin is the same. A drawing that also runs off
// the sheet's left or lower edge is fitted and centred instead. One cut only
// on those two edges is drawn about the corner on purpose and stays, but not
// in a view moved for the drawing before: there the edge is the view's.
void Apercu::FinDeRun() {
    if (!ajusterApresRun_ || !Libre()) return;
    ajusterApresRun_ = false;
    const CadreVue c = Cadre();
    const QRectF encre = f_.pane->Encre();
    const double facteur = FacteurDepuisCoin(c, encre);
    EtatRepere& r = f_.e.Repere;
    const bool coupeGaucheOuBas = encre.left() < -3 || encre.bottom() > c.hauteurPx + 3;
    const bool vueDeplacee = r.DecalageVueX + r.DecalageVueY != 0;
    if (coupeGaucheOuBas && (facteur > 1 || vueDeplacee)) return Applique(Ajuste(c, encre, false));
    if (facteur <= 1) return;
    if (vueDeplacee) return Applique(ZoomAutour(c, QPointF(0, c.hauteurPx), facteur));
    f_.pane->SetEchelleVue(f_.pane->EchelleVue() * facteur);
    RelanceVue();
}

void Apercu::ExecuteDirect() {
    if (!DirectActif()) return;
    if (EnCours()) {
        Minuterie.start();
        return;
    }
    SansQuestion(false, [this] {
        f_.FixeFichierPrincipal();
        FermeFichiers(f_.e);
        // The text's printer zoom as F4 takes it: 1 unless its ZoomIniI sets
        // it. The screen's zoom stays.
        f_.e.Repere.ZoomDepartI = 1.0f;
        LanceExecution(f_.e);
    });
}

// The view drawn again at its new scale, pan or size, without asking anything.
void Apercu::RelanceVue() {
    if (!EnCours()) SansQuestion(true, [this] { f_.RelanceSansZoom(); });
}

// A run through the host that never asks; the status line then says where
// and why it stopped, or nothing.
void Apercu::SansQuestion(bool vue, const std::function<void()>& lance) {
    Etat& e = f_.e;
    Hote* fenetre = e.Host;
    HoteApercu hote(f_, vue ? HoteApercu::Genre::Vue : HoteApercu::Genre::Direct);
    e.Host = &hote;
    lance();
    FermeFichiers(e);
    e.Host = fenetre;
    const CadreVue c = Cadre();
    f_.pane->EcritEtat(hote.raison.isEmpty() ? QString()
                                             : TexteArretApercu(f_.regl.LangueMenus, hote.ligne, hote.raison),
                       int(c.largeurPx - c.editeurPx));
}
