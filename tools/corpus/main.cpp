#include <iostream>

#include "command.h"

int main(int argc, char** argv) {
    return corpus::runCommand({argv + (argc > 0 ? 1 : 0), argv + argc}, std::cout, std::cerr);
}
