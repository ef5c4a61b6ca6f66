// The program's own definitions take the place of the C library's and the C++ runtime's in every
// library that it has loaded, and go on to those.

#include "trap.h"

#include <dlfcn.h>
#include <pthread.h>
#include <semaphore.h>

#include <cstddef>
#include <cstdlib>
#include <ctime>

namespace {

channelstrip::test::Trapped* counted = nullptr;

void note(int channelstrip::test::Trapped::*what) {
  if (counted) ++(counted->*what);
}

void allocates() {
  note(&channelstrip::test::Trapped::allocations);
}

template <typename Function>
Function* next(const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

template <typename... Arguments>
int lock(const char* name, Arguments... arguments) {
  note(&channelstrip::test::Trapped::locks);
  return next<int(Arguments...)>(name)(arguments...);
}

}  // namespace

namespace channelstrip::test {

Trap::Trap(Trapped& where) {
  counted = &where;
}
Trap::~Trap() {
  counted = nullptr;
}

}  // namespace channelstrip::test

extern "C" {

void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* memory);

void* malloc(std::size_t size) {
  allocates();
  return __libc_malloc(size);
}
void* calloc(std::size_t count, std::size_t size) {
  allocates();
  return __libc_calloc(count, size);
}
void* realloc(void* memory, std::size_t size) {
  allocates();
  return __libc_realloc(memory, size);
}
void* memalign(std::size_t alignment, std::size_t size) {
  allocates();
  return __libc_memalign(alignment, size);
}
void* aligned_alloc(std::size_t alignment, std::size_t size) {
  allocates();
  return __libc_memalign(alignment, size);
}
int posix_memalign(void** memory, std::size_t alignment, std::size_t size) {
  allocates();
  *memory = __libc_memalign(alignment, size);
  return *memory ? 0 : 12;  // ENOMEM
}
void free(void* memory) {
  allocates();
  __libc_free(memory);
}

int pthread_mutex_lock(pthread_mutex_t* mutex) {
  return lock("pthread_mutex_lock", mutex);
}
int pthread_mutex_trylock(pthread_mutex_t* mutex) {
  return lock("pthread_mutex_trylock", mutex);
}
int pthread_mutex_timedlock(pthread_mutex_t* mutex, const timespec* until) {
  return lock("pthread_mutex_timedlock", mutex, until);
}
int pthread_mutex_unlock(pthread_mutex_t* mutex) {
  return lock("pthread_mutex_unlock", mutex);
}
int pthread_cond_wait(pthread_cond_t* condition, pthread_mutex_t* mutex) {
  return lock("pthread_cond_wait", condition, mutex);
}
int pthread_cond_timedwait(pthread_cond_t* condition, pthread_mutex_t* mutex,
                           const timespec* until) {
  return lock("pthread_cond_timedwait", condition, mutex, until);
}
int pthread_cond_signal(pthread_cond_t* condition) {
  return lock("pthread_cond_signal", condition);
}
int pthread_cond_broadcast(pthread_cond_t* condition) {
  return lock("pthread_cond_broadcast", condition);
}
int pthread_rwlock_rdlock(pthread_rwlock_t* rwlock) {
  return lock("pthread_rwlock_rdlock", rwlock);
}
int pthread_rwlock_wrlock(pthread_rwlock_t* rwlock) {
  return lock("pthread_rwlock_wrlock", rwlock);
}
int pthread_rwlock_tryrdlock(pthread_rwlock_t* rwlock) {
  return lock("pthread_rwlock_tryrdlock", rwlock);
}
int pthread_rwlock_trywrlock(pthread_rwlock_t* rwlock) {
  return lock("pthread_rwlock_trywrlock", rwlock);
}
int pthread_rwlock_unlock(pthread_rwlock_t* rwlock) {
  return lock("pthread_rwlock_unlock", rwlock);
}
int pthread_spin_lock(pthread_spinlock_t* spinlock) {
  return lock("pthread_spin_lock", spinlock);
}
int sem_wait(sem_t* semaphore) {
  return lock("sem_wait", semaphore);
}
int sem_trywait(sem_t* semaphore) {
  return lock("sem_trywait", semaphore);
}
int sem_post(sem_t* semaphore) {
  return lock("sem_post", semaphore);
}
// The first use of a variable that is static in a function.
int __cxa_guard_acquire(void* guard) {
  return lock("__cxa_guard_acquire", guard);
}

[[noreturn]] void __cxa_throw(void* thrown, void* type, void (*destroy)(void*)) {
  note(&channelstrip::test::Trapped::exceptions);
  next<void(void*, void*, void (*)(void*))>("__cxa_throw")(thrown, type, destroy);
  std::abort();
}
[[noreturn]] void __cxa_rethrow() {
  note(&channelstrip::test::Trapped::exceptions);
  next<void()>("__cxa_rethrow")();
  std::abort();
}

}  // extern "C"
