// Runs the tests that are named, or all.

#include <stdio.h>
#include <string.h>

#include "testing.h"

static Test* tests;
static int failures;

void add_test(Test* test) {
  test->next = tests;
  tests = test;
}

void report_failure(const char* file, int line, const char* condition) {
  if (++failures <= 20) fprintf(stderr, "%s:%d: %s\n", file, line, condition);
}

int main(int count, char** names) {
  int run = 0;
  for (const Test* test = tests; test; test = test->next) {
    int is_wanted = count == 1;
    for (int i = 1; i < count; ++i) is_wanted |= strcmp(names[i], test->name) == 0;
    if (!is_wanted) continue;
    const int before = failures;
    test->run();
    ++run;
    if (failures > before) fprintf(stderr, "failed: %s\n", test->name);
  }
  if (run == 0) fprintf(stderr, "no such test\n");
  return failures > 0 || run == 0;
}
