// Run-time input and output commands: data files, prompts, listings, shell.
#pragma once

struct Etat;

void CmdOpen(Etat& e);
void CmdLVar(Etat& e);
void CmdOpenA(Etat& e);
void CmdPrintA(Etat& e);
void CmdInput(Etat& e);
void CmdListeVar(Etat& e);
void CmdOptions(Etat& e);
void CmdShell(Etat& e);
