// The export of the window (PDF, SVG, PNG): a dialog for the page, its
// orientation, the resolution of a PNG and, for an SVG, text as outlines;
// then the file's name, then the run to that file at true size
// (core/rendu). The choices are kept in "Mirel.cfg" under "Export =".
#pragma once

#include <QDialog>
#include <QSizeF>
#include <QString>

class Form1;
class QCheckBox;
class QComboBox;
class QSpinBox;

struct ChoixExport {
    QString page = QStringLiteral("A4"); // one of NomsPages()
    bool paysage = false;
    int dpi = 300;                       // PNG only
    bool contours = false;               // SVG only
};

// The value of "Export =": "A4;Portrait;300;Texte" ("Contours" for outlines).
QString TexteChoixExport(const ChoixExport& c);
// Read back; what is missing or wrong keeps its default.
ChoixExport ChoixExportDe(const QString& texte);

class DialogueExport : public QDialog {
    Q_OBJECT
public:
    // `format`: "pdf", "svg" or "png"; the fields that do not apply are off.
    DialogueExport(QWidget* parent, int langue, const QString& format, const ChoixExport& choix);
    ChoixExport Choix() const;

    // The accelerators of the three export entries: Ctrl+E PDF, Ctrl+Shift+E
    // SVG, Ctrl+Alt+E PNG (no key of the window or the editor uses E).
    static void Raccourcis(Form1& f);
    // The export entry's command: dialog, file name, run; a failure in a box.
    static void Exporte(Form1& f, const QString& format);

    QComboBox* Page = nullptr;
    QComboBox* Orientation = nullptr;
    QSpinBox* Dpi = nullptr;
    QCheckBox* Contours = nullptr;
};
