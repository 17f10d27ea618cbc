#include "app/editeur.h"

#include "language/para.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QDropEvent>
#include <QMimeData>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>

#include <array>
#include <utility>

const QColor Editeur::Noir(0, 0, 0);
const QColor Editeur::Bleu(0, 0, 255);
const QColor Editeur::Vert(0, 128, 0);
const QColor Editeur::Rouge(255, 0, 0);

namespace {

QString Blancs(QString t) {
    t.replace(u'\t', u' ');
    return t;
}

// A text document breaks a line at U+2028 and U+2029 and takes U+FDD0 and
// U+FDD1 for the edges of a frame. In a command file they are ordinary
// characters of their line: the document holds them as private-use stand-ins,
// one for one so that positions agree, and the text given back has them
// again. (A file's own stand-ins would come back as these four; they mean
// nothing to a command program.)
constexpr std::array<std::pair<char16_t, char16_t>, 4> Remplacants = {
    {{0x2028, 0xE028}, {0x2029, 0xE029}, {0xFDD0, 0xEDD0}, {0xFDD1, 0xEDD1}}};

QString Echange(QString t, bool versDocument) {
    for (auto [car, remplacant] : Remplacants)
        t.replace(QChar(versDocument ? car : remplacant), QChar(versDocument ? remplacant : car));
    return t;
}

// Keeps the caret, the selection and both scroll positions across a change.
class GardeVue {
public:
    explicit GardeVue(QPlainTextEdit* ed)
        : ed_(ed), c_(ed->textCursor()), h_(ed->horizontalScrollBar()->value()),
          v_(ed->verticalScrollBar()->value()) {}
    ~GardeVue() {
        QTextCursor c(ed_->document());
        const int max = ed_->document()->characterCount() - 1;
        c.setPosition(std::min(c_.anchor(), max));
        c.setPosition(std::min(c_.position(), max), QTextCursor::KeepAnchor);
        ed_->setTextCursor(c);
        ed_->horizontalScrollBar()->setValue(h_);
        ed_->verticalScrollBar()->setValue(v_);
    }

private:
    QPlainTextEdit* ed_;
    QTextCursor c_;
    int h_, v_;
};

} // namespace

Editeur::Editeur(QWidget* parent) : QPlainTextEdit(parent) {
    for (const QString& m : MotsCanoniques()) mots_.insert(m.toUpper(), m);
    // The window's undo keeps its own snapshots; the document's own stack
    // would only fill up with colour changes.
    document()->setUndoRedoEnabled(false);
    setLineWrapMode(QPlainTextEdit::NoWrap);
    setTabChangesFocus(false);
    // First: the slots that follow may read the text.
    connect(document(), &QTextDocument::contentsChange, this, [this] { texteCrLf_.reset(); });
    connect(document(), &QTextDocument::contentsChange, this, &Editeur::Changement);
}

// --- the text and its positions

QString Editeur::TexteCrLf() const {
    if (!texteCrLf_) {
        QString t = document()->toRawText();
        t.replace(QChar::ParagraphSeparator, QStringLiteral("\r\n")); // the ends of the blocks
        texteCrLf_ = TexteHorsDocument(t);
    }
    return *texteCrLf_;
}

void Editeur::ChargeTexte(const QString& texteCrLf) {
    ColorationActive = false;
    LigneDebut = LigneFin = -1;
    LigneSale = false;
    QStringList lignes = texteCrLf.split(QStringLiteral("\r\n"));
    if (!lignes.isEmpty() && lignes.last().isEmpty()) lignes.removeLast();
    QString t;
    if (!lignes.isEmpty()) t = TexteDocument(lignes.join(u'\n')) + u'\n';
    TexteNoir(t);
    ColorationActive = true;
    ColoreTexte(0, document()->characterCount());
    QTextCursor c(document());
    setTextCursor(c);
    LigneDebut = LigneFin = 0;
    MajLigne();
}

void Editeur::TexteNoir(const QString& texte) {
    // A new text takes the caret's format: behind a line marked red as an
    // error it would be red, and a red line is never coloured again.
    moveCursor(QTextCursor::Start); // no selection: the format goes to what comes
    QTextCharFormat noir;
    noir.setForeground(Noir);
    setCurrentCharFormat(noir);
    setPlainText(texte);
}

void Editeur::RetrouvePlace(int debut, int longueur, int defilement) {
    const int max = document()->characterCount() - 1;
    QTextCursor c(document());
    c.setPosition(std::min(debut, max));
    c.setPosition(std::min(debut + longueur, max), QTextCursor::KeepAnchor);
    setTextCursor(c);
    verticalScrollBar()->setValue(defilement);
}

QString Editeur::TexteDocument(QString texteCrLf) {
    texteCrLf.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    texteCrLf.replace(u'\r', u'\n');
    return Echange(texteCrLf, true);
}

QString Editeur::TexteHorsDocument(QString texte) { return Echange(texte, false); }

int Editeur::VersCrLf(int positionDocument) const {
    const QTextBlock b = document()->findBlock(positionDocument);
    return positionDocument + (b.isValid() ? b.blockNumber() : std::max(0, document()->blockCount() - 1));
}

int Editeur::VersDocument(int positionCrLf) const {
    int ligne = 0;
    for (QTextBlock b = document()->begin(); b.isValid(); b = b.next(), ++ligne) {
        const int debut = b.position() + ligne;         // CR LF position of the line start
        const int fin = debut + b.length() - 1;          // its CR
        if (positionCrLf <= fin || !b.next().isValid())
            return b.position() + std::clamp(positionCrLf - debut, 0, b.length() - 1);
        if (positionCrLf < fin + 2) return b.position() + b.length() - 1; // on the LF
    }
    return 0;
}

int Editeur::LigneDe(int positionDocument) const {
    const QTextBlock b = document()->findBlock(positionDocument);
    return b.isValid() ? b.blockNumber() : document()->blockCount() - 1;
}

int Editeur::LigneCaret() const { return textCursor().blockNumber(); }
int Editeur::NombreLignes() const { return document()->blockCount(); }

void Editeur::MajLigne() { emit ligneChangee(LigneCaret() + 1, NombreLignes()); }

// --- colouring

void Editeur::Peint(int debut, int longueur, const QColor& couleur) {
    if (longueur <= 0) return;
    const bool garde = ColorationActive;
    ColorationActive = false;
    QTextCursor c(document());
    c.setPosition(debut);
    c.setPosition(std::min(debut + longueur, document()->characterCount() - 1), QTextCursor::KeepAnchor);
    QTextCharFormat f;
    f.setForeground(couleur);
    c.mergeCharFormat(f);
    ColorationActive = garde;
}

QColor Editeur::CouleurA(int position) const {
    QTextCursor c(document());
    c.setPosition(std::min(position + 1, document()->characterCount() - 1));
    return c.charFormat().foreground().color();
}

bool Editeur::LigneRouge(int ligne) const {
    const QTextBlock b = document()->findBlockByNumber(ligne);
    if (!b.isValid() || b.length() <= 1) return false;
    for (auto it = b.begin(); !it.atEnd(); ++it) {
        const QTextFragment f = it.fragment();
        if (!f.isValid()) continue;
        if (f.charFormat().foreground().color() != Rouge) return false;
    }
    return true;
}

QFont Editeur::Police() {
    QFont police(QStringLiteral("Courier New"));
    police.setStyleHint(QFont::Monospace);
    police.setPointSizeF(10);
    return police;
}

int Editeur::DebutCommentaire(const QString& t, int depuis) {
    for (int p = int(t.indexOf(u'\'', depuis)); p >= 0; p = int(t.indexOf(u'\'', p + 1)))
        if (!(p > 0 && p + 1 < t.size() && t[p - 1] == u'"' && t[p + 1] == u'"')) return p;
    return -1;
}

void Editeur::BornesMotCle(const QString& ligne, int& debut, int& fin) {
    const QString haut = ligne.toUpper();
    debut = 0;
    while (debut < ligne.size() && ligne[debut] == u' ') ++debut;
    int f = -1;
    const QString reste = haut.mid(debut);
    if (!reste.startsWith(QLatin1String("IF")) && !reste.startsWith(QLatin1String("ELSEIF")))
        f = int(ligne.indexOf(u'='));
    if (f < 0) f = int(ligne.indexOf(u' ', debut));
    if (f < 0) f = int(ligne.size());
    while (f > debut && ligne[f - 1] == u' ') --f;
    fin = f;
}

QString Editeur::Orthographe(const QString& mot) const {
    const QString haut = mot.toUpper();
    const auto it = mots_.constFind(haut);
    if (it != mots_.constEnd()) return *it;
    const QString alias = AliasEditeur(haut);
    if (!alias.isEmpty()) return alias;
    if (CommandesExternes)
        for (const QString& n : *CommandesExternes)
            if (n.toUpper() == haut) return n;
    return QString();
}


void Editeur::ColoreLigneNo(int ligne) { ColoreSegment(ligne, 0, 0); }

void Editeur::ColoreSegment(int ligne, int decalage, int profondeur) {
    const QTextBlock b = document()->findBlockByNumber(ligne);
    if (!b.isValid()) return;
    // 1.
    const bool garde = ColorationActive;
    ColorationActive = false;
    QScrollBar* hs = horizontalScrollBar();
    const int h = hs->value();
    struct Fin {
        Editeur* ed; QScrollBar* hs; int h; bool garde;
        ~Fin() { hs->setValue(h); ed->ColorationActive = garde; }
    } fin{this, hs, h, garde};
    const int base = b.position() + decalage;
    // 2.
    if (decalage == 0 && LigneRouge(ligne)) return;
    const QString brut = b.text();
    const int L = int(brut.size()) - decalage;
    if (L <= 0) return;
    Peint(base, L, Noir);
    // 3.
    const QString t = Blancs(brut.mid(decalage));
    int n = 0;
    while (n < t.size() && t[n] == u' ') ++n;
    // 4.
    if (n >= t.size()) return;
    if (t[n] == u'\'') {
        Peint(base, L, Vert);
        return;
    }
    if (decalage == 0 && ligne > 0) {
        const QTextBlock avant = b.previous();
        const QString ta = avant.text();
        if (ta.endsWith(QLatin1String(" _"))) {
            const QColor c = ta.size() >= 3 ? CouleurA(avant.position() + int(ta.size()) - 3) : Noir;
            Peint(base, L, c);
            return;
        }
    }
    // 5.
    int kd = 0, kf = 0;
    BornesMotCle(t, kd, kf);
    const QString mot = t.mid(kd, kf - kd);
    if (mot.isEmpty() || mot.startsWith(u'%') || mot.endsWith(u':')) return;
    const QString orth = Orthographe(mot);
    if (orth.isEmpty() || orth.size() > mot.size()) return;
    if (!mot.startsWith(orth)) {
        GardeVue vue(this);
        QTextCursor c(document());
        c.setPosition(base + kd);
        c.setPosition(base + kd + int(orth.size()), QTextCursor::KeepAnchor);
        QTextCharFormat f;
        f.setForeground(Bleu);
        c.insertText(orth, f);
    }
    Peint(base + kd, int(mot.size()), Bleu);
    // 6.
    const QString motHaut = orth.toUpper();
    if (!motHaut.startsWith(QLatin1String("TEXTE")) && !motHaut.startsWith(QLatin1String("LISTEVAR"))) {
        const int p = DebutCommentaire(t, kf);
        if (p >= 0) Peint(base + p, L - p, Vert);
    }
    // 7.
    const QString haut = Blancs(document()->findBlockByNumber(ligne).text().mid(decalage)).toUpper();
    if (haut.mid(n).startsWith(QLatin1String("IF"))) {
        const int g = int(haut.indexOf(QLatin1String("GOTO")));
        if (g >= 0) {
            Peint(base + g, 4, Bleu);
        } else {
            const int th = int(haut.indexOf(QLatin1String("THEN")));
            if (th >= 0) {
                Peint(base + th, 4, Bleu);
                if (profondeur < 16) ColoreSegment(ligne, decalage + th + 4, profondeur + 1);
            }
        }
    }
}

void Editeur::ColoreTexte(int debut, int longueur) {
    // The document tells its changes at the end of the edit block: the change
    // event must still be off then.
    const bool garde = ColorationActive;
    ColorationActive = false;
    QTextCursor lot(document());
    lot.beginEditBlock();
    QTextBlock b = document()->findBlock(debut);
    while (b.isValid() && b.position() <= debut + longueur) {
        const int n = b.blockNumber();
        ColoreLigneNo(n);
        b = document()->findBlockByNumber(n + 1);
    }
    lot.endEditBlock();
    ColorationActive = garde;
}

void Editeur::ColoreBloc() {
    if (LigneDebut < 0) return;
    const int derniere = NombreLignes() - 1;
    const bool garde = ColorationActive;
    ColorationActive = false;
    QTextCursor lot(document());
    lot.beginEditBlock();
    for (int l = LigneDebut; l <= std::min(LigneFin, derniere); ++l) ColoreLigneNo(l);
    lot.endEditBlock();
    ColorationActive = garde;
}

void Editeur::VideLigneSale() {
    if (!LigneSale) return;
    {
        GardeVue vue(this);
        ColoreBloc();
    }
    LigneDebut = LigneFin = LigneCaret();
    LigneSale = false;
}

void Editeur::Cmd_Ctrl_K() {
    GardeVue vue(this);
    ColoreTexte(0, document()->characterCount());
}

void Editeur::MarqueRouge(int debut, int longueur, bool caret) {
    const int max = document()->characterCount() - 1;
    debut = std::clamp(debut, 0, max);
    Peint(debut, std::min(longueur, max - debut), Rouge);
    if (!caret) return;
    ColorationActive = false;
    QTextCursor c(document());
    c.setPosition(debut);
    setTextCursor(c);
    ensureCursorVisible();
    ColorationActive = true;
}

void Editeur::Remplace(int debut, int longueur, const QString& texte) {
    ColorationActive = false;
    const int max = document()->characterCount() - 1;
    QTextCursor c(document());
    c.setPosition(std::clamp(debut, 0, max));
    c.setPosition(std::clamp(debut + longueur, 0, max), QTextCursor::KeepAnchor);
    QTextCharFormat f;
    f.setForeground(Noir);
    c.insertText(TexteDocument(texte), f);
    ColorationActive = true;
    Modifie = true;
}

void Editeur::InsereTexte(const QString& texte) {
    QTextCursor c = textCursor();
    QTextCharFormat f;
    f.setForeground(Noir);
    c.insertText(TexteDocument(texte), f);
    setTextCursor(c);
    emit insere();
}

// --- the change event

void Editeur::Changement(int, int, int) {
    if (!ColorationActive) return;
    Modifie = true;
    LigneSale = true;
    const int ligne = LigneCaret();
    int debut = ligne, fin = ligne;
    while (debut > 0 && document()->findBlockByNumber(debut - 1).text().endsWith(QLatin1String(" _"))) --debut;
    const int derniere = NombreLignes() - 1;
    while (fin < derniere && document()->findBlockByNumber(fin).text().endsWith(QLatin1String(" _"))) ++fin;
    LigneDebut = debut;
    LigneFin = fin;
    const QTextBlock a = document()->findBlockByNumber(debut);
    const QTextBlock z = document()->findBlockByNumber(fin);
    Peint(a.position(), z.position() + z.length() - 1 - a.position(), Noir);
}

// --- keys and mouse

void Editeur::keyPressEvent(QKeyEvent* ev) {
    const int k = ev->key();
    const Qt::KeyboardModifiers m =
        ev->modifiers() & (Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier);
    switch (k) {
    case Qt::Key_F2:
        if (m == Qt::NoModifier || m == Qt::ControlModifier) emit masque();
        else if (m == Qt::ShiftModifier) emit resumeSyntaxes();
        else if (m == Qt::AltModifier) emit bulleSyntaxe();
        return;
    case Qt::Key_F3:
        emit suivant();
        return;
    case Qt::Key_Escape:
        emit arret();
        return;
    default:
        break;
    }
    if (m == Qt::ControlModifier) {
        switch (k) {
        case Qt::Key_F: emit rechercher(); return;
        case Qt::Key_H: emit remplacer(); return;
        case Qt::Key_V: Colle(); return;
        case Qt::Key_X: emit coupe(int(document()->characterCount() - 1)); break;
        case Qt::Key_Y: emit refaire(); return;
        case Qt::Key_Z:
            emit defaire();
            Modifie = true;
            return;
        case Qt::Key_A: selectAll(); return;
        case Qt::Key_K: Cmd_Ctrl_K(); return;
        default: break;
        }
    }
    if ((k == Qt::Key_Return || k == Qt::Key_Enter) && LigneSale) {
        LigneFin = std::min(LigneFin + 1, NombreLignes() - 1);
        {
            GardeVue vue(this);
            ColoreBloc();
        }
        LigneDebut = LigneFin = LigneCaret();
    }
    if ((k == Qt::Key_Return || k == Qt::Key_Enter) && (ev->modifiers() & Qt::ShiftModifier)) {
        // A line of a command file ends in one way: Shift+Enter breaks it as Enter
        // does, not by a line separator inside it.
        QKeyEvent sansMaj(ev->type(), k, ev->modifiers() & ~Qt::ShiftModifier, ev->text(),
                          ev->isAutoRepeat(), ushort(ev->count()));
        QPlainTextEdit::keyPressEvent(&sansMaj);
        return;
    }
    QPlainTextEdit::keyPressEvent(ev);
}

void Editeur::ApresDeplacement(int touche, bool clavier, Qt::KeyboardModifiers m) {
    MajLigne();
    const int l = LigneCaret();
    if (l < LigneDebut || l > LigneFin) {
        if (!(clavier && touche == Qt::Key_F3)) VideLigneSale();
        const bool ctrlH = clavier && touche == Qt::Key_H && m == Qt::ControlModifier;
        if (!(clavier && touche == Qt::Key_F3) && !ctrlH) PositionRecherche = -1;
    }
}

void Editeur::keyReleaseEvent(QKeyEvent* ev) {
    QPlainTextEdit::keyReleaseEvent(ev);
    const Qt::KeyboardModifiers m =
        ev->modifiers() & (Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier);
    ApresDeplacement(ev->key(), true, m);
    emit toucheRelachee(ev->key(), m);
}

void Editeur::mousePressEvent(QMouseEvent* ev) {
    emit sourisEnfoncee();
    QPlainTextEdit::mousePressEvent(ev);
}

void Editeur::mouseReleaseEvent(QMouseEvent* ev) {
    QPlainTextEdit::mouseReleaseEvent(ev);
    ApresDeplacement(0, false, Qt::NoModifier);
    emit sourisRelachee();
}

void Editeur::Colle() {
    const QMimeData* m = QGuiApplication::clipboard()->mimeData();
    if (m && m->hasText()) InsereColore(m->text());
}

void Editeur::InsereColore(const QString& texte) {
    const QString t = TexteDocument(texte);
    if (t.isEmpty()) return;
    setUpdatesEnabled(false);
    QTextCursor c = textCursor();
    const int debut = document()->findBlock(c.selectionStart()).position();
    const QTextBlock bFin = document()->findBlock(c.position());
    const int fin = bFin.position() + bFin.length() - 1 + int(t.size());
    QTextCharFormat f;
    f.setForeground(Noir);
    c.insertText(t, f);
    setTextCursor(c);
    {
        GardeVue vue(this);
        ColoreTexte(debut, fin - debut);
    }
    c = textCursor();
    c.clearSelection();
    setTextCursor(c);
    LigneDebut = LigneFin = LigneCaret();
    setUpdatesEnabled(true);
}

bool Editeur::canInsertFromMimeData(const QMimeData* source) const { return source->hasText(); }

QMimeData* Editeur::createMimeDataFromSelection() const {
    // Copy, cut and drag give plain text with the file's own characters.
    auto* m = new QMimeData;
    m->setText(TexteHorsDocument(textCursor().selectedText().replace(QChar::ParagraphSeparator, u'\n')));
    return m;
}

void Editeur::insertFromMimeData(const QMimeData* source) {
    // Drops and the context menu's paste: plain text, coloured as Ctrl-V does,
    // and an undo level of its own.
    if (!source->hasText()) return;
    InsereColore(source->text());
    if (!depot_) emit insere();
}

void Editeur::dropEvent(QDropEvent* ev) {
    // A text moved inside the editor leaves its old line changed: a cursor
    // there follows the drop's edits.
    QTextCursor origine;
    if (ev->source() == this || ev->source() == viewport()) {
        origine = textCursor();
        origine.setPosition(origine.selectionStart());
    }
    depot_ = true;
    QPlainTextEdit::dropEvent(ev);
    depot_ = false;
    if (!ev->isAccepted()) return;
    // The drop tells its changes when its edit block closes, after the
    // insertion was coloured: the old line and the caret's line are coloured
    // again then, the other lines and their marks left as they are.
    {
        GardeVue vue(this);
        if (!origine.isNull()) ColoreTexte(origine.position(), 0);
    }
    LigneSale = true;
    VideLigneSale();
    emit insere();
}

// --- the syntax tip

QString Editeur::MotSyntaxe(const QString& ligne, bool apresSuite) {
    const QString t = Blancs(ligne).trimmed();
    if (t.startsWith(u'\'')) return QStringLiteral("COM");
    if (apresSuite) return QStringLiteral("SUITE");
    int f = int(t.indexOf(u'='));
    if (f < 0) f = int(t.indexOf(u' '));
    if (f < 0) f = int(t.size());
    QString mot = t.left(f).trimmed().toUpper() + u' ';
    // A condition may hold "=" or blanks: the tip keys on the leading IF or IFT.
    for (const char* c : {"IF ", "IFT "})
        if (mot.startsWith(QLatin1String(c))) return QString::fromLatin1(c).trimmed();
    return mot.trimmed();
}

QString Editeur::MotSyntaxeCaret() const {
    const QTextBlock b = textCursor().block();
    const bool suite = b.previous().isValid() && b.previous().text().endsWith(QLatin1String(" _"));
    return MotSyntaxe(b.text(), suite);
}

