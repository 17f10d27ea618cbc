#include "app/commande_dialogue.h"

#include "app/boites.h"
#include "app/core/aide.h"
#include "app/core/inclusion.h"
#include "app/editeur.h"
#include "app/fenetre.h"
#include "app/impression.h"
#include "app/recherche.h"
#include "language/chaines.h"
#include "language/constantes.h"
#include "language/etat.h"

#include <QCloseEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPainterPath>
#include <QPushButton>
#include <QRegularExpression>
#include <QTextBlock>
#include <QTextDocument>
#include <QVBoxLayout>

#include <cmath>

namespace {

constexpr double DegRad = Litteraux::DegRad, Pi = Litteraux::Pi;

bool EstOptionnel(const QString& libelle) {
    const QString t = libelle.trimmed();
    return t.startsWith(u'[') && t.endsWith(u']') && !t.contains(u'\n') && !t.contains(u'\r');
}

// The position of the first comparison sign outside double quotes; -1 when none.
int SigneComparaison(const QString& t) {
    bool guillemets = false;
    for (int i = 0; i < t.size(); ++i) {
        if (t[i] == u'"') guillemets = !guillemets;
        else if (!guillemets && QStringView(u"=<>").contains(t[i])) return i;
    }
    return -1;
}

// "If a > b Then c": expression, comparison (one or two signs), expression,
// the word GOTO or THEN, and the rest.
QStringList PartiesCondition(const QString& reste) {
    const int c = SigneComparaison(reste);
    if (c < 0) return {reste.trimmed()};
    int l = 1;
    if (c + 1 < reste.size() && QStringView(u"=<>").contains(reste[c + 1])) l = 2;
    const QString apres = reste.mid(c + l);
    static const QRegularExpression mot(QStringLiteral("(^|\\s)(GOTO|THEN)(\\s|$)"),
                                        QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch m = mot.match(apres);
    QStringList r = {reste.left(c).trimmed(), reste.mid(c, l)};
    if (!m.hasMatch()) return r << apres.trimmed();
    r << apres.left(m.capturedStart(2)).trimmed() << m.captured(2);
    // Nothing behind the word (ElseIf's form has no row for it): no fifth part.
    const QString suite = apres.mid(m.capturedEnd(2)).trimmed();
    if (!suite.isEmpty()) r << suite;
    return r;
}

// The list form: every command, then the external ones.
void FormeListe(ModeleMasque& m, const Reglages& r, int decalage, const QString& titre) {
    const DescriptionParametres d = DecoupeDescription(TableChaines::Standard().Texte(341 + decalage));
    m.Sorte = ModeleMasque::Genre::Liste;
    m.Titre = titre.isEmpty() ? d.Tete.section(u';', 0, 0) : titre;
    m.Commentaire = d.Commentaire + QStringLiteral("\n\nListe des commandes externes: ") +
                    r.CommandesExternes.join(QStringLiteral(", ")) + u'.';
    m.Valide = false;
}

QString Nombre1(double v) { return QString::number(v, 'f', 1); }

} // namespace

// --- the line under the caret

LigneSousCaret LigneLogique(const QTextDocument& doc, int ligneCaret) {
    LigneSousCaret l;
    QTextBlock b = doc.findBlockByNumber(ligneCaret);
    if (!b.isValid()) return l;
    l.Debut = b.position();
    QString texte;
    for (;;) {
        const QString t = b.text();
        const int c = Editeur::DebutCommentaire(t);
        if (c >= 0) {
            const QString avant = texte + t.left(c);
            const QString net = avant.trimmed();
            const bool variable = net.startsWith(u'%') && net.size() >= 3;
            const bool ecrit = net.toUpper().startsWith(QLatin1String("TEXTE"));
            if (net.isEmpty()) {
                // A comment line: the dialog shows the list of commands.
                texte += t;
                l.Fin = b.position() + int(t.size());
                break;
            }
            if (!variable && !ecrit) {
                // The comment behind the command stays where it is.
                texte = avant;
                l.Fin = b.position() + c;
                break;
            }
        }
        const bool suite = t.endsWith(QLatin1String(" _")) && b.next().isValid();
        if (!suite) {
            texte += t;
            l.Fin = b.position() + int(t.size());
            break;
        }
        texte += t.chopped(2);
        b = b.next();
    }
    l.Texte = Editeur::TexteHorsDocument(texte.remove(u'\t')); // as the file holds it
    return l;
}

// --- descriptions

std::optional<QString> Masque(const QString& cle, const Reglages& r, int decalage, bool& valide) {
    valide = true;
    const TableChaines& t = TableChaines::Standard();
    auto rangee = [&](int n) -> QString {
        const QString d = t.Texte(n + decalage);
        if (d.isEmpty() || d == QLatin1String(".")) {
            valide = false;
            return QStringLiteral("Commande non encore traitée");
        }
        return d;
    };
    if (cle.startsWith(u'\'')) return rangee(301);
    if (cle.startsWith(u'%')) return rangee(348);
    // The oriented values have a description of their own.
    if (cle == QLatin1String("VALR") || cle == QLatin1String("VALD")) return rangee(357);
    if (cle == QLatin1String("VAL1R") || cle == QLatin1String("VAL1D")) return rangee(358);
    // "QA%": a group whose last word came from a variable.
    const bool groupe = cle.endsWith(u'%');
    const QString mot = groupe ? cle.chopped(1) : cle;
    for (const RangeeSyntaxe& s : RangeesSyntaxe()) {
        const QStringList mots = QString::fromLatin1(s.Mots).split(u' ');
        if (s.Syntaxe != 201 && (groupe ? mots.first() == mot : mots.contains(mot))) return rangee(s.Description);
    }
    for (int i = 0; i < r.CommandesExternes.size(); ++i) {
        if (r.CommandesExternes[i].toUpper() != cle) continue;
        const std::optional<QString> d = DescriptionCommandeExterne(r, i + 1, r.LangueMessages / PasLangue + 1,
                                                                   decalage / PasLangue + 1);
        if (d) return d;
        valide = false;
        return t.Texte(359 + decalage);
    }
    valide = false;
    return std::nullopt;
}

// --- the form's model

void RepAVLV(QList<RangMasque>& rangs, int n) {
    if (n < 3 || n >= rangs.size()) return;
    RangMasque& avant = rangs[n - 2];
    if (!avant.Libelle.startsWith(QLatin1String("  "))) avant.Libelle.prepend(QStringLiteral("  "));
    QString& angle = rangs[n - 1].Valeur;
    QString& longueur = rangs[n].Valeur;
    if (angle.trimmed().isEmpty() || angle.contains(u'°') || longueur.trimmed().isEmpty()) return;
    if (rangs[n - 2].Valeur.contains(u'R', Qt::CaseInsensitive) ||
        rangs[n - 3].Valeur.contains(u'R', Qt::CaseInsensitive))
        return;
    const auto px = NombreTape(rangs[n - 3].Valeur), py = NombreTape(rangs[n - 2].Valeur);
    const auto qx = NombreTape(angle), qy = NombreTape(longueur);
    if (!px || !py || !qx || !qy) return;
    const double dx = *qx - *px, dy = *qy - *py, d = std::hypot(dx, dy);
    double a = d == 0 ? 0 : std::asin(dy / d);
    if (dx < 0) a = Pi - a;
    angle = Nombre1(a / DegRad) + u'°';
    longueur = Nombre1(d);
}

ModeleMasque ConstruitMasque(const QString& ligne, const Reglages& r, int decalage, const QString& sep1,
                             const QString& sep2) {
    ModeleMasque m;
    m.Sep1 = sep1;
    m.Sep2 = sep2;
    m.Decalage = decalage;
    int n = 0;
    while (n < ligne.size() && ligne[n] == u' ') ++n;
    m.Prefixe = ligne.left(n);
    const QString corps = ligne.mid(n);
    if (corps.trimmed().isEmpty()) {
        FormeListe(m, r, decalage, {});
        return m;
    }
    if (corps.startsWith(u'\'')) {
        FormeListe(m, r, decalage, TableChaines::Standard().Texte(301 + decalage).section(u';', 0, 0));
        return m;
    }
    // The keyword ends at the first "=" (a condition's at its first blank), else at the first blank.
    const QString haut = corps.toUpper();
    const bool condition = haut.startsWith(QLatin1String("IF")) || haut.startsWith(QLatin1String("ELSEIF"));
    int fin = condition ? -1 : int(corps.indexOf(u'='));
    m.Egal = fin >= 0;
    if (fin < 0) fin = int(corps.indexOf(u' '));
    if (fin < 0) fin = int(corps.size());
    m.Mot = corps.left(fin).trimmed();
    QString reste = corps.mid(fin + 1);
    m.Cle = m.Mot.toUpper();
    const int pc = int(m.Cle.indexOf(u'%', 1));
    if (pc > 0) m.Cle = m.Cle.left(pc + 1);

    bool valide = false;
    const std::optional<QString> description = Masque(m.Cle, r, decalage, valide);
    if (!description) {
        FormeListe(m, r, decalage, ligne);
        return m;
    }
    m.Valide = valide;

    // The parameters, one behind each first separator.
    QStringList params;
    QString titreMot = m.Mot;
    if (m.Cle.startsWith(u'%')) {
        m.Sorte = ModeleMasque::Genre::Variable;
        const QString signe = m.Egal && (reste.startsWith(u'=') || reste.startsWith(u'<'))
                                  ? QStringLiteral("=") + reste.left(1)
                                  : (m.Egal ? QStringLiteral("=") : QString());
        if (signe.size() == 2) reste = reste.mid(1);
        params = {corps.left(fin), signe, reste};
        titreMot += u' ' + signe;
    } else if (condition) {
        m.Sorte = ModeleMasque::Genre::Condition;
        params = PartiesCondition(reste);
    } else if (m.Cle == QLatin1String("INPUT")) {
        m.Sorte = ModeleMasque::Genre::Saisie;
        QString signe;
        if (m.Egal) {
            signe = QStringLiteral("=");
        } else {
            reste = reste.trimmed().isEmpty() ? QString() : reste;
            const QString net = reste.trimmed();
            if (net.startsWith(u'<')) {
                signe = QStringLiteral("<");
                reste = reste.mid(reste.indexOf(u'<') + 1);
            }
        }
        params = QStringList{signe} + (reste.isEmpty() ? QStringList() : reste.split(sep1));
    } else {
        m.Sorte = ModeleMasque::Genre::Commande;
        if (!reste.isEmpty()) params = reste.split(sep1);
        // A polygon's colour is read only with an odd count: without it, the
        // points keep their rows behind an empty colour row.
        if ((m.Cle == QLatin1String("POLY") || m.Cle == QLatin1String("POLYP")) && !params.isEmpty() &&
            params.size() % 2 == 0)
            params.prepend(QString());
    }

    const DescriptionParametres d = DecoupeDescription(*description);
    const QStringList champs = d.Tete.split(u';');
    m.Titre = champs.value(0) + QStringLiteral(" : ") + titreMot;
    const bool joint = m.Sorte == ModeleMasque::Genre::Variable || m.Sorte == ModeleMasque::Genre::Condition ||
                       m.Cle == QLatin1String("TEXTE") || champs.last().trimmed() == QLatin1String("[...]");
    for (int f = 1; f < champs.size(); ++f) {
        const QString& champ = champs[f];
        // A command without parameters has one blank field and no row; a blank
        // field among others still holds its parameter's value.
        if (champ.trimmed().isEmpty() && champs.size() == 2) continue;
        const int k = f - 1;
        QString p = params.value(k);
        if (f == champs.size() - 1 && joint && params.size() > k + 1) p = params.mid(k).join(sep1);
        const QStringList alternatives = champ.split(u'$');
        const QStringList sous = m.Sorte == ModeleMasque::Genre::Commande || m.Sorte == ModeleMasque::Genre::Saisie
                                     ? p.split(sep2)
                                     : QStringList{p};
        for (int a = 0; a < alternatives.size(); ++a) {
            if (alternatives[a] == QLatin1String("%%")) continue;
            RangMasque rang;
            rang.Libelle = alternatives[a];
            rang.Second = a > 0;
            rang.Optionnel = EstOptionnel(rang.Libelle);
            rang.Champ = k;
            rang.Valeur = a == alternatives.size() - 1 ? sous.mid(a).join(sep2) : sous.value(a);
            m.Rangs << rang;
        }
    }
    if (m.Cle == QLatin1String("BEZIER") || m.Cle == QLatin1String("BEZIERP") || m.Cle == QLatin1String("BEZIER%")) {
        RepAVLV(m.Rangs, 11);
        RepAVLV(m.Rangs, 15);
    } else if (m.Cle == QLatin1String("BEZIER_AGR")) {
        RepAVLV(m.Rangs, 17);
        RepAVLV(m.Rangs, 21);
    }

    m.Commentaire = d.Commentaire;
    const QChar x = d.Gras.isEmpty() ? QChar(u'L') : d.Gras[0];
    m.Alignement = x == u'R' ? Qt::AlignRight : x == u'C' ? Qt::AlignHCenter : Qt::AlignLeft;
    m.CommentaireGras = d.Gras.size() > 1 && d.Gras[1] == u'B';
    if (!d.Image.isEmpty()) {
        const QStringList v = d.Image.split(u',');
        bool ok = v.size() == 5;
        double x5[5] = {};
        for (int i = 0; ok && i < 5; ++i) {
            const std::optional<double> lu = NombreTape(v[i]);
            ok = lu.has_value();
            x5[i] = lu.value_or(0);
        }
        if (ok && x5[0] >= 1) {
            m.Image = int(x5[0]);
            m.PlaceImage = QRectF(x5[1], x5[2], x5[3], x5[4]);
        }
    }
    return m;
}

QString AssembleLigne(const ModeleMasque& m) {
    // The parameters from their rows, from the last row back: a second
    // separator only ahead of a value or of a later sub-parameter that was put
    // in, so that empty trailing sub-parameters leave none behind while a value
    // that ends in the separator keeps it. Trailing empty parameters dropped.
    QStringList params;
    for (auto r = m.Rangs.crbegin(); r != m.Rangs.crend(); ++r) {
        while (params.size() <= r->Champ) params << QString();
        QString& p = params[r->Champ]; // what stands behind, of this parameter
        const bool separateur = r->Second && (!r->Valeur.isEmpty() || !p.isEmpty());
        p.prepend(r->Valeur);
        if (separateur) p.prepend(m.Sep2);
    }
    while (!params.isEmpty() && params.last().isEmpty()) params.removeLast();

    switch (m.Sorte) {
    case ModeleMasque::Genre::Variable: {
        QString nom = params.value(0);
        int n = 0;
        while (n < nom.size() && nom[n] == u' ') ++n;
        if (!nom.mid(n).startsWith(u'%')) nom.insert(n, u'%');
        return m.Prefixe + nom + params.value(1) + params.mid(2).join(m.Sep1);
    }
    case ModeleMasque::Genre::Condition: {
        QString t = m.Prefixe + m.Mot;
        for (int i = 0; i < params.size(); ++i) {
            const QString p = params[i].trimmed();
            if (p.isEmpty()) continue;
            const bool colle = i == 2 && m.Cle == QLatin1String("IF") && (p.startsWith(u'-') || p.startsWith(u'+'));
            t += (colle ? QString() : QStringLiteral(" ")) + p;
        }
        return t;
    }
    case ModeleMasque::Genre::Saisie: {
        const QString reste = params.mid(1).join(m.Sep1);
        const QString signe = params.value(0).trimmed();
        if (signe.isEmpty()) return m.Prefixe + m.Mot + (reste.isEmpty() ? QString() : u' ' + reste.trimmed());
        return m.Prefixe + m.Mot + u' ' + signe + reste;
    }
    default: break;
    }
    if ((m.Cle == QLatin1String("POLY") || m.Cle == QLatin1String("POLYP")) && !params.isEmpty() &&
        params.first().isEmpty() && (params.size() - 1) % 2 == 0)
        params.removeFirst();
    const QString t = params.join(m.Sep1);
    if (m.Egal) return m.Prefixe + m.Mot + QStringLiteral(" =") + t;
    return m.Prefixe + m.Mot + (t.isEmpty() ? QString() : u' ' + t);
}

// --- the form

namespace {

// The pictures of the strip `Img_Masques`: drawn, so that they follow the
// form's size. 1: the rotation about 0,0; 2: a scale arc; 3: a frame; 4: a curve.
void DessineImage(QPainter& p, int n, const QRectF& r) {
    p.save();
    p.setRenderHint(QPainter::Antialiasing);
    p.fillRect(r, QColor(250, 250, 240));
    p.setPen(QPen(Qt::gray, 1));
    p.drawRect(r);
    const QPointF o(r.left() + r.width() * 0.3, r.bottom() - r.height() * 0.3);
    const double l = std::min(r.width(), r.height()) * 0.6;
    p.setPen(QPen(Qt::black, 1));
    p.drawLine(o, o + QPointF(l, 0));
    p.drawLine(o, o - QPointF(0, l));
    p.setPen(QPen(Qt::blue, 1.5));
    switch (n) {
    case 1: {
        p.drawLine(o, o + QPointF(l * std::cos(0.5), -l * std::sin(0.5)));
        p.drawArc(QRectF(o.x() - l * 0.6, o.y() - l * 0.6, l * 1.2, l * 1.2), 0, int(0.5 / DegRad * 16));
        break;
    }
    case 2: p.drawArc(QRectF(o.x() - l * 0.2, o.y() - l * 0.8, l, l), 30 * 16, 120 * 16); break;
    case 3: p.drawRect(QRectF(o.x() + l * 0.1, o.y() - l * 0.7, l * 0.7, l * 0.5)); break;
    default: {
        QPainterPath c(o);
        c.cubicTo(o + QPointF(l * 0.2, -l), o + QPointF(l * 0.6, 0), o + QPointF(l, -l * 0.8));
        p.drawPath(c);
    }
    }
    p.restore();
}

} // namespace

FrmCmd::FrmCmd(QWidget* parent, ModeleMasque modele, Boites& boites, const QString& dossier)
    : QDialog(parent), m_(std::move(modele)), boites_(boites), dossier_(dossier) {
    setObjectName(QStringLiteral("FrmCmd"));
    auto* v = new QVBoxLayout(this);
    Label1 = new QLabel(m_.Titre, this);
    QFont gras = Label1->font();
    gras.setBold(true);
    gras.setPointSizeF(gras.pointSizeF() * 1.15);
    Label1->setFont(gras);
    Label1->setWordWrap(true);
    v->addWidget(Label1);

    auto* grille = new QGridLayout;
    grille->setColumnStretch(1, 1);
    QWidget* avant = nullptr;
    for (int i = 0; i < m_.Rangs.size(); ++i) {
        const RangMasque& r = m_.Rangs[i];
        auto* l = new QLabel(r.Libelle, this);
        QFont f = l->font();
        f.setBold(!r.Optionnel);
        if (r.Optionnel) f.setPointSize(8);
        l->setFont(f);
        auto* e = new QLineEdit(r.Valeur, this);
        l->setBuddy(e);
        // Wide enough for its value, never narrower than a short number.
        const QFontMetrics fm(e->font());
        e->setMinimumWidth(std::clamp(fm.horizontalAdvance(r.Valeur + QStringLiteral("MM")), fm.horizontalAdvance(
                                      QStringLiteral("0000000000")), 700));
        grille->addWidget(l, i, 0, Qt::AlignRight);
        grille->addWidget(e, i, 1);
        if (avant) setTabOrder(avant, e);
        avant = e;
        ParaTxt << l;
        ParaVal << e;
        e->installEventFilter(this);
        connect(e, &QLineEdit::textEdited, this, &FrmCmd::ActiveOK);
    }
    v->addLayout(grille);

    Commentaire = new QLabel(m_.Commentaire, this);
    Commentaire->setWordWrap(true);
    Commentaire->setAlignment(m_.Alignement | Qt::AlignTop);
    QPalette pal = Commentaire->palette();
    pal.setColor(QPalette::WindowText, Qt::blue);
    Commentaire->setPalette(pal);
    QFont fc = Commentaire->font();
    fc.setBold(m_.CommentaireGras);
    Commentaire->setFont(fc);
    Commentaire->setVisible(!m_.Commentaire.isEmpty());
    v->addWidget(Commentaire);
    if (m_.Image > 0) Label1->setMinimumHeight(60); // room for the picture beside the title

    auto* boutons = new QHBoxLayout;
    boutons->addStretch();
    Cmd_OK = new QPushButton(LoadResString(178 + m_.Decalage), this);
    Cmd_Annuler = new QPushButton(LoadResString(177 + m_.Decalage), this);
    for (QPushButton* b : {Cmd_OK, Cmd_Annuler}) {
        b->setAutoDefault(false);
        boutons->addWidget(b);
    }
    v->addLayout(boutons);
    if (avant) setTabOrder(avant, Cmd_OK);
    setTabOrder(Cmd_OK, Cmd_Annuler);
    Cmd_OK->setEnabled(false);
    connect(Cmd_OK, &QPushButton::clicked, this, &FrmCmd::OK);
    connect(Cmd_Annuler, &QPushButton::clicked, this, &FrmCmd::Annuler);
    if (!ParaVal.isEmpty()) ParaVal.first()->setFocus();
    else Cmd_Annuler->setFocus();
    setMinimumWidth(420);
    ChargeFini = true;
}

void FrmCmd::OK() {
    if (!Cmd_OK->isEnabled()) return;
    for (int i = 0; i < ParaVal.size(); ++i) m_.Rangs[i].Valeur = ParaVal[i]->text();
    LigneMasque = AssembleLigne(m_);
    accept();
}

void FrmCmd::Annuler() {
    LigneMasque.clear();
    reject();
}

void FrmCmd::closeEvent(QCloseEvent* ev) {
    if (result() != QDialog::Accepted) LigneMasque.clear();
    QDialog::closeEvent(ev);
}

int FrmCmd::RangActif() const {
    return int(ParaVal.indexOf(qobject_cast<QLineEdit*>(focusWidget())));
}

void FrmCmd::Remplit(const QString& t) {
    const int i = RangActif();
    if (i < 0 || t.isEmpty()) return;
    ParaVal[i]->setText(t);
    ActiveOK();
}

void FrmCmd::ActiveOK() {
    if (ChargeFini && m_.Valide) Cmd_OK->setEnabled(true);
}

void FrmCmd::Couleur() {
    if (RangActif() < 0) return;
    const std::optional<QColor> c = boites_.Couleur(this);
    if (c) Remplit(QStringLiteral("RVB %1 %2 %3").arg(c->red()).arg(c->green()).arg(c->blue()));
}

void FrmCmd::Police(bool ecran) {
    const int i = RangActif();
    if (i < 0 || !Polices) return;
    const std::optional<QFont> f = Polices->Police(this, QFont(ParaVal[i]->text().trimmed()), ecran);
    if (f) Remplit(f->family());
}

void FrmCmd::Fichiers(bool plusieurs) {
    if (RangActif() < 0) return;
    Remplit(boites_.FichiersListe(this, dossier_, QStringLiteral("*"), plusieurs).join(m_.Sep1));
}

void FrmCmd::keyPressEvent(QKeyEvent* ev) {
    switch (ev->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (Cmd_OK->isEnabled()) OK();
        else Annuler();
        return;
    case Qt::Key_Escape: Annuler(); return;
    case Qt::Key_Up:
    case Qt::Key_Down: {
        const int i = RangActif() + (ev->key() == Qt::Key_Up ? -1 : 1);
        if (RangActif() >= 0 && i >= 0 && i < ParaVal.size()) ParaVal[i]->setFocus();
        return;
    }
    default: break;
    }
    if (!ToucheAlt(ev)) QDialog::keyPressEvent(ev);
}

bool FrmCmd::ToucheAlt(QKeyEvent* ev) {
    const Qt::KeyboardModifiers m = ev->modifiers();
    if (!(m & Qt::AltModifier)) return false;
    const bool ctrl = m & Qt::ControlModifier;
    switch (ev->key()) {
    case Qt::Key_C: Couleur(); return true;
    case Qt::Key_P: Police(ctrl); return true;
    case Qt::Key_L: Fichiers(ctrl); return true;
    default: return false;
    }
}

bool FrmCmd::eventFilter(QObject* objet, QEvent* ev) {
    if (ev->type() == QEvent::KeyPress && ToucheAlt(static_cast<QKeyEvent*>(ev))) return true;
    return QDialog::eventFilter(objet, ev);
}

void FrmCmd::paintEvent(QPaintEvent* ev) {
    QDialog::paintEvent(ev);
    if (m_.Image <= 0) return;
    QPainter p(this);
    const QRectF& f = m_.PlaceImage;
    DessineImage(p, m_.Image, QRectF(f.x() * width(), f.y() * height(), f.width() * width(), f.height() * height()));
}

void FrmCmd::resizeEvent(QResizeEvent* ev) {
    QDialog::resizeEvent(ev);
    if (m_.Image > 0) Label1->setIndent(int((m_.PlaceImage.x() + m_.PlaceImage.width()) * width()) + 6);
}

// --- the menu entry

bool OuvreMasque(Form1& f, Boites& boites, const std::function<void(FrmCmd&)>& interaction) {
    Editeur& ed = *f.RTB1;
    const int ligne = ed.LigneCaret();
    const LigneSousCaret l = LigneLogique(*ed.document(), ligne);
    QString texte = l.Texte;
    const QTextBlock avant = ed.document()->findBlockByNumber(ligne - 1);
    if (avant.isValid() && avant.text().endsWith(QLatin1String(" _"))) texte = QStringLiteral("Suite");

    const QString& sep1 = f.e.Separateur1;
    auto modele = [&](const QString& sep) {
        return ConstruitMasque(texte, f.regl, f.regl.LangueMasque, sep, f.e.Separateur2);
    };
    ModeleMasque m = modele(sep1);
    // A comment, an empty line or an unknown keyword opens the list form,
    // which has no rows to split: no question about the separator.
    if (m.Sorte != ModeleMasque::Genre::Liste && sep1 != QLatin1String(",") && texte.contains(sep1)) {
        const QString q = QStringLiteral("ATTENTION: Remplacer/replace Separateur \"") + sep1 +
                          QStringLiteral("\" par/by \",\" ?");
        if (boites.Message(&f, QStringLiteral("Mirel"), q, Boutons::OuiNon, Icone::Question) == Reponse::Oui)
            m = modele(QStringLiteral(","));
    }
    FrmCmd d(&f, std::move(m), boites, f.regl.DossierFichier);
    d.Polices = f.DialoguesImp.get();
    d.setWindowTitle(LoadResString(86 + f.regl.LangueMenus) + u' ' + texte);
    f.unsetCursor();
    if (interaction) interaction(d);
    else d.exec();
    if (d.LigneMasque.isEmpty()) return false;

    AnneauAnnulation& anneau = f.recherche->Annulation;
    anneau.Snapshot();
    ed.Remplace(l.Debut, l.Fin - l.Debut, d.LigneMasque);
    QTextCursor c(ed.document());
    c.setPosition(l.Debut);
    ed.setTextCursor(c);
    ed.ColoreTexte(l.Debut, int(d.LigneMasque.size()));
    ed.LigneDebut = ed.LigneFin = ed.LigneCaret();
    ed.LigneSale = false;
    anneau.NouveauNiveau();
    anneau.Snapshot();
    anneau.SansSnap = false;
    emit f.recherche->etatChange();
    emit f.recherche->texteRemplace();
    return true;
}
