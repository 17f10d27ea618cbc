// The table of the messages in every language: `LoadResString`.
//
// The rows are data files in src/app/strings/ ("fr.txt", "en.txt", "de.txt",
// "es.txt", "ru.txt"), compiled in as a Qt resource. Each line is the row
// number within its section, a tab, and the text, where \n stands for a line
// break and \t for a tab. The section offsets are French 0, English 400,
// German 800, Spanish 1200, Russian stub 1600.
#pragma once

#include <QHash>
#include <QString>

class TableChaines {
public:
    // The table read from the resources; built once, then never changed.
    static const TableChaines& Standard();
    // Reads the section files of a folder or resource prefix (":/strings").
    static TableChaines Charge(const QString& dossier);

    // Row n (offset included); the empty text when the row does not exist.
    QString Texte(int n) const { return lignes_.value(n); }
    bool Existe(int n) const { return lignes_.contains(n); }
    int Taille() const { return int(lignes_.size()); }
    QList<int> Numeros() const;

    // "fr.txt" -> 0, "en.txt" -> 400 ...; -1 for another name.
    static int DecalageDeFichier(const QString& nom);
    // Reads one section file's text into rows (offset added).
    void AjouteSection(const QString& contenu, int decalage);

private:
    QHash<int, QString> lignes_;
};

// Row n of the standard table, n including the section offset.
QString LoadResString(int n);
