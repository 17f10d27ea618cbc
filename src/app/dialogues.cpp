#include "app/dialogues.h"

#include "app/boites.h"
#include "language/chaines.h"

#include <QApplication>
#include <QButtonGroup>
#include <QColorDialog>
#include <QFileDialog>
#include <QFontMetrics>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QInputDialog>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace {

QString SansEt(QString t) { return t.remove(u'&'); }

} // namespace

// --- Form2

Form2::Form2(QWidget* fenetre)
    : QWidget(fenetre, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus) {
    setAttribute(Qt::WA_ShowWithoutActivating);
    setObjectName(QStringLiteral("Form2"));
    label_ = new QLabel(this);
    label_->setFont(QFont(QStringLiteral("Times New Roman"), 12));
    label_->setMargin(0);
    label_->setTextFormat(Qt::PlainText);
    QPalette p = palette();
    p.setColor(QPalette::Window, QColor(255, 255, 225));
    p.setColor(QPalette::WindowText, Qt::black);
    setPalette(p);
    setAutoFillBackground(true);
}

void Form2::Montre(const QString& texte, QPoint global, const QRect& cadre) {
    label_->setText(texte);
    const QFontMetrics fm(label_->font());
    const QSize s = fm.size(0, texte) + QSize(5, 5);
    label_->setGeometry(2, 2, s.width() - 2, s.height() - 2);
    resize(s); // text plus 5 pixels each way
    QPoint p = global;
    if (p.x() + width() > cadre.right()) p.setX(cadre.right() - width());
    if (p.y() + height() > cadre.bottom()) p.setY(cadre.bottom() - height());
    if (p.x() < cadre.left()) p.setX(cadre.left());
    if (p.y() < cadre.top()) p.setY(cadre.top());
    move(p);
    show();
    raise();
}

QString Form2::Texte() const { return label_->text(); }

void Form2::keyReleaseEvent(QKeyEvent*) { hide(); }

// --- Form4

Form4::Form4(QWidget* parent, int lm, float zoomE, float zmm, Boites* boites)
    : QDialog(parent), ZoomE(zoomE), Zmm(zmm), boites_(boites) {
    setObjectName(QStringLiteral("Form4"));
    setWindowTitle(QStringLiteral("Mirel   ") + SansEt(LoadResString(73 + lm)) +
                   QStringLiteral("   (F7, Ctrl-F7)"));
    setWindowFlag(Qt::WindowStaysOnTopHint);
    Text1 = new QLineEdit(QLocale::c().toString(ZoomE), this);
    Text2 = new QLineEdit(QLocale::c().toString(Zmm), this);
    Command1 = new QPushButton(LoadResString(162 + lm), this);
    auto* g = new QGridLayout(this);
    g->addWidget(new QLabel(SansEt(LoadResString(73 + lm)), this), 0, 0);
    g->addWidget(Text1, 0, 1);
    g->addWidget(new QLabel(LoadResString(163 + lm), this), 1, 0);
    g->addWidget(Text2, 1, 1);
    g->addWidget(Command1, 2, 0, 1, 2);
    Command1->setAutoDefault(false);
    connect(Command1, &QPushButton::clicked, this, [this] {
        if (Valide()) accept();
    });
    Text1->selectAll();
    Text1->setFocus();
}

bool Form4::Valide() {
    const std::optional<double> n1 = NombreTape(Text1->text()), n2 = NombreTape(Text2->text());
    if (!n1 || !n2) {
        if (boites_)
            boites_->Message(this, QStringLiteral("Mirel"),
                             QStringLiteral("Valeur non numérique\r\nNo numeric value"), Boutons::Ok,
                             Icone::Exclamation);
        return false;
    }
    const double v1 = std::abs(*n1), v2 = std::abs(*n2);
    if (float(v2) != Zmm) {
        if (v2 == 0) {
            Text2->setText(QLocale::c().toString(Zmm));
        } else {
            Zmm = float(v2);
            ZmmChange = true;
        }
    }
    if (float(v1) != ZoomE) {
        if (v1 == 0) Text1->setText(QLocale::c().toString(ZoomE));
        else ZoomE = float(v1);
    }
    return true;
}

void Form4::keyPressEvent(QKeyEvent* ev) {
    switch (ev->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (Valide()) accept();
        return;
    case Qt::Key_Escape:
    case Qt::Key_F7:
        reject();
        return;
    default:
        QDialog::keyPressEvent(ev);
    }
}

// --- Form5

Form5::Form5(QWidget* parent, int lm, const QString& champ, std::function<bool(const QString&)> applique)
    : QDialog(parent), applique_(std::move(applique)) {
    setObjectName(QStringLiteral("Form5"));
    setWindowTitle(QStringLiteral("Mirel   ") + SansEt(LoadResString(74 + lm)) +
                   QStringLiteral("   (F8, Ctrl-F8)"));
    setWindowFlag(Qt::WindowStaysOnTopHint);
    auto* label = new QLabel(LoadResString(165 + lm), this);
    label->setWordWrap(true);
    label->setMinimumWidth(360);
    Text1 = new QLineEdit(champ, this);
    Command1 = new QPushButton(LoadResString(164 + lm), this);
    Command1->setAutoDefault(false);
    auto* v = new QVBoxLayout(this);
    v->addWidget(label);
    v->addWidget(Text1);
    v->addWidget(Command1);
    connect(Command1, &QPushButton::clicked, this, [this] {
        if (Valide()) accept();
    });
    Text1->selectAll();
    Text1->setFocus();
}

bool Form5::Valide() { return !applique_ || applique_(Text1->text()); }

void Form5::keyPressEvent(QKeyEvent* ev) {
    switch (ev->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_F8:
        if (Valide()) accept();
        return;
    case Qt::Key_Escape:
        reject();
        return;
    default:
        QDialog::keyPressEvent(ev);
    }
}

// --- Form3

Form3::Form3(QWidget* parent, const ValeursConfig& v) : QDialog(parent) {
    setObjectName(QStringLiteral("Form3"));
    setWindowTitle(QStringLiteral("Mirel"));
    // What each language is for, readable before any is chosen.
    const QString titres[4] = {QStringLiteral("Messages / Meldungen / Mensajes"),
                               QStringLiteral("Menus / Menüs / Menús"),
                               QStringLiteral("Aide / Help / Hilfe / Ayuda"),
                               QStringLiteral("F2 : formulaire / form / Formular / formulario")};
    const QString choix[4] = {v.Langue, v.LangueMenu, v.LangueAide, v.LangueMasq};
    const int offertes = std::clamp(LoadResString(3).toInt(), 1, 4);
    auto* h = new QHBoxLayout;
    for (int c = 0; c < 4; ++c) {
        auto* cadre = new QGroupBox(titres[c], this);
        auto* lv = new QVBoxLayout(cadre);
        groupes_[c] = new QButtonGroup(this);
        // Unset messages, menus and help languages default to the first one.
        int actuel = DecalageDeLangue(choix[c]);
        if (actuel < 0 && c < 3) actuel = 0;
        for (int i = 0; i < 4; ++i) {
            auto* o = new QRadioButton(NomDeLangue(400 * i), cadre);
            o->setVisible(i < offertes);
            options_[c][i] = o;
            groupes_[c]->addButton(o, i);
            lv->addWidget(o);
            if (actuel == 400 * i) o->setChecked(true);
        }
        connect(groupes_[c], &QButtonGroup::idClicked, this, [this, c](int i) { Clic(c, i); });
        h->addWidget(cadre);
    }
    auto* ok = new QPushButton(LegendeValiderLangues, this);
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);
    auto* v2 = new QVBoxLayout(this);
    v2->addLayout(h);
    v2->addWidget(ok);
}

void Form3::Clic(int colonne, int langue) {
    // The cascades: the first frame sets all four, the second the last two.
    auto pose = [&](int c) { options_[c][langue]->setChecked(true); };
    if (colonne == 0) {
        pose(1);
        pose(2);
        pose(3);
    } else if (colonne == 1) {
        pose(2);
        pose(3);
    }
}

ValeursConfig Form3::Choix(ValeursConfig v) const {
    QString* cibles[4] = {&v.Langue, &v.LangueMenu, &v.LangueAide, &v.LangueMasq};
    for (int c = 0; c < 4; ++c) {
        const int i = groupes_[c]->checkedId();
        if (i >= 0) *cibles[c] = NomDeLangue(400 * i);
    }
    return v;
}

// --- the about box

QString TexteAPropos(int l, const QString& version) {
    return QStringLiteral("Mirel\n") + LoadResString(6 + l) + u'\n' + LoadResString(7 + l) +
           QStringLiteral("\n\n") + LoadResString(101 + l) + QStringLiteral(" : ") + version.trimmed() +
           u'\n' + LoadResString(102 + l) + QStringLiteral(" : ") + LoadResString(9 + l) + u'\n' +
           LoadResString(103 + l) + QStringLiteral(" : —\n\nQt ") + QString::fromLatin1(qVersion());
}

void AProposDe(QWidget* parent, int l, const QString& version) {
    QMessageBox b(parent);
    b.setObjectName(QStringLiteral("APropos"));
    b.setWindowTitle(LoadResString(104 + l));
    b.setText(TexteAPropos(l, version));
    b.setIcon(QMessageBox::Information);
    b.exec();
}

// --- BoitesQt

namespace {

// A message box; `defaut` is the button Enter presses (none: Qt's choice).
Reponse BoiteMessage(QWidget* parent, const QString& titre, const QString& texte, Boutons boutons,
                     Icone icone, QMessageBox::StandardButton defaut = QMessageBox::NoButton) {
    QMessageBox b(parent);
    b.setWindowTitle(titre);
    QString t = texte;
    t.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    b.setText(t);
    switch (icone) {
    case Icone::Information: b.setIcon(QMessageBox::Information); break;
    case Icone::Exclamation: b.setIcon(QMessageBox::Warning); break;
    case Icone::Critique: b.setIcon(QMessageBox::Critical); break;
    case Icone::Question: b.setIcon(QMessageBox::Question); break;
    case Icone::Aucune: break;
    }
    switch (boutons) {
    case Boutons::Ok: b.setStandardButtons(QMessageBox::Ok); break;
    case Boutons::OkAnnuler: b.setStandardButtons(QMessageBox::Ok | QMessageBox::Cancel); break;
    case Boutons::OuiNon: b.setStandardButtons(QMessageBox::Yes | QMessageBox::No); break;
    case Boutons::OuiNonAnnuler:
        b.setStandardButtons(QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
        break;
    }
    if (defaut != QMessageBox::NoButton) b.setDefaultButton(defaut);
    // The busy pointer of a run must not stand over a box.
    QApplication::setOverrideCursor(Qt::ArrowCursor);
    const int r = b.exec();
    QApplication::restoreOverrideCursor();
    switch (r) {
    case QMessageBox::Cancel: return Reponse::Annuler;
    case QMessageBox::Yes: return Reponse::Oui;
    case QMessageBox::No: return Reponse::Non;
    default: break;
    }
    if (boutons == Boutons::OuiNon) return Reponse::Non;
    if (boutons == Boutons::OuiNonAnnuler || (boutons == Boutons::OkAnnuler && r != QMessageBox::Ok))
        return Reponse::Annuler;
    return Reponse::Ok;
}

} // namespace

Reponse BoitesQt::Message(QWidget* parent, const QString& titre, const QString& texte,
                          Boutons boutons, Icone icone) {
    return BoiteMessage(parent, titre, texte, boutons, icone);
}

Reponse BoitesQt::QuestionRisquee(QWidget* parent, const QString& titre, const QString& texte) {
    return BoiteMessage(parent, titre, texte, Boutons::OuiNon, Icone::Question, QMessageBox::No);
}

std::optional<QString> BoitesQt::Saisie(QWidget* parent, const QString& titre, const QString& invite,
                                        const QString& defaut, const QString& annuler) {
    QInputDialog d(parent);
    d.setWindowTitle(titre);
    d.setLabelText(invite);
    d.setTextValue(defaut); // shown selected
    if (!annuler.isEmpty()) d.setCancelButtonText(annuler);
    QApplication::setOverrideCursor(Qt::ArrowCursor);
    const bool ok = d.exec() == QDialog::Accepted;
    QApplication::restoreOverrideCursor();
    if (!ok) return std::nullopt;
    return d.textValue();
}

QString BoitesQt::FichierOuvrir(QWidget* parent, const QString& dossier, const QString& filtre) {
    return QFileDialog::getOpenFileName(parent, QString(), dossier, filtre);
}

QString BoitesQt::FichierEnregistrer(QWidget* parent, const QString& nomInitial, const QString& filtre,
                                     const QString& suffixe) {
    QFileDialog d(parent);
    d.setAcceptMode(QFileDialog::AcceptSave);
    d.setNameFilter(filtre);
    d.setDefaultSuffix(suffixe);
    d.selectFile(nomInitial);
    if (d.exec() != QDialog::Accepted || d.selectedFiles().isEmpty()) return QString();
    return d.selectedFiles().first();
}

QStringList BoitesQt::FichiersListe(QWidget* parent, const QString& dossier, const QString& filtre,
                                    bool plusieurs) {
    if (plusieurs) return QFileDialog::getOpenFileNames(parent, QString(), dossier, filtre);
    const QString f = QFileDialog::getOpenFileName(parent, QString(), dossier, filtre);
    return f.isEmpty() ? QStringList() : QStringList{f};
}

std::optional<QColor> BoitesQt::Couleur(QWidget* parent) {
    const QColor c = QColorDialog::getColor(Qt::black, parent);
    if (!c.isValid()) return std::nullopt;
    return c;
}

bool BoitesQt::Langues(QWidget* parent, ValeursConfig& v) {
    Form3 f(parent, v);
    if (f.exec() != QDialog::Accepted) return false;
    v = f.Choix(v);
    return true;
}
