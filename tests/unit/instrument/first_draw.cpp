// Prints the first number that this process draws.
#include <cstdio>

#include "instrument/random_source.h"

int main() {
    std::printf("%.17g\n", ORVA::RandomSource::OfProcess().Real(0.0, 1.0));
    return 0;
}
