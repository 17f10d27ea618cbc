// Helpers shared by the tests: run a program headless and look at what it did.
#pragma once

#include "app/core/dump.h"
#include "app/core/session.h"
#include "language/erreur.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QString>
#include <QStringList>

#include <gtest/gtest.h>

#include <memory>

// A program text from lines written with "\n": the editor's CR LF.
inline QString Programme(const QString& lignes) {
    QString t = lignes;
    t.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    t.replace(QStringLiteral("\n"), QStringLiteral("\r\n"));
    return t;
}

// Runs a program on the headless screen pane (297 x 210 mm, 96 dpi, zoom 1).
inline std::unique_ptr<Session> Lance(const QString& lignes, QStringList reponses = {}) {
    auto s = std::make_unique<Session>(Programme(lignes));
    s->hote.Reponses = reponses;
    s->Execute();
    return s;
}

// Runs a program with the virtual 600 dpi printer (A4 portrait) as Surface.
inline std::unique_ptr<Session> LanceImprimante(const QString& lignes) {
    auto s = std::make_unique<Session>(Programme(lignes));
    s->ExecuteImprimante();
    return s;
}

// The recorded operations of one kind.
inline QVector<OpSurface> Ops(const Session& s, OpSurface::Genre g) {
    QVector<OpSurface> r;
    for (const OpSurface& op : s.journal)
        if (op.genre == g) r.append(op);
    return r;
}

inline QVector<OpSurface> Lignes(const Session& s) { return Ops(s, OpSurface::Ligne); }

// The texts of the message boxes of the run.
inline QStringList Messages(const Session& s) {
    QStringList r;
    for (const MessageEnregistre& m : s.hote.Messages()) r << m.texte;
    return r;
}

// A variable of level 1 (empty when undefined).
inline QString Variable(Session& s, const QString& nom) {
    const CtxFic& c = s.etat.PileFic[1];
    for (int i = 1; i <= c.NbVar; ++i)
        if (c.NomVar[i].compare(nom, Qt::CaseInsensitive) == 0) return c.ValVar[i];
    return QString();
}

// A program run as a process: its exit code (-1 when it did not end within
// 90 s), standard output and standard error.
struct SortieProcessus {
    int code = -1;
    QByteArray out, err;
    QJsonObject Json() const { return QJsonDocument::fromJson(out).object(); }
};

inline SortieProcessus Execute(const QString& programme, const QStringList& args,
                               const QProcessEnvironment& env = QProcessEnvironment::systemEnvironment()) {
    QProcess p;
    p.setProcessEnvironment(env);
    p.start(programme, args);
    if (p.waitForFinished(90000)) return {p.exitCode(), p.readAllStandardOutput(), p.readAllStandardError()};
    p.kill();
    p.waitForFinished();
    return {-1, {}, "did not end"};
}

// The mirel program built with the tests.
inline SortieProcessus Mirel(const QStringList& args) { return Execute(QStringLiteral(MIREL_BINARY), args); }

// GoogleTest prints QStrings as text.
QT_BEGIN_NAMESPACE
inline void PrintTo(const QString& s, std::ostream* os) { *os << '"' << s.toStdString() << '"'; }
QT_END_NAMESPACE

#define EXPECT_MM(a, b) EXPECT_NEAR((a), (b), 0.001)
