// Dovetails: `QA`, `QA1`, `QA2`, `QA12`, a joiner's row of dovetails between
// two points; the digits choose the sides that get the return lines.
#pragma once

#include <QString>

struct Etat;

// The routine of the four commands, `mot` being the keyword in upper case.
void QueuesAronde(Etat& e, const QString& mot);

void CmdQA(Etat& e);
void CmdQA1(Etat& e);
void CmdQA2(Etat& e);
void CmdQA12(Etat& e);
