#include "app/core/dump.h"

#include "app/core/session.h"

#include <QJsonArray>

namespace {

QJsonValue Optionnel(const std::optional<double>& v) { return v ? QJsonValue(*v) : QJsonValue(); }

QJsonObject Variables(const CtxFic& c) {
    QJsonObject o;
    for (int i = 1; i <= c.NbVar; ++i)
        if (!c.NomVar[i].isEmpty()) o.insert(c.NomVar[i], c.ValVar[i]);
    return o;
}

const char* NomBoutons(Boutons b) {
    switch (b) {
    case Boutons::Ok: return "ok";
    case Boutons::OkAnnuler: return "okcancel";
    case Boutons::OuiNon: return "yesno";
    case Boutons::OuiNonAnnuler: return "yesnocancel";
    }
    return "ok";
}

const char* NomReponse(Reponse r) {
    switch (r) {
    case Reponse::Ok: return "ok";
    case Reponse::Annuler: return "cancel";
    case Reponse::Oui: return "yes";
    case Reponse::Non: return "no";
    }
    return "ok";
}

} // namespace

QString CouleurHex(int bgr) {
    if (bgr < 0) return QStringLiteral("none");
    return QStringLiteral("#%1%2%3")
        .arg(bgr & 0xFF, 2, 16, QLatin1Char('0'))
        .arg((bgr >> 8) & 0xFF, 2, 16, QLatin1Char('0'))
        .arg((bgr >> 16) & 0xFF, 2, 16, QLatin1Char('0'));
}

QJsonObject OpVersJson(const OpSurface& op) {
    QJsonObject o;
    auto trait = [&] {
        o.insert("color", CouleurHex(op.couleur));
        o.insert("width", op.largeur);
        o.insert("width_mm", op.largeurMm);
    };
    switch (op.genre) {
    case OpSurface::Ligne:
        o.insert("op", "line");
        o.insert("x1", op.x1); o.insert("y1", op.y1); o.insert("x2", op.x2); o.insert("y2", op.y2);
        trait();
        break;
    case OpSurface::Cercle:
        o.insert("op", "circle");
        o.insert("x", op.x1); o.insert("y", op.y1); o.insert("r", op.r);
        o.insert("start", Optionnel(op.debut));
        o.insert("end", Optionnel(op.fin));
        o.insert("aspect", op.aspect);
        o.insert("fill", op.remplissage ? QJsonValue(CouleurHex(*op.remplissage)) : QJsonValue());
        trait();
        break;
    case OpSurface::Polygone: {
        o.insert("op", "polygon");
        QJsonArray pts;
        for (const QPointF& p : op.points) pts.append(QJsonArray{p.x(), p.y()});
        o.insert("points", pts);
        o.insert("fill", op.remplissage ? QJsonValue(CouleurHex(*op.remplissage)) : QJsonValue());
        trait();
        break;
    }
    case OpSurface::Texte:
        o.insert("op", "text");
        o.insert("x", op.x1); o.insert("y", op.y1);
        o.insert("angle", op.angle);
        o.insert("text", op.texte);
        o.insert("font", op.police);
        o.insert("size", op.taille);
        o.insert("bold", op.gras); o.insert("italic", op.italique); o.insert("underline", op.souligne);
        o.insert("color", CouleurHex(op.couleur));
        break;
    case OpSurface::Point:
        o.insert("op", "pset");
        o.insert("x", op.x1); o.insert("y", op.y1);
        o.insert("color", CouleurHex(op.couleur));
        break;
    case OpSurface::Image:
        o.insert("op", "image");
        o.insert("file", op.fichier);
        o.insert("x", op.x1); o.insert("y", op.y1); o.insert("w", op.x2); o.insert("h", op.y2);
        break;
    case OpSurface::Effacement:
        o.insert("op", "clear");
        break;
    case OpSurface::NouvellePage:
        o.insert("op", "newpage");
        break;
    }
    return o;
}

QJsonObject DumpJson(const Session& s) {
    QJsonObject o;
    QJsonArray ops;
    for (const OpSurface& op : s.journal) ops.append(OpVersJson(op));
    o.insert("ops", ops);
    QJsonArray messages;
    for (const MessageEnregistre& m : s.hote.Messages()) {
        messages.append(QJsonObject{{"title", m.titre},
                                    {"text", m.texte},
                                    {"buttons", NomBoutons(m.boutons)},
                                    {"answer", NomReponse(m.reponse)}});
    }
    o.insert("messages", messages);
    o.insert("variables", Variables(s.etat.PileFic[1]));
    o.insert("shared", Variables(s.etat.PileFic[0]));
    o.insert("point", QJsonArray{double(s.etat.Repere.PointX), double(s.etat.Repere.PointY)});
    o.insert("editor", s.hote.TexteEditeur());
    o.insert("editor_changed", s.hote.TexteModifie());
    return o;
}
