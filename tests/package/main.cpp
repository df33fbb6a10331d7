#include "fuzzylogic/FuzzyLogic.h"

int main() {}
