// The tests of what is written for every width, in one source: compiled once more, for registers of
// sixteen numbers.

#include "../conversions_test.cpp"
#include "../helpers_test.cpp"
#include "../rows_test.cpp"
