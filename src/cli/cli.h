#pragma once
// The entry of the program: the window, or the render and dump commands.
int MirelMain(int argc, char** argv);
