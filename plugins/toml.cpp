// toml++, compiled into the plugins' binaries, which then need no library of that name.
#define TOML_IMPLEMENTATION
#include <toml++/toml.h>
