// Prints the part of docs/faults.md that follows from the table of faults.

#include "tests/faults/FaultDocument.h"

#include <iostream>

int main()
{
    std::cout << orlimo::faultDocument();
    return 0;
}
