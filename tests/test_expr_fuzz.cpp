// Seeded random texts through the rewriters: only the failure of the line
// (ErreurProvoquee) may come out; no crash, no hang, no other exception.
#include "language/erreur.h"
#include "language/etat.h"
#include "language/expr.h"
#include "language/para.h"
#include "language/textes.h"
#include "language/variables.h"

#include <QStringList>

#include <gtest/gtest.h>

#include <random>

TEST(FuzzExpr, OnlyTheFailureOfTheLineComesOut) {
    static const QStringList morceaux = {
        "0", "1", "2", "5", "9", "12", ".", ".5", "1E3", "E", "E+", "E-", "+", "-", "*", "/", "^",
        "(", ")", "((", "))", ",", " ", "MOD", "SIN(", "COS(", "TAN(", "ASIN(", "ACOS(", "ATAN(",
        "SINH(", "COSH(", "LOG(", "SQR(", "ABS(", "SGN(", "FIX(", "ALE(", "RND2(", "RND(", "ARG(",
        "AND", "OR", "XOR", "NOT", "<", "=", ">", "<=", "==", "a", "X", "Z", "\"", "\",\"", "\")",
        "#", "##", "%", "%A", "%Lef", "%IRE$#0", "IRE$", "REPL(", "LEF3(", "LEFL(", "RIG2(", "RIGR(",
        "UCAS(", "INS(", "Ins(", "NBP(", "NB§(", "NBCR(", "LEN(\"", "TXT(", "ARR2(", "ARR", "§", "\r",
        "é", "1E38", "1E-40", "99999999", "VAR(", "VAR(%A)", "%A(", "%A(#", "%A(§", "(2)", "%IRE$-1",
        "°", "R", "%CR", "%Date", "%PI"};
    using Routine = void (*)(Etat&, QString&);
    const std::pair<const char*, Routine> routines[] = {
        {"EvalExpr", [](Etat& e, QString& t) { EvalExpr(e, t); }},
        {"EvalTexte", [](Etat& e, QString& t) { t = EvalTexte(e, t); }},
        {"FonctionsTexte", FonctionsTexte}, {"EvalDiese", EvalDiese},
        {"FonctionsComptage", FonctionsComptage}, {"FormatTexte", FormatTexte},
        {"RemplaceVar", [](Etat& e, QString& t) { RemplaceVar(e, t); }},
        {"ParaVal", [](Etat& e, QString& t) { ParaVal(e, t, 2); }},
        {"ParaCoord", [](Etat& e, QString& t) { double x = 0, y = 0; ParaCoord(e, x, y, t, 1, 0, 0); }}};

    // MIREL_FUZZ_GRAINE and MIREL_FUZZ_TOURS set another seed and count for a longer hunt.
    bool ok = false;
    const int graine = qEnvironmentVariableIntValue("MIREL_FUZZ_GRAINE", &ok);
    std::mt19937 g(ok ? uint32_t(graine) : 20240611u);
    const int tours = qEnvironmentVariableIntValue("MIREL_FUZZ_TOURS", &ok);
    std::uniform_int_distribution<int> longueur(0, 24), choix(0, int(morceaux.size()) - 1);
    for (int i = 0, n = ok ? tours : 15000; i < n; ++i) {
        QString texte;
        for (int k = longueur(g); k > 0; --k) texte += morceaux[choix(g)];
        for (const auto& [nom, routine] : routines) {
            Etat e; // at level 1, with %A and %Lef, neither referring to itself
            e.NiveauCourant = 1;
            EcritVarTxt(e, 1, "%A", "3");
            EcritVarTxt(e, 1, "%Lef", "2");
            QString t = texte;
            std::string sortie;
            try {
                routine(e, t);
            } catch (const ErreurProvoquee&) {
            } catch (const std::exception& x) {
                sortie = x.what();
            } catch (...) {
                sortie = "unknown exception";
            }
            EXPECT_TRUE(sortie.empty()) << nom << "(\"" << texte.toStdString() << "\"): " << sortie;
        }
    }
}
