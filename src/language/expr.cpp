// Provisional: plain numbers only, until Part 1.4 lands (issue 3).
#include "language/expr.h"

#include "language/erreur.h"
#include "language/etat.h"
#include "language/vb.h"

std::optional<double> EvalExpr(Etat&, QString& texte) {
    QString t = vb::Trim(texte);
    if (t.isEmpty()) t = QStringLiteral("0");
    bool ok = false;
    const double v = t.toDouble(&ok);
    if (!ok) throw ErreurProvoquee("EvalExpr");
    return v;
}

QString EvalTexte(Etat& e, QString texte) {
    const auto v = EvalExpr(e, texte);
    return QString::number(v.value_or(0));
}

bool Vrai(Etat& e, const QString& texte) {
    QString t = texte;
    return EvalExpr(e, t).value_or(0) != 0;
}

float Prefixe(float valeur, QString& lettre) {
    lettre.clear();
    return valeur;
}
