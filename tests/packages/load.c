// Loads what hosts load by name, from where the system has it: load LIBRARY SYMBOL
#include <dlfcn.h>
#include <stdio.h>

int main(int count, char** words) {
  void* const library = count == 3 ? dlopen(words[1], RTLD_NOW | RTLD_LOCAL) : NULL;
  if (library && dlsym(library, words[2])) return 0;
  const char* const fault = dlerror();
  fprintf(stderr, "load: %s\n", fault ? fault : "usage: load LIBRARY SYMBOL");
  return 1;
}
