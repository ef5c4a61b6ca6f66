// Tests in C. TEST(Sentence) { ... } defines one, which CTest knows as Control.Sentence; CHECK says
// which condition isn't met and goes on.

#ifndef CHANNELSTRIP_TESTING_H
#define CHANNELSTRIP_TESTING_H

typedef struct Test {
  const char* name;
  void (*run)(void);
  struct Test* next;
} Test;

void add_test(Test* test);
void report_failure(const char* file, int line, const char* condition);

#define TEST(sentence)                                            \
  static void sentence(void);                                     \
  __attribute__((constructor)) static void add_##sentence(void) { \
    static Test test = {.name = #sentence, .run = sentence};      \
    add_test(&test);                                              \
  }                                                               \
  static void sentence(void)

#define CHECK(condition) ((condition) ? (void)0 : report_failure(__FILE__, __LINE__, #condition))

#endif
