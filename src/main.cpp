#include <iostream>

#include "protocol/programm.h"

int main(int argc, char** argv) { return Programm(argc, argv, std::cin, std::cout, std::cerr); }
