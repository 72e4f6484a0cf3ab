// The program entry: command line, protocol choice and the input loop.
#pragma once

#include <iostream>

// Runs the engine on the given streams until "quit" or the end of input; returns the exit status.
int Programm(int argc, char** argv, std::istream& ein, std::ostream& aus, std::ostream& fehler);
