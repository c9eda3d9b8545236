#include "qor/Program.h"

#include <iostream>

int main(int argc, char** argv) {
    return qorprogram::run(argc, argv, std::cout, std::cerr);
}
