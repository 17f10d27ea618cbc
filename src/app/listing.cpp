#include "app/listing.h"

#include "app/editeur.h"

#include <QAbstractTextDocumentLayout>
#include <QFontMetricsF>
#include <QLocale>
#include <QPainter>
#include <QPrinter>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>

#include <algorithm>

QString EnteteListing(const QString& chemin, const QString& motSelection, const QDate& date) {
    const QString milieu = motSelection.isEmpty() ? QStringLiteral("  ")
                                                  : QStringLiteral(" (%1) ").arg(motSelection);
    return QStringLiteral("Mirel: ") + chemin + milieu + QLocale().toString(date, QLocale::ShortFormat);
}

namespace {

// Turns the text of `doc` into the listing; the number of sheets.
int PrepareListing(QTextDocument& doc, const QString& entete) {
    QTextCursor c(&doc);
    // A text that ends with a line break has no empty line after it.
    if (doc.blockCount() > 1 && doc.lastBlock().text().isEmpty()) {
        c.movePosition(QTextCursor::End);
        c.deletePreviousChar();
    }
    c.movePosition(QTextCursor::Start);
    QTextCharFormat vert;
    vert.setForeground(Editeur::Vert);
    c.insertText(entete, vert);
    c.insertBlock();
    c.insertBlock();
    const int lignes = doc.blockCount();
    const int pages = (lignes + LignesListing - 1) / LignesListing;
    c.movePosition(QTextCursor::End);
    for (int i = lignes; i < pages * LignesListing; ++i) c.insertBlock();
    return pages;
}

} // namespace

bool ImprimeListing(QPrinter& p, QTextDocument& doc, const QString& entete) {
    const int pages = PrepareListing(doc, entete);
    QPainter peintre;
    if (!peintre.begin(&p)) return false;
    // Laid out at the printer's resolution, one sheet line per block: a line
    // too long for the sheet is cut at its edge rather than wrapped, so that
    // each sheet keeps its 64 lines.
    QTextOption option = doc.defaultTextOption();
    option.setWrapMode(QTextOption::NoWrap);
    doc.setDefaultTextOption(option);
    doc.setDocumentMargin(0);
    doc.documentLayout()->setPaintDevice(&p);
    doc.markContentsDirty(0, doc.characterCount());
    const QRectF feuille(QPointF(0, 0), p.pageLayout().paintRectPixels(p.resolution()).size());
    QFont haut = doc.defaultFont(), pied = doc.defaultFont();
    haut.setPointSizeF(15);
    haut.setBold(true);
    haut.setItalic(false);
    pied.setPointSizeF(10);
    pied.setBold(false);
    pied.setItalic(false);
    const double margeHaut = 3 * QFontMetricsF(haut, &p).lineSpacing();
    const double lignePied = QFontMetricsF(pied, &p).lineSpacing();
    QAbstractTextDocumentLayout* mise = doc.documentLayout();
    bool bon = true;
    for (int k = 0; k < pages && bon; ++k) {
        if (k > 0) bon = p.newPage();
        const double y0 = mise->blockBoundingRect(doc.findBlockByNumber(k * LignesListing)).top();
        const double y1 =
            mise->blockBoundingRect(doc.findBlockByNumber((k + 1) * LignesListing - 1)).bottom();
        // Top margin, 64 lines, two empty lines and the footer: a sheet too
        // short for them gets them all smaller.
        const double hauteur = margeHaut + (y1 - y0) + 3 * lignePied;
        const double s = std::min(1.0, feuille.height() / hauteur);
        const double largeur = feuille.width() / s;
        peintre.save();
        peintre.scale(s, s);
        peintre.save();
        peintre.translate(0, margeHaut - y0);
        // Only this sheet's lines: the blocks that touch its edges stay out.
        doc.drawContents(&peintre, QRectF(0, y0 + 0.5, largeur, y1 - y0 - 1));
        peintre.restore();
        peintre.setFont(pied);
        peintre.setPen(Qt::black);
        peintre.drawText(QRectF(0, margeHaut + (y1 - y0) + 2 * lignePied, largeur, lignePied),
                         Qt::AlignHCenter | Qt::AlignTop,
                         QStringLiteral("- %1/%2 -").arg(k + 1).arg(pages));
        peintre.restore();
    }
    bon = peintre.end() && bon;
    return bon && p.printerState() != QPrinter::Error && p.printerState() != QPrinter::Aborted;
}

bool ImprimeListingTexte(QPrinter& p, const QString& texte, const QString& chemin) {
    QTextDocument doc;
    doc.setDefaultFont(Editeur::Police());
    doc.setPlainText(Editeur::TexteDocument(texte));
    return ImprimeListing(p, doc, EnteteListing(chemin, QString(), QDate::currentDate()));
}
