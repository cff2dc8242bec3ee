#include "Apps/Simulator/Program.hpp"

#include <iostream>
#include <string>
#include <vector>

int main(int argumentCount, char** arguments) {
    const std::vector<std::string> list(arguments + (argumentCount > 0 ? 1 : 0), arguments + argumentCount);
    return Simulator::runProgram(list, std::cout, std::cerr);
}
