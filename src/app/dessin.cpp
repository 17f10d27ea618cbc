#include "app/dessin.h"

#include "app/boites.h"
#include "app/editeur.h"
#include "app/fenetre.h"
#include "app/pane.h"
#include "app/core/encodage.h"
#include "app/core/fichiers.h"
#include "drawing/plot.h"
#include "drawing/styles.h"
#include "drawing/surface.h"
#include "drawing/val.h"
#include "language/chaines.h"
#include "language/etat.h"
#include "language/nombre.h"
#include "language/vb.h"
#include "shapes/poly.h"

#include <QAction>
#include <QClipboard>
#include <QDateTime>
#include <QFileInfo>
#include <QFormLayout>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QMessageBox>
#include <QMouseEvent>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>

#include <cmath>

using namespace vb;

namespace {

const QString FinLigne = QStringLiteral("\r\n");

// The lines of a file; one empty line, as for an empty file, when it can't be read.
QStringList LitLignes(const QString& chemin) {
    QStringList l;
    if (!LitLignesDonnees(chemin, l)) l = QStringList{QString()};
    return l;
}

bool EstFinTrait(const QString& ligne) { return Trim(ligne).toUpper().startsWith(QLatin1String("'EOD")); }

// A number of the fields, a decimal comma read as a point.
double Nombre(const QString& champ) {
    QString t = Trim(champ);
    t.replace(u',', u'.');
    return ValNombre(t);
}

} // namespace

// --- the file's rules

CompteDessin CompteFichierDessin(const QStringList& lignes) {
    int commentaires = 0, marques = 0;
    QString derniere;
    for (const QString& l : lignes) {
        if (LTrim(l).startsWith(u'\'')) ++commentaires;
        if (EstFinTrait(l)) ++marques;
        if (!Trim(l).isEmpty()) derniere = l;
    }
    CompteDessin c;
    c.NbP = int(lignes.size() - 1) - 1 - commentaires;
    c.NbT = marques + (marques > 2 && !EstFinTrait(derniere) ? 1 : 0);
    return c;
}

QString FormatDecimales(const QString& champ) {
    const QString t = Trim(champ);
    if (t == QLatin1String("0")) return QStringLiteral("0");
    if (t == QLatin1String("1")) return QStringLiteral("0.0");
    if (t == QLatin1String("2")) return QStringLiteral("0.00");
    return QStringLiteral("0.0#");
}

QString NomFichierDessin(const QString& champ) {
    QString n = Trim(champ);
    if (n.isEmpty()) n = QStringLiteral("Dessin");
    if (!n.contains(u'.')) n += QStringLiteral(".txt");
    return n;
}

QString LignePlotDessin(const QString& nom, int lissage, const QString& sep1, const QString& sep2) {
    return QStringLiteral("Plot = ") + nom + sep2 + QStringLiteral("59") + sep1 + u'1' + sep1 + u'2' + sep2 +
           QString::number(lissage) + sep1 + u'1' + sep1 + u'1' + sep1 + sep1 + u'1';
}

QPointF ContraintSegment(QPointF depart, QPointF ici) {
    double dx = ici.x() - depart.x(), dy = ici.y() - depart.y();
    if (dx == 0) return ici;
    const double s = std::abs(dy / dx);
    if (s < 0.5) dy = 0;
    else if (s >= 2) dx = 0;
    else dy = std::copysign(std::abs(dx), dy);
    return depart + QPointF(dx, dy);
}

LectureDessin LitDessin(const QStringList& lignes) {
    LectureDessin r;
    int trait = 0;
    double x = 0, y = 0;
    for (int i = 0; i < lignes.size(); ++i) {
        if (EstFinTrait(lignes[i])) {
            if (r.pointsTraitOuvert > 0) ++trait;
            r.pointsTraitOuvert = 0;
            x = y = 0;
            continue;
        }
        if (LigneHorsPoints(lignes[i])) continue;
        const QStringList champs = lignes[i].split(u';');
        if (champs.size() < 2) continue;
        x = ValeurDonnee(champs[0], x);
        y = ValeurDonnee(champs[1], y);
        r.points.append({x, y, i, trait});
        ++r.pointsTraitOuvert;
    }
    return r;
}

// --- the dialog

FrmDessin::FrmDessin(Form1& fenetre, Boites* boites) : QDialog(&fenetre), f_(fenetre), boites_(boites) {
    setObjectName(QStringLiteral("FrmDessin"));
    setWindowFlags(Qt::Tool | Qt::WindowStaysOnTopHint | Qt::WindowTitleHint | Qt::WindowCloseButtonHint);
    QString titre = ChaineMenu(38);
    titre.remove(u'&');
    setWindowTitle(QStringLiteral("Mirel   ") + titre + QStringLiteral("   (F9)"));

    auto champ = [this](const char* nom, const QString& defaut) {
        auto* l = new QLineEdit(defaut, this);
        l->setObjectName(QString::fromLatin1(nom));
        return l;
    };
    TxtNom = champ("TxtNom", QStringLiteral("Dessin"));
    TxtCouleur = champ("TxtCouleur", QStringLiteral("NOIR"));
    TxtEpais = champ("TxtEpais", QStringLiteral("1"));
    TxtFond = champ("TxtFond", QStringLiteral("BLANC"));
    TxtDistance = champ("TxtDistance", QStringLiteral("1"));
    TxtLissage = champ("TxtLissage", QStringLiteral("0"));
    TxtDecimales = champ("TxtDecimales", QStringLiteral("A"));
    TxtRelatif = champ("TxtRelatif", QStringLiteral("N"));
    LblAide = new QLabel(this);
    LblAide->setWordWrap(true);
    Label10 = new QLabel(this);
    Label10->setObjectName(QStringLiteral("Label10"));
    CmdOK = new QPushButton(this);
    CmdOK->setObjectName(QStringLiteral("CmdOK"));
    CmdOK->setDefault(true);
    CmdAnnuler = new QPushButton(this);
    CmdAnnuler->setObjectName(QStringLiteral("CmdAnnuler"));
    CmdAnnuler->setAutoDefault(false);

    auto* v = new QVBoxLayout(this);
    v->addWidget(LblAide);
    const struct { int chaine; QLineEdit* champ; } rangs[] = {
        {173, TxtNom},   {186, TxtCouleur},  {187, TxtEpais},      {188, TxtFond},
        {174, TxtDistance}, {175, TxtLissage}, {189, TxtDecimales}, {190, TxtRelatif}};
    for (const auto& r : rangs) {
        auto* l = new QLabel(ChaineMenu(r.chaine), this);
        l->setWordWrap(true);
        v->addWidget(l);
        v->addWidget(r.champ);
    }
    v->addWidget(Label10);
    v->addWidget(CmdOK);
    v->addWidget(CmdAnnuler);
    v->addStretch();
    connect(CmdOK, &QPushButton::clicked, this, &FrmDessin::CmdOK_Click);
    connect(CmdAnnuler, &QPushButton::clicked, this, &FrmDessin::CmdAnnuler_Click);

    FrmMsgBox = [this](const QString& texte, bool ajout) {
        QMessageBox b(QMessageBox::Question, TitreBoite, texte, QMessageBox::NoButton, this);
        QPushButton* a = b.addButton(Chaine(182), QMessageBox::AcceptRole);
        QPushButton* r = b.addButton(Chaine(183), QMessageBox::DestructiveRole);
        QPushButton* n = b.addButton(Chaine(184), QMessageBox::RejectRole);
        a->setEnabled(ajout);
        b.setDefaultButton(ajout ? a : n);
        b.setEscapeButton(n);
        b.exec();
        return b.clickedButton() == a ? Choix::Ajouter : b.clickedButton() == r ? Choix::Remplacer : Choix::Annuler;
    };
    f_.pane->installEventFilter(this);
}

FrmDessin::~FrmDessin() = default;

QString FrmDessin::Chaine(int n) const { return LoadResString(n + f_.regl.LangueMessages); }
QString FrmDessin::ChaineMenu(int n) const { return LoadResString(n + f_.regl.LangueMenus); }

QString FrmDessin::CheminTravail() const { return f_.regl.DossierTravail + NomTravailDessin; }

// A name of the field as `Plot` will find it: beside the command file, or
// in the working folder while the text has no file.
QString FrmDessin::Chemin(const QString& nom) const {
    QString c = FichierDeCommande(f_.e, nom, QStringLiteral(".txt"));
    if (QFileInfo(c).isRelative()) c = f_.regl.DossierTravail + c;
    return c;
}

// String n with the file's name in place of `marque`, and its points and strokes.
QString FrmDessin::Annonce(int n, const char* marque, const QString& nom, const QStringList& lignes) const {
    const CompteDessin c = CompteFichierDessin(lignes);
    return Chaine(n)
        .replace(QLatin1String(marque), nom)
        .replace(QLatin1String("NbP"), QString::number(c.NbP))
        .replace(QLatin1String("NbT"), QString::number(c.NbT));
}

void FrmDessin::MajRefCur() {
    Label10->setText(QStringLiteral("RefCur = ") + StrF(float(f_.RefCurX - f_.e.Repere.SourisOrigineX)) +
                     QStringLiteral(", ") + StrF(float(f_.RefCurY - f_.e.Repere.SourisOrigineY)));
}

// The entries that would change the text or the window under the tool; the
// pane's own drag and wheel, that would move the picture under the strokes.
void FrmDessin::MenusDessin(bool ouvert) {
    f_.DessinOuvert = ouvert;
    f_.pane->Navigation(!ouvert);
    if (ouvert) {
        menusCoupes_ = {f_.Mnu_Dessin,  f_.Mnu_Ouvrir,    f_.Mnu_Nouveau, f_.Mnu_OuvrirMeter,
                        f_.Mnu_Masque, f_.Mnu_Liste_Fic, f_.Mnu_Langue,  f_.Mnu_IniCode};
        etatsMenus_.clear();
        for (QAction* a : menusCoupes_) {
            etatsMenus_.append(a->isEnabled());
            a->setEnabled(false);
        }
        return;
    }
    for (int i = 0; i < menusCoupes_.size(); ++i) menusCoupes_[i]->setEnabled(etatsMenus_[i]);
    menusCoupes_.clear();
    f_.Mnu_Code->setEnabled(true);
}

void FrmDessin::Verrouille(bool oui) {
    for (QLineEdit* l : {TxtCouleur, TxtEpais, TxtFond, TxtDistance, TxtLissage, TxtDecimales, TxtRelatif})
        l->setReadOnly(oui);
    CmdOK->setText(ChaineMenu(oui ? 179 : 178));
    LblAide->setText(ChaineMenu(oui ? 180 : 176));
    // A tenth of the screen's width, on its right side, as high as the
    // wrapped texts need; wider on a screen too low for them.
    if (const QScreen* ecran = f_.screen()) {
        const QRect r = ecran->availableGeometry();
        const int haut = r.height() - 60;
        int largeur = std::max(r.width() / 10, minimumSizeHint().width());
        while (layout()->totalHeightForWidth(largeur) > haut && largeur < r.width() / 3) largeur += 20;
        setGeometry(r.right() - largeur + 1, r.top() + 30, largeur,
                    std::min(haut, layout()->totalHeightForWidth(largeur)));
    }
}

void FrmDessin::Ouvre() {
    if (isVisible()) {
        raise();
        activateWindow();
        return;
    }
    MenusDessin(true);
    pointsTrait_ = 0;
    dessin_ = false;
    Verrouille(false);
    CmdAnnuler->setText(ChaineMenu(177));
    MajRefCur();
    show();
    raise();
    activateWindow();
}

bool FrmDessin::OuvreTravail(QIODevice::OpenMode mode) {
    travail_.close();
    travail_.setFileName(CheminTravail());
    return travail_.open(QIODevice::WriteOnly | mode);
}

void FrmDessin::Ecrit(const QString& ligne) {
    travail_.write((ligne + FinLigne).toUtf8());
    travail_.flush();
}

void FrmDessin::CmdOK_Click() {
    if (dessin_) Enregistre();
    else Reglages();
}

// The first OK: the settings read and locked, the work file started or
// taken from the file of that name.
void FrmDessin::Reglages() {
    Etat& e = f_.e;
    // 1.
    try {
        couleur_ = CouleurParametre(e, TxtCouleur->text());
        fond_ = LitCouleur(e, TxtFond->text()).value_or(-1);
        largeur_ = Trim(TxtEpais->text()).isEmpty() ? 1 : std::max(1, LitEpaisseur(e, TxtEpais->text()));
    } catch (const std::exception&) {
        e.TexteErreur.clear();
    }
    distance_ = std::clamp(Nombre(TxtDistance->text()), 0.0, 20.0);
    lissage_ = int(std::lround(std::clamp(Nombre(TxtLissage->text()), 0.0, 10.0)));
    TxtDistance->setText(StrF(float(distance_)));
    TxtLissage->setText(QString::number(lissage_));
    Verrouille(true);
    dessin_ = true;
    // 2.
    const QString nom = NomFichierDessin(TxtNom->text());
    const QString chemin = Chemin(nom);
    nomCharge_.clear();
    pointsTrait_ = 0;
    bool charge = false;
    if (QFileInfo(chemin).isFile()) {
        QStringList lignes = LitLignes(chemin);
        if (boites_ && boites_->Message(this, TitreBoite, Annonce(185, "Fic_Dess", nom, lignes), Boutons::OuiNon,
                                        Icone::Question) == Reponse::Oui) {
            QString derniere;
            for (const QString& l : lignes)
                if (!Trim(l).isEmpty()) derniere = l;
            if (!EstFinTrait(derniere)) {
                // "'EOD" on a line of its own, the file ending with a line end.
                if (lignes.back().isEmpty()) lignes.back() = QStringLiteral("'EOD");
                else lignes.append(QStringLiteral("'EOD"));
                lignes.append(QString());
            }
            charge = EcritOctets(CheminTravail(), lignes.join(FinLigne).toUtf8()) && OuvreTravail(QIODevice::Append);
            if (charge) {
                nomCharge_ = nom;
                ReprendEtat(lignes);
                Rejoue();
            }
        }
    }
    if (!charge && OuvreTravail(QIODevice::Truncate)) {
        const QDateTime t = QDateTime::currentDateTime();
        Ecrit(QStringLiteral("' Fichier de données dessin pour Mirel / Drawing data file for Mirel ") +
              t.toString(QStringLiteral("dd/MM/yyyy")) + u' ' + t.toString(QStringLiteral("HH:mm:ss")));
    }
    // 3.
    format_ = FormatDecimales(TxtDecimales->text());
    const QString r = Trim(TxtRelatif->text()).toUpper();
    relatif_ = r.startsWith(u'O') || r.startsWith(u'R') || r.startsWith(u'Y');
    // 4.
    f_.Mnu_Code->setEnabled(false);
    MajRefCur();
    CmdOK->setFocus();
}

// The second OK: the work file becomes the named file, or is added to it.
void FrmDessin::Enregistre() {
    dessin_ = false;
    travail_.close();
    const QString nom = NomFichierDessin(TxtNom->text());
    const QString chemin = Chemin(nom);
    QFile cible(chemin), travail(CheminTravail());
    bool fait = true;
    if (cible.exists()) {
        const bool ajout = nom.compare(nomCharge_, Qt::CaseInsensitive) != 0;
        switch (FrmMsgBox(Annonce(181, "t$", nom, LitLignes(chemin)), ajout)) {
        case Choix::Ajouter:
            fait = cible.open(QIODevice::WriteOnly | QIODevice::Append) &&
                   cible.write((LitLignes(CheminTravail()).join(FinLigne) + QStringLiteral("'EOD '") + FinLigne)
                                   .toUtf8()) >= 0;
            cible.close();
            if (fait) travail.remove();
            break;
        case Choix::Remplacer:
            fait = cible.remove() && travail.rename(chemin);
            break;
        case Choix::Annuler:
            // Nothing done: the drawing goes on.
            dessin_ = OuvreTravail(QIODevice::Append);
            return;
        }
    } else {
        fait = travail.rename(chemin);
    }
    if (!fait) {
        // The system's reason; the drawing is still in the work file and goes on.
        const QString raison = cible.error() != QFileDevice::NoError ? cible.errorString() : travail.errorString();
        if (boites_)
            boites_->Message(this, TitreBoite, chemin + QStringLiteral("\n") + raison, Boutons::Ok,
                             Icone::Exclamation);
        dessin_ = OuvreTravail(QIODevice::Append);
        return;
    }
    lignePlot_ = LignePlotDessin(nom, lissage_);
    QGuiApplication::clipboard()->setText(lignePlot_);
    Ferme();
}

void FrmDessin::CmdAnnuler_Click() {
    travail_.close();
    QFile::remove(CheminTravail());
    Ferme();
}

void FrmDessin::reject() { CmdAnnuler_Click(); }

void FrmDessin::Ferme() {
    dessin_ = false;
    pointsTrait_ = 0;
    Verrouille(false);
    hide();
    MenusDessin(false);
    f_.Visualiser();
}

// --- drawing

void FrmDessin::Trace(QPointF a, QPointF b, int couleur) {
    Surface* s = f_.pane->surface();
    if (!s || couleur == -1) return;
    const int garde = s->DrawWidth;
    s->DrawWidth = largeur_;
    s->Line(a.x(), a.y(), b.x(), b.y(), couleur);
    s->DrawWidth = garde;
    f_.pane->update();
}

void FrmDessin::EcritPoint(QPointF p, bool relatif) {
    const QString fx = FormatNombrePoint(p.x() - f_.RefCurX, format_);
    const QString fy = FormatNombrePoint(p.y() - f_.RefCurY, format_);
    const double vx = fx.toDouble(), vy = fy.toDouble();
    if (relatif)
        Ecrit(u'r' + FormatNombrePoint(vx - ecritX_, format_) + QStringLiteral("; r") +
              FormatNombrePoint(vy - ecritY_, format_));
    else
        Ecrit(fx + QStringLiteral("; ") + fy);
    ecritX_ = vx;
    ecritY_ = vy;
    dernier_ = p;
}

bool FrmDessin::Appui(QPointF p, Qt::MouseButton bouton, Qt::KeyboardModifiers mods) {
    if (!dessin_ || !(mods & Qt::ShiftModifier)) return false;
    MajRefCur();
    if ((mods & Qt::AltModifier) && pointsTrait_ > 0) {
        // A broken line: the segment from the last point, kept straight by
        // the right button (or Ctrl, as the tool's help text tells).
        const bool droit = bouton == Qt::RightButton || (mods & Qt::ControlModifier);
        const QPointF ici = droit ? ContraintSegment(dernier_, p) : p;
        Trace(dernier_, ici, couleur_);
        EcritPoint(ici, relatif_);
        ++pointsTrait_;
        return true;
    }
    // A new stroke: the one before is ended, the point is written as it is.
    if (pointsTrait_ > 0) Ecrit(QStringLiteral("'EOD"));
    Trace(p, p, couleur_);
    EcritPoint(p, false);
    pointsTrait_ = 1;
    return true;
}

bool FrmDessin::Deplacement(QPointF p, Qt::MouseButtons boutons, Qt::KeyboardModifiers mods) {
    if (!dessin_ || !(mods & Qt::ShiftModifier) || !(boutons & Qt::LeftButton) ||
        (mods & (Qt::ControlModifier | Qt::AltModifier)))
        return false;
    if (pointsTrait_ == 0) return Appui(p, Qt::LeftButton, Qt::ShiftModifier);
    const QPointF d = p - dernier_;
    if (p == dernier_ || std::hypot(d.x(), d.y()) < distance_) return true;
    Trace(dernier_, p, couleur_);
    EcritPoint(p, relatif_);
    ++pointsTrait_;
    return true;
}

// The last point, its stroke and the values written, from the lines of the work file.
void FrmDessin::ReprendEtat(const QStringList& lignes) {
    const LectureDessin l = LitDessin(lignes);
    pointsTrait_ = l.pointsTraitOuvert;
    if (l.points.isEmpty()) return;
    const PointDessin& p = l.points.back();
    ecritX_ = p.x;
    ecritY_ = p.y;
    dernier_ = QPointF(p.x + f_.RefCurX, p.y + f_.RefCurY);
}

void FrmDessin::EffacePoint() {
    if (!dessin_) return;
    travail_.close();
    QStringList lignes = LitLignes(CheminTravail());
    const LectureDessin l = LitDessin(lignes);
    if (!l.points.isEmpty()) {
        // The last point's segment from the one before it in the same stroke,
        // drawn over in the background colour.
        const PointDessin& p = l.points.back();
        const qsizetype n = l.points.size();
        const PointDessin& a = n > 1 && l.points[n - 2].trait == p.trait ? l.points[n - 2] : p;
        const QPointF ref(f_.RefCurX, f_.RefCurY);
        Trace(QPointF(a.x, a.y) + ref, QPointF(p.x, p.y) + ref, fond_);
        lignes.removeAt(p.ligne);
        EcritOctets(CheminTravail(), lignes.join(FinLigne).toUtf8());
    }
    OuvreTravail(QIODevice::Append);
    ReprendEtat(lignes);
}

// The work file drawn on the pane by the same `Plot` line, about RefCur,
// in the tool's colour and width, the run's state left as it was.
void FrmDessin::Rejoue() {
    Surface* s = f_.pane->surface();
    if (!s) return;
    Etat e = f_.e;
    e.NiveauCourant = 1;
    e.Surf = s;
    e.Separateur1 = QStringLiteral(",");
    e.Separateur2 = QStringLiteral("§");
    e.Styles = EtatStyles();
    e.Styles.CouleurDefaut = e.Styles.CouleurCmd = couleur_;
    e.Styles.EpaisCourante = float(largeur_);
    e.Repere.OrigineX = f_.RefCurX;
    e.Repere.OrigineY = f_.RefCurY;
    e.Repere.CTx = e.Repere.CTy = 0;
    e.Repere.AngRotDefaut = 0;
    // The work file by its bare name, found beside a main file in the working
    // folder: the folder's path may hold the Plot line's separators.
    e.FichierPrincipal = CheminTravail();
    const QString ligne = LignePlotDessin(QFileInfo(CheminTravail()).fileName(), lissage_);
    e.LigneCourante = ligne.mid(ligne.indexOf(u'=') + 1);
    const int garde = s->DrawWidth;
    s->DrawWidth = largeur_;
    try {
        CmdPlot(e);
    } catch (const std::exception&) {
    }
    s->DrawWidth = garde;
    f_.pane->update();
}

// --- keys and the pane's mouse

void FrmDessin::ApresRun() {
    if (dessin_) Rejoue();
    MajRefCur();
}

void FrmDessin::ReprendClavier() {
    Label10->setText(QStringLiteral("KeyCode = 59"));
    activateWindow();
    CmdOK->setFocus();
}

void FrmDessin::keyPressEvent(QKeyEvent* ev) {
    const Qt::KeyboardModifiers m = ev->modifiers();
    switch (ev->key()) {
    case Qt::Key_Backspace:
    case Qt::Key_Delete:
        EffacePoint();
        return;
    case Qt::Key_F4:
        f_.Visualiser();
        return;
    case Qt::Key_F5:
    case Qt::Key_F12:
        if (!dessin_) f_.Mnu_Code->trigger();
        return;
    case Qt::Key_F7:
        if (dessin_) return;
        if (m & Qt::ControlModifier) f_.ZoomDepartRun();
        else f_.Mnu_Zoom_Click();
        return;
    case Qt::Key_F8:
        if (dessin_) return;
        if (m & Qt::ControlModifier) f_.RefCurOrigine();
        else f_.Mnu_RefCurseur_Click();
        return;
    default:
        QDialog::keyPressEvent(ev);
    }
}

bool FrmDessin::eventFilter(QObject* objet, QEvent* ev) {
    if (objet != f_.pane || !dessin_) return QDialog::eventFilter(objet, ev);
    switch (ev->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick: {
        auto* m = static_cast<QMouseEvent*>(ev);
        const bool pris = Appui(f_.VersSurface(m->position()), m->button(), m->modifiers());
        // A quick second click is a click of the drawing, not the window's double click.
        return pris && ev->type() == QEvent::MouseButtonDblClick;
    }
    case QEvent::MouseMove: {
        auto* m = static_cast<QMouseEvent*>(ev);
        Deplacement(f_.VersSurface(m->position()), m->buttons(), m->modifiers());
        return false;
    }
    case QEvent::MouseButtonRelease:
        activateWindow();
        CmdOK->setFocus();
        return false;
    default:
        return false;
    }
}

FrmDessin* Mnu_Dessin_Click(Form1& fenetre, Boites* boites) {
    if (!fenetre.dessin) fenetre.dessin = new FrmDessin(fenetre, boites);
    fenetre.dessin->Ouvre();
    return fenetre.dessin;
}
