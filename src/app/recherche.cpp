#include "app/recherche.h"

#include "app/editeur.h"
#include "language/chaines.h"

#include <QAction>
#include <QCheckBox>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextDocument>
#include <QTimer>

#include <algorithm>

namespace {

// The translations of a command file's colour words, run by Replace all
// with "*COLORS" or "*COULEURS" and nothing to replace with: pairs of
// (find, replace with), in order, whole words. The pair "Lands" keeps a
// word that would otherwise be taken for the start of "Landscape".
const char* const VersAnglais =
    "Blanc,White,Noir,Black,Rouge,Red,Vert,Green,Bleu,Blue,Jaune,Yellow,RVB,RGB,Paysage,Landscape";
const char* const VersFrancais = "White,Blanc,Black,Noir,Red,Rouge,Green,Vert,Blue,Bleu,Yellow,Jaune,"
                                 "RGB,RVB,Lands,Paysage,Landscape,Paysage";

const QString Remplacements = QStringLiteral(" remplacements");

QString SansEt(QString t) { return t.remove(u'&'); }

// The next match from a position; a whole word has no letter or digit just
// before or after it. A candidate that is not a whole word is passed by one
// character only, so that a word beginning inside it is still found ("10,"
// in "110,10,"): the document's own whole-word search skips past it.
QTextCursor Cherche(const QTextDocument& doc, const QString& texte, int depart, QTextDocument::FindFlags options) {
    const bool motEntier = options.testFlag(QTextDocument::FindWholeWords);
    options &= ~QTextDocument::FindFlags(QTextDocument::FindWholeWords);
    for (QTextCursor c = doc.find(texte, depart, options); !c.isNull();
         c = doc.find(texte, c.selectionStart() + 1, options)) {
        if (!motEntier) return c;
        const QChar avant = doc.characterAt(c.selectionStart() - 1), apres = doc.characterAt(c.selectionEnd());
        if (!avant.isLetterOrNumber() && !apres.isLetterOrNumber()) return c;
    }
    return QTextCursor();
}

// Keys that change nothing: Shift, Ctrl, Alt, Pause, Caps Lock, the range
// 25 higher (Insert among them), the system keys, the function keys, the
// locks and the media keys.
bool Ignoree(int k) {
    return (k >= 16 && k <= 20) || (k >= 41 && k <= 45) || k == 91 || k == 93 ||
           (k >= 112 && k <= 127) || k == 144 || k == 145 || (k >= 172 && k <= 179) || k == 181 ||
           k == 255;
}

} // namespace

int CodeTouche(int k) {
    if ((k >= Qt::Key_A && k <= Qt::Key_Z) || (k >= Qt::Key_0 && k <= Qt::Key_9)) return k;
    if (k >= Qt::Key_F1 && k <= Qt::Key_F24) return 112 + (k - Qt::Key_F1);
    switch (k) {
    case Qt::Key_Backspace: return 8;
    case Qt::Key_Tab:
    case Qt::Key_Backtab: return 9;
    case Qt::Key_Return: return 13;
    case Qt::Key_Enter: return 108;
    case Qt::Key_Shift: return 16;
    case Qt::Key_Control: return 17;
    case Qt::Key_Alt:
    case Qt::Key_AltGr: return 18;
    case Qt::Key_Pause: return 19;
    case Qt::Key_CapsLock: return 20;
    case Qt::Key_Escape: return 27;
    case Qt::Key_Space: return 32;
    case Qt::Key_PageUp: return 33;
    case Qt::Key_PageDown: return 34;
    case Qt::Key_End: return 35;
    case Qt::Key_Home: return 36;
    case Qt::Key_Left: return 37;
    case Qt::Key_Up: return 38;
    case Qt::Key_Right: return 39;
    case Qt::Key_Down: return 40;
    case Qt::Key_Select: return 41;
    case Qt::Key_Printer: return 42;
    case Qt::Key_Execute: return 43;
    case Qt::Key_Print: return 44;
    case Qt::Key_Insert: return 45;
    case Qt::Key_Delete: return 46;
    case Qt::Key_Meta:
    case Qt::Key_Super_L:
    case Qt::Key_Super_R: return 91;
    case Qt::Key_Menu: return 93;
    case Qt::Key_NumLock: return 144;
    case Qt::Key_ScrollLock: return 145;
    case Qt::Key_VolumeMute: return 173;
    case Qt::Key_VolumeDown: return 174;
    case Qt::Key_VolumeUp: return 175;
    case Qt::Key_MediaNext: return 176;
    case Qt::Key_MediaPrevious: return 177;
    case Qt::Key_MediaStop: return 178;
    case Qt::Key_MediaPlay:
    case Qt::Key_MediaTogglePlayPause: return 179;
    case Qt::Key_unknown: return 255;
    default: return 0;
    }
}

int EtatShift(Qt::KeyboardModifiers m) {
    return (m & Qt::ShiftModifier ? 1 : 0) | (m & Qt::ControlModifier ? 2 : 0) | (m & Qt::AltModifier ? 4 : 0);
}

// --- the undo ring

AnneauAnnulation::AnneauAnnulation(Editeur* ed, QAction* defaire, QAction* refaire)
    : ed_(ed), defaire_(defaire), refaire_(refaire) {}

void AnneauAnnulation::Initialise() {
    UndoSlot = UndoNb = 1;
    RedoNb = 0;
    SansSnap = false;
    DerTouche = DerShift = 0;
    defaire_->setEnabled(false);
    refaire_->setEnabled(false);
    Snapshot();
}

void AnneauAnnulation::Snapshot() {
    CopieTexte& c = RTB2[UndoSlot];
    const QTextDocument* doc = ed_->document();
    c.Texte = doc->toRawText();
    c.Texte.replace(QChar::ParagraphSeparator, u'\n');
    c.Couleurs.clear();
    for (QTextBlock b = doc->begin(); b.isValid(); b = b.next()) {
        for (auto it = b.begin(); !it.atEnd(); ++it) {
            const QTextFragment f = it.fragment();
            const QBrush brosse = f.charFormat().foreground();
            if (brosse.style() == Qt::NoBrush) continue;
            const QRgb rgb = brosse.color().rgb();
            if (!c.Couleurs.isEmpty()) {
                CopieTexte::Plage& p = c.Couleurs.last();
                if (p.couleur == rgb && p.debut + p.longueur == f.position()) {
                    p.longueur += f.length();
                    continue;
                }
            }
            c.Couleurs.append({f.position(), f.length(), rgb});
        }
    }
    const QTextCursor k = ed_->textCursor();
    c.Debut = k.selectionStart();
    c.Longueur = k.selectionEnd() - k.selectionStart();
}

void AnneauAnnulation::NouveauNiveau() {
    UndoSlot = (UndoSlot + 1) % Taille;
    UndoNb = std::min(UndoNb + 1, Taille);
    RedoNb = 0;
    defaire_->setEnabled(true);
    refaire_->setEnabled(false);
}

void AnneauAnnulation::SnapshotAvance(int touche, int shift) {
    if (!SansSnap) {
        SansSnap = true;
        NouveauNiveau();
    }
    Snapshot();
    DerTouche = touche;
    DerShift = shift;
}

void AnneauAnnulation::FinDeSerie(int touche, int shift) {
    Snapshot();
    SansSnap = false;
    RedoNb = 0;
    refaire_->setEnabled(false);
    DerTouche = touche;
    DerShift = shift;
}

bool AnneauAnnulation::ToucheRelachee(int k, int shift, bool appuiVu) {
    const bool ctrl = shift & 2;
    const bool apresSuppression = DerTouche == 8 || DerTouche == 46;
    const bool apresCoupe = DerTouche == 88 && (DerShift & 2);
    // Backspace and Delete: a run of them is one level, and so is one that
    // follows a cut.
    if (k == 8 || k == 46) {
        if (!apresSuppression && !apresCoupe) NouveauNiveau();
        FinDeSerie(k, shift);
        return true;
    }
    if (Ignoree(k)) return true;
    if (k >= 33 && k <= 40) return false;
    if (k == 13 || k == 108) {
        // The release of the Enter that closed a dialog: nothing was typed here.
        if (!appuiVu) return true;
        // Enter closes the run of typing it ends; a run of Enter is one level.
        if (!(DerTouche == 13 || DerTouche == 108 || SansSnap || k == 108)) NouveauNiveau();
        defaire_->setEnabled(true);
        FinDeSerie(k, shift);
        return true;
    }
    switch (k) {
    case 'A': case 'C': case 'H': case 'K': case 'O': case 'S':
        if (!ctrl) SnapshotAvance(k, shift);
        return true;
    case 'X':
        if (ctrl) {
            // A cut that removed text begins a level of its own.
            const int longueur = ed_->document()->characterCount() - 1;
            if (longueur != LongueurCoupe && !apresSuppression) {
                SansSnap = false;
                defaire_->setEnabled(true);
            }
        }
        SnapshotAvance(k, shift);
        return true;
    case 'Y': case 'Z':
        if (ctrl) {
            DerTouche = k;
            DerShift = shift;
            SansSnap = false;
        } else {
            SnapshotAvance(k, shift);
        }
        return true;
    default:
        SnapshotAvance(k, shift);
        return true;
    }
}

void AnneauAnnulation::Insertion() {
    SansSnap = false;
    SnapshotAvance(0, 0);
    SansSnap = true;
}

bool AnneauAnnulation::Mnu_Defaire() {
    if (!defaire_->isEnabled() || UndoNb <= 0) return false;
    --UndoNb;
    if (UndoNb <= 1) defaire_->setEnabled(false);
    RedoNb = std::min(RedoNb + 1, Taille);
    refaire_->setEnabled(true);
    UndoSlot = (UndoSlot + Taille - 1) % Taille;
    if (UndoNb >= 1) Restaure();
    DerTouche = 90;
    DerShift = 2;
    // Whatever comes next begins a level: typing after an undo clears the redo.
    SansSnap = false;
    return UndoNb >= 1;
}

bool AnneauAnnulation::Mnu_Refaire() {
    if (!refaire_->isEnabled() || RedoNb <= 0) return false;
    UndoNb = std::min(UndoNb + 1, Taille);
    defaire_->setEnabled(true);
    if (--RedoNb == 0) refaire_->setEnabled(false);
    UndoSlot = (UndoSlot + 1) % Taille;
    Restaure();
    DerTouche = 89;
    DerShift = 2;
    SansSnap = false;
    return true;
}

void AnneauAnnulation::Restaure() {
    const CopieTexte& c = RTB2[UndoSlot];
    const int vertical = ed_->verticalScrollBar()->value();
    ed_->ColorationActive = false;
    ed_->TexteNoir(c.Texte);
    QTextDocument* doc = ed_->document();
    QTextCursor lot(doc);
    lot.beginEditBlock();
    for (const CopieTexte::Plage& p : c.Couleurs) {
        QTextCursor k(doc);
        k.setPosition(p.debut);
        k.setPosition(p.debut + p.longueur, QTextCursor::KeepAnchor);
        QTextCharFormat f;
        f.setForeground(QColor(p.couleur));
        k.mergeCharFormat(f);
    }
    lot.endEditBlock();
    ed_->RetrouvePlace(c.Debut, c.Longueur, vertical);
    ed_->ensureCursorVisible();
    ed_->ColorationActive = true;
    ed_->LigneSale = false;
    ed_->LigneDebut = ed_->LigneFin = ed_->LigneCaret();
    ed_->PositionRecherche = -1; // no match stands in the text brought back
    ed_->Modifie = true;
    ed_->MajLigne();
}

// --- FrmFind

FrmFind::FrmFind(QWidget* fenetre, Editeur* ed, AnneauAnnulation& anneau)
    : QDialog(fenetre, Qt::Tool | Qt::WindowStaysOnTopHint), ed_(ed), anneau_(anneau) {
    setObjectName(QStringLiteral("FrmFind"));
    setModal(false);
    Label1 = new QLabel(this);
    Label2 = new QLabel(this);
    Compte = new QLabel(this);
    Compte->setObjectName(QStringLiteral("Compte"));
    Text1 = new QLineEdit(this);
    Text1->setObjectName(QStringLiteral("Text1"));
    Text2 = new QLineEdit(this);
    Text2->setObjectName(QStringLiteral("Text2"));
    Check1 = new QCheckBox(this);
    Check2 = new QCheckBox(this);
    Suivant = new QPushButton(this);
    Remplacer = new QPushButton(this);
    RemplacerTout = new QPushButton(this);
    Annuler = new QPushButton(this);
    for (QPushButton* b : {Suivant, Remplacer, RemplacerTout, Annuler}) b->setAutoDefault(false);
    Label1->setBuddy(Text1);
    Label2->setBuddy(Text2);

    auto* g = new QGridLayout(this);
    g->addWidget(Label1, 0, 0);
    g->addWidget(Text1, 0, 1, 1, 2);
    g->addWidget(Suivant, 0, 3);
    g->addWidget(Label2, 1, 0);
    g->addWidget(Text2, 1, 1, 1, 2);
    g->addWidget(Remplacer, 1, 3);
    g->addWidget(Check1, 2, 1);
    g->addWidget(Check2, 2, 2);
    g->addWidget(RemplacerTout, 2, 3);
    g->addWidget(Compte, 3, 1, 1, 2);
    g->addWidget(Annuler, 3, 3);
    g->setColumnStretch(1, 1);
    g->setColumnStretch(2, 1);
    Text1->setMinimumWidth(220);

    connect(Suivant, &QPushButton::clicked, this, &FrmFind::Suivant_Click);
    connect(Remplacer, &QPushButton::clicked, this, &FrmFind::Remplacer_Click);
    connect(RemplacerTout, &QPushButton::clicked, this, &FrmFind::RemplacerTout_Click);
    connect(Annuler, &QPushButton::clicked, this, &QWidget::hide);
    connect(Text1, &QLineEdit::textChanged, this, [this] { FindNb = 0; });
    for (QWidget* w : findChildren<QWidget*>()) w->installEventFilter(this);
    Remplacer->setEnabled(false);
    Legendes(0);
}

void FrmFind::Legendes(int lm) {
    setWindowTitle(SansEt(LoadResString(28 + lm)));
    Label1->setText(LoadResString(29 + lm));
    Label2->setText(LoadResString(30 + lm));
    Suivant->setText(LoadResString(31 + lm) + QStringLiteral(" (F3)"));
    Remplacer->setText(LoadResString(32 + lm) + QStringLiteral(" (Ctrl-H)"));
    RemplacerTout->setText(LoadResString(33 + lm));
    Annuler->setText(LoadResString(34 + lm) + QStringLiteral(" (ESC)"));
    Check1->setText(LoadResString(35 + lm));
    Check2->setText(LoadResString(36 + lm));
}

void FrmFind::Montre() {
    const QString selection = ed_->textCursor().selectedText();
    if (!selection.isEmpty())
        Text1->setText(Editeur::TexteHorsDocument(selection.section(QChar::ParagraphSeparator, 0, 0)));
    if (ed_->PositionRecherche < 0) Remplacer->setEnabled(false);
    show();
    raise();
    activateWindow();
    Text1->setFocus();
    Text1->selectAll();
}

void FrmFind::F3() {
    if (Text1->text().isEmpty()) {
        Montre();
        return;
    }
    const int l = ed_->LigneCaret();
    if (l < ed_->LigneDebut || l > ed_->LigneFin) ed_->VideLigneSale();
    Suivant_Click();
}

void FrmFind::Suivant_Click() {
    if (Text1->text().isEmpty()) return;
    QTextDocument* doc = ed_->document();
    // The caret, or behind the match that stands when this is not the first
    // search, is where the caret returns when nothing is found. With no match
    // standing (none found last time, or the caret moved) the search starts
    // from the top of the text: so F3 goes round the text.
    int retour = ed_->textCursor().selectionStart();
    if (ed_->PositionRecherche >= 0 && FindNb >= 1) retour = ed_->PositionRecherche + longueurTrouvee_;
    FindDepart = std::clamp(retour, 0, doc->characterCount() - 1);
    const int depart = ed_->PositionRecherche < 0 ? 0 : FindDepart;
    FindFlags = (Check1->isChecked() ? 2 : 0) | (Check2->isChecked() ? 4 : 0);
    QTextDocument::FindFlags options;
    if (FindFlags & 2) options |= QTextDocument::FindWholeWords;
    if (FindFlags & 4) options |= QTextDocument::FindCaseSensitively;
    const QTextCursor trouve = Cherche(*doc, Editeur::TexteDocument(Text1->text()), depart, options);
    ++FindNb;
    if (trouve.isNull()) {
        ed_->PositionRecherche = -1;
        QTextCursor k(doc);
        k.setPosition(FindDepart);
        ed_->setTextCursor(k);
        Remplacer->setEnabled(false);
    } else {
        ed_->PositionRecherche = trouve.selectionStart();
        longueurTrouvee_ = trouve.selectionEnd() - trouve.selectionStart();
        ed_->setTextCursor(trouve);
        ed_->ensureCursorVisible();
        Remplacer->setEnabled(true);
    }
    ed_->setFocus();
    anneau_.DerTouche = 114;
    anneau_.DerShift = 0;
}

void FrmFind::RemplaceSelection() {
    QTextCursor c = ed_->textCursor();
    QTextCharFormat f;
    f.setForeground(Editeur::Noir);
    // With the change event on, the block under edit covers the new text and
    // is recoloured at once.
    ed_->ColorationActive = true;
    c.insertText(Editeur::TexteDocument(Text2->text()), f);
    ed_->setTextCursor(c);
    ed_->VideLigneSale();
    longueurTrouvee_ = int(Text2->text().size());
}

void FrmFind::Remplacer_Click() {
    if (ed_->PositionRecherche < 0) return;
    const QTextCursor c = ed_->textCursor();
    // Only the match itself is replaced; a selection moved or typed over
    // since is searched again, from the caret.
    if (c.selectionStart() != ed_->PositionRecherche || c.selectionEnd() - c.selectionStart() != longueurTrouvee_) {
        FindNb = 0;
        Suivant_Click();
        return;
    }
    // Replacements one after the other make one level.
    if (!(anneau_.DerTouche == 72 && anneau_.DerShift == 2)) anneau_.NouveauNiveau();
    RemplaceSelection();
    anneau_.Snapshot();
    ed_->Modifie = true;
    Suivant_Click();
    anneau_.DerTouche = 72;
    anneau_.DerShift = 2;
    emit niveauPris();
}

int FrmFind::BoucleRemplacement() {
    QTextDocument* doc = ed_->document();
    const int caret = ed_->textCursor().position();
    FindNb = 0;
    ed_->setTextCursor(QTextCursor(doc));
    Suivant_Click();
    while (ed_->PositionRecherche >= 0) {
        RemplaceSelection();
        Suivant_Click();
    }
    QTextCursor k(doc);
    k.setPosition(std::min(caret, doc->characterCount() - 1));
    ed_->setTextCursor(k);
    // The last search is the one that found nothing.
    return FindNb - 1;
}

void FrmFind::RemplacerTout_Click() {
    if (Text2->text().isEmpty()) {
        const QString mot = Text1->text().toUpper();
        if (mot == QLatin1String("*COLORS")) return Traduction(QString::fromLatin1(VersAnglais).split(u','));
        if (mot == QLatin1String("*COULEURS")) return Traduction(QString::fromLatin1(VersFrancais).split(u','));
    }
    if (Text1->text().isEmpty()) return;
    ed_->setUpdatesEnabled(false);
    const int n = BoucleRemplacement();
    ed_->setUpdatesEnabled(true);
    Compte->clear();
    // One undo level whether or not anything was replaced; the count only when it is not 0.
    anneau_.NouveauNiveau();
    anneau_.Snapshot();
    emit niveauPris();
    if (n != 0) Compte->setText(QString::number(n) + Remplacements);
}

void FrmFind::Traduction(const QStringList& paires) {
    if (paires.size() % 2) return;
    hide();
    const bool motEntier = Check1->isChecked();
    Check1->setChecked(true);
    ed_->setUpdatesEnabled(false);
    int total = 0;
    for (qsizetype i = 0; i < paires.size(); i += 2) {
        Text1->setText(paires[i]);
        Text2->setText(paires[i + 1]);
        total += BoucleRemplacement();
    }
    ed_->setUpdatesEnabled(true);
    Check1->setChecked(motEntier);
    Text1->clear();
    Text2->clear();
    anneau_.NouveauNiveau();
    anneau_.Snapshot();
    Compte->setText(QString::number(total) + Remplacements);
    emit niveauPris();
    show();
}

void FrmFind::EffaceCompte() {
    Compte->clear();
    Remplacer->setEnabled(false);
}

bool FrmFind::Touche(QKeyEvent* ev) {
    const bool ctrl = ev->modifiers() & Qt::ControlModifier;
    switch (ev->key()) {
    case Qt::Key_Escape:
        hide();
        return true;
    case Qt::Key_F3:
        if (!Text1->text().isEmpty()) Suivant_Click();
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        Suivant_Click();
        return true;
    case Qt::Key_H:
        if (!ctrl) return false;
        Remplacer_Click();
        return true;
    default:
        return false;
    }
}

void FrmFind::keyPressEvent(QKeyEvent* ev) {
    if (!Touche(ev)) QDialog::keyPressEvent(ev);
}

bool FrmFind::eventFilter(QObject* objet, QEvent* ev) {
    if (ev->type() == QEvent::KeyPress) return Touche(static_cast<QKeyEvent*>(ev));
    // The find text is selected whole when it takes the focus, so that typing replaces it.
    if (objet == Text1 && ev->type() == QEvent::FocusIn) QTimer::singleShot(0, Text1, &QLineEdit::selectAll);
    return QDialog::eventFilter(objet, ev);
}

void FrmFind::changeEvent(QEvent* ev) {
    if (ev->type() == QEvent::ActivationChange && isActiveWindow()) Text1->selectAll();
    QDialog::changeEvent(ev);
}

// --- the wiring

Recherche::Recherche(Editeur* ed, QAction* defaire, QAction* refaire, QAction* rechercher, QWidget* fenetre)
    : QObject(fenetre), Annulation(ed, defaire, refaire), Find(new FrmFind(fenetre, ed, Annulation)), ed_(ed) {
    ed->installEventFilter(this);
    rechercher->setEnabled(true);
    defaire->setEnabled(false);
    refaire->setEnabled(false);
    auto etat = [this](auto action) {
        return [this, action] {
            action();
            emit etatChange();
        };
    };
    auto defaireFn = etat([this] {
        if (Annulation.Mnu_Defaire()) emit texteRemplace();
    });
    auto refaireFn = etat([this] {
        if (Annulation.Mnu_Refaire()) emit texteRemplace();
    });
    connect(defaire, &QAction::triggered, this, defaireFn);
    connect(refaire, &QAction::triggered, this, refaireFn);
    connect(ed, &Editeur::defaire, this, defaireFn);
    connect(ed, &Editeur::refaire, this, refaireFn);
    connect(rechercher, &QAction::triggered, Find, &FrmFind::Montre);
    connect(ed, &Editeur::rechercher, Find, &FrmFind::Montre);
    connect(ed, &Editeur::suivant, Find, &FrmFind::F3);
    connect(ed, &Editeur::remplacer, Find, &FrmFind::Remplacer_Click);
    connect(Find, &FrmFind::niveauPris, this, &Recherche::etatChange);
    connect(ed, &Editeur::insere, this, etat([this] { Annulation.Insertion(); }));
    connect(ed, &Editeur::coupe, this, [this](int longueur) { Annulation.LongueurCoupe = longueur; });
    connect(ed, &Editeur::arret, Find, &QWidget::hide);
    connect(ed, &Editeur::sourisRelachee, Find, &FrmFind::EffaceCompte);
    connect(ed, &Editeur::toucheRelachee, this, [this](int k, Qt::KeyboardModifiers m) {
        if (!Annulation.ToucheRelachee(CodeTouche(k), EtatShift(m), appuiVu_)) {
            Find->EffaceCompte();
            ed_->PositionRecherche = -1;
        }
        emit etatChange();
    });
}

bool Recherche::eventFilter(QObject* objet, QEvent* ev) {
    if (objet == ed_) {
        switch (ev->type()) {
        case QEvent::KeyPress: appuyees_.insert(static_cast<QKeyEvent*>(ev)->key()); break;
        case QEvent::KeyRelease: appuiVu_ = appuyees_.remove(static_cast<QKeyEvent*>(ev)->key()); break;
        case QEvent::FocusOut: appuyees_.clear(); break;
        default: break;
        }
    }
    return false;
}
